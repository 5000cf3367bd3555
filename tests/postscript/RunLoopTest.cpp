#include "support/TestSupport.h"

#include "ArrayObject.h"
#include "DictionarySet.h"
#include "Interpreter.h"
#include "PostscriptException.h"
#include "ValueObjects.h"
#include "platform/DebugOutput.h"

#include <gtest/gtest.h>

using testing_support::Session;

namespace {

struct RunCase {
    const char* program;
    const char* stack; // "==" forms, bottom first
};

void PrintTo(const RunCase& c, std::ostream* os) {
    *os << '"' << c.program << '"';
}

class RunLoop : public ::testing::TestWithParam<RunCase> {};

TEST_P(RunLoop, LeavesStack) {
    Session s;
    ASSERT_TRUE(s.run(GetParam().program)) << s.pdf.errorText;
    EXPECT_EQ(s.stackValues(), GetParam().stack);
    EXPECT_TRUE(s.interpreter().executionStack->empty());
    EXPECT_TRUE(s.interpreter().deferredExecutionStack->empty());
}

INSTANTIATE_TEST_SUITE_P(
    Basics, RunLoop,
    ::testing::Values(RunCase{"1 2.5 (s) /n ", "1 2.500000 (s) n"},
                      // An unknown name turns into a string of its text.
                      RunCase{"undefinedthing ", "(undefinedthing)"},
                      RunCase{"{ 1 { 2 } /x y } ", "[1 [2 ] x y ]"}, RunCase{"{} ", "[]"},
                      // Values found by look-up: integers go to the stack, booleans and the
                      // like execute into it, dictionaries push themselves.
                      RunCase{"languagelevel version ", "2 (49)"}, RunCase{"userdict ", "-dict-"},
                      // Immediately evaluated names inside a procedure are resolved at scan time.
                      RunCase{"{ //languagelevel } ", "[2 ]"},
                      // A procedure keeps its elements as scanned: names executable or
                      // literal, inner procedures literal; the finished one is literal.
                      RunCase{"{ y } 0 get xcheck { /y } 0 get xcheck { { } } 0 get xcheck "
                              "{ } xcheck ",
                              "true false false false"},
                      // A mark that reaches the loop as an object vanishes.
                      RunCase{"mark 5 2 array astore cvx exec ", "5"},
                      // A procedure run inside itself: the inner run resets the position
                      // and ends it, so the outer entry lands on the stack as an array.
                      RunCase{"/p { 1 r 2 } def /r { /r { } def p } def p ", "1 1 2 [1 r 2 ]"}));

TEST(RunLoopProcedures, ProcedureFromDictionaryRunsItsElements) {
    Session s;
    ASSERT_TRUE(s.run("{ 1 unknown { 3 } } "));
    // Define the procedure under a name and run it by look-up.
    auto* proc = s.interpreter().operandStack->pop();
    s.interpreter().dictionaries->userData->putText("p", proc);
    ASSERT_TRUE(s.run("p p "));
    EXPECT_EQ(s.stackValues(), "1 (unknown) [3 ] 1 (unknown) [3 ]");
    // A finished procedure is literal again, at position 0.
    auto* array = static_cast<ArrayObject*>(proc);
    EXPECT_FALSE(array->executable);
    EXPECT_EQ(array->execIndex, 0u);
}

TEST(RunLoopProcedures, ProcedureSplitAcrossBuffersIsOneProcedure) {
    Session one, two;
    ASSERT_TRUE(one.run("{ 1 { 2 } 3 } "));
    ASSERT_TRUE(two.run("{ 1 { 2"));
    EXPECT_EQ(two.interpreter().deferredExecutionStack->size(), 2u);
    ASSERT_TRUE(two.run(" } 3 } "));
    EXPECT_EQ(one.stack(), two.stack());
}

TEST(RunLoopFailures, StrayClosingBraceFailsAndHandleGoesOn) {
    Session s;
    EXPECT_FALSE(s.run("1 } 2 "));
    EXPECT_EQ(s.error(), "Expected ps_array at Mark execute");
    // The rest of the failed buffer is dropped; the stack stays as it was.
    EXPECT_EQ(s.stackValues(), "1");
    ASSERT_TRUE(s.run("3 "));
    EXPECT_EQ(s.stackValues(), "1 3");
    EXPECT_EQ(s.error(), "Expected ps_array at Mark execute");
}

TEST(RunLoopFailures, ErrorTextNamesFileAndLineAndGoesToDebugOutput) {
    std::vector<std::string> debug;
    platform::setDebugSink([&](std::string_view text) { debug.emplace_back(text); });
    Session s;
    EXPECT_FALSE(s.run("}"));
    platform::setDebugSink({});
    const std::string& text = s.pdf.errorText;
    ASSERT_EQ(text.rfind("Exception:[", 0), 0u) << text;
    EXPECT_NE(text.find(".cpp:"), std::string::npos);
    EXPECT_NE(text.find("] Expected ps_array at Mark execute\n"), std::string::npos);
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

TEST(RunLoopSuspension, EmptyRunClearsStdoutAndReturns) {
    Session s;
    s.interpreter().stdoutText = "old";
    ASSERT_TRUE(s.run(""));
    EXPECT_EQ(s.interpreter().stdoutText, "");
    EXPECT_FALSE(s.interpreter().suspended);
}

// The operands a failed operator popped stay popped; the rest of its procedure
// runs at the start of the next call.
TEST(RunLoopFailures, RestOfFailedProcedureRunsInTheNextCall) {
    Session s;
    ASSERT_TRUE(s.run("{ 1 } "));
    auto* proc = s.interpreter().operandStack->pop();
    s.interpreter().dictionaries->userData->putText("inner", proc);
    // A procedure whose second element is a stray "}" name: executing it fails.
    ASSERT_TRUE(s.run("{ inner } "));
    auto* outer = static_cast<ArrayObject*>(s.interpreter().operandStack->pop());
    outer->items().push(s.interpreter().makeName("}"));
    outer->items().push(new IntegerObject(5));
    s.interpreter().dictionaries->userData->putText("outer", outer);
    EXPECT_FALSE(s.run("outer 7 "));
    EXPECT_EQ(s.stackValues(), "1");
    ASSERT_TRUE(s.run("8 "));
    EXPECT_EQ(s.stackValues(), "1 5 8");
}

TEST(RunLoopMemory, DroppedObjectsAreFreed) {
    Session s;
    VirtualMemoryObject* local = s.interpreter().memory->localMemory;
    std::size_t before = local->liveBodies();
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(s.run("(abc) { 1 2 (x) } unknownname "));
        s.interpreter().operandStack->clear();
    }
    EXPECT_EQ(local->liveBodies(), before);
}

} // namespace

namespace {

// An operator that removes or replaces its own definition while it runs must
// finish its work on a live object.
TEST(RunLoopLifetime, OperatorMayRedefineItself) {
    EXPECT_EQ(testing_support::eval("systemdict /undef undef undef "), "(undef)");
    EXPECT_EQ(testing_support::eval("/store 1 store store "), "1");
    EXPECT_EQ(testing_support::eval("systemdict /def 2 put def "), "2");
}

} // namespace
