#include "Tables.h"

#include "core/CompositeObject.h"
#include "core/ValueObjects.h"
#include "platform/DebugOutput.h"

using testing_support::Session;

namespace {

INSTANTIATE_TEST_SUITE_P(
    RunLoop, Eval,
    ::testing::Values(Case{"1 2.5 (s) /n ", "1 2.500000 (s) n"},
                      // An unknown name turns into a string of its text.
                      Case{"undefinedthing ", "(undefinedthing)"},
                      Case{"{ 1 { 2 } /x y } ", "[1 [2 ] x y ]"}, Case{"{} ", "[]"},
                      // Values found by look-up: integers go to the stack, booleans and the
                      // like execute into it, dictionaries push themselves, procedures run,
                      // from their first element each time, and end literal.
                      Case{"languagelevel version ", "2 (49)"}, Case{"userdict ", "-dict-"},
                      Case{"/p { 1 unknown { 3 } } def p p /p load xcheck ",
                           "1 (unknown) [3 ] 1 (unknown) [3 ] false"},
                      // Immediately evaluated names inside a procedure are resolved at scan time.
                      Case{"{ //languagelevel } ", "[2 ]"},
                      // A procedure keeps its elements as scanned: names executable or
                      // literal, inner procedures literal; the finished one is literal.
                      Case{
                          "{ y } 0 get xcheck { /y } 0 get xcheck { { } } 0 get xcheck { } xcheck ",
                          "true false false false"},
                      // A mark that reaches the loop as an object vanishes.
                      Case{"mark 5 2 array astore cvx exec ", "5"},
                      // A procedure run inside itself: the inner run resets the position
                      // and ends it, so the outer entry lands on the stack as an array.
                      Case{"/p { 1 r 2 } def /r { /r { } def p } def p ", "1 1 2 [1 r 2 ]"},
                      // An operator that removes or replaces its own definition while it
                      // runs finishes its work on a live object.
                      Case{"systemdict /undef undef undef ", "(undef)"},
                      Case{"/store 1 store store ", "1"}, Case{"systemdict /def 2 put def ", "2"}),
    testing_support::RowName());

// The rest of a failed buffer is dropped; the operands a failed operator
// popped stay popped, and the rest of its procedure runs at the start of the
// next call.
INSTANTIATE_TEST_SUITE_P(
    RunLoop, Fails,
    ::testing::Values(FailCase{"1 } 2 ", "Expected ps_array at Mark execute", "1", "3 ", "1 3"},
                      FailCase{"/inner { 1 } def /outer { inner 0 5 } def "
                               "/outer load 1 (}) cvn cvx put outer 7 ",
                               "Expected ps_array at Mark execute", "1", "8 ", "1 5 8"}),
    testing_support::RowName());

TEST(RunLoopFailures, ErrorTextNamesFileAndLineAndGoesToDebugOutput) {
    std::vector<std::string> debug;
    platform::setDebugSink([&](std::string_view text) { debug.emplace_back(text); });
    Session s;
    EXPECT_FALSE(s.run("}"));
    platform::setDebugSink({});
    const std::string& text = s.pdf.errorText;
    EXPECT_NE(text.find(".cpp:"), std::string::npos) << text;
    EXPECT_EQ(text.find('/'), std::string::npos) << "file name without its directories";
    EXPECT_EQ(debug, std::vector<std::string>{text});
}

// Reads one buffer's worth, then asks for more: the shape of every reading operator.
class WaitOnceOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override {
        if (!waited) {
            waited = true;
            interpreter.executionStack->push(this);
            interpreter.suspended = true;
            return;
        }
        interpreter.operandStack->push(new IntegerObject(99));
    }
    bool waited = false;
};

TEST(RunLoopSuspension, SuspendedOperatorResumesFirstInTheNextRun) {
    Session s;
    s.interpreter().registerOperator(new WaitOnceOperator(s.interpreter().intern("waitonce")));
    ASSERT_TRUE(s.run("1 waitonce 2 "));
    EXPECT_EQ(s.stackValues(), "1");
    EXPECT_EQ(s.interpreter().executionStack->size(), 1u);
    // The rest of the suspended buffer is the host's to send again.
    ASSERT_TRUE(s.run("3 "));
    EXPECT_EQ(s.stackValues(), "1 99 3");
}

// Bodies follow their last object, also one a clone shares.
TEST(RunLoopMemory, DroppedObjectsAreFreed) {
    Session s;
    VirtualMemoryObject* local = s.interpreter().memory->localMemory.get();
    std::size_t before = local->liveBodies();
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(s.run("(abc) dup pop { 1 2 (x) } unknownname "));
        EXPECT_EQ(local->liveBodies(), before + 4);
        s.interpreter().operandStack->clear();
    }
    EXPECT_EQ(local->liveBodies(), before);
}

} // namespace
