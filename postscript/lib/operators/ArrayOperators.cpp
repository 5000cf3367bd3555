#include "operators/LanguageOperators.h"

#include "core/ArrayObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"

void LeftCurlyBraceOperator::execute(Interpreter& interpreter) {
    interpreter.deferredExecutionStack->push(
        new ArrayObject(interpreter.memory->currentMemory, '{'));
}

void RightCurlyBraceOperator::execute(Interpreter& interpreter) {
    Popped<ArrayObject> procedure =
        interpreter.deferredExecutionStack->pop<ArrayObject>("Mark execute");
    // A finished inner procedure goes into its parent, literal: nested
    // procedures are pushed, not run.
    if (!interpreter.deferredExecutionStack->empty())
        static_cast<ArrayObject*>(interpreter.deferredExecutionStack->top())
            ->items()
            .push(procedure.get());
    else
        interpreter.operandStack->push(procedure.get());
}

void ArrayOperator::execute(Interpreter& interpreter) {
    int32_t count = interpreter.operandStack->pop<IntegerObject>("array")->value;
    if (count > largestLength) PS_THROW("Illegal length passed to array");
    Popped<ArrayObject> array(interpreter.makeArray());
    ObjectStack& items = array->items();
    if (count > 0) items.items.reserve(static_cast<std::size_t>(count));
    for (int32_t i = 0; i < count; ++i) {
        Popped<> null(new NullObject);
        items.push(null.get());
    }
    interpreter.operandStack->push(array.get());
}

void PackedarrayOperator::execute(Interpreter& interpreter) {
    int32_t count = interpreter.operandStack->pop<IntegerObject>("packedarray")->value;
    ObjectStack& operands = *interpreter.operandStack;
    std::size_t n = count > 0 ? static_cast<std::size_t>(count) : 0;
    if (n > operands.size()) {
        // Every operand there was is popped before the failure, as one by one.
        operands.clear();
        PS_THROW("pop - expected item on stack");
    }
    Popped<ArrayObject> array(interpreter.makeArray());
    ObjectStack& items = array->items();
    items.items.reserve(n);
    // The topmost operand becomes the last element.
    for (std::size_t i = operands.size() - n; i < operands.size(); ++i)
        items.push(operands.items[i]);
    for (std::size_t i = 0; i < n; ++i)
        operands.pop();
    operands.push(array.get());
}

void SetpackingOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->pop<BooleanObject>("setpacking");
}

void CurrentpackingOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(new BooleanObject(true));
}

void AloadOperator::execute(Interpreter& interpreter) {
    Popped<ArrayObject> array = interpreter.operandStack->pop<ArrayObject>("aload");
    const ObjectStack& items = array->items();
    for (std::size_t i = 0; i < items.size(); ++i)
        interpreter.operandStack->push(items.items[i]);
    interpreter.operandStack->push(array.get());
}

void AstoreOperator::execute(Interpreter& interpreter) {
    Popped<ArrayObject> array = interpreter.operandStack->pop<ArrayObject>("astore");
    ObjectStack& items = array->items();
    for (std::size_t i = items.size(); i-- > 0;) {
        Popped<> value = interpreter.operandStack->popHeld();
        items.setAt(i, value.get());
    }
    interpreter.operandStack->push(array.get());
}
