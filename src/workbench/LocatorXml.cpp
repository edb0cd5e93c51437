#include "workbench/LocatorXml.h"
#include "workbench/PlainOutput.h"
#include "xml/XMLElement.h"
#include <array>
#include <cstdio>

namespace Tallymoor {

namespace {

String characterReference(char16_t unit) {
  char text[16];
  std::snprintf(text, sizeof text, "&#x%X;", static_cast<unsigned>(unit));
  return String(text);
}

String attributes(const XMLElement& element) {
  static constexpr std::array<std::u16string_view, 9> NAMES{
      u"type", u"format", u"move", u"name", u"index", u"tagname", u"val", u"attr", u"attrVal"};
  String text;
  for (const std::u16string_view name : NAMES)
    if (element.hasAttribute(name))
      text += u" " + String(name) + u"=\"" + xmlEscaped(element.attribute(name)) + u"\"";
  return text;
}

} // namespace

String xmlEscaped(const String& value) {
  String text;
  for (const char16_t unit : value) {
    const bool isMarkup = unit == u'&' || unit == u'<' || unit == u'>' || unit == u'"';
    const String one(1, unit);
    // 0xA0 is the no-break space, which looks like a normal one.
    const bool isInvisible = PlainOutput::harmless(one) != one || unit == 0xA0;
    text += isMarkup || isInvisible ? characterReference(unit) : one;
  }
  return text;
}

void writeTagLocator(PlainOutput& out, const XMLElement& tagLocator, unsigned level) {
  out.line(u"<TagLocator" + attributes(tagLocator) + u">", level);
  for (std::size_t i = 0; i < tagLocator.numSubElements(u"TagFinds"); ++i) {
    const XMLElement& find = tagLocator.subElement(u"TagFinds", i);
    const String kind = find.numSubElements(u"TagMove") != 0 ? u"TagMove" : u"TagSearch";
    out.line(u"<TagFind><" + kind + attributes(find.subElement(kind)) + u"/></TagFind>", level + 1);
  }
  out.line(u"</TagLocator>", level);
}

void writeTableLocator(PlainOutput& out, const XMLElement& tableLocator, unsigned level) {
  out.line(u"<TableLocator>", level);
  writeTagLocator(out, tableLocator.subElement(u"TableRoot"), level + 1);
  writeTagLocator(out, tableLocator.subElement(u"Row"), level + 1);
  for (std::size_t i = 0; i < tableLocator.numSubElements(u"Columns"); ++i)
    writeTagLocator(out, tableLocator.subElement(u"Columns", i), level + 1);
  out.line(u"</TableLocator>", level);
}

} // namespace Tallymoor
