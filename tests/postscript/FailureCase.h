#pragma once

#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <ostream>

namespace failure_case {

// One row of a failure table: a program that fails, its message, and the operand stack it leaves
// behind.
struct FailureCase {
    const char* program;
    const char* error;
    const char* stackAfter;
};

inline void PrintTo(const FailureCase& c, std::ostream* os) {
    *os << '"' << c.program << '"';
}

// A table of failure rows; each test runs its row on a fresh session.
class FailureTable : public ::testing::TestWithParam<FailureCase> {};

// What a failing operator had popped stays popped.
inline void expectFailure(testing_support::Session& session, const FailureCase& c) {
    EXPECT_FALSE(session.run(c.program));
    EXPECT_EQ(session.error(), c.error);
    EXPECT_EQ(session.stackValues(), c.stackAfter);
}

} // namespace failure_case
