#pragma once

#include "core/PostscriptObject.h"

#include <cstdint>
#include <vector>

// Every stack of the machine and the elements of every array. Holding an
// object counts it; pop() gives the count back without deleting.
class ObjectStack {
public:
    explicit ObjectStack(const char* name) : name(name) {}
    ObjectStack(const ObjectStack&) = delete;
    ObjectStack& operator=(const ObjectStack&) = delete;
    ~ObjectStack() { clear(); }

    // Inline: every token and every step of a procedure goes through these.
    void push(PostscriptObject* object) {
        if (!object || items.size() >= limit) [[unlikely]]
            failPush(object);
        items.push_back(object);
        ++object->refCount;
    }
    PostscriptObject* pop() {
        if (items.empty()) failEmptyPop();
        PostscriptObject* object = items.back();
        items.pop_back();
        --object->refCount;
        return object;
    }
    // pop(), held for the length of an operator.
    Popped<> popHeld() { return Popped<>(pop()); }
    // pop(), then insist on T's type: "Expected <type> at <who>". A wrong
    // object is off the stack by then, and freed unless someone holds it.
    template <class T> Popped<T> pop(const char* who) {
        PostscriptObject* object = items.empty() ? nullptr : pop();
        if (!object || object->type != T::tag) wrongType(object, T::tag, who);
        return Popped<T>(static_cast<T*>(object));
    }

    // pop(), read as a number: "Unsupported number type" for anything but an
    // integer or real, which is freed unless someone holds it.
    double popNumber();

    // Position counted from the bottom; null outside the stack.
    PostscriptObject* at(std::size_t index) const {
        return index < items.size() ? items[index] : nullptr;
    }
    PostscriptObject* top() const { return items.empty() ? nullptr : items.back(); }
    std::size_t size() const { return items.size(); }
    bool empty() const { return items.empty(); }
    void clear() noexcept;
    // Replace the element at index, or append when index is the size.
    void setAt(std::size_t index, PostscriptObject* object);

    std::vector<PostscriptObject*> items;
    const char* name;
    // The machine's stacks stop a runaway program here; an array's elements
    // are bounded by the operators that make them.
    std::size_t limit = SIZE_MAX;

    [[noreturn]] static void failNullPush();
    [[noreturn]] static void failEmptyPop();

private:
    // A null object, or a full stack: the object, which nobody holds yet, is freed.
    [[noreturn]] void failPush(PostscriptObject* object) const;
    [[noreturn]] static void wrongType(PostscriptObject* object, uint32_t tag, const char* who);
};
