#include "xml/ParserMemory.h"
#include "foundation/XmlLibrary.h"
#include <cstdlib>
#include <new>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace Tallymoor {

ParserMemory::~ParserMemory() {
  while (m_ring.after != &m_ring)
    deallocate(m_ring.after + 1);
}

void* ParserMemory::allocate(XMLSize_t size) {
  if (size > m_limit - m_used)
    throw xercesc::SAXException("a name, attribute or comment is too long, or there are too many of them");
  void* place = std::malloc(sizeof(Header) + size);
  if (!place)
    throw std::bad_alloc();
  auto* header = new (place) Header{&m_ring, m_ring.after, size, 0};
  m_ring.after->before = header;
  m_ring.after = header;
  m_used += size;
  return header + 1;
}

void ParserMemory::deallocate(void* memory) {
  if (!memory)
    return;
  Header* header = static_cast<Header*>(memory) - 1;
  header->before->after = header->after;
  header->after->before = header->before;
  m_used -= header->size;
  std::free(header);
}

xercesc::MemoryManager* ParserMemory::getExceptionMemoryManager() {
  ensureXmlLibrary();
  return xercesc::XMLPlatformUtils::fgMemoryManager;
}

} // namespace Tallymoor
