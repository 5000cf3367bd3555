#pragma once

#include "core/ObjectPool.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

class Interpreter;
class VirtualMemoryObject;

// Type tags; the numbers are part of the design.
enum TypeTag : uint32_t {
    ps_boolean = 0,
    ps_fontID = 1,
    ps_integer = 2,
    ps_mark = 3,
    ps_name = 4,
    ps_null = 5,
    ps_operator = 6,
    ps_real = 7,
    ps_array = 8,
    ps_dictionary = 9,
    ps_file = 10,
    ps_gstate = 11,
    ps_packedarray = 12,
    ps_save = 13,
    ps_string = 14,
};

// "ps_integer" and so on: the name in messages and in describe().
const char* typeName(uint32_t tag);
// "integertype" and so on: what the operator `type` answers.
const char* typeAnswerName(uint32_t tag);

// Root of every PostScript value. Objects are counted by their holders; a new
// object has count 0, pop() decrements without deleting, and whoever popped
// releases it with releaseIfUnreferenced().
class PostscriptObject {
public:
    PostscriptObject(uint32_t type, bool executable) : executable(executable), type(type) {}
    PostscriptObject(const PostscriptObject&) = delete;
    PostscriptObject& operator=(const PostscriptObject&) = delete;
    virtual ~PostscriptObject() = default;

    virtual void execute(Interpreter& interpreter);
    virtual std::string describe() const;
    virtual std::string doubleEqualsText() const;
    virtual std::string equalsText() const;
    virtual PostscriptObject* clone(VirtualMemoryObject* currentMemory) const = 0;

    static void* operator new(std::size_t size) { return objectpool::allocate(size); }
    static void operator delete(void* p, std::size_t size) noexcept {
        objectpool::deallocate(p, size);
    }

    bool executable;
    int32_t refCount = 0;
    uint32_t type;
};

// Deletes an object whose count fell below 1; see objectpool::destroy.
void destroyObject(PostscriptObject* object) noexcept;

inline void releaseIfUnreferenced(PostscriptObject* object) noexcept {
    if (object && object->refCount < 1) destroyObject(object);
}

// A holder lets go: decrement, and delete below 1.
inline void releaseReference(PostscriptObject* object) noexcept {
    if (object && --object->refCount < 1) destroyObject(object);
}

inline void addReference(PostscriptObject* object) noexcept {
    if (object) ++object->refCount;
}

// The one checked downcast: the object as T when it has T's tag, else null.
template <class T> T* objectAs(PostscriptObject* object) {
    return object && object->type == T::tag ? static_cast<T*>(object) : nullptr;
}
template <class T> const T* objectAs(const PostscriptObject* object) {
    return object && object->type == T::tag ? static_cast<const T*>(object) : nullptr;
}

// Makes a procedure runnable: an array with bracket "{" becomes executable,
// from its first element. Anything else is left alone.
void armProcedure(PostscriptObject* object);
// The reverse, for exit and stop unwinding: literal again, position 0.
void disarmProcedure(PostscriptObject* object);
bool isProcedure(const PostscriptObject* object);

// A counted reference: holds one count on its object while it holds it, and
// lets go (deleting below 1) when it is reset, reassigned or destroyed. Fields
// that keep objects hold them this way, and so do operators for what they
// popped: the operand then survives when the operator drops its last other
// holder (an array stored in its own element, an operator undefining itself),
// and is released on the way out, also when the operator throws.
template <class T = PostscriptObject> class Counted {
public:
    Counted() = default;
    explicit Counted(T* object) : object_(object) { addReference(object_); }
    Counted(const Counted& other) : Counted(other.object_) {}
    Counted(Counted&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
    template <class U> Counted(Counted<U>&& other) noexcept : object_(other.object_) {
        other.object_ = nullptr;
    }
    Counted& operator=(Counted other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Counted() { releaseReference(object_); }

    void reset(T* object = nullptr) { *this = Counted(object); }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    template <class U> friend class Counted;
    T* object_ = nullptr;
};

// What an operator popped, held until it returns.
template <class T = PostscriptObject> using Popped = Counted<T>;

// Bounds the recursion of walks over nested arrays and dictionaries, which a
// program can make cyclic: past the limit the walk fails with the message
// instead of exhausting the machine stack.
class NestingGuard {
public:
    explicit NestingGuard(const char* message);
    ~NestingGuard() { --depth(); }
    NestingGuard(const NestingGuard&) = delete;
    NestingGuard& operator=(const NestingGuard&) = delete;

    static constexpr int limit = 1000;

private:
    static std::atomic<int>& depth();
};
