#include "Tables.h"

namespace {

INSTANTIATE_TEST_SUITE_P(
    Relational, Eval,
    ::testing::Values(
        Case{"1 2 lt 2 1 lt 1 1 lt ", "true false false"},
        Case{"1 2 le 2 1 le 1 1 le ", "true false true"},
        Case{"1 2 gt 2 1 gt 1 1 gt ", "false true false"},
        Case{"1 2 ge 2 1 ge 1 1 ge ", "false true true"},
        Case{"1.5 1 gt 1 1.5 gt 2.5 2.5 ge ", "true false true"},
        Case{"1.0 1 eq 1 1.0 ne 1 2 eq 1 2 ne ", "true false false true"},
        // The difference of two integers wraps at 32 bits.
        Case{"2147483647 -1 gt ", "false"}, Case{"-2147483648 1 lt ", "false"},
        Case{"-2147483648 2147483647 gt ", "true"}, Case{"2147483647 -1 ne ", "true"},
        Case{"(abc) (abd) lt (b) (abc) gt (abc) (abc) eq ", "true true true"},
        Case{"/b /a gt /a /a ge /a /b ne ", "true true true"},
        Case{"(ab) (abc) lt (\\377) (a) gt ", "true true"},
        // Texts end at their first NUL.
        Case{"(ab\\000x) (ab\\000y) eq ", "true"},
        Case{"null null eq null 1 eq 1 null eq (a) null ne ", "true false false true"},
        // Booleans count as 0 and 1, also against integers: the integer minus the
        // boolean, whichever stands first.
        Case{"true 1 eq false 0 eq true false gt ", "true true true"},
        Case{"true 0 lt 0 true lt 2 true gt true 2 gt ", "true true true true"},
        // Arrays and dictionaries compare element by element.
        Case{"{1 2} {1 2} eq {1 2} {1 3} eq {1 2} {1} eq {} {} eq ", "true false false true"},
        Case{"{1 {2 (x)}} {1.0 {2 (x)}} eq {1} {1} ne ", "true false"},
        Case{"userdict userdict eq ", "true"},
        Case{"[null] [null] eq [null] [1] eq 3 array 3 array eq ", "true false true"},
        Case{"1 dict 1 dict eq systemdict 1 dict eq ", "true false"},
        // Dictionaries equal by their keys' values, not by identity.
        Case{"/d1 1 dict def /d2 1 dict def d1 /a 1 put d2 /a 1.0 put d1 d2 eq ", "true"},
        Case{"/d1 1 dict def /d2 1 dict def d1 /a 1 put d2 /b 1 put d1 d2 eq ", "false"},
        Case{"(abc) 5 eq ", "ERROR: Unsupported type comparison"},
        Case{"/a (a) eq ", "ERROR: Unsupported type comparison"},
        Case{"{1} userdict eq ", "ERROR: Unsupported type comparison"},
        Case{"{1} {1} lt ", "ERROR: Unsupported type comparison"},
        Case{"{1 (a)} {1 /a} ne ", "ERROR: Unsupported type comparison"},
        Case{"null null lt ", "ERROR: Unsupported type comparison"},
        Case{"1 ge ", "ERROR: pop - expected item on stack"},
        Case{"eq ", "ERROR: pop - expected item on stack"},
        // One body equals itself, cycle or not; two cycles fail instead of
        // overflowing the machine's stack.
        Case{"/a 1 array def a 0 a put a a eq ", "true"},
        Case{"userdict userdict eq 1 dict dup /d 1 index put dup eq ", "true true"},
        Case{"/a 1 array def a 0 a put /b 1 array def b 0 b put a b eq ",
             "ERROR: Objects nested too deeply to compare"},
        Case{"/a 1 array def a 0 a put a == ", "ERROR: Array nested too deeply to print"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Logical, Eval,
    ::testing::Values(Case{"true true and true false and false false and ", "true false false"},
                      Case{"true false or false false or ", "true false"},
                      Case{"true false xor true true xor ", "true false"},
                      Case{"12 10 and 12 10 or 12 10 xor -1 255 and ", "8 14 6 255"},
                      Case{"true not false not ", "false true"},
                      // not negates an integer instead of complementing it.
                      Case{"5 not 0 not -2147483648 not ", "-5 0 -2147483648"},
                      Case{"1 true and ", "ERROR: Unsupported type of param to and"},
                      Case{"true 1 and ", "ERROR: Unsupported type of param to and"},
                      Case{"1.0 1 or ", "ERROR: Unsupported type of param to or"},
                      Case{"(a) (b) xor ", "ERROR: Unsupported type of param to xor"},
                      Case{"1.5 not ", "ERROR: Unsupported type of param to not"},
                      Case{"null not ", "ERROR: Unsupported type of param to not"},
                      Case{"true and ", "ERROR: pop - expected item on stack"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Comparison, Fails,
    ::testing::Values(FailCase{"7 1 true or ", "Unsupported type of param to or", "7"},
                      FailCase{"7 (a) not ", "Unsupported type of param to not", "7"},
                      FailCase{"7 [1] 1 ne ", "Unsupported type comparison", "7"},
                      FailCase{"7 /a (a) ge ", "Unsupported type comparison", "7"}),
    testing_support::RowName());

} // namespace
