#include "Tables.h"

#include <string>

using testing_support::Session;

namespace {

// The matrices below are worked by hand. With M = [1 2 3 4 5 6]: det -2, the
// inverse [-2 1 1.5 -0.5 1 -2]; (1 1) goes to (9 12) and back.
const char* const identityText = "[1.000000 0.000000 0.000000 1.000000 0.000000 0.000000 ]";

INSTANTIATE_TEST_SUITE_P(
    ChangeTheTrackedMatrix, Content,
    ::testing::Values(
        ContentCase{"10 20 translate ", "1 0 0 1 10 20 cm\n"},
        ContentCase{"2 3 scale ", "2 0 0 3 0 0 cm\n"},
        // The cosine of the approximate quarter turn prints as 0 at five decimals.
        ContentCase{"90 rotate ", "0 1 -1 0 0 0 cm\n"},
        ContentCase{"30 rotate ", "0.86603 0.5 -0.5 0.86603 0 0 cm\n"},
        ContentCase{"-45.5 rotate ", "0.70091 -0.71325 0.71325 0.70091 0 0 cm\n"},
        ContentCase{"[1 2 3 4 5 6] concat ", "1 2 3 4 5 6 cm\n"},
        // A vanishing linear part never reaches the content; the matrix still changes.
        ContentCase{"0 0 scale [] currentmatrix ", "",
                    "[0.000000 0.000000 0.000000 0.000000 0.000000 0.000000 ]"},
        ContentCase{"[0 0 0 0 5 5] concat ", ""},
        // Each change comes first: T x matrix. Reversed, the translation would double.
        ContentCase{"2 2 scale 10 20 translate [] currentmatrix ",
                    "2 0 0 2 0 0 cm\n1 0 0 1 10 20 cm\n",
                    "[2.000000 0.000000 0.000000 2.000000 20.000000 40.000000 ]"},
        ContentCase{"[1 2 3 4 5 6] concat [1 0 0 1 1 1] concat [] currentmatrix ",
                    "1 2 3 4 5 6 cm\n1 0 0 1 1 1 cm\n",
                    "[1.000000 2.000000 3.000000 4.000000 9.000000 12.000000 ]"},
        ContentCase{"30 rotate [] currentmatrix ", "0.86603 0.5 -0.5 0.86603 0 0 cm\n",
                    "[0.866025 0.500000 -0.500000 0.866025 0.000000 0.000000 ]"},
        // Only an array on top selects the form that stores: the procedure
        // below the numbers stays.
        ContentCase{"{} 1 2 translate ", "1 0 0 1 1 2 cm\n", "[]"},
        ContentCase{"{} 3 rotate pop 2 4 scale ", "0.99863 0.05234 -0.05234 0.99863 0 0 cm\n"
                                                  "2 0 0 4 0 0 cm\n"}),
    testing_support::RowName());

// setmatrix writes the change D = M x inverse(C) and then tracks M exactly.
INSTANTIATE_TEST_SUITE_P(
    SetMatrix, Content,
    ::testing::Values(ContentCase{"[2 0 0 2 0 0] setmatrix ", "2 0 0 2 0 0 cm\n"},
                      ContentCase{"2 2 scale [1 0 0 1 10 20] setmatrix [] currentmatrix ",
                                  "2 0 0 2 0 0 cm\n0.5 0 0 0.5 5 10 cm\n",
                                  "[1.000000 0.000000 0.000000 1.000000 10.000000 20.000000 ]"},
                      ContentCase{"[1 0 0 1 10 20] concat 2 2 scale [1 0 0 1 0 0] setmatrix ",
                                  "1 0 0 1 10 20 cm\n2 0 0 2 0 0 cm\n0.5 0 0 0.5 -5 -10 cm\n"},
                      ContentCase{"[0 1 -1 0 0 0] concat [2 0 0 2 0 0] setmatrix ",
                                  "0 1 -1 0 0 0 cm\n0 -2 2 0 0 0 cm\n"},
                      ContentCase{"[1 2 3 4 5 6] concat [1 0 0 1 0 0] setmatrix ",
                                  "1 2 3 4 5 6 cm\n-2 1 1.5 -0.5 1 -2 cm\n"},
                      // Back to where it was: the change is the identity and is written.
                      ContentCase{"[1 2 3 4 5 6] setmatrix [1 2 3 4 5 6] setmatrix ",
                                  "1 2 3 4 5 6 cm\n1 0 0 1 0 0 cm\n"},
                      // Elements past the sixth are ignored.
                      ContentCase{"[1 0 0 1 7 8 9] setmatrix ", "1 0 0 1 7 8 cm\n"}),
    testing_support::RowName());

// The forms with a matrix operand fill it, push it back and write nothing.
INSTANTIATE_TEST_SUITE_P(
    FillAnArray, Content,
    ::testing::Values(ContentCase{"1 2 [] translate ", "",
                                  "[1.000000 0.000000 0.000000 1.000000 1.000000 2.000000 ]"},
                      ContentCase{"2 3 [9 9 9] scale ", "",
                                  "[2.000000 0.000000 0.000000 3.000000 0.000000 0.000000 ]"},
                      ContentCase{"90 [1 2 3 4 5 6 7 8] rotate ", "",
                                  "[0.000000 1.000000 -1.000000 0.000000 0.000000 0.000000 ]"},
                      ContentCase{"1 2 [] translate pop 3 3 [] scale pop [] currentmatrix ", "",
                                  identityText},
                      ContentCase{"[1 2 3 4 5 6] concat [] currentmatrix ", "1 2 3 4 5 6 cm\n",
                                  "[1.000000 2.000000 3.000000 4.000000 5.000000 6.000000 ]"},
                      // defaultmatrix fills the array where it stands.
                      ContentCase{"10 10 translate 1 [] defaultmatrix ", "1 0 0 1 10 10 cm\n",
                                  "1 [1.000000 0.000000 0.000000 1.000000 0.000000 0.000000 ]"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    TransformPoints, Eval,
    ::testing::Values(Case{"3 4 [2 0 0 4 10 20] transform ", "16.000000 36.000000"},
                      Case{"1 1 [1 2 3 4 5 6] transform ", "9.000000 12.000000"},
                      Case{"9 12 [1 2 3 4 5 6] itransform ", "1.000000 1.000000"},
                      // idtransform applies the inverse without its translation (1 -2).
                      Case{"4 6 [1 2 3 4 5 6] idtransform ", "1.000000 1.000000"},
                      Case{"1 2 [1 0 0 1 10 20] idtransform ", "1.000000 2.000000"},
                      // dtransform adds the translation of an explicit matrix ...
                      Case{"1 2 [1 0 0 1 10 20] dtransform ", "11.000000 22.000000"},
                      Case{"1 1 [1 2 3 4 5 6] dtransform ", "9.000000 12.000000"},
                      // ... and not that of the tracked one.
                      Case{"[1 2 3 4 5 6] concat 1 1 dtransform ", "4.000000 6.000000"},
                      Case{"[1 2 3 4 5 6] concat 1 1 transform ", "9.000000 12.000000"},
                      Case{"[1 2 3 4 5 6] concat 9 12 itransform ", "1.000000 1.000000"},
                      Case{"[1 2 3 4 5 6] concat 4 6 idtransform ", "1.000000 1.000000"},
                      Case{"10 20 translate 1 2 transform ", "11.000000 22.000000"},
                      Case{"10 20 translate 1 2 dtransform ", "1.000000 2.000000"},
                      Case{"2 4 scale 10 20 translate 1 2 itransform ", "-9.500000 -19.500000"},
                      // The array is not given back; reals come out of integers.
                      Case{"0 0 [] transform ", "ERROR: No object at given array index"},
                      Case{"7 1 2 transform ", "7 1.000000 2.000000"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    MatrixFailures, Fails,
    ::testing::Values(FailCase{"(x) concat ", "Illegal param to concat operator", "",
                               "[1 0 0 1 0 0] concat 5 ", "5"},
                      FailCase{"1 2 setmatrix ", "Matrix param expected for setmatrix operator",
                               "1"},
                      // defaultmatrix only looks at the top.
                      FailCase{"1 defaultmatrix ", "Illegal param type to defaultmatrix", "1",
                               "pop [] defaultmatrix ", identityText},
                      FailCase{"5 [1 2 3] concat ", "No object at given array index", "5"},
                      FailCase{"[1 2 3 4 5] setmatrix ", "No object at given array index", ""},
                      FailCase{"[1 2 3 4 5 (x)] concat ", "Unsupported number type", ""},
                      FailCase{"5 1 (a) translate ", "Unsupported number type", "5"},
                      FailCase{"5 (a) 1 [] scale ", "Unsupported number type", "5"},
                      FailCase{"5 (a) rotate ", "Unsupported number type", "5"},
                      FailCase{"1 translate ", "pop - expected item on stack", ""},
                      // Only an array selects the form with a matrix; a string is a number operand.
                      FailCase{"5 1 2 (s) rotate ", "Unsupported number type", "5 1 2"},
                      FailCase{"5 1 2 (s) transform ", "Unsupported number type", "5 1"},
                      FailCase{"5 1 2 [1 2] transform ", "No object at given array index", "5"},
                      FailCase{"5 1 (y) itransform ", "Unsupported number type", "5"},
                      FailCase{"5 currentmatrix ", "Expected ps_array at currentmatrix", ""}),
    testing_support::RowName());

TEST(MatrixOperators, DefaultMatrixIsThePages) {
    Session s;
    const double page[6] = {0.5, 0, 0, -0.5, 0, 792};
    s.pdf.startPage(page);
    ASSERT_TRUE(s.run("[] defaultmatrix 1 2 transform ")) << s.error();
    EXPECT_EQ(s.stackValues(),
              "[0.500000 0.000000 0.000000 -0.500000 0.000000 792.000000 ] 0.500000 791.000000");
    EXPECT_EQ(s.pdf.contentText.view(), "");
    // setmatrix starts from the page's matrix, which was never written.
    ASSERT_TRUE(s.run("clear [1 0 0 1 0 0] setmatrix ")) << s.error();
    EXPECT_EQ(s.pdf.contentText.view(), "2 0 0 -2 0 1584 cm\n");
}

} // namespace
