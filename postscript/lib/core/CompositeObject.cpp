#include "core/CompositeObject.h"

#include "core/PostscriptException.h"

namespace {
void releaseBody(CompositeData* data) noexcept {
    if (--data->users > 0) return;
    if (data->owner) data->owner->removeBody(data);
    delete data;
}
} // namespace

VirtualMemoryObject::VirtualMemoryObject(std::string name)
    : PostscriptObject(ps_save, true), name(std::move(name)) {}

VirtualMemoryObject::~VirtualMemoryObject() {
    // What is still here is held only by cycles (a dictionary holding itself)
    // or by objects that outlive the interpreter. Empty every body, which
    // breaks the cycles; a body that something outside still uses stays, empty
    // and detached.
    while (head_) {
        CompositeData* data = head_;
        ++data->users;
        data->releaseContents();
        removeBody(data);
        if (--data->users < 1) delete data;
    }
}

uint32_t VirtualMemoryObject::addBody(CompositeData* data) {
    data->owner = this;
    data->previous = nullptr;
    data->next = head_;
    if (head_) head_->previous = data;
    head_ = data;
    ++live_;
    return slots_++;
}

void VirtualMemoryObject::removeBody(CompositeData* data) noexcept {
    if (data->owner != this) return;
    if (data->previous)
        data->previous->next = data->next;
    else
        head_ = data->next;
    if (data->next) data->next->previous = data->previous;
    data->owner = nullptr;
    data->previous = data->next = nullptr;
    --live_;
}

std::string VirtualMemoryObject::describe() const {
    // Through the formatter like every printed text: a long "Copy of" chain is cut.
    return formatString("%s %s", typeName(type), name.c_str());
}

PostscriptObject* VirtualMemoryObject::clone(VirtualMemoryObject*) const {
    return new VirtualMemoryObject("Copy of " + name);
}

CompositeObject::CompositeObject(uint32_t type, bool executable, VirtualMemoryObject* memory,
                                 CompositeData* data)
    : PostscriptObject(type, executable), memory(memory), slot(0), data(data) {
    data->users = 1;
    if (memory) slot = memory->addBody(data);
}

CompositeObject::CompositeObject(const CompositeObject& other)
    : PostscriptObject(other.type, other.executable), memory(other.memory), slot(other.slot),
      data(other.data) {
    ++data->users;
}

CompositeObject::~CompositeObject() {
    releaseBody(data);
}
