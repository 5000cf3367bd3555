#pragma once

#include <gtest/gtest.h>

#include <ostream>

namespace eval_case {

// One row of an operator table: a program, and what eval() gives for it.
struct Case {
    const char* program;
    const char* result;
};

inline void PrintTo(const Case& c, std::ostream* os) {
    *os << '"' << c.program << '"';
}

class EvalTable : public ::testing::TestWithParam<Case> {};

} // namespace eval_case
