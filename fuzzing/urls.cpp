// Addresses. The first byte selects the variables. Lines follow for an address, a code and two literal parts
// of a locator. Splitting an address must lose nothing, and a typed code must not change other parts of the
// address.
#include "foundation/Exception.h"
#include "market/StockCode.h"
#include "market/URL.h"
#include "market/URLResolver.h"
#include "market/URLVariables.h"
#include "support/Input.h"
#include "support/Require.h"
#include "xml/LocatorDocuments.h"
#include <array>
#include <memory>
#include <optional>

namespace Tallymoor::Fuzz {
namespace {

constexpr std::array<URLVariableType, 4> VARIABLES{URL_VARIABLE_CODE, URL_VARIABLE_START_DAY,
                                                   URL_VARIABLE_COUNTRY, URL_VARIABLE_INDEX_OR_SHARE};

std::optional<URL> urlOf(const String& text) {
  try {
    return URL(text);
  } catch (const HTTPException& exception) {
    require(exception.message() == String(u"URL::URL - no host found "),
            "an address fails for want of a host alone");
    return std::nullopt;
  }
}

void checkUrl(const String& text) {
  const std::optional<URL> url = urlOf(text);
  if (!url)
    return;
  require(url->whole() == text, "an address keeps its text");
  require(!url->host().empty() && url->host().find_first_of(u":/\\") == String::npos,
          "a host holds no separator");
  require(url->path().startsWith(u"/"), "a path begins with a slash");
  require(url->hasPort() || url->port() == 80, "the port is 80 unless the address says otherwise");
  require(url->scheme() == url->scheme().toLower(), "a scheme is in lower case");
  const std::size_t schemeEnd = text.find(u"://");
  // The parts form the same address again if the port is valid.
  const std::int64_t port = static_cast<std::int32_t>(url->port());
  const String together = (schemeEnd == String::npos ? String() : url->scheme() + u"://") + url->host() +
                          u":" + String::fromLong(port) + url->path();
  if (schemeEnd == String::npos && url->path().contains(u"://"))
    return; // The text would have had a scheme.
  const std::optional<URL> again = urlOf(together);
  require(again.has_value(), "an address put together from its parts is one");
  require(again->host() == url->host() && again->path() == url->path() && again->port() == url->port(),
          "an address put together from its parts has the same parts");
}

std::uint8_t digitValue(char digit) {
  return static_cast<std::uint8_t>(digit <= '9' ? digit - '0' : digit - 'A' + 10);
}

std::string percentDecoded(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      bytes += text[i];
      continue;
    }
    require(i + 2 < text.size(), "a percent sign is followed by two digits");
    bytes += static_cast<char>(digitValue(text[i + 1]) << 4 | digitValue(text[i + 2]));
    i += 2;
  }
  return bytes;
}

void checkPercentEncoding(const std::string& bytes) {
  const std::string encoded = URLResolver::percentEncode(bytes);
  require(encoded.find_first_of(" \"#$&+,/:;<=>?@") == std::string::npos,
          "nothing that has a meaning in an address stays");
  require(percentDecoded(encoded) == bytes, "encoding loses nothing");
}

std::unique_ptr<XMLURLPart> part(const String& text, URLVariableType type) {
  auto made = std::make_unique<XMLURLPart>();
  made->setValue(text);
  made->setType(type);
  require(made->type() == type, "a part of an address keeps its type");
  return made;
}

/// The address of a locator: a text, a variable and another text.
void checkResolver(const String& before, URLVariableType type, const String& behind, const String& code) {
  XMLURLLocator locator;
  locator.addSubElement(part(before, URL_VARIABLE_NONE).release(), u"URLParts");
  locator.addSubElement(part(String(), type).release(), u"URLParts");
  locator.addSubElement(part(behind, URL_VARIABLE_NONE).release(), u"URLParts");
  const URLVariables variables(code, true, false, code);
  std::optional<URL> url;
  try {
    url = URLResolver(&locator)(variables);
  } catch (const HTTPException&) {
    return;
  }
  const std::string value = URLResolver::percentEncode(variables.urlVariable(type).toUTF8());
  require(url->whole() == before + String::fromUTF8(value) + behind,
          "an address is its parts one after another");
  // After the fixed text has begun a path, no code may change the host.
  const std::optional<URL> fixed = urlOf(before);
  if (fixed && before.contains(u"://") &&
      String(before.substr(before.find(u"://") + 3)).find(u'/') != String::npos)
    require(url->host() == fixed->host() && url->port() == fixed->port() && url->scheme() == fixed->scheme(),
            "a code can't change where a request goes");
}

void checkCode(const String& text) {
  const StockCode code(text);
  require(code.base().find(u'.') == String::npos, "the base of a code holds no point");
  const StockCode again(code.text());
  require(again.base() == code.base() && again.suffix() == code.suffix(),
          "the halves of a code are found again");
}

} // namespace
} // namespace Tallymoor::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor;
  using namespace Tallymoor::Fuzz;
  Input input(data, size);
  const URLVariableType type = VARIABLES[input.choice(VARIABLES.size())];
  checkUrl(input.text());
  const std::string_view code = input.line();
  checkPercentEncoding(std::string(code));
  checkCode(String::fromUTF8(code));
  const String before = input.text();
  checkResolver(before, type, input.text(), String::fromUTF8(code));
  return 0;
}
