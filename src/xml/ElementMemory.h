#pragma once
#include <cstddef>

namespace Tallymoor {

/// Memory for elements and their lists of sub-elements. They stand together, away from everything else that
/// is allocated: records that are entered over a year are then read as fast as those just loaded.
namespace ElementMemory {

constexpr std::size_t ALIGNMENT = alignof(void*);

void* allocate(std::size_t size);
void release(void* memory, std::size_t size);

} // namespace ElementMemory

} // namespace Tallymoor
