#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <string>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/parsers/SAX2XMLReaderImpl.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

namespace Tallymoor {

/// The SAX2 reader, set up so that a document from outside can do no harm: nothing but the document itself is
/// ever opened, nothing can be declared in its document type (ours declare nothing, a kilobyte of entities
/// can stand for gigabytes, and of other declarations the library keeps a hundred times their length), and
/// the nesting is bounded. What is refused throws a SAXException out of the parse.
///
/// Namespaces are off, so elements and attributes arrive by their qualified names.
class DocumentReader : public xercesc::SAX2XMLReaderImpl {
public:
  /// Far above what any of our documents needs, far below what a recursive walk over a tree can bear.
  static constexpr std::size_t MAX_DEPTH = 256;

  DocumentReader();

  /// To be called before each parse: an abandoned parse leaves its depth behind.
  void beginDocument() { m_depth = 0; }

  void startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                    const XMLCh* const prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                    const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId, const bool isRoot,
                  const XMLCh* const prefix) override;
  /// Called before anything between the brackets of the document type is read.
  void doctypeDecl(const xercesc::DTDElementDecl& element, const XMLCh* const publicId,
                   const XMLCh* const systemId, const bool hasInternal, const bool hasExternal) override;
  /// Gives an empty document for whatever the library would open.
  xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* identifier) override;

private:
  xercesc::DefaultHandler m_declarations; ///< hears nothing that matters
  std::size_t m_depth = 0;
};

/// A file whose path goes to the operating system in UTF-8, whatever code page the library believes in.
class DocumentFileSource : public xercesc::LocalFileInputSource {
public:
  explicit DocumentFileSource(const String& path);
  xercesc::BinInputStream* makeStream() const override;

private:
  std::string m_path;
};

} // namespace Tallymoor
