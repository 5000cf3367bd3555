#include "Tables.h"

#include "core/CompositeObject.h"
#include "pdf/StateOperators.h"

#include <cstdlib>
#include <string>

using testing_support::Handle;
using testing_support::Session;

namespace {

const char* const identityText = "[1.000000 0.000000 0.000000 1.000000 0.000000 0.000000 ]";
const char* const translatedText = "[1.000000 0.000000 0.000000 1.000000 10.000000 20.000000 ]";

INSTANTIATE_TEST_SUITE_P(
    StateStack, Content,
    ::testing::Values(
        ContentCase{"gsave 10 20 translate grestore [] currentmatrix ", "q 1 0 0 1 10 20 cm\nQ ",
                    identityText},
        // gsave copies the whole state: the copy answers as the original did.
        ContentCase{"10 20 translate 3 setlinewidth gsave [] currentmatrix currentlinewidth ",
                    "1 0 0 1 10 20 cm\n3 w q ",
                    "[1.000000 0.000000 0.000000 1.000000 10.000000 20.000000 ] 3.000000"},
        ContentCase{"gsave 3 setlinewidth grestore currentlinewidth ", "q 3 w Q ", "0.000000"},
        // No underflow: each surplus grestore writes its "Q " and resets.
        ContentCase{"grestore ", "Q "},
        ContentCase{"gsave gsave grestore grestore grestore ", "q q Q Q Q "},
        ContentCase{"10 20 translate 2 setlinewidth grestore [] currentmatrix currentlinewidth ",
                    "1 0 0 1 10 20 cm\n2 w Q ",
                    "[1.000000 0.000000 0.000000 1.000000 0.000000 0.000000 ] 0.000000"},
        // restore brings back the PDF state only: the tracked matrix keeps the
        // translation.
        ContentCase{"save restore ", "q\nQ\n"},
        ContentCase{"save 10 20 translate restore [] currentmatrix ", "q\n1 0 0 1 10 20 cm\nQ\n",
                    translatedText},
        ContentCase{"1 restore ", "Q\n"}, ContentCase{"save type ", "q\n", "savetype"},
        ContentCase{"1 showpage ", "", "1"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    LineParameters, Content,
    ::testing::Values(ContentCase{"2 setlinewidth ", "2 w "},
                      ContentCase{"2.5 setlinewidth currentlinewidth ", "2.5 w ", "2.500000"},
                      ContentCase{"currentlinewidth ", "", "0.000000"},
                      ContentCase{"1 setlinecap 2 setlinejoin ", "1 J 2 j "},
                      ContentCase{"-3 setlinecap ", "-3 J "},
                      ContentCase{"10 setmiterlimit 1.23456789 setmiterlimit ", "10 M 1.2346 M "},
                      ContentCase{"[3 2] 0 setdash ", "[3 2 ] 0 d\n"},
                      ContentCase{"[] 0 setdash ", "[] 0 d\n"},
                      ContentCase{"[0.5 12345.6] 2.25 setdash ", "[0.5 12346 ] 2.25 d\n"},
                      ContentCase{"{1 2} -1 setdash ", "[1 2 ] -1 d\n"},
                      // Written, not remembered: the queries are stubs that know nothing of it.
                      ContentCase{"[3 2] 1 setdash 1 setlinecap currentdash currentlinecap ",
                                  "[3 2 ] 1 d\n1 J ", "[] 0.000000 0"}),
    testing_support::RowName());

// The parameters PDF needs nothing for: operands dropped, fixed answers.
INSTANTIATE_TEST_SUITE_P(
    Dropped, Content,
    ::testing::Values(
        ContentCase{"0 60 45 {} setscreen ", "", "0"},
        ContentCase{"0 1 2 3 4 5 6 7 8 9 10 11 12 setcolorscreen ", "", "0"},
        ContentCase{"0 (a) sethalftone 1 setflat true setoverprint ", "", "0"},
        ContentCase{"currentflat currentoverprint currentstrokeadjust ", "", "0.200000 false true"},
        ContentCase{"true setstrokeadjust false setstrokeadjust ", "", ""},
        ContentCase{"{} settransfer [] {} {} {} setcolortransfer ", "", ""},
        ContentCase{"currenthalftone dup /HalftoneType get exch dup /Frequency get exch "
                    "dup /Angle get exch length ",
                    "", "1 150 45 3"},
        // A new dictionary each time.
        ContentCase{"currenthalftone /Angle 1 put currenthalftone /Angle get ", "", "45"},
        // Procedure bodies, left literal: exec runs them, and they are empty.
        ContentCase{"currenttransfer dup length exch xcheck ", "", "0 false"},
        ContentCase{"currenttransfer exec ", "", ""},
        ContentCase{"currentcolortransfer count 5 1 roll exec exec exec exec ", "", "4"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    GlobalMemory, Eval,
    ::testing::Values(Case{"currentglobal ", "false"}, Case{"true setglobal ", "true"},
                      Case{"true setglobal currentglobal ", "true true"},
                      // The operand is not read: false makes the global memory current too.
                      Case{"false setglobal currentglobal ", "false true"},
                      Case{"setglobal currentglobal ", "true"},
                      Case{"/a 1 def save /a 2 def restore a ", "2"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    StateFailures, Fails,
    ::testing::Values(FailCase{"5 (x) setlinecap ", "Illegal param type for setlinecap", "5",
                               "2 setlinecap 7 ", "5 7"},
                      FailCase{"1.0 setlinejoin ", "Illegal param type for setlinejoin", ""},
                      FailCase{"(w) setlinewidth ", "Unsupported number type", ""},
                      FailCase{"/m setmiterlimit ", "Unsupported number type", ""},
                      FailCase{"[1 (x)] 0 setdash ", "Unsupported number type", ""},
                      FailCase{"[1] (x) setdash ", "Unsupported number type", ""},
                      FailCase{"5 1 2 setdash ", "Expected ps_array at setdash", "5"},
                      FailCase{"1 settransfer ", "Illegal param type to settransfer", ""},
                      // Stops at the first operand that is not an array.
                      FailCase{"{} 1 {} {} setcolortransfer ",
                               "Illegal param type to setcolortransfer", "[]"},
                      FailCase{"1 setstrokeadjust ", "Expected ps_boolean at setstrokeadjust", ""},
                      FailCase{"1 2 setscreen ", "pop - expected item on stack", ""},
                      FailCase{"restore ", "pop - expected item on stack", ""},
                      FailCase{"1 (a) 2 print ", "Expected ps_string at popStringObject", "1 (a)",
                               "print 2 ", "1 2"},
                      FailCase{"9 0 0 0 0 setcolorscreen ", "pop - expected item on stack", ""}),
    testing_support::RowName());

// "Save <n>": the number of the save object on top of the stack.
unsigned saveNumber(Session& s) {
    const std::string top = s.stackValues();
    const std::size_t at = top.rfind("ps_save Save ");
    EXPECT_NE(at, std::string::npos) << top;
    return at == std::string::npos ? 0 : static_cast<unsigned>(std::stoul(top.substr(at + 13)));
}

TEST(StateOperators, SaveObjectsAreNumberedAcrossHandles) {
    Session first;
    const uint32_t n = savesMade();
    ASSERT_TRUE(first.run("save ")) << first.error();
    EXPECT_EQ(saveNumber(first), n);
    ASSERT_TRUE(first.run("save ")) << first.error();
    EXPECT_EQ(saveNumber(first), n + 1);
    EXPECT_EQ(first.interpreter().saveLevel, 3);
    Session second;
    ASSERT_TRUE(second.run("save ")) << second.error();
    EXPECT_EQ(saveNumber(second), n + 2);
    EXPECT_EQ(second.stackValues(), "ps_save Save " + std::to_string(n + 2));
    EXPECT_EQ(second.interpreter().saveLevel, 2);
    EXPECT_EQ(savesMade(), n + 3);
}

TEST(StateOperators, RestoreCountsDownEvenWhenItFails) {
    Session s;
    ASSERT_TRUE(s.run("save restore ")) << s.error();
    EXPECT_EQ(s.interpreter().saveLevel, 1);
    EXPECT_FALSE(s.run("restore "));
    EXPECT_EQ(s.error(), "pop - expected item on stack");
    EXPECT_EQ(s.interpreter().saveLevel, 0);
    // Any object will do, and the level goes on below zero without a word.
    ASSERT_TRUE(s.run("(x) restore 1 restore ")) << s.error();
    EXPECT_EQ(s.pdf.contentText.view(), "Q\nQ\n");
    EXPECT_EQ(s.interpreter().saveLevel, -2);
}

TEST(StateOperators, GrestoreOnTheLastStateTakesThePageMatrix) {
    Session s;
    const double page[6] = {2, 0, 0, 2, 5, 5};
    s.pdf.startPage(page);
    ASSERT_TRUE(s.run("10 20 translate 3 setlinewidth grestore [] currentmatrix currentlinewidth "))
        << s.error();
    EXPECT_EQ(s.pdf.contentText.view(), "1 0 0 1 10 20 cm\n3 w Q ");
    EXPECT_EQ(s.stackValues(), "[2.000000 0.000000 0.000000 2.000000 5.000000 5.000000 ] 0.000000");
    EXPECT_EQ(s.pdf.graphicsStates.size(), 1u);
}

// A dash text of "[" and the elements with their blanks may reach 370 bytes.
std::string dashProgram(int count, const char* element) {
    std::string program = "1 setlinecap [";
    for (int i = 0; i < count; ++i)
        program += std::string(element) + " ";
    return program + "] 0 setdash ";
}

TEST(StateOperators, DashTextIsBounded) {
    Session s;
    // 1 + 123 * 3 = 370: just fits.
    ASSERT_TRUE(s.run(dashProgram(123, "10"))) << s.error();
    EXPECT_EQ(s.pdf.contentText.size(), 4u + 370u + 6u);
    EXPECT_EQ(s.pdf.contentText.view().substr(0, 8), "1 J [10 ");
    EXPECT_EQ(s.pdf.contentText.view().substr(374), "] 0 d\n");
    // One more element fails, and the dash writes nothing at all.
    EXPECT_FALSE(s.run(dashProgram(124, "10")));
    EXPECT_EQ(s.error(), "Out of buffer space in setdashlimit");
    EXPECT_EQ(s.pdf.contentText.view(), "1 J ");
    EXPECT_EQ(s.stackValues(), "");
    // Long numbers overshoot within one element.
    EXPECT_FALSE(s.run(dashProgram(2, "1e300")));
    EXPECT_EQ(s.error(), "Out of buffer space in setdashlimit");
}

TEST(StateOperators, PrintGoesToStdoutUpToNul) {
    Handle h;
    const char* out = PSExecuteReturnStdOut(h.h, "(ab) print (c\\000d) print 1 = ", 0xFFFFFFFFu);
    ASSERT_NE(out, nullptr) << PSGetErrorStr(h.h);
    EXPECT_STREQ(out, "abc1\n");
    Session s;
    ASSERT_TRUE(s.run("(x) print ")) << s.error();
    EXPECT_EQ(s.pdf.contentText.view(), "");
}

TEST(StateOperators, SetglobalMakesNewBodiesGlobal) {
    Session s;
    MemoryRecord& memory = *s.interpreter().memory;
    ASSERT_TRUE(s.run("true setglobal ")) << s.error();
    const std::size_t global = memory.globalMemory->liveBodies();
    const std::size_t local = memory.localMemory->liveBodies();
    ASSERT_TRUE(s.run("(abc) [1] ")) << s.error();
    EXPECT_EQ(memory.globalMemory->liveBodies(), global + 2);
    EXPECT_EQ(memory.localMemory->liveBodies(), local);
}

} // namespace
