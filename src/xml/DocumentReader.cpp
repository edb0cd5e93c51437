#include "xml/DocumentReader.h"
#include "foundation/Uninterrupted.h"
#include "foundation/XmlLibrary.h"
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/BinFileInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Tallymoor {

using xercesc::XMLUni;

namespace {

using xercesc::SAXException;

/// The library must be ready before the base class is constructed.
xercesc::MemoryManager* readyFor(ParserMemory& memory) {
  ensureXmlLibrary();
  return &memory;
}

[[noreturn]] void refuse(const String& reason) {
  throw SAXException(reason.c_str());
}

/// The last bytes of a file, without the zeros that a wider encoding puts between its characters.
std::string endOf(const std::string& path, std::size_t fileSize) {
  constexpr std::size_t LENGTH = std::size_t{64} * 1024;
  std::ifstream file = openToRead(path);
  file.seekg(static_cast<std::streamoff>(fileSize - std::min(fileSize, LENGTH)));
  std::string end(LENGTH, '\0');
  file.read(end.data(), LENGTH);
  std::erase(end, '\0');
  return end;
}

/// A file that tells the reader how much of it was read.
class CountedFileStream : public xercesc::BinFileInputStream {
public:
  CountedFileStream(const std::string& path, DocumentReader& reader)
      : BinFileInputStream(path.c_str()), m_reader(reader) {}
  XMLSize_t readBytes(XMLByte* const bytes, const XMLSize_t most) override {
    const XMLSize_t count = BinFileInputStream::readBytes(bytes, most);
    m_reader.countBytes(count);
    return count;
  }

private:
  DocumentReader& m_reader;
};

} // namespace

DocumentReader::DocumentReader()
    : ParserMemory(DocumentLimits::PARSER_MEMORY), SAX2XMLReaderImpl(readyFor(*this), nullptr) {
  setFeature(XMLUni::fgSAX2CoreValidation, false);
  setFeature(XMLUni::fgXercesLoadExternalDTD, false);
  setFeature(XMLUni::fgSAX2CoreNameSpaces, false);
  setFeature(XMLUni::fgXercesSchema, false);
  setFeature(XMLUni::fgXercesLoadSchema, false);
  setFeature(XMLUni::fgXercesDisableDefaultEntityResolution, true);
  // The document type is reported to this class only while a listener is registered for it.
  setDeclarationHandler(&m_declarations);
}

void DocumentReader::beginDocument(const DocumentLimits& limits, bool keepsComments) {
  m_keepsComments = keepsComments;
  m_comments.clear();
  m_limits = limits;
  m_depth = 0;
  m_bytes = 0;
  m_elements = 0;
}

std::vector<String> DocumentReader::takeComments() {
  return std::exchange(m_comments, {});
}

/// A comment is bounded as an element and its text are.
void DocumentReader::docComment(const XMLCh* const text) {
  if (!m_keepsComments)
    return;
  countElements(1);
  m_comments.emplace_back(text);
  checkText(m_comments.back().size());
}

void DocumentReader::countBytes(std::size_t bytes) {
  m_bytes += bytes;
  if (m_bytes > m_limits.bytes)
    refuse(u"the document is longer than " + inMegabytes(m_limits.bytes));
}

void DocumentReader::countElements(std::size_t made) {
  m_elements += made;
  if (m_elements > DocumentLimits::FREE_ELEMENTS + m_bytes / DocumentLimits::BYTES_PER_ELEMENT)
    refuse(u"the document is made of empty elements");
}

void DocumentReader::checkSiblings(std::size_t count) const {
  if (count > m_limits.siblings)
    refuse(u"an element holds more than " + String::fromLong(static_cast<std::int64_t>(m_limits.siblings)) +
           u" others");
}

void DocumentReader::checkText(std::size_t units) {
  if (units > DocumentLimits::LONGEST_TEXT)
    refuse(u"the text of an element is too long");
}

void DocumentReader::checkAttributes(std::size_t count) {
  if (count > DocumentLimits::MOST_ATTRIBUTES)
    refuse(u"an element has too many attributes");
}

void DocumentReader::startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                                  const XMLCh* const prefix,
                                  const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                  const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) {
  // An empty element's end is told by the base class to itself, not through endElement.
  if (!isEmpty && ++m_depth > MAX_DEPTH)
    throw SAXException("elements are nested too deeply");
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
    throw SAXException("declarations in the document are not accepted");
  SAX2XMLReaderImpl::doctypeDecl(element, publicId, systemId, hasInternal, hasExternal);
}

xercesc::InputSource* DocumentReader::resolveEntity(xercesc::XMLResourceIdentifier*) {
  static const XMLByte NOTHING[1] = {0};
  return new xercesc::MemBufInputSource(NOTHING, 0, "nothing");
}

DocumentFileSource::DocumentFileSource(const String& path, const String& rootName, DocumentReader& reader)
    : LocalFileInputSource(path.c_str()), m_path(path.toUTF8()), m_reader(reader) {
  std::error_code notRegular; // what can't be measured can't be opened either, or is counted while it is read
  const std::uintmax_t size = std::filesystem::file_size(m_path, notRegular);
  if (notRegular || size < DocumentLimits::CHECKED_END)
    return;
  if (endOf(m_path, size).find("</" + rootName.toUTF8()) == std::string::npos)
    refuse(u"the document is cut short");
}

xercesc::BinInputStream* DocumentFileSource::makeStream() const {
  // A folder can be opened but not read, and the library loses memory when the first read fails.
  std::error_code unknown;
  if (std::filesystem::is_directory(m_path, unknown))
    return nullptr;
  std::unique_ptr<CountedFileStream> stream;
  do {
    errno = 0;
    stream = std::make_unique<CountedFileStream>(m_path, m_reader);
  } while (!stream->getIsOpen() && errno == EINTR); // a file on a network may be interrupted by a signal
  return stream->getIsOpen() ? stream.release() : nullptr;
}

} // namespace Tallymoor
