#pragma once

#include "NameObject.h"

#include <string_view>

// A loop runs as a context on the execution stack: a fresh instance of its
// operator's class, under its procedure, that takes another turn each time it
// comes up. The instance in systemdict has its first field empty and makes
// the context. Contexts hold their fields as counted references.

// initial increment limit proc for -   the limit itself is never reached
class ForOperator : public NameObject {
public:
    using NameObject::NameObject;
    ~ForOperator() override;
    void execute(Interpreter& interpreter) override;

private:
    void advance();
    void step(Interpreter& interpreter);

    PostscriptObject* control = nullptr; // changed in place
    PostscriptObject* proc = nullptr;
    PostscriptObject* limit = nullptr;
    PostscriptObject* increment = nullptr;
    bool ascending = true;
    PostscriptObject* initial = nullptr;
};

// array|string|dict proc forall -
class ForallOperator : public NameObject {
public:
    using NameObject::NameObject;
    ~ForallOperator() override;
    void execute(Interpreter& interpreter) override;

private:
    void step(Interpreter& interpreter);

    PostscriptObject* proc = nullptr;
    PostscriptObject* composite = nullptr;
    int32_t cursor = 0;
};

// proc loop -   ends by exit, stop or a failure only
class LoopOperator : public NameObject {
public:
    using NameObject::NameObject;
    ~LoopOperator() override;
    void execute(Interpreter& interpreter) override;

private:
    PostscriptObject* proc = nullptr;
};

// int proc repeat -
class RepeatOperator : public NameObject {
public:
    using NameObject::NameObject;
    ~RepeatOperator() override;
    void execute(Interpreter& interpreter) override;

private:
    void step(Interpreter& interpreter);

    PostscriptObject* proc = nullptr;
    int32_t remaining = 0;
};

// - exit -   leaves the innermost looping context
class ExitOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// Pops an operand into a context's field: counted from the moment it is off
// the stack, so that a context that fails half-made frees it.
PostscriptObject* takeOperand(Interpreter& interpreter);

// Pops the execution stack down to and including the first name whose text
// isTarget accepts, disarming procedures on the way. Running out of entries
// fails with "pop - expected item on stack".
void unwindExecutionStack(Interpreter& interpreter, bool (*isTarget)(std::string_view text));
