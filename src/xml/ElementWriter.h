#pragma once
#include "foundation/String.h"
#include "xml/ElementComments.h"
#include "xml/Utf8Writer.h"
#include <iosfwd>

namespace Tallymoor {

class WrittenPieces;
class XMLElement;

/// Writes a tree of elements, each on writing checked for what it lacks.
class ElementWriter {
public:
  /// With pieces, elements two levels below the root are taken from them and told to them.
  explicit ElementWriter(std::ostream& stream, WrittenPieces* pieces = nullptr)
      : m_stream(stream), m_writer(stream), m_pieces(pieces) {}

  /// The lines before the root. An empty stylesheet or document type has no line.
  void writeHead(const XMLElement& root, const String& stylesheetPath, const String& dtdName);
  /// The element and all below it. A failure throws, after what was written before it has gone to the stream.
  void write(XMLElement& element);

private:
  void writeWithComments(XMLElement& element);
  void writePiece(XMLElement& element);
  void writeElement(XMLElement& element, const ElementComments::Texts& commentsInside);
  void writeAttributes(const XMLElement& element);
  void writeSubElements(XMLElement& element);
  void writeComments(const ElementComments::Texts& comments);

  std::ostream& m_stream;
  Utf8Writer m_writer;
  WrittenPieces* m_pieces; ///< not owned
  int m_depth = 0;         ///< below the root
};

} // namespace Tallymoor
