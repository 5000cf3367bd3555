#pragma once

#include <gtest/gtest.h>

#include <ostream>

namespace testing_support {
class Session;
}

// A row of an operator table: a program, and what eval() gives for it. A
// program that runs to its end leaves nothing to run.
struct Case {
    const char* program;
    const char* result;
};

// A row of a failure table: a program that fails, its message, and the
// operand stack it leaves, since what a failing operator popped stays popped.
// Where the failure leaves work for the handle's next call, the row names a
// next buffer and the operand stack after it.
struct FailCase {
    const char* program;
    const char* error;
    const char* stackAfter;
    const char* next = nullptr;
    const char* stackAfterNext = nullptr;
};

void PrintTo(const Case& row, std::ostream* os);
void PrintTo(const FailCase& row, std::ostream* os);

// Runs a failure row on the given handle.
void expectFailure(testing_support::Session& session, const FailCase& row);

// The two tables every family file instantiates with rows of its own; each row
// runs on a fresh handle.
class Eval : public ::testing::TestWithParam<Case> {};
class Fails : public ::testing::TestWithParam<FailCase> {};
