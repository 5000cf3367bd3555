#include "EvalCase.h"
#include "FailureCase.h"
#include "support/TestSupport.h"

#include "ArrayObject.h"
#include "DictionarySet.h"
#include "StringObject.h"
#include "ValueObjects.h"

#include <gtest/gtest.h>

using eval_case::Case;
using failure_case::FailureCase;
using testing_support::eval;
using testing_support::Session;

namespace {

class Conversion : public eval_case::EvalTable {};

TEST_P(Conversion, Evaluates) {
    EXPECT_EQ(eval(GetParam().program), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    TypeAndAttributes, Conversion,
    ::testing::Values(
        Case{"1 type 1.5 type (s) type /n type ", "integertype realtype stringtype nametype"},
        Case{"{1} type true type null type userdict type ",
             "arraytype booleantype nulltype dicttype"},
        // The answer is an executable name.
        Case{"1 type xcheck ", "true"},
        Case{"1 xcheck 1.5 xcheck (s) xcheck /n xcheck {1} xcheck ",
             "false false false false false"},
        Case{"true xcheck null xcheck userdict xcheck ", "true true true"},
        Case{"/n cvx xcheck (s) cvx xcheck {1} cvx xcheck 5 cvx ", "true true true 5"},
        Case{"cvx ", "ERROR: pop - expected item on stack"},
        Case{"xcheck ", "ERROR: pop - expected item on stack"},
        Case{"type ", "ERROR: pop - expected item on stack"},
        // No access attributes: readonly and bind leave everything as it was.
        Case{"{1} readonly 5 readonly ", "[1 ] 5"}, Case{"readonly ", ""},
        Case{"{1} readonly wcheck ", "[1 ] true"}, Case{"{add} bind ", "[add ]"},
        Case{"bind ", ""}));

INSTANTIATE_TEST_SUITE_P(
    Cvi, Conversion,
    ::testing::Values(Case{"3 cvi 3.7 cvi -3.7 cvi ", "3 3 -3"},
                      Case{"3e10 cvi -3e10 cvi ", "-2147483648 -2147483648"},
                      Case{"(42) cvi (-5) cvi (+7) cvi ", "42 -5 7"},
                      Case{"(3.7) cvi (1e3) cvi (.5) cvi ", "3 1000 0"},
                      Case{"(16#FF) cvi (8#777) cvi (36#Z) cvi ", "255 511 35"},
                      // The integer form saturates; the real form would give the lowest integer.
                      Case{"(99999999999) cvi (-99999999999) cvi ", "2147483647 -2147483648"},
                      Case{"(1e10) cvi ", "-2147483648"}, Case{"() cvi (12\\0003) cvi ", "0 12"},
                      Case{"(abc) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"(2#102) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"(1e-5) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"(1e400) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"( 5) cvi ", "ERROR: Unable to convert in cvi"},
                      Case{"{1} cvi ", "ERROR: Unsupported conversion type for cvi"},
                      Case{"/a cvi ", "ERROR: Unsupported conversion type for cvi"}));

INSTANTIATE_TEST_SUITE_P(
    Cvr, Conversion,
    ::testing::Values(
        Case{"3 cvr 2.5 cvr -2147483648 cvr ", "3.000000 2.500000 -2147483648.000000"},
        Case{"(12) cvr (1.5e2) cvr (-.25) cvr ", "12.000000 150.000000 -0.250000"},
        // Digits alone take the real form: no saturation.
        Case{"(99999999999) cvr ", "99999999999.000000"},
        // The radix form only passes the integer form, tried second.
        Case{"(16#FF) cvr ", "255.000000"},
        // The real form without digits reads 0.
        Case{"() cvr (.) cvr (e) cvr (2e) cvr ", "0.000000 0.000000 0.000000 2.000000"},
        Case{"(abc) cvr ", "ERROR: Unable to convert in cvr"},
        Case{"(1e400) cvr ", "ERROR: Unable to convert in cvr"},
        Case{"(1.5.2) cvr ", "ERROR: Unable to convert in cvr"},
        Case{"true cvr ", "ERROR: Unsupported conversion type for cvr"},
        Case{"null cvr ", "ERROR: Unsupported conversion type for cvr"}));

INSTANTIATE_TEST_SUITE_P(
    CvnAndCvs, Conversion,
    ::testing::Values(
        Case{"(abc) cvn (ab\\000c) cvn ", "abc ab"},
        // The name takes the string's executable flag.
        Case{"(abc) cvn xcheck (abc) cvx cvn xcheck (abc) cvn type ", "false true nametype"},
        Case{"/a cvn ", "ERROR: Expected ps_string at cvn"},
        Case{"5 cvn ", "ERROR: Expected ps_string at cvn"},
        // cvs stores the "=" text: a real has none.
        Case{"5 (abcdefghij) cvs -12 (xxx) cvs ", "(5) (-12)"},
        Case{"1.5 (abcdefghijklmno) cvs ", "(--nostringval--)"},
        Case{"/name (xxxxxx) cvs true (xxxx) cvs (hi) (xxx) cvs ", "(name) (true) (hi)"},
        Case{"{1} (abcdefghijklmno) cvs null (abcdefghijklmno) cvs ",
             "(--nostringval--) (--nostringval--)"},
        // One byte more than the target holds is allowed.
        Case{"12 (x) cvs 5 () cvs ", "(12) (5)"},
        Case{"1.5 () cvs ", "ERROR: String index out of range"},
        Case{"(x) cvs ", "ERROR: pop - expected item on stack"}));

class ConversionFailure : public failure_case::FailureTable {};

TEST_P(ConversionFailure, KeepsWhatItPopped) {
    Session s;
    failure_case::expectFailure(s, GetParam());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Texts, ConversionFailure, ::testing::Values(
    FailureCase{"7 (abc) cvi ", "Unable to convert in cvi", "7"},
    FailureCase{"7 (abc) cvr ", "Unable to convert in cvr", "7"},
    FailureCase{"7 /a cvi ", "Unsupported conversion type for cvi", "7"},
    FailureCase{"7 1 cvn ", "Expected ps_string at cvn", "7"},
    // cvs takes the target first: a wrong one leaves the object.
    FailureCase{"7 5 6 cvs ", "Expected ps_string at popStringObject", "7 5"},
    FailureCase{"7 123 (x) cvs ", "String index out of range", "7"}));
// clang-format on

// Runs cvs of an integer into a target string that the test holds as well.
struct CvsRun {
    explicit CvsRun(const char* text) : target(s.interpreter().makeString(text)) {
        addReference(target);
    }
    ~CvsRun() { releaseReference(target); }
    bool run(int32_t value) {
        s.interpreter().operandStack->push(new IntegerObject(value));
        s.interpreter().operandStack->push(target);
        return s.run("cvs ");
    }

    Session s;
    StringObject* target;
};

TEST(Cvs, WritesIntoTheTargetAndPushesANewString) {
    CvsRun c("abcdefghij");
    ASSERT_TRUE(c.run(5)) << c.s.pdf.errorText;
    EXPECT_EQ(c.target->text(), "5bcdefghij");
    const PostscriptObject* result = c.s.interpreter().operandStack->top();
    ASSERT_EQ(result->type, ps_string);
    EXPECT_NE(static_cast<const StringObject*>(result)->data, c.target->data);
    EXPECT_EQ(static_cast<const StringObject*>(result)->text(), "5");
}

TEST(Cvs, TargetKeepsItsLength) {
    CvsRun c("x");
    ASSERT_TRUE(c.run(12)) << c.s.pdf.errorText;
    EXPECT_EQ(c.target->text(), "1");
    EXPECT_EQ(c.s.stackValues(), "(12)");
}

TEST(Cvs, FailureLeavesTheBytesAlreadyWritten) {
    CvsRun c("xy");
    EXPECT_FALSE(c.run(98765));
    EXPECT_EQ(c.s.error(), "String index out of range");
    EXPECT_EQ(c.target->text(), "98");
    EXPECT_EQ(c.s.stackValues(), "");
}

TEST(Cvx, ChangesTheObjectItself) {
    Session s;
    PostscriptObject* name = s.interpreter().makeName("n", false);
    addReference(name);
    s.interpreter().operandStack->push(name);
    ASSERT_TRUE(s.run("cvx "));
    EXPECT_EQ(s.interpreter().operandStack->top(), name);
    EXPECT_TRUE(name->executable);
    releaseReference(name);
}

TEST(Type, OperatorsAreNamesAndUnmadeTagsHaveAnswers) {
    Session s;
    s.interpreter().operandStack->push(new MarkObject);
    ASSERT_TRUE(s.run("type "));
    s.interpreter().operandStack->push(s.interpreter().dictionaries->lookupText("add"));
    ASSERT_TRUE(s.run("type "));
    EXPECT_EQ(s.stackValues(), "marktype nametype");

    // Tags that no operator tested here gives an object of.
    const std::pair<uint32_t, const char*> tags[] = {{ps_fontID, "fonttype"},
                                                     {ps_operator, "operatortype"},
                                                     {ps_gstate, "gstatetype"},
                                                     {ps_packedarray, "packedarraytype"},
                                                     {ps_save, "savetype"},
                                                     {ps_file, "filetype"},
                                                     {15, "unknown"}};
    for (const auto& [tag, answer] : tags) {
        Session t;
        auto* object = new IntegerObject(0);
        object->type = tag;
        t.interpreter().operandStack->push(object);
        ASSERT_TRUE(t.run("type ")) << tag;
        EXPECT_EQ(t.stackValues(), answer);
    }
}

TEST(Bind, LeavesNamesInTheProcedure) {
    Session s;
    ASSERT_TRUE(s.run("{add} bind "));
    const auto* proc = static_cast<const ArrayObject*>(s.interpreter().operandStack->top());
    ASSERT_EQ(proc->items().size(), 1u);
    const PostscriptObject* element = proc->items().at(0);
    EXPECT_EQ(element->type, ps_name);
    EXPECT_NE(element, s.interpreter().dictionaries->lookupText("add"));
}

} // namespace
