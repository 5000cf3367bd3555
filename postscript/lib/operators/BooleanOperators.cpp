#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"
#include "operators/MathOperators.h"

namespace {

// and, or and xor: pop b, then a; the deeper operand's type decides, and the
// other must match it.
template <class Combine>
void combine(Interpreter& interpreter, const char* failure, Combine operation) {
    Popped<> second(interpreter.operandStack->pop());
    Popped<> first(interpreter.operandStack->pop());
    PostscriptObject* result;
    if (first->type == ps_boolean && second->type == ps_boolean)
        result = new BooleanObject(operation(static_cast<BooleanObject*>(first.get())->value,
                                             static_cast<BooleanObject*>(second.get())->value));
    else if (first->type == ps_integer && second->type == ps_integer)
        result = new IntegerObject(operation(static_cast<IntegerObject*>(first.get())->value,
                                             static_cast<IntegerObject*>(second.get())->value));
    else
        PS_THROW(failure);
    interpreter.operandStack->push(result);
}

} // namespace

void NotOperator::execute(Interpreter& interpreter) {
    Popped<> operand(interpreter.operandStack->pop());
    PostscriptObject* result;
    if (operand->type == ps_boolean)
        result = new BooleanObject(!static_cast<BooleanObject*>(operand.get())->value);
    else if (operand->type == ps_integer)
        result =
            new IntegerObject(negateWrapping(static_cast<IntegerObject*>(operand.get())->value));
    else
        PS_THROW("Unsupported type of param to not");
    interpreter.operandStack->push(result);
}

void AndOperator::execute(Interpreter& interpreter) {
    combine(interpreter, "Unsupported type of param to and", [](auto a, auto b) { return a & b; });
}

void OrOperator::execute(Interpreter& interpreter) {
    combine(interpreter, "Unsupported type of param to or", [](auto a, auto b) { return a | b; });
}

void XOrOperator::execute(Interpreter& interpreter) {
    combine(interpreter, "Unsupported type of param to xor", [](auto a, auto b) { return a ^ b; });
}

// The constants go to the execution stack; the next turn of the run loop
// moves them to the operand stack.
void TrueOperator::execute(Interpreter& interpreter) {
    interpreter.executionStack->push(new BooleanObject(true));
}

void FalseOperator::execute(Interpreter& interpreter) {
    interpreter.executionStack->push(new BooleanObject(false));
}

void NullOperator::execute(Interpreter& interpreter) {
    interpreter.executionStack->push(new NullObject);
}
