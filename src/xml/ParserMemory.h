#pragma once
#include <cstddef>
#include <xercesc/framework/MemoryManager.hpp>

namespace Tallymoor {

/// The memory of one parser: bounded, since a name, an attribute or a comment may be as long as its document,
/// and all given back at the end, also what the library lost sight of when a request was refused. One thread
/// at a time.
class ParserMemory : public xercesc::MemoryManager {
public:
  /// The limit is in bytes.
  explicit ParserMemory(std::size_t limit) : m_limit(limit) {}
  ~ParserMemory() override;
  ParserMemory(const ParserMemory&) = delete;
  ParserMemory& operator=(const ParserMemory&) = delete;

  /// Throws xercesc::SAXException beyond the limit. The library knows how to clean up behind a handler that
  /// throws one; behind its own exception for a lack of memory it does not.
  void* allocate(XMLSize_t size) override;
  void deallocate(void* memory) override;
  /// Exceptions outlive the parser.
  xercesc::MemoryManager* getExceptionMemoryManager() override;

private:
  /// Stands in front of each piece, linked with all others.
  struct Header {
    Header* before;
    Header* after;
    std::size_t size;
    std::size_t unused; ///< so that what follows is aligned for anything
  };
  static_assert(sizeof(Header) % alignof(std::max_align_t) == 0);

  const std::size_t m_limit;
  std::size_t m_used = 0;
  Header m_ring{&m_ring, &m_ring, 0, 0};
};

} // namespace Tallymoor
