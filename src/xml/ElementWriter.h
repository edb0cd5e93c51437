#pragma once
#include "foundation/String.h"
#include "xml/ElementComments.h"
#include "xml/Utf8Writer.h"
#include <iosfwd>
#include <vector>

namespace Tallymoor {

class XMLElement;

/// Writes a tree of elements, each on writing checked for what it lacks.
class ElementWriter {
public:
  explicit ElementWriter(std::ostream& stream) : m_stream(stream), m_writer(stream) {}

  /// The lines before the root. An empty stylesheet or document type has no line.
  void writeHead(const XMLElement& root, const String& stylesheetPath, const String& dtdName);
  /// The element and all below it. A failure throws, after what was written before it has gone to the stream.
  void write(XMLElement& element);

  // The same in parts, for an element with sub-elements.

  /// Up to the first sub-element. Fails as write.
  void writeStart(XMLElement& element);
  /// The sub-elements in the order of the file, ready to be written.
  static std::vector<XMLElement*> subElementsOf(XMLElement& element);
  /// From behind the last sub-element.
  void writeEnd(XMLElement& element);

private:
  void writeWithComments(XMLElement& element);
  void writeElement(XMLElement& element, const ElementComments::Texts& commentsInside);
  void writeOpening(const XMLElement& element);
  void writeClosing(const XMLElement& element, const ElementComments::Texts& commentsInside);
  void writeAttributes(const XMLElement& element);
  static void passOnUnsafety(XMLElement& element, std::size_t place);
  void writeSubElements(XMLElement& element);
  void writeComments(const ElementComments::Texts& comments);

  std::ostream& m_stream;
  Utf8Writer m_writer;
};

} // namespace Tallymoor
