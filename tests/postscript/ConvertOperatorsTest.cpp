#include "Tables.h"

#include "core/ValueObjects.h"

namespace {

INSTANTIATE_TEST_SUITE_P(
    TypeAndAttributes, Eval,
    ::testing::Values(
        Case{"1 type 1.5 type (s) type /n type ", "integertype realtype stringtype nametype"},
        Case{"{1} type true type null type userdict type mark type /add load type ",
             "arraytype booleantype nulltype dicttype marktype nametype"},
        // The answer is an executable name.
        Case{"1 type xcheck ", "true"},
        Case{"1 xcheck 1.5 xcheck (s) xcheck /n xcheck {1} xcheck ",
             "false false false false false"},
        Case{"true xcheck false xcheck null xcheck userdict xcheck ", "true true true true"},
        Case{"/n cvx xcheck (s) cvx xcheck {1} cvx xcheck 5 cvx ", "true true true 5"},
        // cvx changes the object itself.
        Case{"/k 5 def /k load cvx pop /k load xcheck ", "true"},
        Case{"cvx ", "ERROR: pop - expected item on stack"},
        Case{"xcheck ", "ERROR: pop - expected item on stack"},
        Case{"type ", "ERROR: pop - expected item on stack"},
        // No access attributes: readonly and bind leave everything as it was,
        // and names in a bound procedure are looked up at each run.
        Case{"{1} readonly 5 readonly ", "[1 ] 5"}, Case{"readonly ", ""},
        Case{"{1} readonly wcheck ", "[1 ] true"}, Case{"{add} bind ", "[add ]"},
        Case{"/p { add } bind def /add { pop pop 9 } def 1 2 p ", "9"}, Case{"bind ", ""}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Cvi, Eval,
    ::testing::Values(Case{"3 cvi 3.7 cvi -3.7 cvi ", "3 3 -3"},
                      Case{"3e10 cvi -3e10 cvi ", "-2147483648 -2147483648"},
                      Case{"(42) cvi (-5) cvi (+7) cvi ", "42 -5 7"},
                      Case{"(3.7) cvi (1e3) cvi (.5) cvi ", "3 1000 0"},
                      Case{"(16#FF) cvi (8#777) cvi (36#Z) cvi ", "255 511 35"},
                      // The integer form saturates; the real form would give the lowest integer.
                      Case{"(99999999999) cvi (-99999999999) cvi ", "2147483647 -2147483648"},
                      Case{"(1e10) cvi ", "-2147483648"}, Case{"() cvi (12\\0003) cvi ", "0 12"},
                      Case{"(2#102) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"(1e-5) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"(1e400) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"( 5) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"{1} cvi ", "ERROR: Unsupported conversion type for cvi"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Cvr, Eval,
    ::testing::Values(
        Case{"3 cvr 2.5 cvr -2147483648 cvr ", "3.000000 2.500000 -2147483648.000000"},
        Case{"(12) cvr (1.5e2) cvr (-.25) cvr ", "12.000000 150.000000 -0.250000"},
        // Digits alone take the real form: no saturation.
        Case{"(99999999999) cvr ", "99999999999.000000"},
        // The radix form only passes the integer form, tried second.
        Case{"(16#FF) cvr ", "255.000000"},
        // The real form without digits reads 0.
        Case{"() cvr (.) cvr (e) cvr (2e) cvr ", "0.000000 0.000000 0.000000 2.000000"},
        Case{"(1e400) cvr ", "ERROR: Unable to convert in cvr"},
        Case{"(1.5.2) cvr ", "ERROR: Unable to convert in cvr"},
        Case{"true cvr ", "ERROR: Unsupported conversion type for cvr"},
        Case{"null cvr ", "ERROR: Unsupported conversion type for cvr"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    CvnAndCvs, Eval,
    ::testing::Values(
        Case{"(abc) cvn (ab\\000c) cvn ", "abc ab"},
        // The name takes the string's executable flag.
        Case{"(abc) cvn xcheck (abc) cvx cvn xcheck (abc) cvn type ", "false true nametype"},
        Case{"/a cvn ", "ERROR: Expected ps_string at cvn"},
        // cvs writes the "=" text into the target, which keeps its length, and
        // pushes a new string of the text: a real has none.
        Case{"/t (abcdefghij) def 5 t cvs t ", "(5) (5bcdefghij)"},
        Case{"5 (abcdefghij) cvs -12 (xxx) cvs ", "(5) (-12)"},
        Case{"1.5 (abcdefghijklmno) cvs ", "(--nostringval--)"},
        Case{"/name (xxxxxx) cvs true (xxxx) cvs (hi) (xxx) cvs ", "(name) (true) (hi)"},
        Case{"{1} (abcdefghijklmno) cvs null (abcdefghijklmno) cvs ",
             "(--nostringval--) (--nostringval--)"},
        // One byte more than the target holds is allowed.
        Case{"/t (x) def 12 t cvs t ", "(12) (1)"}, Case{"5 () cvs ", "(5)"},
        Case{"1.5 () cvs ", "ERROR: String index out of range"},
        Case{"(x) cvs ", "ERROR: pop - expected item on stack"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Conversion, Fails,
    ::testing::Values(FailCase{"7 (abc) cvi ", "Unable to convert in cvi", "7"},
                      FailCase{"7 (abc) cvr ", "Unable to convert in cvr", "7"},
                      FailCase{"7 /a cvi ", "Unsupported conversion type for cvi", "7"},
                      FailCase{"7 1 cvn ", "Expected ps_string at cvn", "7"},
                      // cvs takes the target first: a wrong one leaves the object.
                      FailCase{"7 5 6 cvs ", "Expected ps_string at popStringObject", "7 5"},
                      FailCase{"7 123 (x) cvs ", "String index out of range", "7"},
                      // The bytes written before the failure stay.
                      FailCase{"/t (xy) def t 98765 t cvs ", "String index out of range", "(98)"}),
    testing_support::RowName());

// Tags that no operator tested here gives an object of.
TEST(Type, UnmadeTagsHaveAnswers) {
    testing_support::Session s;
    const uint32_t tags[] = {ps_fontID, ps_operator, ps_gstate, ps_packedarray,
                             ps_save,   ps_file,     15};
    for (uint32_t tag : tags) {
        auto* object = new IntegerObject(0);
        object->type = tag;
        s.interpreter().operandStack->push(object);
        ASSERT_TRUE(s.run("type ")) << tag;
    }
    EXPECT_EQ(s.stackValues(),
              "fonttype operatortype gstatetype packedarraytype savetype filetype unknown");
}

} // namespace
