#pragma once
#include "foundation/String.h"
#include "xml/DocumentLimits.h"
#include "xml/ParserMemory.h"
#include <cstddef>
#include <string>
#include <vector>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/parsers/SAX2XMLReaderImpl.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

namespace Tallymoor {

/// The SAX2 reader, set up so that a document from outside can do no harm: nothing but the document itself is
/// ever opened, nothing can be declared in its document type (ours declare nothing, a kilobyte of entities
/// can stand for gigabytes, and of other declarations the library keeps a hundred times their length), and
/// nesting, size and memory are bounded (see DocumentLimits). What is refused throws a SAXException out of
/// the parse; its text tells a user what is wrong with the document.
///
/// Namespaces are off, so elements and attributes arrive by their qualified names.
class DocumentReader : private ParserMemory, public xercesc::SAX2XMLReaderImpl {
public:
  /// Far above what any of our documents needs, far below what a recursive walk over a tree can bear.
  static constexpr std::size_t MAX_DEPTH = 256;

  DocumentReader();

  /// To be called before each parse: an abandoned parse leaves its depth behind.
  void beginDocument(const DocumentLimits& limits, bool keepsComments);

  /// True when comments were met since they were taken last, in a document that keeps them.
  bool hasComments() const { return !m_comments.empty(); }
  std::vector<String> takeComments();

  // Called while a document is read, with what it is made of.
  void countBytes(std::size_t bytes);
  /// Elements that were made for a tag, with those that they hold from construction on.
  void countElements(std::size_t made);
  /// How many instances of one kind a parent holds.
  void checkSiblings(std::size_t count) const;
  /// How long the text of one element has become.
  static void checkText(std::size_t units);
  static void checkAttributes(std::size_t count);

  void startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                    const XMLCh* const prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                    const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId, const bool isRoot,
                  const XMLCh* const prefix) override;
  void docComment(const XMLCh* const text) override;
  /// Called before anything between the brackets of the document type is read.
  void doctypeDecl(const xercesc::DTDElementDecl& element, const XMLCh* const publicId,
                   const XMLCh* const systemId, const bool hasInternal, const bool hasExternal) override;
  /// Gives an empty document for whatever the library would open.
  xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* identifier) override;

private:
  xercesc::DefaultHandler m_declarations; ///< hears nothing that matters
  DocumentLimits m_limits;
  std::size_t m_depth = 0;
  std::size_t m_bytes = 0;
  std::size_t m_elements = 0;
  bool m_keepsComments = false;
  std::vector<String> m_comments;
};

/// A file whose path goes to the operating system in UTF-8, whatever code page the library believes in. Its
/// bytes are counted by the reader that reads it.
class DocumentFileSource : public xercesc::LocalFileInputSource {
public:
  /// The reader must live longer than the streams. Throws SAXException for a long file that breaks off before
  /// the end of its root.
  DocumentFileSource(const String& path, const String& rootName, DocumentReader& reader);
  xercesc::BinInputStream* makeStream() const override;

private:
  std::string m_path;
  DocumentReader& m_reader;
};

} // namespace Tallymoor
