#include "Tables.h"

namespace {

INSTANTIATE_TEST_SUITE_P(
    Arithmetic, Eval,
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
        Case{"-2147483647 2147483647 mod ", "0"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    SingleOperand, Eval,
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
                      // Infinities and the x86 default NaN print alike on every C library;
                      // abs clears the sign of a NaN.
                      Case{"1 0 div -1 0.0 div -4 sqrt ", "inf -inf -nan"},
                      Case{"0 0 div -4 sqrt abs ", "-nan nan"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Trigonometry, Eval,
    ::testing::Values(Case{"30 sin ", "0.500000"}, Case{"0 cos ", "1.000000"},
                      Case{"60 cos ", "0.500000"}, Case{"-90 sin ", "-1.000000"},
                      Case{"1 1 atan ", "45.000000"},
                      // No reduction to 0..360.
                      Case{"-1 0 atan ", "-90.000000"}, Case{"-1 -1 atan ", "-135.000000"},
                      Case{"0 -1 atan ", "180.000000"}, Case{"0 0 atan ", "0.000000"},
                      Case{"1.0 0 atan ", "90.000000"},
                      // With pi cut after ten decimals, 90 cos and 180 sin are not 0.
                      Case{"90 cos 1e10 mul ", "0.448966"}, Case{"180 sin 1e10 mul ", "0.897932"},
                      Case{"1 0 atan 90 sub 1e9 mul ", "2.572378"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Arithmetic, Fails,
    ::testing::Values(FailCase{"9 (a) 1 add ", "Unsupported number type", "9"},
                      FailCase{"9 1 (a) add ", "Unsupported number type", "9"},
                      FailCase{"9 1.5 (a) mul ", "Unsupported number type", "9"},
                      FailCase{"9 (a) 1.5 sub ", "Unsupported number type", "9"},
                      FailCase{"9 true false add ", "Unsupported number type in calc", "9"},
                      FailCase{"9 (a) (b) div ", "Unsupported number type in calc", "9"},
                      FailCase{"1 add ", "pop - expected item on stack", ""},
                      FailCase{"9 5.0 3 mod ", "Illegal param types for mod operator", "9"},
                      FailCase{"9 5 (3) mod ", "Illegal param types for mod operator", "9"},
                      FailCase{"9 (a) abs ", "Unsupported number type in abs", "9"},
                      FailCase{"9 (a) neg ", "Unsupported number type in neg", "9"},
                      FailCase{"9 true ceiling ", "Unsupported number type in ceiling", "9"},
                      FailCase{"9 (a) floor ", "Unsupported number type in floor", "9"},
                      FailCase{"9 (a) round ", "Unsupported number type in round", "9"},
                      FailCase{"9 (a) sqrt ", "Unsupported number type", "9"},
                      FailCase{"9 (a) sin ", "Unsupported number type", "9"},
                      FailCase{"9 /a cos ", "Unsupported number type", "9"},
                      FailCase{"9 (a) 1 atan ", "Unsupported number type", "9"},
                      FailCase{"9 1 (a) atan ", "Unsupported number type", "9"},
                      // Where the processor would trap.
                      FailCase{"9 7 0 idiv ", "Division by zero in idiv", "9"},
                      FailCase{"9 -2147483648 -1 idiv ", "Integer overflow in idiv", "9"},
                      FailCase{"9 7 0 mod ", "Division by zero in mod", "9"},
                      FailCase{"9 -2147483648 -1 mod ", "Integer overflow in mod", "9"}),
    testing_support::RowName());

} // namespace
