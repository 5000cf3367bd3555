#pragma once

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string_view>

// A row of an operator table: a program, and the operand stack it leaves in
// "==" forms, bottom first and joined by blanks, or "ERROR: <message>". A
// program that runs to its end leaves nothing to run, and its handle frees
// every body it made when it closes.
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

// A row of a content table: a program, the exact PDF content it writes, and
// the operand stack it leaves. Content may hold NUL bytes: write it as a
// string_view literal.
struct ContentCase {
    const char* program;
    std::string_view content;
    const char* stack = "";
    // False where the clip placement of an operator looks back into text that
    // an earlier call has already handed out: a split there legitimately
    // places the clip differently.
    bool splits = true;
};

void PrintTo(const Case& row, std::ostream* os);
void PrintTo(const ContentCase& row, std::ostream* os);
void PrintTo(const FailCase& row, std::ostream* os);

// Runs a row on a fresh handle, which it closes.
void expectGives(const Case& row);
// Runs a failure row on the given handle.
void expectFailure(testing_support::Session& session, const FailCase& row);

// Runs a content row on a fresh handle in one buffer; then, unless the row
// says otherwise, at every split into two buffers, whose two contents joined
// must be the same bytes and whose stack the same.
void expectContent(const ContentCase& row);

// The two tables every family file instantiates with rows of its own; each row
// runs on a fresh handle.
class Eval : public ::testing::TestWithParam<Case> {};
class Fails : public ::testing::TestWithParam<FailCase> {};
// The table of the graphics families: exact content, also split in two.
class Content : public ::testing::TestWithParam<ContentCase> {};
