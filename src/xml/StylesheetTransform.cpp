#include "xml/StylesheetTransform.h"
#include "foundation/Exception.h"
#include "foundation/String.h"
#include <array>
#include <cstdarg>
#include <cstdio>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxslt/extensions.h>
#include <libxslt/imports.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>
#include <memory>

namespace Tallymoor {

namespace {

/// Steps after which a transformation counts as endless.
constexpr unsigned long STEP_LIMIT = 100'000'000;

template <class Thing, void (*Free)(Thing*)>
struct Freer {
  void operator()(Thing* thing) const { Free(thing); }
};
using Document = std::unique_ptr<xmlDoc, Freer<xmlDoc, xmlFreeDoc>>;
using Stylesheet = std::unique_ptr<xsltStylesheet, Freer<xsltStylesheet, xsltFreeStylesheet>>;
using Context = std::unique_ptr<xsltTransformContext, Freer<xsltTransformContext, xsltFreeTransformContext>>;
using Permissions = std::unique_ptr<xsltSecurityPrefs, Freer<xsltSecurityPrefs, xsltFreeSecurityPrefs>>;

/// Gathers what the libraries have to say while it lives. They hand their messages over in pieces.
class Messages {
public:
  Messages() {
    xmlSetGenericErrorFunc(this, &Messages::add);
    xsltSetGenericErrorFunc(this, &Messages::add);
  }
  ~Messages() {
    xmlSetGenericErrorFunc(nullptr, nullptr);
    xsltSetGenericErrorFunc(nullptr, nullptr);
  }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  [[noreturn]] void fail(const char16_t* what) const {
    const String said = String::fromUTF8(m_text).trimmed();
    throw Exception(String(what) + (said.empty() ? String(u".") : u":\n" + said));
  }

  static void add(void* messages, const char* format, ...) __attribute__((format(printf, 2, 3))) {
    std::array<char, 1000> piece{};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(piece.data(), piece.size(), format, arguments);
    va_end(arguments);
    std::string& text = static_cast<Messages*>(messages)->m_text;
    if (text.size() < LONGEST)
      text += piece.data();
  }

private:
  static constexpr std::size_t LONGEST = 2000; ///< what a message box can show
  std::string m_text;
};

/// For all that a stylesheet does. While a stylesheet is read, the library looks at the permissions of the
/// process, later at those of the transformation.
class NothingAllowed {
public:
  NothingAllowed() : m_permissions(xsltNewSecurityPrefs()), m_before(xsltGetDefaultSecurityPrefs()) {
    for (const xsltSecurityOption option :
         {XSLT_SECPREF_READ_FILE, XSLT_SECPREF_WRITE_FILE, XSLT_SECPREF_CREATE_DIRECTORY,
          XSLT_SECPREF_READ_NETWORK, XSLT_SECPREF_WRITE_NETWORK})
      xsltSetSecurityPrefs(m_permissions.get(), option, xsltSecurityForbid);
    xsltSetDefaultSecurityPrefs(m_permissions.get());
  }
  ~NothingAllowed() { xsltSetDefaultSecurityPrefs(m_before); }
  NothingAllowed(const NothingAllowed&) = delete;
  NothingAllowed& operator=(const NothingAllowed&) = delete;

  void applyTo(xsltTransformContext& context) const {
    if (xsltSetCtxtSecurityPrefs(m_permissions.get(), &context) != 0)
      throw Exception(u"transformByStylesheet - xsltSetCtxtSecurityPrefs failed");
  }

private:
  Permissions m_permissions;
  xsltSecurityPrefsPtr m_before;
};

/// External entities and document types are never loaded: neither option for that is given.
Document parsed(const std::string& text, const Messages& messages, const char16_t* failure) {
  Document document(
      xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, XML_PARSE_NONET));
  if (!document)
    messages.fail(failure);
  return document;
}

Stylesheet compiled(const std::string& text, const Messages& messages) {
  Document document = parsed(text, messages, u"The stylesheet of the report can't be read");
  xmlNode* root = xmlDocGetRootElement(document.get());
  if (root && xmlHasProp(root, BAD_CAST "version"))
    xmlSetProp(root, BAD_CAST "version", BAD_CAST "1.0");
  Stylesheet stylesheet(xsltParseStylesheetDoc(document.get()));
  if (!stylesheet)
    messages.fail(u"The stylesheet of the report can't be used");
  static_cast<void>(document.release()); // the stylesheet's now
  if (stylesheet->errors > 0)
    messages.fail(u"The stylesheet of the report can't be used");
  return stylesheet;
}

std::string written(const Document& result, const Stylesheet& stylesheet) {
  xmlChar* bytes = nullptr;
  int length = 0;
  const int status = xsltSaveResultToString(&bytes, &length, result.get(), stylesheet.get());
  const std::unique_ptr<xmlChar, void (*)(void*)> owner(bytes, [](void* memory) { xmlFree(memory); });
  if (status != 0 || length <= 0)
    throw Exception(u"The stylesheet of the report makes an empty page.");
  return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

} // namespace

std::string transformByStylesheet(const std::string& stylesheetText, const std::string& documentText) {
  const Messages messages;
  const NothingAllowed permissions;
  const Stylesheet stylesheet = compiled(stylesheetText, messages);
  const Document document = parsed(documentText, messages, u"The report can't be read");
  const Context context(xsltNewTransformContext(stylesheet.get(), document.get()));
  if (!context)
    messages.fail(u"The stylesheet of the report can't be applied");
  permissions.applyTo(*context);
  context->opLimit = STEP_LIMIT;
  context->xpathCtxt->opLimit = STEP_LIMIT;
  const Document result(
      xsltApplyStylesheetUser(stylesheet.get(), document.get(), nullptr, nullptr, nullptr, context.get()));
  if (!result || context->state != XSLT_STATE_OK)
    messages.fail(u"The stylesheet of the report failed");
  return written(result, stylesheet);
}

} // namespace Tallymoor
