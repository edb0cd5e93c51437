#include "xml/ElementMemory.h"
#include <memory_resource>

namespace Tallymoor {

namespace {

#if defined(__SANITIZE_ADDRESS__) // of gcc
constexpr bool FINDS_USE_AFTER_DELETION = true;
#elif defined(__has_feature) // of clang
constexpr bool FINDS_USE_AFTER_DELETION = __has_feature(address_sanitizer);
#else
constexpr bool FINDS_USE_AFTER_DELETION = false;
#endif

/// Lives as long as the process: elements in statics are destroyed late. A pool would hide from the sanitizer
/// that an element is used after its end.
std::pmr::memory_resource& elementMemory() {
  static auto& memory =
      FINDS_USE_AFTER_DELETION ? *std::pmr::new_delete_resource() : *new std::pmr::synchronized_pool_resource;
  return memory;
}

} // namespace

void* ElementMemory::allocate(std::size_t size) {
  return elementMemory().allocate(size, ALIGNMENT);
}

void ElementMemory::release(void* memory, std::size_t size) {
  elementMemory().deallocate(memory, size, ALIGNMENT);
}

} // namespace Tallymoor
