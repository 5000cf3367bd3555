#pragma once

#include "core/PostscriptObject.h"

#include <atomic>
#include <string>

class VirtualMemoryObject;

// The body of a composite value, shared by the composite objects made from it
// by clone. A body is counted by those objects and freed with the last of
// them, so memory follows live data; its memory keeps it on a list only to
// break cycles when the memory itself goes.
class CompositeData {
public:
    explicit CompositeData(uint32_t type) : type(type) { ++liveCount_; }
    CompositeData(const CompositeData&) = delete;
    CompositeData& operator=(const CompositeData&) = delete;
    virtual ~CompositeData() { --liveCount_; }

    // Bodies alive in the process: what leak checks count.
    static long liveCount() { return liveCount_.load(std::memory_order_relaxed); }

    // Lets go of every object the body holds.
    virtual void releaseContents() {}

    static void* operator new(std::size_t size) { return objectpool::allocate(size); }
    static void operator delete(void* p, std::size_t size) noexcept {
        objectpool::deallocate(p, size);
    }

    uint32_t type;
    int32_t users = 0;
    VirtualMemoryObject* owner = nullptr;
    CompositeData* previous = nullptr;
    CompositeData* next = nullptr;

private:
    static inline std::atomic<long> liveCount_{0};
};

// A memory: the bookkeeping of the bodies made while it was current. Save
// objects are memories too, with nothing in them.
class VirtualMemoryObject : public PostscriptObject {
public:
    static constexpr uint32_t tag = ps_save;
    explicit VirtualMemoryObject(std::string name);
    ~VirtualMemoryObject() override;

    uint32_t addBody(CompositeData* data);
    void removeBody(CompositeData* data) noexcept;
    std::size_t liveBodies() const { return live_; }

    std::string describe() const override;
    PostscriptObject* clone(VirtualMemoryObject*) const override;

    std::string name;

private:
    CompositeData* head_ = nullptr;
    std::size_t live_ = 0;
    uint32_t slots_ = 0;
};

class CompositeObject : public PostscriptObject {
public:
    ~CompositeObject() override;

    VirtualMemoryObject* memory;
    uint32_t slot;
    CompositeData* data;

protected:
    // A new object on a new body, which joins the memory's list.
    CompositeObject(uint32_t type, bool executable, VirtualMemoryObject* memory,
                    CompositeData* data);
    // A new object on the body of another (clone).
    explicit CompositeObject(const CompositeObject& other);
};
