#pragma once

#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <ostream>

// Table rows of the operator tests.
namespace operator_cases {

// A program and what eval() gives for it: the stack in "==" forms, bottom
// first, or "ERROR: message".
struct Case {
    const char* program;
    const char* result;
};

// A failing program, its message, and the operand stack it leaves behind.
struct FailureCase {
    const char* program;
    const char* error;
    const char* stackAfter;
};

inline void PrintTo(const Case& c, std::ostream* os) {
    *os << '"' << c.program << '"';
}

inline void PrintTo(const FailureCase& c, std::ostream* os) {
    *os << '"' << c.program << '"';
}

// What a failing operator had popped stays popped.
inline void expectFailure(testing_support::Session& session, const FailureCase& c) {
    EXPECT_FALSE(session.run(c.program));
    EXPECT_EQ(session.error(), c.error);
    EXPECT_EQ(session.stackValues(), c.stackAfter);
}

} // namespace operator_cases
