#include "xml/ElementWriter.h"
#include "xml/ElementLayout.h"
#include "xml/XMLElement.h"
#include <ostream>

namespace Tallymoor {

void ElementWriter::writeHead(const XMLElement& root, const String& stylesheetPath, const String& dtdName) {
  m_stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" << std::endl;
  if (!stylesheetPath.empty())
    m_stream << "<?xml-stylesheet type='text/xsl' href='file:\\\\" << stylesheetPath.toUTF8() << "'?>"
             << std::endl;
  if (!dtdName.empty())
    m_stream << "<!DOCTYPE " << root.m_layout->nameUtf8() << " SYSTEM \"" << dtdName.toUTF8() << "\">"
             << std::endl;
}

void ElementWriter::write(XMLElement& element) {
  try {
    writeWithComments(element);
  } catch (const Exception&) {
    m_writer.flush(); // what was written before the failure belongs to the stream
    throw;
  }
  m_writer.flush();
}

void ElementWriter::writeStart(XMLElement& element) {
  if (element.m_hasComments)
    writeComments(ElementComments::of(element).before);
  writeOpening(element);
  m_writer.raw('>');
  m_writer.flush();
}

void ElementWriter::writeEnd(XMLElement& element) {
  const ElementComments comments = element.m_hasComments ? ElementComments::of(element) : ElementComments();
  writeClosing(element, comments.inside);
  writeComments(comments.after);
  m_writer.flush();
}

void ElementWriter::writeWithComments(XMLElement& element) {
  static const ElementComments::Texts NONE;
  if (!element.m_hasComments) {
    writeElement(element, NONE);
    return;
  }
  const ElementComments comments = ElementComments::of(element);
  writeComments(comments.before);
  writeElement(element, comments.inside);
  writeComments(comments.after);
}

void ElementWriter::writeElement(XMLElement& element, const ElementComments::Texts& commentsInside) {
  writeOpening(element);
  const bool leaf = element.isLeaf();
  const bool empty = leaf ? element.m_value.empty() : element.m_subElements.empty();
  if (empty && commentsInside.empty()) {
    m_writer.raw("/>");
    return;
  }
  m_writer.raw('>');
  if (!leaf)
    writeSubElements(element);
  else if (element.m_contentSafe)
    m_writer.text(element.m_value);
  else
    m_writer.escaped(element.m_value);
  writeClosing(element, commentsInside);
}

/// Without the end of the tag.
void ElementWriter::writeOpening(const XMLElement& element) {
  m_writer.raw('<');
  m_writer.raw(element.m_layout->nameUtf8());
  element.checkAttributes();
  element.checkSubElements();
  writeAttributes(element);
}

void ElementWriter::writeClosing(const XMLElement& element, const ElementComments::Texts& commentsInside) {
  writeComments(commentsInside);
  m_writer.raw("</");
  m_writer.raw(element.m_layout->nameUtf8());
  m_writer.raw('>');
}

void ElementWriter::writeAttributes(const XMLElement& element) {
  for (const auto& [name, value] : element.m_attributes.all()) {
    m_writer.raw(' ');
    m_writer.text(name);
    m_writer.raw("=\"");
    if (element.m_layout->isAttributeSafe(name))
      m_writer.text(value);
    else
      m_writer.attribute(value);
    m_writer.raw('"');
  }
}

/// What is unsafe here is unsafe below, and stays so.
void ElementWriter::passOnUnsafety(XMLElement& element, std::size_t place) {
  if (!element.m_contentSafe || !element.m_layout->subElements()[place].contentSafe)
    for (XMLElement* below : element.m_subElements.at(place))
      below->markContentUnsafe();
}

void ElementWriter::writeSubElements(XMLElement& element) {
  for (std::size_t place = 0; place < element.m_subElements.places(); ++place) {
    passOnUnsafety(element, place);
    for (XMLElement* below : element.m_subElements.at(place))
      writeWithComments(*below);
  }
}

std::vector<XMLElement*> ElementWriter::subElementsOf(XMLElement& element) {
  std::vector<XMLElement*> all;
  all.reserve(element.m_subElements.size());
  for (std::size_t place = 0; place < element.m_subElements.places(); ++place) {
    passOnUnsafety(element, place);
    const auto below = element.m_subElements.at(place);
    all.insert(all.end(), below.begin(), below.end());
  }
  return all;
}

void ElementWriter::writeComments(const ElementComments::Texts& comments) {
  for (const String& text : comments) {
    m_writer.raw("<!--");
    m_writer.text(text);
    m_writer.raw("-->");
  }
}

} // namespace Tallymoor
