// A runaway program ends with a clean failure at a stack's limit, and the
// handle goes on with its next buffer.
#include "Tables.h"

#include "core/DictionarySet.h"

#include <string>

using testing_support::Session;

namespace {

struct Runaway {
    const char* program;
    const char* error;
    // The operand stack after the next buffer: a filled stack was emptied.
    const char* stackAfter;
};

void PrintTo(const Runaway& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

class Runaways : public ::testing::TestWithParam<Runaway> {};

TEST_P(Runaways, StopAtTheLimitAndTheHandleGoesOn) {
    Session s;
    s.interpreter().stepLimit = 20000000;
    ASSERT_TRUE(s.run("/kept 7 def 1 2 "));
    EXPECT_FALSE(s.run(GetParam().program));
    EXPECT_EQ(s.error(), GetParam().error);
    Interpreter& in = s.interpreter();
    EXPECT_LE(in.operandStack->size(), machineStackLimit);
    EXPECT_LE(in.executionStack->size(), machineStackLimit);
    EXPECT_LE(in.dictionaries->dictionaryStack->size(), dictionaryStackLimit);
    // The runaway's work is gone; what it did not fill stays.
    EXPECT_TRUE(in.executionStack->empty());
    ASSERT_TRUE(s.run("kept ")) << s.error();
    EXPECT_EQ(s.stackValues(), GetParam().stackAfter);
}

INSTANTIATE_TEST_SUITE_P(
    Limits, Runaways,
    ::testing::Values(
        // The driver's terminate procedure: its E is the real 0, not end, so
        // currentdict never becomes self and every turn pushes a 0.0.
        Runaway{"/self 5 dict def {& self eq {exit}{E}?}loop ",
                "Operand Stack limit of 1000000 objects reached", "7"},
        Runaway{"{ 1 } loop ", "Operand Stack limit of 1000000 objects reached", "7"},
        Runaway{"/r { r 1 } def r ", "Execution Stack limit of 1000000 objects reached", "1 2 7"},
        Runaway{"{ 1 dict begin } loop ", "Dictionary Stack limit of 10000 objects reached",
                "1 2 7"},
        Runaway{"{ } loop ", "Step limit of 20000000 reached", "1 2 7"}),
    testing_support::RowName());

// A composite refused by a full stack is freed: nobody else holds it.
TEST(MachineLimits, WhatAFullStackRefusesIsFreed) {
    const long before = CompositeData::liveCount();
    {
        Session s;
        s.interpreter().operandStack->limit = 3;
        EXPECT_FALSE(s.run("1 2 3 4 array "));
        EXPECT_EQ(s.error(), "Operand Stack limit of 3 objects reached");
        EXPECT_EQ(s.stackValues(), "") << "the filled stack was emptied";
    }
    EXPECT_EQ(CompositeData::liveCount(), before);
}

} // namespace
