#pragma once
#include "foundation/String.h"
#include "xml/ElementDeclaration.h"
#include "xml/SubElements.h"
#include <cstddef>
#include <cstdint>
#include <vector>
#include <xercesc/sax2/ContentHandler.hpp>

namespace Tallymoor {

class DocumentReader;
struct ElementComments;

/// The part of an element that reads a document into the tree: the reader sends its events to the element
/// that is being read. Every instance is an XMLElement.
class ElementReading : public xercesc::ContentHandler, public ElementDeclaration {
public:
  /// Reads a file into the tree. What was built before a failure stays, and the caller decides what becomes
  /// of it.
  void decode(const String& fileName);
  /// Reads a text that ends in 0. Its encoding is what its XML declaration says.
  void decode(const char* text);

  void characters(const char16_t* chars, XMLSize_t length) override;
  void endDocument() override;
  void endElement(const char16_t* uri, const char16_t* localName, const char16_t* qualifiedName) override;
  void ignorableWhitespace(const char16_t*, XMLSize_t) override {}
  void processingInstruction(const char16_t*, const char16_t*) override {}
  void setDocumentLocator(const xercesc::Locator*) override {}
  void startDocument() override {}
  void startElement(const char16_t* uri, const char16_t* localName, const char16_t* qualifiedName,
                    const xercesc::Attributes& attributes) override;
  void startPrefixMapping(const char16_t*, const char16_t*) override {}
  void endPrefixMapping(const char16_t*) override {}
  void skippedEntity(const char16_t*) override {}

protected:
  explicit ElementReading(const ElementLayout& layout) : ElementDeclaration(layout) {}
  ~ElementReading() override { dropReader(); }

  /// Called when the element's end tag was read, before its parent goes on. Classes that check themselves
  /// while they are read throw from here.
  virtual void endTagRead() {}
  /// Asked of the root: whether what the user wrote into the document as comments is kept. A comment goes
  /// with the element that follows it or, where none follows, with the one that it stands in.
  virtual bool keepsComments() const { return false; }

  /// For another decode.
  void forgetLastReference() { m_lastReference = NO_REFERENCE; }
  void dropReader();

private:
  template <class>
  friend class ElementList;
  friend class SubElements;
  friend class ElementWriter;
  friend class XMLElement;
  class ParseScope;
  static constexpr std::int16_t NO_REFERENCE = -1;

  XMLElement& element();
  void readOwnStartTag(const xercesc::Attributes& attributes);
  std::size_t findExpected(const char16_t* tag) const;
  XMLElement& instanceFor(std::size_t place);
  void takeComments(std::vector<String> ElementComments::*place);
  template <class MakeSource>
  void decodeFrom(const MakeSource& makeSource);

  DocumentReader* m_parser = nullptr; ///< set while being read; kept between decodes where m_ownsParser
  [[no_unique_address]] SubElements m_subElements;
  std::int16_t m_lastReference = NO_REFERENCE; ///< the registration met last
  bool m_ownsParser = false;
};

} // namespace Tallymoor
