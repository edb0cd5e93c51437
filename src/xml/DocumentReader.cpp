#include "xml/DocumentReader.h"
#include "foundation/XmlLibrary.h"
#include <filesystem>
#include <memory>
#include <system_error>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/BinFileInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Tallymoor {

using xercesc::XMLUni;

namespace {

xercesc::MemoryManager* libraryMemory() {
  ensureXmlLibrary();
  return xercesc::XMLPlatformUtils::fgMemoryManager;
}

} // namespace

DocumentReader::DocumentReader() : SAX2XMLReaderImpl(libraryMemory(), nullptr) {
  setFeature(XMLUni::fgSAX2CoreValidation, false);
  setFeature(XMLUni::fgXercesLoadExternalDTD, false);
  setFeature(XMLUni::fgSAX2CoreNameSpaces, false);
  setFeature(XMLUni::fgXercesSchema, false);
  setFeature(XMLUni::fgXercesLoadSchema, false);
  setFeature(XMLUni::fgXercesDisableDefaultEntityResolution, true);
  // The document type is told to this class only while somebody is registered to hear of it.
  setDeclarationHandler(&m_declarations);
}

void DocumentReader::startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                                  const XMLCh* const prefix,
                                  const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                  const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) {
  // An empty element's end is told by the base class to itself, not through endElement.
  if (!isEmpty && ++m_depth > MAX_DEPTH)
    throw xercesc::SAXException("elements are nested too deeply");
  SAX2XMLReaderImpl::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

void DocumentReader::endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                                const bool isRoot, const XMLCh* const prefix) {
  --m_depth;
  SAX2XMLReaderImpl::endElement(declaration, uriId, isRoot, prefix);
}

void DocumentReader::doctypeDecl(const xercesc::DTDElementDecl& element, const XMLCh* const publicId,
                                 const XMLCh* const systemId, const bool hasInternal,
                                 const bool hasExternal) {
  if (hasInternal)
    throw xercesc::SAXException("declarations in the document are not accepted");
  SAX2XMLReaderImpl::doctypeDecl(element, publicId, systemId, hasInternal, hasExternal);
}

xercesc::InputSource* DocumentReader::resolveEntity(xercesc::XMLResourceIdentifier*) {
  static const XMLByte nothing[1] = {0};
  return new xercesc::MemBufInputSource(nothing, 0, "nothing");
}

DocumentFileSource::DocumentFileSource(const String& path)
    : LocalFileInputSource(path.c_str()), m_path(path.toUTF8()) {}

xercesc::BinInputStream* DocumentFileSource::makeStream() const {
  // A folder can be opened but not read, and the library loses memory when the first read fails.
  std::error_code unknown;
  if (std::filesystem::is_directory(m_path, unknown))
    return nullptr;
  auto stream = std::make_unique<xercesc::BinFileInputStream>(m_path.c_str());
  return stream->getIsOpen() ? stream.release() : nullptr;
}

} // namespace Tallymoor
