#include "Tables.h"

#include <string>

using testing_support::Handle;

namespace {

// Rows of program and standard output, through the export that returns it.
class Output : public ::testing::TestWithParam<Case> {};

TEST_P(Output, WritesStdout) {
    Handle h;
    const char* out = PSExecuteReturnStdOut(h.h, GetParam().program, 0xFFFFFFFFu);
    ASSERT_NE(out, nullptr) << PSGetErrorStr(h.h);
    EXPECT_EQ(std::string(out), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Printing, Output,
    ::testing::Values(
        // "=" has text only for integers, booleans, names and strings.
        Case{"1 = (ab) = /n = 1.5 = btrue = ", "1\nab\nn\n--nostringval--\ntrue\n"},
        Case{"{ 1 2 } = userdict = ", "--nostringval--\n--nostringval--\n"},
        Case{"1.5 == (a b) == /n == { 1 (s) { x } } == ", "1.500000\n(a b)\nn\n[1 (s) [x ] ]\n"},
        Case{"userdict == currentcacheparams == == == == ", "-dict-\n0\n0\n0\n-mark-\n"},
        Case{"(a\\000b) = (a\\000b) == ", "a\n(a)\n"},
        // An operator prints as its name; pstack is a stub that prints nothing.
        Case{"mark == null == /add load == /add load = 1 pstack ", "-mark-\nnull\nadd\nadd\n"},
        // stack prints top first and changes nothing.
        Case{"1 (two) /three stack stack ", "three\n(two)\n1\nthree\n(two)\n1\n"},
        Case{"stack ", ""}),
    testing_support::RowName());

// An empty buffer too clears what the last one printed.
TEST(OutputOperators, StdoutHoldsTheLastBufferOnly) {
    Handle h;
    ASSERT_STREQ(PSExecuteReturnStdOut(h.h, "1 2 stack ", 0xFFFFFFFFu), "2\n1\n");
    ASSERT_STREQ(PSExecuteReturnStdOut(h.h, "", 0), "");
    ASSERT_STREQ(PSExecuteReturnStdOut(h.h, "= ", 2), "2\n");
    EXPECT_EQ(PSExecuteReturnStdOut(h.h, "= = ", 4), nullptr);
    EXPECT_NE(std::string(PSGetErrorStr(h.h)).find("pop - expected item on stack"),
              std::string::npos);
}

} // namespace
