#include "support/TestSupport.h"

#include "EvalCase.h"

#include "ArrayObject.h"

#include <gtest/gtest.h>

using eval_case::Case;
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
    Case{"(x) array ", "ERROR: Expected ps_integer at array"},
    Case{"array ", "ERROR: Expected ps_integer at array"},
    // packedarray makes a plain array; the topmost operand is the last element.
    Case{"1 2 3 3 packedarray ", "[1 2 3 ]"},
    Case{"(a) 1 2 2 packedarray ", "(a) [1 2 ]"},
    Case{"7 0 packedarray -1 packedarray ", "7 [] []"},
    Case{"1 2 5 packedarray ", "ERROR: pop - expected item on stack"},
    Case{"1 (n) packedarray ", "ERROR: Expected ps_integer at packedarray"},
    Case{"1 2 3 3 packedarray type ", "arraytype"},
    Case{"1 false setpacking currentpacking ", "1 true"},
    Case{"1 setpacking ", "ERROR: Expected ps_boolean at setpacking"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(LoadAndStore, ArrayOperators, ::testing::Values(
    Case{"{ 1 (a) /n } aload ", "1 (a) n [1 (a) n ]"},
    Case{"{} aload ", "[]"},
    Case{"[ 1 2 ] aload pop ", "1 2"},
    Case{"5 aload ", "ERROR: Expected ps_array at aload"},
    Case{"7 8 9 3 array astore ", "[7 8 9 ]"},
    Case{"1 7 8 9 3 array astore ", "1 [7 8 9 ]"},
    Case{"0 array astore ", "[]"},
    Case{"9 3 array astore ", "ERROR: pop - expected item on stack"},
    Case{"1 astore ", "ERROR: Expected ps_array at astore"},
    // The array stored in its own element, replaced there while only that element holds it.
    Case{"/a 1 array def a 0 a put a aload currentdict /a undef pop 5 exch astore ", "[5 ]"},
    Case{"{ 1 2 3 } length 0 array length ", "3 0"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(GetPut, ArrayOperators, ::testing::Values(
    Case{"{ 10 20 30 } 1 get ", "20"},
    Case{"{ 10 20 30 } 3 get ", "ERROR: Array index out of bounds"},
    Case{"{ 10 } -1 get ", "ERROR: Array index out of bounds"},
    Case{"{ 10 } (0) get ", "ERROR: Unsupported parameter types to get"},
    Case{"/n 0 get ", "ERROR: Unsupported parameter types to get"},
    Case{"[ 1 2 ] dup 0 9 put ", "[9 2 ]"},
    // At the length the array grows by one; beyond it nothing is written.
    Case{"[ 1 2 ] dup 2 9 put ", "[1 2 9 ]"},
    Case{"{ 1 2 } dup 2 /add load put exec ", "3"},
    Case{"{ 1 2 } 3 9 put ", "ERROR: Illegal array index"},
    Case{"{ 1 2 } -1 9 put ", "ERROR: Illegal array index"},
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
    Case{"{ 1 2 3 } 1 5 getinterval ", "ERROR: invlaid array"},
    Case{"{ 1 2 3 } -1 2 getinterval ", "ERROR: invlaid array"},
    Case{"{ 1 } 0 (1) getinterval ", "ERROR: Expected ps_integer at popIntegerObject"},
    Case{"{ 1 } (0) 1 getinterval ", "ERROR: Expected ps_integer at popIntegerObject"},
    Case{"5 0 1 getinterval ", "ERROR: currently unsupported "},
    // A copy: a put into it doesn't reach the source...
    Case{"[ 1 2 3 ] dup 0 2 getinterval dup 0 9 put ", "[1 2 3 ] [9 2 ]"},
    // ...but the elements are the same objects.
    Case{"[ (xy) ] dup 0 1 getinterval 0 get 0 (zz) putinterval ", "[(zz) ]"},
    Case{"[ 1 2 3 4 ] dup 1 [ 8 9 ] putinterval ", "[1 8 9 4 ]"},
    Case{"[ 1 2 ] dup 0 [ 8 9 ] putinterval ", "[8 9 ]"},
    Case{"[ 1 2 ] dup 2 [] putinterval ", "[1 2 ]"},
    Case{"[ 1 2 ] 1 [ 3 4 ] putinterval ", "ERROR: invalid args to putinterval"},
    Case{"{ 1 2 } -1 { 3 } putinterval ", "ERROR: Illegal array index"},
    Case{"(ab) 0 { 3 } putinterval ", "ERROR: putinterval- only expecting array "},
    Case{"{ 1 } 0 5 putinterval ", "ERROR: putinterval expected array or string"},
    Case{"{ 1 } (0) { 2 } putinterval ", "ERROR: Expected ps_integer at popIntegerObject"},
    Case{"putinterval ", "ERROR: pop - expected item on stack"}));
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

TEST(ArrayOperators, PackedarrayWithTooFewPopsAll) {
    Session s;
    EXPECT_FALSE(s.run("1 2 5 packedarray "));
    EXPECT_EQ(s.stackValues(), "");
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

TEST(ArrayOperators, FailedGetintervalLeavesWhatItCopied) {
    Session s;
    EXPECT_FALSE(s.run("{ 1 2 3 } 1 5 getinterval "));
    EXPECT_EQ(s.error(), "invlaid array");
    EXPECT_EQ(s.stackValues(), "[2 3 ]");
}

} // namespace
