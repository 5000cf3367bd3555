#include "support/TestSupport.h"

#include "EvalCase.h"
#include "FailureCase.h"

#include "StringObject.h"

#include <gtest/gtest.h>

using eval_case::Case;
using failure_case::FailureCase;
using testing_support::eval;
using testing_support::render;
using testing_support::Session;

namespace {

class StringOperators : public eval_case::EvalTable {};

TEST_P(StringOperators, Eval) {
    EXPECT_EQ(eval(GetParam().program), GetParam().result);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(MakingAndLength, StringOperators, ::testing::Values(
    Case{"3 string length 0 string length ", "3 0"},
    Case{"2 string 1 get ", "0"},
    Case{"16777216 string length ", "16777216"},
    Case{"(abc) length (a\\000b) length ", "3 3"},
    // The one operator that counts a name, operators included.
    Case{"/name length /add load length ", "4 3"},
    Case{"1.5 length ", "ERROR: Unsupported param to length"},
    Case{"length ", "ERROR: pop - expected item on stack"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(GetPut, StringOperators, ::testing::Values(
    Case{"(abc) 1 get ", "98"},
    // Bytes come out signed.
    Case{"(\\310) 0 get (\\377) 0 get ", "-56 -1"},
    Case{"(abc) -1 get ", "ERROR: String index out of bounds"},
    Case{"(abc) /x get ", "ERROR: Unsupported parameter types to get"},
    // put stores the low byte of the index; the value is checked, then ignored.
    Case{"/s (abc) def s 1 65 put s 1 get s 0 get ", "1 97"},
    Case{"(abc) dup 2 65 put 2 get ", "2"},
    Case{"/s 300 string def s 200 7 put s 256 7 put s 200 get s 256 get ", "-56 0"},
    Case{"(abc) 3 65 put ", "ERROR: Illegal string index passed to put"},
    Case{"(abc) -1 65 put ", "ERROR: Illegal string index passed to put"},
    Case{"(abc) 1 1.0 put ", "ERROR: Unsupported parameter types to put"},
    Case{"(abc) /k 1 put ", "ERROR: Unsupported parameter types to put"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(Intervals, StringOperators, ::testing::Values(
    Case{"(abcdef) 1 3 getinterval ", "(bcd)"},
    Case{"(abc) 1 5 getinterval ", "(bc)"},
    Case{"(abc) 1 -1 getinterval ", "(bc)"},
    Case{"(abc) 3 2 getinterval ", "()"},
    Case{"(abc) -1 1 getinterval ", "ERROR: invalid string position"},
    Case{"(abc) dup 0 2 getinterval dup 0 (zz) putinterval ", "(abc) (zz)"},
    // A string target grows as needed; no range failure.
    Case{"/s (ab) def s 1 (xyz) putinterval s ", "(axyz)"},
    Case{"/s (abcdef) def s 1 (xy) putinterval s ", "(axydef)"},
    Case{"/s (ab) def s 5 (xy) putinterval s ", "(abxy)"},
    Case{"/s (abc) def s 0 () putinterval s ", "(abc)"},
    Case{"/s (abcd) def s -1 (xy) putinterval s ", "(xybcd)"},
    Case{"/s (abc) def s 1 s putinterval s ", "(aabc)"},
    Case{"(ab) 0 5 putinterval ", "ERROR: putinterval expected array or string"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(Anchorsearch, StringOperators, ::testing::Values(
    Case{"(abc) (ab) anchorsearch ", "(c) (ab) true"},
    Case{"(abc) (bc) anchorsearch ", "(abc) false"},
    Case{"(ab) (abc) anchorsearch ", "(ab) false"},
    Case{"(abc) () anchorsearch ", "(abc) () true"},
    Case{"(abc) (abc) anchorsearch ", "() (abc) true"},
    Case{"(a\\000bc) (a\\000b) anchorsearch ", "(c) (a) true"},
    Case{"(a\\000b) (a\\000c) anchorsearch ", "(a) false"},
    // The string object's own body is shortened.
    Case{"/s (abc) def s (ab) anchorsearch s ", "(c) (ab) true (c)"},
    Case{"(abc) dup (ab) anchorsearch ", "(c) (c) (ab) true"}));
// clang-format on

class StringFailure : public failure_case::FailureTable {};

TEST_P(StringFailure, KeepsWhatItPopped) {
    Session s;
    failure_case::expectFailure(s, GetParam());
}

// The operands popped before a failure stay popped; the 7 below them stays.
// clang-format off
INSTANTIATE_TEST_SUITE_P(Texts, StringFailure, ::testing::Values(
    FailureCase{"7 (x) string ", "Expected ps_integer at length of string", "7"},
    FailureCase{"7 -1 string ", "Illegal length passed to string", "7"},
    // A count that no program means is refused rather than exhausting the machine.
    FailureCase{"7 16777217 string length ", "Illegal length passed to string", "7"},
    FailureCase{"7 2147483647 string ", "Illegal length passed to string", "7"},
    FailureCase{"7 5 length ", "Unsupported param to length", "7"},
    FailureCase{"7 (abc) 3 get ", "String index out of bounds", "7"},
    FailureCase{"7 (abc) 5 65 put ", "Illegal string index passed to put", "7"},
    FailureCase{"7 (abc) 1 (A) put ", "Unsupported parameter types to put", "7"},
    // The empty result is pushed before the index is checked.
    FailureCase{"7 (abc) 4 0 getinterval ", "invalid string position", "7 ()"},
    FailureCase{"7 { 1 } 0 (x) putinterval ", "putinterval- only expecting ps_string", "7"},
    FailureCase{"7 (abc) 1 anchorsearch ", "Expected ps_string at popStringObject", "7 (abc)"},
    FailureCase{"7 1 (a) anchorsearch ", "Expected ps_string at popStringObject", "7"}));
// clang-format on

TEST(StringOperators, StringIsZeroBytes) {
    Session s;
    ASSERT_TRUE(s.run("3 string "));
    EXPECT_EQ(render(s.interpreter().operandStack->top()), "(\\x00\\x00\\x00)");
}

TEST(StringOperators, GetintervalCopiesBytesNotFilters) {
    Session s;
    ASSERT_TRUE(s.run("<414243> 0 2 getinterval <414243> 5 2 getinterval "));
    const ObjectStack& st = *s.interpreter().operandStack;
    EXPECT_EQ(render(st.at(0)), "(41)");
    EXPECT_EQ(render(st.at(1)), "(3>)");
}

TEST(StringOperators, AnchorsearchMatchReachesSharersAndPushesTheSeekItself) {
    Session s;
    Interpreter& in = s.interpreter();
    ASSERT_TRUE(s.run("(abcd) "));
    PostscriptObject* sharer = in.operandStack->top()->clone(nullptr);
    in.operandStack->push(sharer);
    ASSERT_TRUE(s.run("(ab) anchorsearch "));
    ASSERT_EQ(in.operandStack->size(), 4u);
    EXPECT_EQ(static_cast<StringObject*>(in.operandStack->at(0))->text(), "cd");
    EXPECT_EQ(in.operandStack->at(1), sharer);
    EXPECT_EQ(render(in.operandStack->at(2)), "(ab)");
    EXPECT_EQ(in.operandStack->at(3)->doubleEqualsText(), "true");
}

TEST(StringOperators, PutintervalChangesTheSharedBody) {
    Session s;
    Interpreter& in = s.interpreter();
    ASSERT_TRUE(s.run("(ab) "));
    in.operandStack->push(in.operandStack->top()->clone(nullptr));
    ASSERT_TRUE(s.run("1 (xyz) putinterval "));
    EXPECT_EQ(s.stackValues(), "(axyz)");
}

} // namespace
