#include "market/PriceSource.h"
#include "foundation/Exception.h"
#include "market/SourceFailure.h"
#include "pages/AnswerFigures.h"
#include "pages/JsonPath.h"
#include "xml/PriceSourceDocument.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <fnmatch.h>

namespace Tallymoor {

namespace {

template <typename Value>
struct Named {
  std::u16string_view name;
  Value value;
};

constexpr std::array<Named<AnswerReader>, 3> READERS{
    {{u"json", AnswerReader::Json}, {u"csv", AnswerReader::Csv}, {u"table", AnswerReader::Headings}}};
constexpr std::array<Named<AnswerColumn>, NUM_ANSWER_COLUMNS> COLUMNS{
    {{u"Date", AnswerColumn::Date},
     {u"Open", AnswerColumn::Open},
     {u"High", AnswerColumn::High},
     {u"Low", AnswerColumn::Low},
     {u"Close", AnswerColumn::Close},
     {u"AdjustedClose", AnswerColumn::AdjustedClose},
     {u"Volume", AnswerColumn::Volume},
     {u"Currency", AnswerColumn::Currency},
     {u"Code", AnswerColumn::Code},
     {u"Name", AnswerColumn::Name},
     {u"Market", AnswerColumn::Market},
     {u"Dividend", AnswerColumn::Dividend},
     {u"Split", AnswerColumn::Split}}};

[[noreturn]] void fail(const String& cause) {
  throw Exception(cause);
}

template <typename Value, std::size_t N>
Value valueNamed(const String& name, const std::array<Named<Value>, N>& known, const char16_t* what) {
  for (const Named<Value>& each : known)
    if (name == String(String::Base(each.name)))
      return each.value;
  fail(what + (u": " + name));
}

String attributeOr(const XMLElement& element, std::u16string_view name, const String& otherwise = String()) {
  return element.hasAttribute(name) ? element.attribute(name) : otherwise;
}

/// A whole number from 0; the given one when the attribute is missing.
std::size_t countIn(const XMLElement& element, std::u16string_view name, std::size_t otherwise) {
  if (!element.hasAttribute(name))
    return otherwise;
  const String text = element.attribute(name).trimmed();
  const bool isCount = !text.empty() && std::all_of(text.begin(), text.end(), [](char16_t unit) {
    return unit >= u'0' && unit <= u'9';
  });
  constexpr std::size_t MAX_DIGITS = 9;
  if (!isCount || text.size() > MAX_DIGITS)
    fail(u"no whole number: " + text);
  return static_cast<std::size_t>(text.toLong());
}

bool isYes(const XMLElement& element, std::u16string_view name, bool otherwise) {
  constexpr std::array<Named<bool>, 2> ANSWERS{{{u"yes", true}, {u"no", false}}};
  return element.hasAttribute(name) ? valueNamed(element.attribute(name), ANSWERS, u"neither yes nor no")
                                    : otherwise;
}

char separatorIn(const XMLElement& element) {
  const String text = attributeOr(element, u"separator", u",");
  if (text == u"tab")
    return '\t';
  constexpr char16_t LAST_ASCII = 0x7E;
  if (text.size() != 1 || text[0] <= u' ' || text[0] > LAST_ASCII || text[0] == u'"')
    fail(u"no separator of fields: " + text);
  return static_cast<char>(text[0]);
}

char16_t decimalSignIn(const XMLElement& element) {
  const String text = attributeOr(element, u"decimal", u".");
  if (text != u"." && text != u",")
    fail(u"the decimal sign is neither \".\" nor \",\": " + text);
  return text[0];
}

double factorIn(const XMLElement& element) {
  const String text = attributeOr(element, u"factor", u"1");
  const double factor = text.toDouble();
  if (!(factor > 0.0) || !std::isfinite(factor))
    fail(u"a factor that is no number above 0: " + text);
  return factor;
}

AnswerFormat formatIn(const XMLElement& request) {
  AnswerFormat format;
  format.reader = valueNamed(request.attribute(u"reader"), READERS, u"unknown reader");
  for (std::size_t i = 0; i < request.numSubElements(u"Columns"); ++i) {
    const XMLElement& column = request.subElement(u"Columns", i);
    format.columns.push_back(
        {valueNamed(column.attribute(u"type"), COLUMNS, u"unknown column"), column.attribute(u"at")});
  }
  for (std::size_t i = 0; i < request.numSubElements(u"Errors"); ++i)
    format.errorPaths.push_back(request.subElement(u"Errors", i).attribute(u"at"));
  format.separator = separatorIn(request);
  format.skipLines = countIn(request, u"skipLines", 0);
  format.hasHeading = isYes(request, u"headings", true);
  format.datePattern = attributeOr(request, u"dates", format.datePattern);
  format.dateLocale = attributeOr(request, u"dateLocale");
  format.timeZone = attributeOr(request, u"timeZone");
  format.decimalSign = decimalSignIn(request);
  format.factor = factorIn(request);
  format.invert = isYes(request, u"invert", false);
  format.currency = attributeOr(request, u"currency");
  return format;
}

std::vector<String> wrongCodePathsIn(const XMLElement& request) {
  constexpr std::array<Named<bool>, 2> MEANINGS{{{u"refusal", false}, {u"wrong code", true}}};
  std::vector<String> paths;
  for (std::size_t i = 0; i < request.numSubElements(u"Errors"); ++i) {
    const XMLElement& error = request.subElement(u"Errors", i);
    if (error.hasAttribute(u"means") && valueNamed(error.attribute(u"means"), MEANINGS, u"unknown meaning"))
      paths.push_back(error.attribute(u"at"));
  }
  return paths;
}

/// Fails now for what would otherwise fail at the first answer.
void check(const AnswerFormat& format) {
  const AnswerFigures figures(format);
  for (const String& error : format.errorPaths)
    const JsonPath path(error);
  if (format.reader == AnswerReader::Json)
    for (const ColumnPlace& column : format.columns)
      const JsonPath path(column.place);
}

void requireColumns(const SourceRequest& request, const char16_t* kind,
                    std::initializer_list<AnswerColumn> columns) {
  for (const AnswerColumn needed : columns)
    if (std::none_of(request.format.columns.begin(), request.format.columns.end(),
                     [needed](const ColumnPlace& column) { return column.column == needed; }))
      fail(String(kind) + u" has no column " +
           String(String::Base(COLUMNS[static_cast<std::size_t>(needed)].name)));
}

bool usesKey(const SourceRequest* request) {
  return request != nullptr && (request->address.usesKey() ||
                                std::any_of(request->headers.begin(), request->headers.end(),
                                            [](const auto& header) { return header.second.usesKey(); }));
}

bool isThisMachine(const String& server) {
  return server.contains(u"://127.0.0.1") || server.contains(u"://localhost");
}

void checkServer(const SourceRequest& request) {
  const String server = request.address.server();
  if (usesKey(&request) && !server.startsWith(u"https://") && !isThisMachine(server))
    fail(u"the key would be sent to " + server + u" without encryption");
}

std::optional<SourceRequest> requestIn(const XMLElement& source, const char16_t* kind,
                                       std::initializer_list<AnswerColumn> needed) {
  if (source.numSubElements(kind) == 0)
    return std::nullopt;
  const XMLElement& element = source.subElement(kind);
  SourceRequest request{AddressTemplate(element.subElement(u"Address").value().trimmed()),
                        {},
                        formatIn(element),
                        wrongCodePathsIn(element),
                        countIn(element, u"daysAPage", 0)};
  for (std::size_t i = 0; i < element.numSubElements(u"Headers"); ++i) {
    const XMLElement& header = element.subElement(u"Headers", i);
    request.headers.emplace_back(header.attribute(u"name"), AddressTemplate(header.value().trimmed()));
  }
  checkServer(request);
  check(request.format);
  requireColumns(request, kind, needed);
  return request;
}

const XMLElement* single(const XMLElement& source, std::u16string_view name) {
  return source.numSubElements(name) == 0 ? nullptr : &source.subElement(name);
}

} // namespace

PriceSource::PriceSource(const XMLElement& document)
    : m_name(document.attribute(u"name").trimmed()), m_notTried(attributeOr(document, u"notTried")) {
  constexpr std::size_t LONGEST_NAME = 100;
  if (m_name.empty() || m_name.size() > LONGEST_NAME)
    fail(u"a name of 1 to 100 characters is needed");
  for (std::size_t i = 0; i < document.numSubElements(u"Serves"); ++i) {
    const XMLElement& codes = document.subElement(u"Serves", i);
    m_served.push_back({codes.attribute(u"codes"), attributeOr(codes, u"currency")});
  }
  if (const XMLElement* const terms = single(document, u"Terms")) {
    m_terms = terms->value().trimmed();
    m_termsLink = attributeOr(*terms, u"link");
  }
  if (const XMLElement* const limits = single(document, u"Limits")) {
    m_limits.atOnce = std::max<std::size_t>(1, countIn(*limits, u"atOnce", m_limits.atOnce));
    m_limits.perMinute = countIn(*limits, u"perMinute", 0);
    m_limits.perDay = countIn(*limits, u"perDay", 0);
  }
  if (const XMLElement* const key = single(document, u"Key")) {
    m_keyHint = key->value().trimmed();
    m_keyLink = attributeOr(*key, u"link");
  }
  if (const XMLElement* const code = single(document, u"TryCode"))
    m_tryCode = code->value().trimmed();
  m_currentPrice = requestIn(document, u"Current", {AnswerColumn::Close});
  m_history = requestIn(document, u"History", {AnswerColumn::Date, AnswerColumn::Close});
  m_search = requestIn(document, u"Search", {AnswerColumn::Code, AnswerColumn::Name});
  if (!m_currentPrice && !m_history)
    fail(u"neither Current nor History");
}

PriceSource PriceSource::fromFile(const String& fileName) try {
  XMLPriceSource document;
  document.decode(fileName);
  return PriceSource(document);
} catch (const XMLException&) {
  throw;
} catch (const Exception& failure) {
  throw Exception(fileName + u": " + shortened(failure.message()));
}

PriceSource PriceSource::fromText(const std::string& text) {
  XMLPriceSource document;
  document.decode(text.c_str());
  return PriceSource(document);
}

const ServedCodes* PriceSource::servedBy(const String& code) const {
  const std::string text = code.toUTF8();
  for (const ServedCodes& codes : m_served)
    if (fnmatch(codes.pattern.toUTF8().c_str(), text.c_str(), FNM_CASEFOLD | FNM_NOESCAPE) == 0)
      return &codes;
  return nullptr;
}

String PriceSource::currencyOf(const String& code) const {
  const ServedCodes* const codes = servedBy(code);
  return codes == nullptr ? String() : codes->currency;
}

std::set<String> PriceSource::keyServers() const {
  std::set<String> servers;
  for (const SourceRequest* request : {currentPrice(), history(), search()})
    if (usesKey(request))
      servers.insert(request->address.server());
  return servers;
}

bool PriceSource::needsKey() const {
  return !keyServers().empty();
}

} // namespace Tallymoor
