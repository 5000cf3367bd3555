#pragma once

#include "core/Interpreter.h"
#include "operators/LanguageOperators.h"

#include <string_view>

// A loop runs as a context on the execution stack: a fresh instance of its
// operator's class, under its procedure, that takes another turn each time it
// comes up. The instance in systemdict has its first field empty and makes
// the context. Contexts hold their fields as counted references, taken from
// the moment an operand is off the stack, so that a context that fails
// half-made frees them.

// A context whose first field is its procedure. The instance in systemdict
// makes the context, which takes the procedure and then, in start(), the rest
// of its operands; each time the context comes up it takes a turn().
template <class Context> class ProcedureContext : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) final {
        if (proc) {
            static_cast<Context*>(this)->turn(interpreter);
            return;
        }
        Popped<Context> context(new Context(atom));
        context->proc = interpreter.operandStack->popHeld();
        context->start(interpreter);
    }

protected:
    Counted<> proc;
};

// initial increment limit proc for -   the limit itself is never reached
class ForOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;

private:
    void advance();
    void step(Interpreter& interpreter);

    Counted<> control; // changed in place
    Counted<> proc;
    Counted<> limit;
    Counted<> increment;
    bool ascending = true;
    Counted<> initial;
};

// array|string|dict proc forall -
class ForallOperator : public ProcedureContext<ForallOperator> {
public:
    using ProcedureContext::ProcedureContext;

private:
    friend ProcedureContext;
    void start(Interpreter& interpreter);
    void turn(Interpreter& interpreter);

    Counted<> composite;
    int32_t cursor = 0;
};

// proc loop -   ends by exit, stop or a failure only
class LoopOperator : public ProcedureContext<LoopOperator> {
public:
    using ProcedureContext::ProcedureContext;

private:
    friend ProcedureContext;
    void start(Interpreter& interpreter) { turn(interpreter); }
    void turn(Interpreter& interpreter);
};

// int proc repeat -
class RepeatOperator : public ProcedureContext<RepeatOperator> {
public:
    using ProcedureContext::ProcedureContext;

private:
    friend ProcedureContext;
    void start(Interpreter& interpreter);
    void turn(Interpreter& interpreter);

    int32_t remaining = 0;
};

// Pops the execution stack down to and including the first name whose text
// isTarget accepts, disarming procedures on the way. Running out of entries
// fails with "pop - expected item on stack".
void unwindExecutionStack(Interpreter& interpreter, bool (*isTarget)(std::string_view text));
