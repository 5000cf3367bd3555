#include "support/TestSupport.h"

#include "EvalCase.h"
#include "FailureCase.h"

#include "ArrayObject.h"

#include <gtest/gtest.h>

using eval_case::Case;
using failure_case::FailureCase;
using testing_support::eval;
using testing_support::Session;

namespace {

class ArrayOperators : public eval_case::EvalTable {};

TEST_P(ArrayOperators, Eval) {
    EXPECT_EQ(eval(GetParam().program), GetParam().result);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Making, ArrayOperators, ::testing::Values(
    Case{"3 array ", "[null null null ]"},
    Case{"0 array -2 array ", "[] []"},
    Case{"array ", "ERROR: Expected ps_integer at array"},
    // packedarray makes a plain array; the topmost operand is the last element.
    Case{"1 2 3 3 packedarray ", "[1 2 3 ]"},
    Case{"(a) 1 2 2 packedarray ", "(a) [1 2 ]"},
    Case{"7 0 packedarray -1 packedarray ", "7 [] []"},
    Case{"1 2 5 packedarray ", "ERROR: pop - expected item on stack"},
    Case{"1 2 3 3 packedarray type ", "arraytype"},
    Case{"1 false setpacking currentpacking ", "1 true"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(LoadAndStore, ArrayOperators, ::testing::Values(
    Case{"{ 1 (a) /n } aload ", "1 (a) n [1 (a) n ]"},
    Case{"{} aload ", "[]"},
    Case{"[ 1 2 ] aload pop ", "1 2"},
    Case{"7 8 9 3 array astore ", "[7 8 9 ]"},
    Case{"1 7 8 9 3 array astore ", "1 [7 8 9 ]"},
    Case{"0 array astore ", "[]"},
    Case{"9 3 array astore ", "ERROR: pop - expected item on stack"},
    // The array stored in its own element, replaced there while only that element holds it.
    Case{"/a 1 array def a 0 a put a aload currentdict /a undef pop 5 exch astore ", "[5 ]"},
    Case{"{ 1 2 3 } length 0 array length ", "3 0"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(GetPut, ArrayOperators, ::testing::Values(
    Case{"{ 10 20 30 } 1 get ", "20"},
    Case{"3 array 0 get ", "null"},
    Case{"{ 10 } -1 get ", "ERROR: Array index out of bounds"},
    Case{"/n 0 get ", "ERROR: Unsupported parameter types to get"},
    Case{"[ 1 2 ] dup 0 9 put ", "[9 2 ]"},
    // At the length the array grows by one; beyond it nothing is written.
    Case{"[ 1 2 ] dup 2 9 put ", "[1 2 9 ]"},
    Case{"{ 1 2 } dup 2 /add load put exec ", "3"},
    Case{"{ 1 } /k 9 put ", "ERROR: Unsupported parameter types to put"},
    Case{"5 0 1 put ", "ERROR: Unsupported parameter types to put"},
    // The array replaced in its own only element is its last holder but the operator's.
    Case{"/a 1 array def a 0 a put a currentdict /a undef 0 5 put ", ""}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(Intervals, ArrayOperators, ::testing::Values(
    Case{"{ 1 2 3 4 } 1 2 getinterval ", "[2 3 ]"},
    Case{"{ 1 2 3 } 1 0 getinterval { 1 2 3 } 1 -1 getinterval ", "[] []"},
    Case{"{ 1 2 3 } 3 0 getinterval ", "[]"},
    // A copy: a put into it doesn't reach the source...
    Case{"[ 1 2 3 ] dup 0 2 getinterval dup 0 9 put ", "[1 2 3 ] [9 2 ]"},
    // ...but the elements are the same objects.
    Case{"[ (xy) ] dup 0 1 getinterval 0 get 0 (zz) putinterval ", "[(zz) ]"},
    Case{"[ 1 2 3 4 ] dup 1 [ 8 9 ] putinterval ", "[1 8 9 4 ]"},
    Case{"[ 1 2 ] dup 0 [ 8 9 ] putinterval ", "[8 9 ]"},
    Case{"[ 1 2 ] dup 2 [] putinterval ", "[1 2 ]"},
    Case{"putinterval ", "ERROR: pop - expected item on stack"}));
// clang-format on

class ArrayFailure : public failure_case::FailureTable {};

TEST_P(ArrayFailure, KeepsWhatItPopped) {
    Session s;
    failure_case::expectFailure(s, GetParam());
}

// The operands popped before a failure stay popped; the 7 below them stays.
// clang-format off
INSTANTIATE_TEST_SUITE_P(Texts, ArrayFailure, ::testing::Values(
    FailureCase{"7 (x) array ", "Expected ps_integer at array", "7"},
    // A count that no program means is refused rather than exhausting the machine.
    FailureCase{"7 16777217 array length ", "Illegal length passed to array", "7"},
    FailureCase{"7 2147483647 array ", "Illegal length passed to array", "7"},
    FailureCase{"7 1 (n) packedarray ", "Expected ps_integer at packedarray", "7 1"},
    FailureCase{"7 8 3 packedarray ", "pop - expected item on stack", ""},
    FailureCase{"7 1 setpacking ", "Expected ps_boolean at setpacking", "7"},
    FailureCase{"7 5 aload ", "Expected ps_array at aload", "7"},
    FailureCase{"7 5 astore ", "Expected ps_array at astore", "7"},
    FailureCase{"7 { 10 20 30 } 3 get ", "Array index out of bounds", "7"},
    FailureCase{"7 { 10 } (0) get ", "Unsupported parameter types to get", "7"},
    FailureCase{"7 { 1 2 } 3 9 put ", "Illegal array index", "7"},
    FailureCase{"7 { 1 2 } -1 9 put ", "Illegal array index", "7"},
    FailureCase{"7 { 1 } 0 (1) getinterval ", "Expected ps_integer at popIntegerObject", "7 [1 ] 0"},
    FailureCase{"7 { 1 } (0) 1 getinterval ", "Expected ps_integer at popIntegerObject", "7 [1 ]"},
    FailureCase{"7 5 0 1 getinterval ", "currently unsupported ", "7"},
    // The copy is pushed first and keeps what it got.
    FailureCase{"7 { 1 2 3 } 1 5 getinterval ", "invlaid array", "7 [2 3 ]"},
    FailureCase{"7 { 1 2 3 } -1 2 getinterval ", "invlaid array", "7 []"},
    FailureCase{"7 { 1 } (0) { 2 } putinterval ", "Expected ps_integer at popIntegerObject", "7 [1 ]"},
    FailureCase{"7 [ 1 2 ] 1 [ 3 4 ] putinterval ", "invalid args to putinterval", "7"},
    FailureCase{"7 { 1 2 } -1 { 3 } putinterval ", "Illegal array index", "7"},
    FailureCase{"7 (ab) 0 { 3 } putinterval ", "putinterval- only expecting array ", "7"},
    FailureCase{"7 { 1 } 0 5 putinterval ", "putinterval expected array or string", "7"}));
// clang-format on

TEST(ArrayOperators, ArrayHoldsDistinctNulls) {
    Session s;
    ASSERT_TRUE(s.run("3 array "));
    auto* array = static_cast<ArrayObject*>(s.interpreter().operandStack->top());
    ASSERT_EQ(array->items().size(), 3u);
    EXPECT_NE(array->items().at(0), array->items().at(1));
    EXPECT_NE(array->items().at(1), array->items().at(2));
    EXPECT_EQ(array->arrayData()->bracket, '[');
    EXPECT_FALSE(array->executable);
}

TEST(ArrayOperators, AloadPushesTheStoredObjects) {
    Session s;
    ASSERT_TRUE(s.run("{ (s) 1 } aload "));
    const ObjectStack& st = *s.interpreter().operandStack;
    auto* array = static_cast<ArrayObject*>(st.at(2));
    EXPECT_EQ(st.at(0), array->items().at(0));
    EXPECT_EQ(st.at(1), array->items().at(1));
}

TEST(ArrayOperators, AstoreWithTooFewKeepsTheUpperElements) {
    Session s;
    EXPECT_FALSE(s.run("/a 3 array def 8 9 a astore "));
    EXPECT_EQ(s.error(), "pop - expected item on stack");
    ASSERT_TRUE(s.run("a "));
    EXPECT_EQ(s.stackValues(), "[null 8 9 ]");
}

} // namespace
