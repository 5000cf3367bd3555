#pragma once

#include <cstddef>
#include <cstdint>
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

// Deletes an object, and the objects its deletion lets go of, through the
// current pool's work list, so that freeing a deeply nested structure never
// recurses deeper than one level.
void destroy(PostscriptObject* object) noexcept;

#if defined(KEL_NO_POOL)

inline void* allocate(std::size_t size) {
    return ::operator new(size);
}
inline void deallocate(void* p, std::size_t) noexcept {
    ::operator delete(p);
}

#else

// The free lists are inline: taking and giving back is a few instructions.
namespace detail {

constexpr std::size_t granule = 16;
constexpr std::size_t classCount = 10; // up to 160 bytes: a dictionary body too
// Chunks are aligned to their size, so the chunk of any object, and its
// header naming the pool, is found from the object's address.
constexpr std::size_t chunkSize = 64 * 1024;

struct FreeNode {
    FreeNode* next;
};

// The part of a pool that the inline paths use.
struct Lists {
    FreeNode* free[classCount] = {};
    std::size_t live = 0;
    // The shared pool takes a lock; a retired one is freed with its last object.
    bool slowOnly = false;
};

struct ChunkHeader {
    Lists* owner;
    void* next;
};

// Trivial on purpose: a pointer needs no construction or destruction per
// thread, which the emulated TLS of mingw-w64 handles without trouble. On ELF
// the initial-exec model spares the shared library a call per access; a
// pointer fits the static TLS that a loaded library may take.
#if defined(__ELF__)
#define KEL_POOL_TLS [[gnu::tls_model("initial-exec")]]
#else
#define KEL_POOL_TLS
#endif
KEL_POOL_TLS extern constinit thread_local Lists* current;

void* allocateSlowly(std::size_t size);
void deallocateSlowly(void* p, std::size_t size) noexcept;

inline std::size_t sizeClass(std::size_t size) {
    return (size + granule - 1) / granule;
}

} // namespace detail

inline void* allocate(std::size_t size) {
    using namespace detail;
    const std::size_t index = sizeClass(size) - 1; // wraps for size 0
    if (index < classCount) {
        if (Lists* pool = current) {
            if (FreeNode* node = pool->free[index]) {
                pool->free[index] = node->next;
                ++pool->live;
                return node;
            }
        }
    }
    return allocateSlowly(size);
}

// Back to the pool the memory came from, whichever pool is current.
inline void deallocate(void* p, std::size_t size) noexcept {
    using namespace detail;
    const std::size_t index = sizeClass(size) - 1;
    if (p && index < classCount) {
        Lists* owner =
            reinterpret_cast<ChunkHeader*>(reinterpret_cast<std::uintptr_t>(p) & ~(chunkSize - 1))
                ->owner;
        if (!owner->slowOnly) {
            auto* node = static_cast<FreeNode*>(p);
            node->next = owner->free[index];
            owner->free[index] = node;
            --owner->live;
            return;
        }
    }
    deallocateSlowly(p, size);
}

#endif

} // namespace objectpool
