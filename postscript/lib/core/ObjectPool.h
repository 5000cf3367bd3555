#pragma once

#include <cstddef>
#include <memory>

class PostscriptObject;

// Small PostScript objects come and go by the million (a number per token), so
// they are carved from free lists by size class instead of one heap call each.
// Each interpreter has a pool of its own and makes it current on the thread
// that works for it, so the object path takes no lock: a handle is used by one
// thread at a time. Sanitizer builds use the heap directly so that misuse is
// caught.
namespace objectpool {

class Pool;

// The interpreter's own pool. It goes back to the system when the owner lets
// go of it and the last object from it is freed.
struct Retire {
    void operator()(Pool* pool) const noexcept;
};
using OwnedPool = std::unique_ptr<Pool, Retire>;
OwnedPool makePool();

// Makes a pool current on this thread for the scope's length. Outside every
// scope objects come from a shared pool, under a lock.
class Scope {
public:
    explicit Scope(Pool* pool) noexcept;
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

private:
    Pool* previous_;
};

void* allocate(std::size_t size);
// Back to the pool the memory came from, whichever pool is current.
void deallocate(void* p, std::size_t size) noexcept;

// Deletes an object, and the objects its deletion lets go of, through the
// current pool's work list, so that freeing a deeply nested structure never
// recurses deeper than one level.
void destroy(PostscriptObject* object) noexcept;

} // namespace objectpool
