#include "core/ObjectPool.h"

#include "core/PostscriptObject.h"

#include <mutex>
#include <new>
#include <vector>

namespace objectpool {

#if defined(KEL_NO_POOL)
struct PoolBase {};
#else
using PoolBase = detail::Lists;
#endif

// The free lists (where there are any) and the work list of destroy().
class Pool : public PoolBase {
public:
    explicit Pool(bool shared);
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool();

    void destroy(PostscriptObject* object) noexcept;

    const bool shared;
    std::mutex lock; // taken for the shared pool only
    bool draining = false;
    std::vector<PostscriptObject*> pending;

#if !defined(KEL_NO_POOL)
    void* take(std::size_t index);
    void give(void* p, std::size_t index) noexcept;
    bool retired = false;

private:
    char* cursor_ = nullptr;
    char* limit_ = nullptr;
    void* chunks_ = nullptr;
#endif
};

namespace {

#if defined(KEL_NO_POOL)
constinit thread_local Pool* current = nullptr;
Pool* currentPool() {
    return current;
}
void setCurrent(Pool* pool) {
    current = pool;
}
#else
Pool* currentPool() {
    return static_cast<Pool*>(detail::current);
}
void setCurrent(Pool* pool) {
    detail::current = pool;
}
#endif

Pool& sharedPool() {
    static Pool* pool = new Pool(true); // kept reachable on purpose: objects may outlive main
    return *pool;
}

} // namespace

Scope::Scope(Pool* pool) noexcept : previous_(currentPool()) {
    setCurrent(pool);
}

Scope::~Scope() {
    setCurrent(previous_);
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
    if (Pool* pool = currentPool()) {
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

OwnedPool makePool() {
    return OwnedPool(new Pool(false));
}

#if defined(KEL_NO_POOL)

Pool::Pool(bool shared) : shared(shared) {}

Pool::~Pool() = default;

void Retire::operator()(Pool* pool) const noexcept {
    delete pool;
}

#else

namespace detail {

KEL_POOL_TLS constinit thread_local Lists* current = nullptr;

} // namespace detail

namespace {

using namespace detail;

constexpr std::align_val_t chunkAlignment{chunkSize};
constexpr std::size_t headerSize = (sizeof(ChunkHeader) + granule - 1) / granule * granule;

} // namespace

Pool::Pool(bool shared) : shared(shared) {
    slowOnly = shared;
}

Pool::~Pool() {
    for (void* chunk = chunks_; chunk;) {
        void* next = static_cast<ChunkHeader*>(chunk)->next;
        ::operator delete(chunk, chunkAlignment);
        chunk = next;
    }
}

void* Pool::take(std::size_t index) {
    if (FreeNode* node = free[index]) {
        free[index] = node->next;
        ++live;
        return node;
    }
    const std::size_t bytes = (index + 1) * granule;
    if (static_cast<std::size_t>(limit_ - cursor_) < bytes) {
        auto* chunk = static_cast<char*>(::operator new(chunkSize, chunkAlignment));
        *reinterpret_cast<ChunkHeader*>(chunk) = ChunkHeader{this, chunks_};
        chunks_ = chunk;
        cursor_ = chunk + headerSize;
        limit_ = chunk + chunkSize;
    }
    void* p = cursor_;
    cursor_ += bytes;
    ++live;
    return p;
}

void Pool::give(void* p, std::size_t index) noexcept {
    auto* node = static_cast<FreeNode*>(p);
    node->next = free[index];
    free[index] = node;
    --live;
}

void Retire::operator()(Pool* pool) const noexcept {
    // Objects that outlive their interpreter keep the pool until they go.
    if (pool->live == 0) {
        delete pool;
        return;
    }
    pool->retired = true;
    pool->slowOnly = true;
}

namespace detail {

void* allocateSlowly(std::size_t size) {
    const std::size_t index = sizeClass(size) - 1;
    if (index >= classCount) return ::operator new(size);
    if (Pool* pool = currentPool()) return pool->take(index);
    Pool& shared = sharedPool();
    std::lock_guard<std::mutex> guard(shared.lock);
    return shared.take(index);
}

void deallocateSlowly(void* p, std::size_t size) noexcept {
    if (!p) return;
    const std::size_t index = sizeClass(size) - 1;
    if (index >= classCount) {
        ::operator delete(p);
        return;
    }
    auto* owner = static_cast<Pool*>(
        reinterpret_cast<ChunkHeader*>(reinterpret_cast<std::uintptr_t>(p) & ~(chunkSize - 1))
            ->owner);
    if (owner->shared) {
        std::lock_guard<std::mutex> guard(owner->lock);
        owner->give(p, index);
        return;
    }
    owner->give(p, index);
    if (owner->retired && owner->live == 0) delete owner;
}

} // namespace detail

#endif

} // namespace objectpool
