#include "pages/AnswerForm.h"
#include "pages/JsonTable.h"
#include "pages/PageFigure.h"
#include <algorithm>

namespace Tallymoor {

namespace {

using Fault = AnswerException::Fault;

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

[[noreturn]] void refuse(const String& cause) {
  throw AnswerException(Fault::Unreadable, u"the answer " + cause);
}

std::string_view withoutBlanks(std::string_view bytes) {
  bytes = withoutByteOrderMark(bytes);
  return bytes.substr(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
}

/// The name of a form that is no text in UTF-8; null for text.
const char16_t* foreignForm(std::string_view bytes) {
  using namespace std::literals;
  if (bytes.starts_with("\x1F\x8B"sv))
    return u"is compressed (gzip)";
  if (bytes.starts_with("PK\x03\x04"sv))
    return u"is a ZIP archive or an office document";
  if (bytes.starts_with("%PDF"sv))
    return u"is a PDF document";
  if (bytes.starts_with("\xFF\xFE"sv) || bytes.starts_with("\xFE\xFF"sv))
    return u"is a text in UTF-16, not in UTF-8";
  return bytes.find('\0') == std::string_view::npos ? nullptr : u"holds bytes that are no text";
}

bool beginsJson(std::string_view text) {
  if (text.starts_with('{'))
    return true;
  // A line of CSV may begin with "[" too, as "[Prices]" between sections.
  const std::string_view inside = withoutBlanks(text.substr(text.starts_with('[') ? 1 : text.size()));
  return !inside.empty() &&
         std::string_view("[{\"]-0123456789").find(inside.front()) != std::string_view::npos;
}

bool beginsPage(std::string_view text) {
  return text.starts_with('<');
}

const char16_t* expectedForm(AnswerReader reader) {
  return reader == AnswerReader::Json ? u"JSON" : reader == AnswerReader::Csv ? u"CSV" : u"a web page";
}

} // namespace

std::string_view withoutByteOrderMark(std::string_view bytes) {
  if (bytes.starts_with(BYTE_ORDER_MARK))
    bytes.remove_prefix(BYTE_ORDER_MARK.size());
  return bytes;
}

String describedPage(std::string_view bytes) {
  constexpr std::size_t LOOKED_AT = 65536;
  const String page = String::fromUTF8(withoutBlanks(bytes).substr(0, LOOKED_AT));
  const String lower = page.toLower();
  if (lower.startsWith(u"<?xml") && !lower.contains(u"<html"))
    return u"an XML document";
  const std::size_t tag = lower.find(u"<title");
  const std::size_t from = tag == String::npos ? tag : lower.find(u'>', tag);
  const std::size_t end = from == String::npos ? from : lower.find(u'<', from);
  const String title = end == String::npos ? String() : withCharacters(page.substr(from + 1, end - from - 1));
  return title.trimmed().empty() ? String(u"a web page") : u"a web page, " + inMessage(title) + u",";
}

void requireForm(std::string_view bytes, const AnswerFormat& format) {
  const std::string_view text = withoutBlanks(bytes);
  if (text.empty())
    refuse(u"is empty");
  if (const char16_t* const form = foreignForm(text))
    refuse(form);
  const String where = String(u" where ") + expectedForm(format.reader) + u" is expected";
  const bool wantsJson = format.reader == AnswerReader::Json;
  if (beginsJson(text) && !wantsJson) {
    if (const String error = errorInJson(text, format.errorPaths); !error.empty())
      throw AnswerException(Fault::SourceError, error);
    refuse(u"is JSON" + where);
  }
  const bool wantsPage = !wantsJson && format.reader != AnswerReader::Csv;
  if (beginsPage(text) && !wantsPage)
    refuse(u"is " + describedPage(text) + where);
  const bool isPlain =
      wantsPage ? text.find('<') == std::string_view::npos
                : wantsJson && std::string_view("{[\"").find(text.front()) == std::string_view::npos;
  if (isPlain)
    refuse(u"is plain text" + where + u": " + inMessage(String::fromUTF8(text)));
}

AnswerReader seemingForm(std::string_view bytes) {
  const std::string_view text = withoutBlanks(bytes);
  return beginsJson(text)   ? AnswerReader::Json
         : beginsPage(text) ? AnswerReader::Headings
                            : AnswerReader::Csv;
}

} // namespace Tallymoor
