#include "core/ObjectPool.h"

#include "core/SpinLock.h"

#include <cstdint>
#include <mutex>
#include <new>
#include <vector>

namespace objectpool {

#if defined(KEL_NO_POOL)

void* allocate(std::size_t size) {
    return ::operator new(size);
}
void deallocate(void* p, std::size_t) noexcept {
    ::operator delete(p);
}

#else

namespace {

constexpr std::size_t granule = 16;
constexpr std::size_t classCount = 8; // up to 128 bytes
constexpr std::size_t chunkSize = 64 * 1024;

struct FreeNode {
    FreeNode* next;
};

// Chunks are never returned: an object may be freed by another thread than
// the one that made it, after that thread ended. Free lists only ever hold
// what was live at the peak, so the pool is bounded by live data.
char* newChunk() {
    static std::mutex lock;
    static auto* chunks = new std::vector<void*>; // kept reachable on purpose
    std::lock_guard<std::mutex> guard(lock);
    chunks->push_back(::operator new(chunkSize));
    return static_cast<char*>(chunks->back());
}

// One pool for the process, not one per thread: with a thread_local pool the
// mingw-w64 build (emulated TLS) crashed in C++ exception unwinding under
// Wine. Handles are used one thread at a time, so the lock is not contended;
// it only keeps misuse from corrupting the lists.
struct Pools {
    SpinLock busy;
    FreeNode* free[classCount] = {};
    char* cursor = nullptr;
    char* limit = nullptr;

    void* carve(std::size_t bytes) {
        if (static_cast<std::size_t>(limit - cursor) < bytes) {
            cursor = newChunk();
            limit = cursor + chunkSize;
        }
        void* p = cursor;
        cursor += bytes;
        return p;
    }
};

Pools& pools() {
    static Pools p;
    return p;
}

using Locked = SpinLock::Guard;

} // namespace

void* allocate(std::size_t size) {
    std::size_t cls = (size + granule - 1) / granule;
    if (cls == 0 || cls > classCount) return ::operator new(size);
    Pools& p = pools();
    Locked lock(p.busy);
    FreeNode*& head = p.free[cls - 1];
    if (head) {
        FreeNode* n = head;
        head = n->next;
        return n;
    }
    return p.carve(cls * granule);
}

void deallocate(void* ptr, std::size_t size) noexcept {
    if (!ptr) return;
    std::size_t cls = (size + granule - 1) / granule;
    if (cls == 0 || cls > classCount) {
        ::operator delete(ptr);
        return;
    }
    Pools& p = pools();
    Locked lock(p.busy);
    FreeNode*& head = p.free[cls - 1];
    FreeNode* n = static_cast<FreeNode*>(ptr);
    n->next = head;
    head = n;
}

#endif

} // namespace objectpool
