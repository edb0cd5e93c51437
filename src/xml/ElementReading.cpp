#include "xml/ElementReading.h"
#include "foundation/KeptTexts.h"
#include "foundation/XmlLibrary.h"
#include "xml/DocumentReader.h"
#include "xml/ElementComments.h"
#include "xml/ElementLayout.h"
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

XMLElement& ElementReading::element() {
  return static_cast<XMLElement&>(*this);
}

void ElementReading::dropReader() {
  if (m_ownsParser)
    delete m_parser;
  m_parser = nullptr;
  m_ownsParser = false;
}

void ElementReading::characters(const char16_t* chars, XMLSize_t length) {
  // Between sub-elements only white space is expected, and none of it is kept.
  if (!element().isLeaf())
    return;
  String& value = element().m_value;
  DocumentReader::checkText(value.size() + length);
  value.append(chars, length);
}

/// What the reader has met since the last tag.
void ElementReading::takeComments(std::vector<String> ElementComments::*place) {
  if (!m_parser || !m_parser->hasComments())
    return;
  XMLElement& element = this->element();
  ElementComments comments = element.m_hasComments ? ElementComments::of(element) : ElementComments();
  for (String& text : m_parser->takeComments())
    (comments.*place).push_back(std::move(text));
  ElementComments::set(element, std::move(comments));
  element.m_hasComments = true;
}

void ElementReading::endDocument() {
  takeComments(&ElementComments::after);
  element().m_parent = nullptr;
}

void ElementReading::endElement(const char16_t*, const char16_t*, const char16_t*) {
  takeComments(&ElementComments::inside);
  endTagRead();
  XMLElement* parent = element().m_parent;
  if (!parent)
    return;
  m_parser->setContentHandler(parent);
  m_parser = nullptr;
}

void ElementReading::startElement(const char16_t* uri, const char16_t* localName,
                                  const char16_t* qualifiedName, const xercesc::Attributes& attributes) {
  const char16_t* tag = tagOf(localName, qualifiedName);
  if (isNamed(tag, m_layout->name())) {
    readOwnStartTag(attributes);
    return;
  }
  const std::size_t place = findExpected(tag);
  if (place == m_layout->subElements().size())
    throw XMLException(kept::UNKNOWN_ELEMENT + name());
  m_lastReference = m_layout->subElements()[place].reference;
  m_subElements.setSeen(*m_layout, place);
  XMLElement& instance = instanceFor(place);
  m_parser->setContentHandler(&instance);
  instance.m_parser = m_parser;
  instance.startElement(uri, localName, qualifiedName, attributes);
}

void ElementReading::readOwnStartTag(const xercesc::Attributes& attributes) {
  m_lastReference = NO_REFERENCE;
  takeComments(&ElementComments::before);
  const XMLSize_t count = attributes.getLength();
  if (count == 0)
    return;
  ElementAttributes& values = element().m_attributes;
  DocumentReader::checkAttributes(values.size() + count);
  for (XMLSize_t i = 0; i < count; ++i)
    values.add(attributes.getLocalName(i), attributes.getValue(i));
}

/// The registration that a tag fills, or the number of registrations. The search begins at the registration
/// that was filled last and goes only forward; registrations that nothing matches are walked over. A single
/// registration that was met before is never met again, also when a second document is read without a reset.
std::size_t ElementReading::findExpected(const char16_t* tag) const {
  const auto& registrations = m_layout->subElements();
  const auto open = [&](std::size_t index) {
    return registrations[index].multiple || !m_subElements.isSeen(index);
  };
  bool passed = m_lastReference == NO_REFERENCE;
  // No earlier registration can bear the last reference name, so the walk may start at the first that does.
  std::size_t index = passed ? 0 : static_cast<std::size_t>(m_lastReference);
  for (; index < registrations.size(); ++index) {
    const bool isLast = registrations[index].reference == m_lastReference;
    if (isLast && open(index))
      passed = true;
    if (passed && isNamed(tag, registrations[index].elementName) && open(index))
      break;
    if (isLast)
      passed = true;
  }
  return index;
}

XMLElement& ElementReading::instanceFor(std::size_t index) {
  const SubElementRego& registration = m_layout->subElements()[index];
  if (registration.required && !registration.multiple && m_subElements.at(index).size() == 1) {
    XMLElement& known = *m_subElements.at(index).front();
    known.m_changeStamp = XMLElement::presentStamp(); // nobody knows the stamp of a new one
    return known;
  }
  const auto place = static_cast<std::size_t>(registration.reference);
  const bool replaces = !registration.multiple && m_subElements.at(place).size() == 1;
  XMLElement* instance = registration.factory();
  m_subElements.add(element(), instance, place);
  if (!replaces) {
    m_parser->countElements(1 + instance->m_subElements.size());
    m_parser->checkSiblings(m_subElements.at(place).size());
  }
  return *instance;
}

void ElementReading::decode(const String& fileName) {
  decodeFrom([&] { return std::make_unique<DocumentFileSource>(fileName, name(), *m_parser); });
}

void ElementReading::decode(const char* text) {
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
class ElementReading::ParseScope {
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
void ElementReading::decodeFrom(const MakeSource& makeSource) {
  ensureXmlLibrary();
  if (!m_parser) {
    m_parser = new DocumentReader;
    m_ownsParser = true;
  }
  TallymoorXMLErrorHandler errors;
  ParseException exception;
  element().markChanged();
  {
    ParseScope scope(element(), errors);
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
    dropReader();
    throw TallymoorXMLErrorHandler::failure(u"exception", name(), exception.text);
  }
  errors.throwIfAny(name());
}

} // namespace Tallymoor
