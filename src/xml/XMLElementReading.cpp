// How an element reads itself: the parse events, and the decode that starts them.
#include "foundation/KeptTexts.h"
#include "foundation/XmlLibrary.h"
#include "xml/DocumentReader.h"
#include "xml/ElementComments.h"
#include "xml/ElementLayout.h"
#include "xml/ElementSlot.h"
#include "xml/TallymoorXMLErrorHandler.h"
#include "xml/XMLElement.h"
#include <cstring>
#include <utility>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/internal/EndOfEntityException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

namespace Tallymoor {

namespace {

/// The text of an exception that crossed the parser; none while there was no exception.
struct ParseException {
  bool met = false;
  String text;

  void meet(const char16_t* message, const char16_t* before = u"") {
    met = true;
    text = String(before) + String(message ? message : u"");
  }
};

/// Compares unit by unit without measuring the zero-terminated name first: most comparisons end at the first
/// unit.
bool isNamed(const char16_t* name, const String& expected) {
  const std::size_t length = expected.size();
  for (std::size_t i = 0; i < length; ++i)
    if (name[i] != expected[i])
      return false;
  return name[length] == 0;
}

/// With namespaces off the reader fills the qualified name alone.
const char16_t* tagOf(const char16_t* localName, const char16_t* qualifiedName) {
  return localName && *localName ? localName : qualifiedName;
}

} // namespace

void XMLElement::characters(const char16_t* chars, XMLSize_t length) {
  // Between sub-elements only white space is expected, and none of it is kept.
  if (!isLeaf())
    return;
  DocumentReader::checkText(m_value.size() + length);
  m_value.append(chars, length);
}

/// What the reader has met since the last tag.
void XMLElement::takeComments(std::vector<String> ElementComments::*place) {
  if (!m_parser || !m_parser->hasComments())
    return;
  ElementComments comments = m_hasComments ? ElementComments::of(*this) : ElementComments();
  for (String& text : m_parser->takeComments())
    (comments.*place).push_back(std::move(text));
  ElementComments::set(*this, std::move(comments));
  m_hasComments = true;
}

void XMLElement::endDocument() {
  takeComments(&ElementComments::after);
  m_parent = nullptr;
}

void XMLElement::endElement(const char16_t*, const char16_t*, const char16_t*) {
  takeComments(&ElementComments::inside);
  endTagRead();
  if (!m_parent)
    return;
  m_parser->setContentHandler(m_parent);
  m_parser = nullptr;
}

void XMLElement::startElement(const char16_t* uri, const char16_t* localName, const char16_t* qualifiedName,
                              const xercesc::Attributes& attributes) {
  const char16_t* tag = tagOf(localName, qualifiedName);
  if (isNamed(tag, m_layout->name())) {
    readOwnStartTag(attributes);
    return;
  }
  const std::size_t rego = findExpected(tag);
  if (rego == m_layout->subElements().size())
    throw XMLException(kept::UNKNOWN_ELEMENT + name());
  m_lastReference = m_layout->subElements()[rego].reference;
  slotFor(rego).seen = true;
  XMLElement& instance = instanceFor(rego);
  m_parser->setContentHandler(&instance);
  instance.m_parser = m_parser;
  instance.startElement(uri, localName, qualifiedName, attributes);
}

void XMLElement::readOwnStartTag(const xercesc::Attributes& attributes) {
  m_lastReference = NO_REFERENCE;
  takeComments(&ElementComments::before);
  const XMLSize_t count = attributes.getLength();
  if (count == 0)
    return;
  if (!m_attributes)
    m_attributes = std::make_unique<AttributeValues>();
  DocumentReader::checkAttributes(m_attributes->size() + count);
  for (XMLSize_t i = 0; i < count; ++i)
    m_attributes->emplace(String(attributes.getLocalName(i)), String(attributes.getValue(i)));
}

/// The registration that a tag fills, or the number of registrations. The search begins at the registration
/// that was filled last and goes only forward; registrations that nothing matches are walked over. A single
/// registration that was met before is never met again, also when a second document is read without a reset.
std::size_t XMLElement::findExpected(const char16_t* tag) const {
  const auto& regos = m_layout->subElements();
  const auto open = [&](std::size_t index) {
    return regos[index].multiple || !(index < m_slotCount && m_slots[index].seen);
  };
  bool passed = m_lastReference == NO_REFERENCE;
  // No earlier registration can bear the last reference name, so the walk may start at the first that does.
  std::size_t index = passed ? 0 : static_cast<std::size_t>(m_lastReference);
  for (; index < regos.size(); ++index) {
    const bool isLast = regos[index].reference == m_lastReference;
    if (isLast && open(index))
      passed = true;
    if (passed && isNamed(tag, regos[index].elementName) && open(index))
      break;
    if (isLast)
      passed = true;
  }
  return index;
}

XMLElement& XMLElement::instanceFor(std::size_t index) {
  const SubElementRego& rego = m_layout->subElements()[index];
  if (rego.required && !rego.multiple && m_slots[index].size() == 1) {
    XMLElement& known = *m_slots[index][0];
    known.m_changeStamp = presentStamp(); // a new one has a stamp that nobody can have kept
    return known;
  }
  const auto place = static_cast<std::size_t>(rego.reference);
  const bool replaces = !rego.multiple && m_slots[place].size() == 1;
  XMLElement* instance = rego.factory();
  addInstance(instance, place);
  if (!replaces) {
    std::size_t made = 1;
    for (std::size_t i = 0; i < instance->m_slotCount; ++i)
      made += instance->m_slots[i].size();
    m_parser->countElements(made);
    m_parser->checkSiblings(m_slots[place].size());
  }
  return *instance;
}

void XMLElement::decode(const String& fileName) {
  decodeFrom([&] { return std::make_unique<DocumentFileSource>(fileName, name(), *m_parser); });
}

void XMLElement::decode(const char* text) {
  const char* content = text ? text : "";
  decodeFrom([this, content] {
    const std::size_t length = std::strlen(content);
    m_parser->countBytes(length);
    return std::make_unique<xercesc::MemBufInputSource>(reinterpret_cast<const XMLByte*>(content), length,
                                                        "dontcare", false);
  });
}

/// Whatever way a parse ends, the reader keeps no pointer into the tree or to the error handler, no element
/// below this one keeps the reader, and this one has its own parent back.
class XMLElement::ParseScope {
public:
  ParseScope(XMLElement& root, xercesc::ErrorHandler& errors) : m_root(root), m_parent(root.m_parent) {
    m_root.m_parent = nullptr; // the events must not climb beyond the element that is decoded
    m_root.m_parser->setContentHandler(&root);
    m_root.m_parser->setErrorHandler(&errors);
  }
  ~ParseScope() {
    DocumentReader& reader = *m_root.m_parser;
    // Only this class's elements ever become the handler.
    auto* current = static_cast<XMLElement*>(reader.getContentHandler());
    for (; current && current != &m_root; current = current->m_parent)
      current->m_parser = nullptr;
    reader.setContentHandler(nullptr);
    reader.setErrorHandler(nullptr);
    m_root.m_parent = m_parent;
  }
  ParseScope(const ParseScope&) = delete;
  ParseScope& operator=(const ParseScope&) = delete;

private:
  XMLElement& m_root;
  XMLElement* m_parent;
};

template <class MakeSource>
void XMLElement::decodeFrom(const MakeSource& makeSource) {
  ensureXmlLibrary();
  if (!m_parser) {
    m_parser = new DocumentReader;
    m_ownsParser = true;
  }
  TallymoorXMLErrorHandler errors;
  ParseException exception;
  markChanged();
  {
    ParseScope scope(*this, errors);
    m_parser->beginDocument(DocumentLimits::of(name()), keepsComments());
    try {
      m_parser->parse(*makeSource());
    } catch (const xercesc::OutOfMemoryException& problem) {
      exception.meet(problem.getMessage());
    } catch (const xercesc::XMLException& problem) {
      exception.meet(problem.getMessage());
    } catch (const xercesc::SAXException& problem) {
      exception.meet(problem.getMessage());
    } catch (const xercesc::EndOfEntityException&) {
      exception.meet(u"", u"EndOfEntityException ");
    }
  }
  if (exception.met) {
    // One that was stopped in its midst may hold on to memory.
    delete m_parser;
    m_parser = nullptr;
    m_ownsParser = false;
    throw TallymoorXMLErrorHandler::failure(u"exception", name(), exception.text);
  }
  errors.throwIfAny(name());
}

} // namespace Tallymoor
