#include "workbench/SourceXml.h"
#include "workbench/LocatorXml.h"
#include <array>

namespace Tallymoor {

namespace {

constexpr std::array<const char16_t*, NUM_ANSWER_COLUMNS> NAMES{
    u"Date",     u"Open", u"High", u"Low",    u"Close",    u"AdjustedClose", u"Volume",
    u"Currency", u"Code", u"Name", u"Market", u"Dividend", u"Split"};

String attribute(const char16_t* name, const String& value) {
  return u" " + String(name) + u"=\"" + xmlEscaped(value) + u"\"";
}

String attributeUnless(const char16_t* name, const String& value, const String& usual) {
  return value == usual ? String() : attribute(name, value);
}

String readerName(AnswerReader reader) {
  return reader == AnswerReader::Json ? u"json" : reader == AnswerReader::Csv ? u"csv" : u"table";
}

/// The attributes that say how texts are read, but for those that are as usual.
String formatAttributes(const AnswerFormat& format) {
  const AnswerFormat usual;
  String text = attribute(u"reader", readerName(format.reader));
  if (format.reader == AnswerReader::Csv) {
    const char16_t separator = static_cast<char16_t>(format.separator);
    text += attributeUnless(u"separator", separator == u'\t' ? String(u"tab") : String(1, separator), u",");
    text +=
        attributeUnless(u"skipLines", String::fromLong(static_cast<std::int64_t>(format.skipLines)), u"0");
    text += attributeUnless(u"headings", format.hasHeading ? u"yes" : u"no", u"yes");
  }
  text += attributeUnless(u"dates", format.datePattern, usual.datePattern);
  text += attributeUnless(u"dateLocale", format.dateLocale, String());
  text += attributeUnless(u"timeZone", format.timeZone, String());
  text += attributeUnless(u"decimal", String(1, format.decimalSign), u".");
  constexpr int FACTOR_DECIMALS = 6;
  if (format.factor != 1.0)
    text += attribute(u"factor", String::fromDouble(format.factor, FACTOR_DECIMALS));
  return text + attributeUnless(u"currency", format.currency, String());
}

} // namespace

String columnName(AnswerColumn column) {
  return NAMES[static_cast<std::size_t>(column)];
}

String columnElement(const ColumnPlace& column) {
  return u"<Column" + attribute(u"type", columnName(column.column)) + attribute(u"at", column.place) + u"/>";
}

String sourceDocument(const NewSource& source, const FormatProposal& proposal) {
  const String part = proposal.isHistory ? u"History" : u"Current";
  String text = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                u"<!DOCTYPE PriceSource SYSTEM \"Tallymoor Price Source.dtd\">\n"
                u"<PriceSource";
  text += attribute(u"name", source.name) + u">\n  <Serves" + attribute(u"codes", source.codes) +
          attributeUnless(u"currency", source.currency, String()) + u"/>\n";
  if (!source.tryCode.empty())
    text += u"  <TryCode>" + xmlEscaped(source.tryCode) + u"</TryCode>\n";
  text += u"  <" + part + formatAttributes(proposal.format) + u">\n    <Address>" +
          xmlEscaped(source.address) + u"</Address>\n";
  for (const ColumnPlace& column : proposal.format.columns)
    text += u"    " + columnElement(column) + u"\n";
  for (const String& error : proposal.format.errorPaths)
    text += u"    <Error" + attribute(u"at", error) + u"/>\n";
  return text + u"  </" + part + u">\n</PriceSource>\n";
}

} // namespace Tallymoor
