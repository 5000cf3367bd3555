#include "Tables.h"

namespace {

// clang-format off
INSTANTIATE_TEST_SUITE_P(Arrays, Eval, ::testing::Values(
    Case{"3 array ", "[null null null ]"},
    // A literal array, no procedure.
    Case{"3 array xcheck ", "false"},
    Case{"1 array stopped ", "ERROR: Unsupported param type to stopped"},
    Case{"0 array -2 array ", "[] []"},
    Case{"array ", "ERROR: Expected ps_integer at array"},
    // packedarray makes a plain array; the topmost operand is the last element.
    Case{"1 2 3 3 packedarray ", "[1 2 3 ]"},
    Case{"(a) 1 2 2 packedarray ", "(a) [1 2 ]"},
    Case{"7 0 packedarray -1 packedarray ", "7 [] []"},
    Case{"1 2 3 3 packedarray type ", "arraytype"},
    Case{"1 false setpacking currentpacking ", "1 true"},
    Case{"{ 1 (a) /n } aload ", "1 (a) n [1 (a) n ]"},
    Case{"{} aload ", "[]"},
    Case{"[ 1 2 ] aload pop ", "1 2"},
    // aload pushes the stored objects themselves.
    Case{"[ 5 ] dup aload pop cvx pop 0 get xcheck ", "true"},
    Case{"7 8 9 3 array astore ", "[7 8 9 ]"},
    Case{"1 7 8 9 3 array astore ", "1 [7 8 9 ]"},
    Case{"0 array astore ", "[]"},
    // The array stored in its own element, replaced there while only that element holds it.
    Case{"/a 1 array def a 0 a put a aload currentdict /a undef pop 5 exch astore ", "[5 ]"},
    Case{"{ 1 2 3 } length 0 array length ", "3 0"}), testing_support::RowName());
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(ArrayGetPut, Eval, ::testing::Values(
    Case{"{ 10 20 30 } 1 get ", "20"},
    Case{"3 array 0 get ", "null"},
    Case{"{ 10 } -1 get ", "ERROR: Array index out of bounds"},
    Case{"/n 0 get ", "ERROR: Unsupported parameter types to get"},
    // At the length the array grows by one; beyond it nothing is written.
    Case{"[ 1 2 ] dup 2 9 put ", "[1 2 9 ]"},
    Case{"{ 1 2 } dup 2 /add load put exec ", "3"},
    Case{"{ 1 } /k 9 put ", "ERROR: Unsupported parameter types to put"},
    Case{"5 0 1 put ", "ERROR: Unsupported parameter types to put"},
    // The array replaced in its own only element is its last holder but the operator's.
    Case{"/a 1 array def a 0 a put a currentdict /a undef 0 5 put ", ""},
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
    Case{"putinterval ", "ERROR: pop - expected item on stack"}), testing_support::RowName());
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(Arrays, Fails, ::testing::Values(
    FailCase{"7 (x) array ", "Expected ps_integer at array", "7"},
    // A count that no program means is refused rather than exhausting the machine.
    FailCase{"7 16777217 array length ", "Illegal length passed to array", "7"},
    FailCase{"7 2147483647 array ", "Illegal length passed to array", "7"},
    FailCase{"7 1 (n) packedarray ", "Expected ps_integer at packedarray", "7 1"},
    FailCase{"7 8 3 packedarray ", "pop - expected item on stack", ""},
    FailCase{"7 1 setpacking ", "Expected ps_boolean at setpacking", "7"},
    FailCase{"7 5 aload ", "Expected ps_array at aload", "7"},
    FailCase{"7 5 astore ", "Expected ps_array at astore", "7"},
    FailCase{"7 { 10 20 30 } 3 get ", "Array index out of bounds", "7"},
    FailCase{"7 { 10 } (0) get ", "Unsupported parameter types to get", "7"},
    FailCase{"7 { 1 2 } 3 9 put ", "Illegal array index", "7"},
    FailCase{"7 { 1 2 } -1 9 put ", "Illegal array index", "7"},
    FailCase{"7 { 1 } 0 (1) getinterval ", "Expected ps_integer at popIntegerObject", "7 [1 ] 0"},
    FailCase{"7 { 1 } (0) 1 getinterval ", "Expected ps_integer at popIntegerObject", "7 [1 ]"},
    FailCase{"7 5 0 1 getinterval ", "currently unsupported ", "7"},
    // The copy is pushed first and keeps what it got.
    FailCase{"7 { 1 2 3 } 1 5 getinterval ", "invlaid array", "7 [2 3 ]"},
    FailCase{"7 { 1 2 3 } -1 2 getinterval ", "invlaid array", "7 []"},
    FailCase{"7 { 1 } (0) { 2 } putinterval ", "Expected ps_integer at popIntegerObject", "7 [1 ]"},
    FailCase{"7 [ 1 2 ] 1 [ 3 4 ] putinterval ", "invalid args to putinterval", "7"},
    FailCase{"7 { 1 2 } -1 { 3 } putinterval ", "Illegal array index", "7"},
    FailCase{"7 (ab) 0 { 3 } putinterval ", "putinterval- only expecting array ", "7"},
    FailCase{"7 { 1 } 0 5 putinterval ", "putinterval expected array or string", "7"},
    // astore that runs out of operands has stored the upper elements.
    FailCase{"/a 3 array def 8 9 a astore ", "pop - expected item on stack", "",
             "a ", "[null 8 9 ]"}), testing_support::RowName());
// clang-format on

} // namespace
