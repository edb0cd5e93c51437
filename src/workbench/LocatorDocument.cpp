#include "workbench/LocatorDocument.h"
#include "foundation/Constants.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/WebPage.h"
#include "workbench/WorkbenchFailure.h"
#include <algorithm>
#include <array>

namespace Tallymoor {

/// A kind of locator document.
struct LocatorDocument::Form {
  Kind kind;
  std::u16string_view root;
  std::u16string_view sources; ///< The reference name.
  const char16_t* what;
  String fileName;
  XMLElement::Factory make;
};

namespace {

/// Reads the name of the root element and ignores everything else.
class RootName : public XMLElement {
public:
  RootName() : XMLElement(u"") {}
  void startElement(const char16_t*, const char16_t*, const char16_t* qualifiedName,
                    const xercesc::Attributes&) override {
    if (found.empty())
      found = qualifiedName;
  }
  void characters(const char16_t*, XMLSize_t) override {}
  String found;
};

[[noreturn]] void fail(const String& path, const String& why) {
  throw WorkbenchFailure(WorkbenchFailure::NOT_READ, path + u": " + why);
}

String messageOfDecoding(XMLElement::Factory make, const std::string& text) {
  const std::unique_ptr<XMLElement> root(make());
  try {
    root->decode(text.c_str());
  } catch (const XMLException& failure) {
    return failure.message();
  }
  return String();
}

/// The line of an error: the length of the shortest prefix of the document that is rejected with the same
/// message. A shorter prefix is rejected with another message, for being incomplete.
std::size_t lineOfFault(XMLElement::Factory make, const std::string& text, const String& message) {
  std::size_t good = 0;
  std::size_t bad = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
  const auto headOf = [&text](std::size_t lines) {
    std::size_t end = 0;
    for (; lines > 0 && end < text.size(); --lines)
      end = std::min(text.find('\n', end), text.size() - 1) + 1;
    return text.substr(0, end);
  };
  while (bad - good > 1) {
    const std::size_t middle = good + (bad - good) / 2;
    (messageOfDecoding(make, headOf(middle)) == message ? bad : good) = middle;
  }
  return bad;
}

/// Translates the reader's message into terms of the document.
String meaningOf(const String& message) {
  if (message.contains(u"pFoundSubElementRego == NULL"))
    return u"There is an unexpected element in " + message.substr(message.find(u" in ") + 4) +
           u": its name or its place in the order is wrong, or there is one too many.";
  if (message.contains(u"missing attribute"))
    return u"An element lacks a required attribute.";
  if (message.contains(u"both are present"))
    return u"A TagFind contains a TagSearch and a TagMove; it must contain one of them.";
  if (message.contains(u"neither are present"))
    return u"A TagFind contains neither a TagSearch nor a TagMove.";
  return u"An element lacks a required element.";
}

void readDocument(const String& path, const std::string& bytes, XMLElement& root, XMLElement::Factory make) {
  try {
    root.decode(path);
    root.attribute(u"active"); // Fails if the document ended before its root was complete.
  } catch (const XMLException& failure) {
    const String& message = failure.message();
    String place = u"this locator document is invalid";
    if (messageOfDecoding(make, bytes) == message)
      place += u" at line " + numberText(lineOfFault(make, bytes, message));
    fail(path, place + u".\n" + meaningOf(message) + u"\n(" + message + u")");
  }
}

} // namespace

String rootElementOf(const std::string& path) {
  readWholeFile(path); // fails unless it is a file
  RootName root;
  try {
    root.decode(String(path.c_str()));
  } catch (const XMLException& failure) {
    fail(String(path.c_str()), u"this is not valid XML.\n" + failure.message());
  }
  return root.found;
}

LocatorDocument::LocatorDocument(const std::string& path) : m_path(path.c_str()) {
  static const std::array<Form, 3> FORMS{
      {{Kind::CurrentPrices, u"CurrentPriceLocators", u"CurrentPrices", u"current prices",
        CURRENT_PRICE_LOCATORS_FILE, newElement<XMLCurrentPriceLocators>},
       {Kind::HistoricalPrices, u"HistoricalPricesLocators", u"HistPrices", u"past prices",
        HISTORICAL_PRICE_LOCATORS_FILE, newElement<XMLHistoricalPricesLocators>},
       {Kind::CodeSearch, u"CodeSearchLocators", u"CodeSearchs", u"searches for stock codes",
        CODE_SEARCH_LOCATORS_FILE, newElement<XMLCodeSearchLocators>}}};
  const std::string bytes = readWholeFile(path);
  const String root = rootElementOf(path);
  const auto form = std::find_if(FORMS.begin(), FORMS.end(),
                                 [&root](const Form& known) { return root == String(known.root); });
  if (form == FORMS.end())
    fail(m_path, u"this is not a locator document. Its root is " + inQuotes(root) +
                     u", but those of locator documents are CurrentPriceLocators, HistoricalPricesLocators "
                     u"and CodeSearchLocators, and that of a price source is PriceSource.");
  m_form = &*form;
  m_root.reset(form->make());
  readDocument(m_path, bytes, *m_root, form->make);
}

LocatorDocument::Kind LocatorDocument::kind() const {
  return m_form->kind;
}

const XMLElement& LocatorDocument::source(const String& domain) const {
  const String& wanted = domain.empty() ? m_root->attribute(u"active") : domain;
  for (std::size_t i = 0; i < m_root->numSubElements(m_form->sources); ++i) {
    const XMLElement& source = m_root->subElement(m_form->sources, i);
    if (source.attribute(u"domain") == wanted)
      return source;
  }
  fail(m_path, String(domain.empty() ? u"its active source " : u"the source ") + inQuotes(wanted) +
                   u" does not exist.\nIts sources are: " + sourceNames());
}

String LocatorDocument::sourceNames() const {
  String names;
  for (std::size_t i = 0; i < m_root->numSubElements(m_form->sources); ++i)
    names += (i == 0 ? u"" : u", ") + inQuotes(m_root->subElement(m_form->sources, i).attribute(u"domain"));
  return names.empty() ? u"none" : names;
}

void LocatorDocument::show(PlainOutput& out) const {
  out.line(u"Document: " + m_path + u", for " + m_form->what + u", version " + m_root->attribute(u"version"));
  out.line(u"Sources: " + sourceNames() + u"; in use is " + inQuotes(m_root->attribute(u"active")));
  if (!m_path.contains(m_form->fileName))
    out.line(u"The program reads this kind of document from the file " + m_form->fileName + u".");
}

} // namespace Tallymoor
