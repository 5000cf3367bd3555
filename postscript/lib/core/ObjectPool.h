#pragma once

#include <cstddef>

// Small PostScript objects come and go by the million (a number per token), so
// they are carved from per-thread free lists by size class instead of one heap
// call each. Sanitizer builds use the heap directly so that misuse is caught.
namespace objectpool {
void* allocate(std::size_t size);
void deallocate(void* p, std::size_t size) noexcept;
} // namespace objectpool
