// How an element writes itself.
#include "xml/ElementComments.h"
#include "xml/ElementLayout.h"
#include "xml/ElementSlot.h"
#include "xml/Utf8Writer.h"
#include "xml/XMLElement.h"
#include <algorithm>
#include <ostream>

namespace Tallymoor {

namespace {

void writeDeclaration(std::ostream& stream) {
  stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" << std::endl;
}

void writeStylesheet(std::ostream& stream, const String& path) {
  stream << "<?xml-stylesheet type='text/xsl' href='file:\\\\" << path.toUTF8() << "'?>" << std::endl;
}

void writeDoctype(std::ostream& stream, const std::string& root, const String& dtdName) {
  stream << "<!DOCTYPE " << root << " SYSTEM \"" << dtdName.toUTF8() << "\">" << std::endl;
}

void writeComments(Utf8Writer& writer, const ElementComments::Texts& comments) {
  for (const String& text : comments) {
    writer.raw("<!--");
    writer.text(text);
    writer.raw("-->");
  }
}

} // namespace

void XMLElement::encodeWithDoctype(std::ostream& stream, const String& dtdName) {
  writeDeclaration(stream);
  writeDoctype(stream, m_layout->nameUtf8(), dtdName);
  encode(stream);
}

void XMLElement::encodeWithStylesheet(std::ostream& stream, const String& stylesheetPath) {
  writeDeclaration(stream);
  writeStylesheet(stream, stylesheetPath);
  encode(stream);
}

void XMLElement::encodeWithStylesheet(std::ostream& stream, const String& stylesheetPath,
                                      const String& dtdName) {
  writeDeclaration(stream);
  writeStylesheet(stream, stylesheetPath);
  writeDoctype(stream, m_layout->nameUtf8(), dtdName);
  encode(stream);
}

void XMLElement::encode(std::ostream& stream) {
  Utf8Writer writer(stream);
  try {
    encode(writer);
  } catch (const Exception&) {
    writer.flush(); // what was written before the failure belongs to the stream
    throw;
  }
  writer.flush();
}

void XMLElement::encode(Utf8Writer& writer) {
  static const ElementComments::Texts NONE;
  if (!m_hasComments) {
    encodeElement(writer, NONE);
    return;
  }
  const ElementComments comments = ElementComments::of(*this);
  writeComments(writer, comments.before);
  encodeElement(writer, comments.inside);
  writeComments(writer, comments.after);
}

void XMLElement::encodeElement(Utf8Writer& writer, const ElementComments::Texts& commentsInside) {
  writer.raw('<');
  writer.raw(m_layout->nameUtf8());
  checkAttributes();
  checkSubElements();
  encodeAttributes(writer);
  const bool leaf = isLeaf();
  const bool empty = leaf ? m_value.empty() : !hasSubElementInstances();
  if (empty && commentsInside.empty()) {
    writer.raw("/>");
    return;
  }
  writer.raw('>');
  if (!leaf)
    encodeSubElements(writer);
  else if (m_contentSafe)
    writer.text(m_value);
  else
    writer.escaped(m_value);
  writeComments(writer, commentsInside);
  writer.raw("</");
  writer.raw(m_layout->nameUtf8());
  writer.raw('>');
}

void XMLElement::encodeAttributes(Utf8Writer& writer) const {
  if (!m_attributes)
    return;
  for (const auto& [name, value] : *m_attributes) {
    writer.raw(' ');
    writer.text(name);
    writer.raw("=\"");
    if (m_layout->isAttributeSafe(name))
      writer.text(value);
    else
      writer.attribute(value);
    writer.raw('"');
  }
}

bool XMLElement::hasSubElementInstances() const {
  return std::any_of(m_slots.get(), m_slots.get() + m_slotCount,
                     [](const ElementSlot& slot) { return !slot.empty(); });
}

/// What is unsafe here is unsafe below, and stays so.
void XMLElement::encodeSubElements(Utf8Writer& writer) {
  for (std::size_t rego = 0; rego < m_slotCount; ++rego) {
    if (m_slots[rego].empty())
      continue;
    const bool unsafe = !m_contentSafe || !m_layout->subElements()[rego].contentSafe;
    for (XMLElement* element : m_slots[rego]) {
      if (unsafe)
        element->markContentUnsafe();
      element->encode(writer);
    }
  }
}

void XMLElement::checkAttributes() const {
  for (const AttributeRego& rego : m_layout->attributes())
    if (!hasAttribute(rego.name))
      throw XMLException(u"XMLElement::checkAttributes, missing attribute " + rego.name + u" in " + name());
}

void XMLElement::checkSubElements() const {
  const auto& regos = m_layout->subElements();
  for (std::size_t index = 0; index < regos.size(); ++index)
    if (regos[index].required && (index >= m_slotCount || m_slots[index].empty()))
      throw XMLException(u"XMLElement::checkSubElements - required at least one " +
                         regos[index].referenceName + u" in " + name());
}

} // namespace Tallymoor
