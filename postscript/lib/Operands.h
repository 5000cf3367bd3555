#pragma once

#include "Interpreter.h"
#include "PostscriptObject.h"

// Keeps an object alive for the length of an operator: it takes a count of its
// own and gives it back on the way out, deleting the object if no one else
// holds it by then. Unlike Popped, the object survives when the operator
// itself drops the last other holder (an array stored in its own element and
// replaced there, say).
template <class T = PostscriptObject> class Held {
public:
    explicit Held(T* object) : object_(object) { addReference(object_); }
    Held(Held&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    Held& operator=(Held&&) = delete;
    ~Held() { releaseReference(object_); }

    T* get() const { return object_; }
    T* operator->() const { return object_; }

private:
    T* object_;
};

// Pops any operand.
inline Held<> popOperand(Interpreter& interpreter) {
    return Held<>(interpreter.operandStack->pop());
}

// Pops an operand of the given type, else "Expected <type> at <who>".
template <class T> Held<T> popOperand(Interpreter& interpreter, uint32_t tag, const char* who) {
    return Held<T>(static_cast<T*>(interpreter.operandStack->popTyped(tag, who)));
}
