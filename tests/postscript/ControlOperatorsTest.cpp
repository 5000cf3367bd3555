#include "Tables.h"

#include <cstring>

namespace {

INSTANTIATE_TEST_SUITE_P(
    IfExec, Eval,
    ::testing::Values(Case{"true { 1 } if ", "1"}, Case{"false { 1 } if ", ""},
                      // The procedure's type isn't checked: a number just lands on the stack.
                      Case{"true 5 if ", "5"}, Case{"true [1 2] if ", "[1 2 ]"},
                      Case{"/p { 1 } def true /p load if ", "1"},
                      Case{"true { true { 1 } if 2 } if ", "1 2"},
                      Case{"{ 2 } if ", "ERROR: Expected ps_boolean at if"},
                      Case{"true { 1 } { 2 } ifelse ", "1"}, Case{"false { 1 } { 2 } ifelse ", "2"},
                      Case{"false { 1 } 2 ifelse ", "2"}, Case{"{ 1 2 } exec ", "1 2"},
                      Case{"{} exec ", ""}, Case{"1 exec ", "1"}, Case{"(abc) exec ", "(abc)"},
                      Case{"/x exec ", "x"}, Case{"[1 2] exec ", "[1 2 ]"},
                      Case{"1 2 /pop load exec ", "1"},
                      // exec arms a procedure fetched as a literal, every time.
                      Case{"/p { 1 } def /p load exec /p load exec ", "1 1"},
                      Case{"exec ", "ERROR: pop - expected item on stack"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    For, Eval,
    ::testing::Values(
        // The limit itself is never reached, in either direction.
        Case{"1 1 3 {} for ", "1 2"}, Case{"3 -1 1 {} for ", "3 2"}, Case{"0 1 0 {} for ", ""},
        Case{"5 1 1 {} for ", ""}, Case{"1 2 6 {} for ", "1 3 5"},
        Case{"1 1 3 { 10 } for ", "1 10 2 10"}, Case{"0 1 1 4 { add } for ", "6"},
        // The procedure's type isn't checked.
        Case{"1 1 3 5 for ", "1 5 2 5"},
        // One real among the three operands makes every control value a real.
        Case{"1.5 1 3 {} for ", "1.500000 2.500000"}, Case{"1 1.0 3 {} for ", "1.000000 2.000000"},
        Case{"1 1 3.0 {} for ", "1.000000 2.000000"},
        Case{"0 0.5 2 {} for ", "0.000000 0.500000 1.000000 1.500000"},
        Case{"3 -0.5 2 {} for ", "3.000000 2.500000"},
        // A zero increment counts as ascending, and would not end without exit.
        Case{"0 0 1 { exit } for ", "0"},
        // Control values wrap past the largest integer, and so does the
        // comparison's difference: the wrapped value reads as beyond the limit.
        Case{"2147483000 1000 2147483647 { dup 0 lt { exit } if } for ", "2147483000"},
        Case{"0 1 10 { exit } for 5 ", "0 5"},
        Case{"1 1 3 { 1 1 3 { 0 } for } for ", "1 1 0 2 0 2 1 0 2 0"},
        Case{"1 3 {} for ", "ERROR: pop - expected item on stack"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    RepeatLoopForall, Eval,
    ::testing::Values(
        Case{"3 { 1 } repeat ", "1 1 1"}, Case{"0 { 1 } repeat ", ""}, Case{"-2 { 1 } repeat ", ""},
        Case{"2 { 1 } repeat 3 ", "1 1 3"}, Case{"2 { 2 { 7 } repeat 8 } repeat ", "7 7 8 7 7 8"},
        Case{"3 { 1 exit } repeat ", "1"}, Case{"0 4 { 1 add } repeat ", "4"},
        Case{"0 { 1 add dup 3 eq { exit } if } loop ", "3"}, Case{"{ 1 exit } loop 2 ", "1 2"},
        Case{"{ { 1 exit } loop 2 exit } loop ", "1 2"},
        Case{"loop ", "ERROR: pop - expected item on stack"},
        Case{"[1 (a) /n] {} forall ", "1 (a) n"}, Case{"[] {} forall ", ""},
        Case{"0 [1 2 3] { add } forall ", "6"}, Case{"(abc) {} forall ", "97 98 99"},
        // Bytes are taken as signed.
        Case{"(\\310\\377\\177) {} forall ", "-56 -1 127"}, Case{"() {} forall ", ""},
        // Keys in byte order, each a name of the key text.
        Case{"1 dict dup begin /b 2 def (a) 1 def end {} forall ", "a 1 b 2"},
        Case{"1 dict dup begin 5 (five) def end {} forall ", "ps_integer 5 (five)"},
        Case{"1 dict {} forall ", ""}, Case{"[1 2] { exit } forall ", "1"},
        // The walk goes by position: an entry added in front is seen again.
        Case{"/d 1 dict def d /b 2 put d /c 3 put d { pop d /a 0 put } forall ", "b b c"},
        Case{"{} forall ", "ERROR: pop - expected item on stack"},
        // A loop context leaves nothing to run when it ends.
        Case{"1 1 3 {} for 2 { } repeat [1] {} forall (a) {} forall "
             "{ exit } loop { } stopped ",
             "1 2 1 97 false"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    ExitStopStopped, Eval,
    ::testing::Values(
        Case{"exit ", "ERROR: pop - expected item on stack"},
        Case{"1 { exit } exec 2 ", "ERROR: pop - expected item on stack"},
        // exit passes a stopped context by and drops it.
        Case{"{ { exit } stopped 1 } loop 2 ", "2"}, Case{"{ 3 stop } stopped ", "3 true"},
        // A context bears the text of its class, whatever key its operator was found by.
        Case{"/myloop /loop load def { 1 exit } myloop 2 ", "1 2"},
        Case{"/mystopped /stopped load def { 3 stop } mystopped ", "3 true"},
        Case{"{ stop } stopped { 1 } { 2 } ifelse ", "1"}, Case{"{ 3 } stopped ", "3 false"},
        Case{"{ 3 stop 4 } stopped 5 ", "3 true 5"}, Case{"{ { stop } loop } stopped ", "true"},
        Case{"{ 3 { 1 1 5 { stop } for } repeat } stopped ", "1 true"},
        Case{"{ { stop } stopped 1 } stopped ", "true 1 false"},
        Case{"{ 2 { stop } repeat } stopped 0 ", "true 0"}, Case{"/x stopped ", "x false"},
        Case{"1 2 /pop load stopped ", "1 false"},
        Case{"stop ", "ERROR: pop - expected item on stack"},
        Case{"{ stop } exec ", "ERROR: pop - expected item on stack"},
        Case{"[1] stopped ", "ERROR: Unsupported param type to stopped"},
        // exit disarms the procedures it leaves: p is literal and starts afresh.
        Case{"/p { 1 exit 2 } def { p } loop /p load xcheck { p } loop ", "1 false 1"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Control, Fails,
    ::testing::Values(
        FailCase{"7 1 { 2 } if ", "Expected ps_boolean at if", "7"},
        FailCase{"7 (a) { 1 } repeat ", "Expected ps_integer at repeat", "7"},
        FailCase{"7 5 {} forall ", "Unsupported forall elements param", "7"},
        FailCase{"7 1 (a) 3 {} for ", "Unsupported increment type in for loop", "7"},
        FailCase{"7 (s) cvx exec ", "Does not currently support execing a string", "7"},
        FailCase{"7 0 { 1 } { 2 } ifelse ", "Expected ps_boolean at ifelse", "7"},
        FailCase{"7 (a) 1 3.0 {} for ", "Unsupported number type in initial for loop value", "7"},
        FailCase{"7 (a) 1 3 {} for ", "Unsupported type comparison", "7"},
        // exit and stop without their target unwind the whole execution stack.
        FailCase{"1 { 2 { exit } exec 3 } exec 4 ", "pop - expected item on stack", "1 2", "",
                 "1 2"},
        FailCase{"{ 1 { stop } loop } exec 2 ", "pop - expected item on stack", "1", "", "1"},
        // A failure is no stop: it ends the run, and the stopped context waits
        // on the execution stack for the next run, after what is left of its
        // procedure; also a context whose object was refused.
        FailCase{"{ pop 7 } stopped 8 ", "pop - expected item on stack", "", "9 ", "7 false 9"},
        FailCase{"5 stopped ", "Unsupported param type to stopped", "", "", "false"}),
    testing_support::RowName());

// A control value that is no number but passed the comparison (a boolean
// below an integer limit) can't be advanced: the plain failure reaches the
// export, which answers null and leaves the error text alone.
TEST(ControlFor, NonNumericControlFailsWithoutErrorText) {
    testing_support::Handle h;
    const char* program = "true 1 0 {} for ";
    uint32_t length = static_cast<uint32_t>(std::strlen(program));
    EXPECT_EQ(PSConvertToPdf(h.h, reinterpret_cast<const unsigned char*>(program), &length),
              nullptr);
    EXPECT_EQ(length, std::strlen(program));
    EXPECT_STREQ(PSGetErrorStr(h.h), "");
    // The first turn ran: its control value is on the stack.
    EXPECT_STREQ(PSExecuteReturnStdOut(h.h, "stack ", 0xFFFFFFFFu), "true\n");
}

} // namespace
