#include "EvalCase.h"
#include "FailureCase.h"
#include "support/TestSupport.h"

#include "ValueObjects.h"

#include <gtest/gtest.h>

#include <cmath>

using eval_case::Case;
using failure_case::FailureCase;
using testing_support::eval;
using testing_support::Session;

namespace {

class Arithmetic : public eval_case::EvalTable {};

TEST_P(Arithmetic, Evaluates) {
    EXPECT_EQ(eval(GetParam().program), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Binary, Arithmetic,
    ::testing::Values(
        Case{"1 2 add ", "3"}, Case{"1 2.0 add ", "3.000000"}, Case{"1.5 2 add ", "3.500000"},
        Case{"5 7 sub ", "-2"}, Case{"1.5 0.25 sub ", "1.250000"}, Case{"6 7 mul ", "42"},
        Case{"2 3.5 mul ", "7.000000"},
        // Two integers stay integers and wrap at 32 bits.
        Case{"2147483647 1 add ", "-2147483648"}, Case{"-2147483648 1 sub ", "2147483647"},
        Case{"65536 65536 mul ", "0"}, Case{"2147483647 2 mul ", "-2"},
        Case{"-2147483648 -1 mul ", "-2147483648"},
        // div always gives a real, idiv always an integer, also from reals.
        Case{"7 2 div ", "3.500000"}, Case{"6 3 div ", "2.000000"}, Case{"7 2 idiv ", "3"},
        Case{"-7 2 idiv ", "-3"}, Case{"7.5 2 idiv ", "3"}, Case{"-7.5 2 idiv ", "-3"},
        Case{"7 2.5 idiv ", "2"},
        // A float quotient out of range, infinite or NaN truncates to the lowest integer.
        Case{"1.0 0 idiv ", "-2147483648"}, Case{"-1 0.0 idiv ", "-2147483648"},
        Case{"0.0 0 idiv ", "-2147483648"}, Case{"3e10 1 idiv ", "-2147483648"},
        // mod takes the absolute value of the remainder.
        Case{"5 3 mod ", "2"}, Case{"-5 3 mod ", "2"}, Case{"5 -3 mod ", "2"},
        Case{"-5 -3 mod ", "2"}, Case{"6 3 mod ", "0"}, Case{"-2147483648 2 mod ", "0"},
        Case{"-2147483647 2147483647 mod ", "0"}));

INSTANTIATE_TEST_SUITE_P(
    SingleOperand, Arithmetic,
    ::testing::Values(Case{"-5 abs ", "5"}, Case{"5 abs ", "5"},
                      Case{"-2147483648 abs ", "-2147483648"}, Case{"-1.5 abs ", "1.500000"},
                      Case{"3.0 abs ", "3.000000"}, Case{"5 neg ", "-5"},
                      Case{"-2147483648 neg ", "-2147483648"}, Case{"1.5 neg ", "-1.500000"},
                      Case{"3.2 ceiling ", "4.000000"}, Case{"-3.2 ceiling ", "-3.000000"},
                      Case{"3 ceiling ", "3"}, Case{"3.7 floor ", "3.000000"},
                      Case{"-3.2 floor ", "-4.000000"}, Case{"-3 floor ", "-3"},
                      // round: halves go away from zero; an integer stays an integer.
                      Case{"3.7 round ", "4.000000"}, Case{"3 round ", "3"},
                      Case{"2.5 round ", "3.000000"}, Case{"-2.5 round ", "-3.000000"},
                      Case{"-2.4 round ", "-2.000000"}, Case{"0.5 round ", "1.000000"},
                      Case{"-0.5 round ", "-1.000000"}, Case{"-0.4 round ", "0.000000"},
                      Case{"3e10 round ", "-2147483648.000000"},
                      Case{"-3e10 round ", "-2147483648.000000"}, Case{"16 sqrt ", "4.000000"},
                      Case{"2.25 sqrt ", "1.500000"},
                      // Stubs of the generated layer, for contrast.
                      Case{"3.7 truncate ", "0.000000"}, Case{"2 3 exp ", "0.000000"}));

INSTANTIATE_TEST_SUITE_P(
    Trigonometry, Arithmetic,
    ::testing::Values(Case{"30 sin ", "0.500000"}, Case{"0 cos ", "1.000000"},
                      Case{"60 cos ", "0.500000"}, Case{"-90 sin ", "-1.000000"},
                      Case{"1 1 atan ", "45.000000"},
                      // No reduction to 0..360.
                      Case{"-1 0 atan ", "-90.000000"}, Case{"-1 -1 atan ", "-135.000000"},
                      Case{"0 -1 atan ", "180.000000"}, Case{"0 0 atan ", "0.000000"},
                      Case{"1.0 0 atan ", "90.000000"}));

class ArithmeticFailure : public ::testing::TestWithParam<FailureCase> {};

TEST_P(ArithmeticFailure, FailsAndKeepsOperandsPopped) {
    Session s;
    failure_case::expectFailure(s, GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ArithmeticFailure,
    ::testing::Values(FailureCase{"9 (a) 1 add ", "Unsupported number type", "9"},
                      FailureCase{"9 1 (a) add ", "Unsupported number type", "9"},
                      FailureCase{"9 1.5 (a) mul ", "Unsupported number type", "9"},
                      FailureCase{"9 (a) 1.5 sub ", "Unsupported number type", "9"},
                      FailureCase{"9 true false add ", "Unsupported number type in calc", "9"},
                      FailureCase{"9 (a) (b) div ", "Unsupported number type in calc", "9"},
                      FailureCase{"1 add ", "pop - expected item on stack", ""},
                      FailureCase{"9 5.0 3 mod ", "Illegal param types for mod operator", "9"},
                      FailureCase{"9 5 (3) mod ", "Illegal param types for mod operator", "9"},
                      FailureCase{"9 (a) abs ", "Unsupported number type in abs", "9"},
                      FailureCase{"9 (a) neg ", "Unsupported number type in neg", "9"},
                      FailureCase{"9 true ceiling ", "Unsupported number type in ceiling", "9"},
                      FailureCase{"9 (a) floor ", "Unsupported number type in floor", "9"},
                      FailureCase{"9 (a) round ", "Unsupported number type in round", "9"},
                      FailureCase{"9 (a) sqrt ", "Unsupported number type", "9"},
                      FailureCase{"9 (a) sin ", "Unsupported number type", "9"},
                      FailureCase{"9 /a cos ", "Unsupported number type", "9"},
                      FailureCase{"9 (a) 1 atan ", "Unsupported number type", "9"},
                      FailureCase{"9 1 (a) atan ", "Unsupported number type", "9"},
                      // Where the processor would trap.
                      FailureCase{"9 7 0 idiv ", "Division by zero in idiv", "9"},
                      FailureCase{"9 -2147483648 -1 idiv ", "Integer overflow in idiv", "9"},
                      FailureCase{"9 7 0 mod ", "Division by zero in mod", "9"},
                      FailureCase{"9 -2147483648 -1 mod ", "Integer overflow in mod", "9"}));

double topReal(const char* program) {
    Session s;
    EXPECT_TRUE(s.run(program)) << s.pdf.errorText;
    const PostscriptObject* top = s.interpreter().operandStack->top();
    EXPECT_TRUE(top && top->type == ps_real) << program;
    return top && top->type == ps_real ? static_cast<const RealObject*>(top)->value : 0.0;
}

TEST(Arithmetic, FloatDivisionByZeroIsNoFailure) {
    EXPECT_EQ(topReal("1 0 div "), INFINITY);
    EXPECT_EQ(topReal("-1 0.0 div "), -INFINITY);
    EXPECT_TRUE(std::isnan(topReal("0 0 div ")));
    EXPECT_TRUE(std::isnan(topReal("-4 sqrt ")));
    EXPECT_TRUE(std::isnan(topReal("-4 sqrt abs ")));
}

TEST(Arithmetic, PiHasTenDecimals) {
    // With pi cut after ten decimals, 90 cos and 180 sin are not 0.
    EXPECT_NEAR(topReal("90 cos "), 4.4896619e-11, 1e-15);
    EXPECT_NEAR(topReal("180 sin "), 8.9793238e-11, 1e-15);
    EXPECT_NEAR(topReal("1 0 atan "), 90.0000000025724, 1e-12);
}

} // namespace
