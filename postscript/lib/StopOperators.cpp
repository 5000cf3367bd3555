#include "StopOperators.h"

#include "Interpreter.h"
#include "LoopOperators.h"
#include "PostscriptException.h"
#include "ValueObjects.h"

StoppedOperator::~StoppedOperator() {
    releaseReference(proc);
}

void StoppedOperator::execute(Interpreter& interpreter) {
    if (proc) {
        // The object ran to its end without a stop.
        interpreter.operandStack->push(new BooleanObject(false));
        return;
    }
    Popped<StoppedOperator> context(new StoppedOperator(atom));
    context->proc = takeOperand(interpreter);
    // The context is in place before the check, and stays there when it fails.
    interpreter.executionStack->push(context.get());
    armProcedure(context->proc);
    if (!isProcedure(context->proc) && context->proc->type != ps_name)
        PS_THROW("Unsupported param type to stopped");
    interpreter.executionStack->push(context->proc);
}

void StopOperator::execute(Interpreter& interpreter) {
    unwindExecutionStack(interpreter, [](std::string_view text) { return text == "stopped"; });
    interpreter.operandStack->push(new BooleanObject(true));
}
