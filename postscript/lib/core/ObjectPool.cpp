#include "core/ObjectPool.h"

#include "core/PostscriptObject.h"

#include <cstdint>
#include <mutex>
#include <new>
#include <vector>

namespace objectpool {

// What every pool has, also in sanitizer builds: the work list of destroy().
class Pool {
public:
    explicit Pool(bool shared) : shared(shared) {}
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool();

    void destroy(PostscriptObject* object) noexcept;

    const bool shared;
    std::mutex lock; // taken for the shared pool only
    bool draining = false;
    std::vector<PostscriptObject*> pending;

#if !defined(KEL_NO_POOL)
    void* take(std::size_t sizeClass);
    // True when the pool was retired and this was its last object.
    bool give(void* p, std::size_t sizeClass) noexcept;
    bool retire() noexcept;

private:
    struct FreeNode {
        FreeNode* next;
    };
    FreeNode* free_[10] = {};
    char* cursor_ = nullptr;
    char* limit_ = nullptr;
    void* chunks_ = nullptr;
    std::size_t live_ = 0;
    bool retired_ = false;
#endif
};

namespace {

// Trivial on purpose: a pointer needs no construction or destruction per
// thread, which the emulated TLS of mingw-w64 handles without trouble.
constinit thread_local Pool* current = nullptr;

Pool& sharedPool() {
    static Pool* pool = new Pool(true); // kept reachable on purpose: objects may outlive main
    return *pool;
}

} // namespace

Scope::Scope(Pool* pool) noexcept : previous_(current) {
    current = pool;
}

Scope::~Scope() {
    current = previous_;
}

void Pool::destroy(PostscriptObject* object) noexcept {
    // A destructor that lets go of more objects only queues them.
    if (draining) {
        try {
            pending.push_back(object);
            return;
        } catch (...) {
            // No room to queue: delete it right here, recursively.
        }
        delete object;
        return;
    }
    draining = true;
    delete object;
    while (!pending.empty()) {
        PostscriptObject* next = pending.back();
        pending.pop_back();
        delete next;
    }
    draining = false;
}

void destroy(PostscriptObject* object) noexcept {
    if (Pool* pool = current) {
        pool->destroy(object);
        return;
    }
    // Outside every scope the shared list serves all threads. The lock is
    // not held while deleting, which frees into that same pool.
    Pool& shared = sharedPool();
    bool outermost = false;
    {
        std::lock_guard<std::mutex> guard(shared.lock);
        if (shared.draining) {
            try {
                shared.pending.push_back(object);
                return;
            } catch (...) {
            }
        } else {
            shared.draining = outermost = true;
        }
    }
    delete object;
    if (!outermost) return;
    for (;;) {
        PostscriptObject* next;
        {
            std::lock_guard<std::mutex> guard(shared.lock);
            if (shared.pending.empty()) {
                shared.draining = false;
                return;
            }
            next = shared.pending.back();
            shared.pending.pop_back();
        }
        delete next;
    }
}

#if defined(KEL_NO_POOL)

Pool::~Pool() = default;

OwnedPool makePool() {
    return OwnedPool(new Pool(false));
}

void Retire::operator()(Pool* pool) const noexcept {
    delete pool;
}

void* allocate(std::size_t size) {
    return ::operator new(size);
}

void deallocate(void* p, std::size_t) noexcept {
    ::operator delete(p);
}

#else

namespace {

constexpr std::size_t granule = 16;
constexpr std::size_t classCount = 10; // up to 160 bytes: a dictionary body too
// Chunks are aligned to their size, so the chunk of any object, and its
// header naming the pool, is found from the object's address.
constexpr std::size_t chunkSize = 64 * 1024;
constexpr std::align_val_t chunkAlignment{chunkSize};

struct ChunkHeader {
    Pool* owner;
    void* next;
};
constexpr std::size_t headerSize = (sizeof(ChunkHeader) + granule - 1) / granule * granule;

std::size_t sizeClass(std::size_t size) {
    return (size + granule - 1) / granule;
}

ChunkHeader* chunkOf(void* p) {
    return reinterpret_cast<ChunkHeader*>(reinterpret_cast<std::uintptr_t>(p) & ~(chunkSize - 1));
}

} // namespace

Pool::~Pool() {
    for (void* chunk = chunks_; chunk;) {
        void* next = static_cast<ChunkHeader*>(chunk)->next;
        ::operator delete(chunk, chunkAlignment);
        chunk = next;
    }
}

void* Pool::take(std::size_t cls) {
    FreeNode*& head = free_[cls - 1];
    if (head) {
        FreeNode* node = head;
        head = node->next;
        ++live_;
        return node;
    }
    const std::size_t bytes = cls * granule;
    if (static_cast<std::size_t>(limit_ - cursor_) < bytes) {
        auto* chunk = static_cast<char*>(::operator new(chunkSize, chunkAlignment));
        *reinterpret_cast<ChunkHeader*>(chunk) = ChunkHeader{this, chunks_};
        chunks_ = chunk;
        cursor_ = chunk + headerSize;
        limit_ = chunk + chunkSize;
    }
    void* p = cursor_;
    cursor_ += bytes;
    ++live_;
    return p;
}

bool Pool::give(void* p, std::size_t cls) noexcept {
    auto* node = static_cast<FreeNode*>(p);
    node->next = free_[cls - 1];
    free_[cls - 1] = node;
    return --live_ == 0 && retired_;
}

bool Pool::retire() noexcept {
    retired_ = true;
    return live_ == 0;
}

OwnedPool makePool() {
    return OwnedPool(new Pool(false));
}

void Retire::operator()(Pool* pool) const noexcept {
    // Objects that outlive their interpreter keep the pool until they go.
    if (pool->retire()) delete pool;
}

void* allocate(std::size_t size) {
    const std::size_t cls = sizeClass(size);
    if (cls == 0 || cls > classCount) return ::operator new(size);
    if (Pool* pool = current) return pool->take(cls);
    Pool& shared = sharedPool();
    std::lock_guard<std::mutex> guard(shared.lock);
    return shared.take(cls);
}

void deallocate(void* p, std::size_t size) noexcept {
    if (!p) return;
    const std::size_t cls = sizeClass(size);
    if (cls == 0 || cls > classCount) {
        ::operator delete(p);
        return;
    }
    Pool* owner = chunkOf(p)->owner;
    if (owner->shared) {
        std::lock_guard<std::mutex> guard(owner->lock);
        owner->give(p, cls);
        return;
    }
    if (owner->give(p, cls)) delete owner;
}

#endif

} // namespace objectpool
