#include "ArrayOperators.h"

#include "ArrayObject.h"
#include "Interpreter.h"
#include "OperatorRegistry.h"

void LeftCurlyBraceOperator::execute(Interpreter& interpreter) {
    interpreter.deferredExecutionStack->push(
        new ArrayObject(interpreter.memory->currentMemory, '{'));
}

void RightCurlyBraceOperator::execute(Interpreter& interpreter) {
    Popped<> procedure(interpreter.deferredExecutionStack->popTyped(ps_array, "Mark execute"));
    // A finished inner procedure goes into its parent, literal: nested
    // procedures are pushed, not run.
    if (!interpreter.deferredExecutionStack->empty())
        static_cast<ArrayObject*>(interpreter.deferredExecutionStack->top())
            ->items()
            .push(procedure.get());
    else
        interpreter.operandStack->push(procedure.get());
}

void addArrayOperators(OperatorFactories& factories) {
    factories.add<LeftCurlyBraceOperator>("{");
    factories.add<RightCurlyBraceOperator>("}");
}
