#pragma once

#include "core/Interpreter.h"
#include "core/PostscriptObject.h"

// Pops any operand, held for the length of the operator.
inline Popped<> popOperand(Interpreter& interpreter) {
    return Popped<>(interpreter.operandStack->pop());
}

// Pops an operand of the given type, else "Expected <type> at <who>".
template <class T> Popped<T> popOperand(Interpreter& interpreter, uint32_t tag, const char* who) {
    return Popped<T>(static_cast<T*>(interpreter.operandStack->popTyped(tag, who)));
}
