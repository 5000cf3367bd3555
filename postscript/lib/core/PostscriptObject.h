#pragma once

#include "core/ObjectPool.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

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

// Makes a procedure runnable: an array with bracket "{" becomes executable,
// from its first element. Anything else is left alone.
void armProcedure(PostscriptObject* object);
// The reverse, for exit and stop unwinding: literal again, position 0.
void disarmProcedure(PostscriptObject* object);
bool isProcedure(const PostscriptObject* object);

// Holds a popped operand for the length of an operator. It keeps a count of
// its own, so the operand survives when the operator drops its last other
// holder (an array stored in its own element, an operator undefining itself),
// and releases it on the way out, also when the operator throws.
template <class T = PostscriptObject> class Popped {
public:
    explicit Popped(T* object = nullptr) : object_(object) { addReference(object_); }
    Popped(Popped&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
    Popped& operator=(Popped&& other) noexcept {
        if (this != &other) {
            releaseReference(object_);
            object_ = other.object_;
            other.object_ = nullptr;
        }
        return *this;
    }
    Popped(const Popped&) = delete;
    Popped& operator=(const Popped&) = delete;
    ~Popped() { releaseReference(object_); }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    T* object_;
};

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
