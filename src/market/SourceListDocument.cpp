#include "market/SourceListDocument.h"
#include "foundation/Exception.h"
#include "market/CommandPrices.h"
#include "xml/DocumentFile.h"
#include "xml/PriceSourceSettings.h"
#include <array>

namespace Tallymoor {

namespace {

const String DTD = u"Tallymoor Price Sources.dtd";
const String YES = u"yes";
const String NO = u"no";
constexpr std::array<std::u16string_view, 4> KINDS{u"locators", u"document", u"folder", u"command"};
constexpr std::array<std::u16string_view, 4> DOUBTS{u"dates", u"decimal", u"timeZone", u"close"};

/// The value of the enumeration at the text's place in the list.
template <class Value>
Value valueNamed(const String& text, const std::array<std::u16string_view, 4>& names) {
  for (std::size_t i = 0; i < names.size(); ++i)
    if (text == String(String::Base(names[i])))
      return static_cast<Value>(i);
  throw Exception(u"unknown word: " + text);
}

template <class Value>
String nameOf(Value value, const std::array<std::u16string_view, 4>& names) {
  return String(String::Base(names[static_cast<std::size_t>(value)]));
}

ListedSource sourceOf(const XMLElement& element) {
  ListedSource source{.kind = valueNamed<SourceKind>(element.attribute(u"kind"), KINDS),
                      .name = element.attribute(u"name")};
  source.isOn = element.attribute(u"on") == YES;
  source.isTried = element.attribute(u"tried") == YES;
  source.folder = element.attribute(u"folder");
  for (std::size_t i = 0; i < element.numSubElements(u"Words"); ++i)
    source.command.push_back(element.subElement(u"Words", i).value());
  for (std::size_t i = 0; i < element.numSubElements(u"Answers"); ++i) {
    const XMLElement& answer = element.subElement(u"Answers", i);
    source.answers[answer.attribute(u"file")]
                  [valueNamed<FormatDoubt::About>(answer.attribute(u"about"), DOUBTS)] =
        answer.attribute(u"choice");
  }
  if (source.kind == SourceKind::Command)
    const CommandPrices checked(source.name, source.command, {});
  return source;
}

void write(const ListedSource& source, XMLElement& element) {
  element.setAttribute(u"kind", nameOf(source.kind, KINDS));
  element.setAttribute(u"name", source.name);
  element.setAttribute(u"on", source.isOn ? YES : NO);
  element.setAttribute(u"tried", source.isTried ? YES : NO);
  element.setAttribute(u"folder", source.folder);
  for (const String& word : source.command)
    element.addSubElement(newElement<XMLCommandWord>(), u"Words").setValue(word);
  for (const auto& [file, answers] : source.answers)
    for (const auto& [about, choice] : answers) {
      XMLElement& answer = element.addSubElement(newElement<XMLCsvAnswer>(), u"Answers");
      answer.setAttribute(u"file", file);
      answer.setAttribute(u"about", nameOf(about, DOUBTS));
      answer.setAttribute(u"choice", choice);
    }
}

} // namespace

void readSourceList(const String& path, std::vector<ListedSource>& sources,
                    std::map<String, SourcePin>& pins) {
  XMLPriceSources document;
  document.decode(path);
  for (std::size_t i = 0; i < document.numSubElements(u"Sources"); ++i)
    sources.push_back(sourceOf(document.subElement(u"Sources", i)));
  for (std::size_t i = 0; i < document.numSubElements(u"Pins"); ++i) {
    const XMLElement& pin = document.subElement(u"Pins", i);
    pins[pin.attribute(u"code")] = {pin.attribute(u"source"), pin.attribute(u"there")};
  }
}

void writeSourceList(const String& path, const std::vector<ListedSource>& sources,
                     const std::map<String, SourcePin>& pins) {
  XMLPriceSources document;
  for (const ListedSource& source : sources)
    write(source, document.addSubElement(newElement<XMLListedSource>(), u"Sources"));
  for (const auto& [code, pinned] : pins) {
    XMLElement& pin = document.addSubElement(newElement<XMLSourcePin>(), u"Pins");
    pin.setAttribute(u"code", code);
    pin.setAttribute(u"source", pinned.source);
    pin.setAttribute(u"there", pinned.codeThere);
  }
  saveDocument(path, document, DTD, newElement<XMLPriceSources>);
}

} // namespace Tallymoor
