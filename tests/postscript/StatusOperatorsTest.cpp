// Matrices without a graphics state, status answers, resources, definefont
// and getdoubles.
#include "Tables.h"

#include "core/DictionarySet.h"

using testing_support::Session;

INSTANTIATE_TEST_SUITE_P(
    Matrices, Eval,
    ::testing::Values(
        Case{"matrix ", "[1.000000 0.000000 0.000000 1.000000 0.000000 0.000000 ]"},
        Case{"matrix length matrix 0 get ", "6 1.000000"}, Case{"matrix matrix eq ", "true"},
        Case{"matrix dup 0 5 put matrix ", "[5 0.000000 0.000000 1.000000 0.000000 0.000000 ] "
                                           "[1.000000 0.000000 0.000000 1.000000 0.000000 "
                                           "0.000000 ]"},
        // A short array grows to six; elements beyond the sixth stay.
        Case{"0 array identmatrix length ", "6"},
        Case{"[9 9] identmatrix ", "[1.000000 0.000000 0.000000 1.000000 0.000000 0.000000 ]"},
        Case{"[9 9 9 9 9 9 7 8] identmatrix ",
             "[1.000000 0.000000 0.000000 1.000000 0.000000 0.000000 7 8 ]"},
        Case{"[2 0 0 3 10 20] [0 1 -1 0 5 6] matrix concatmatrix ",
             "[0.000000 2.000000 -3.000000 0.000000 -15.000000 16.000000 ]"},
        Case{"[1 2 3 4 5 6] [7 8 9 10 11 12] matrix concatmatrix ",
             "[25.000000 28.000000 57.000000 64.000000 100.000000 112.000000 ]"},
        // The target is emptied first: ten elements become six, and it is
        // the same object that comes back.
        Case{"10 array dup [1 0 0 1 0 0] matrix 3 -1 roll concatmatrix dup length 3 1 roll eq ",
             "6 true"},
        // The numbers are 32-bit floats on their way through.
        Case{"[0.1 0 0 1 0 0] matrix matrix concatmatrix 0 get 1e9 mul ", "100000001.490116"},
        Case{"[1 0 0 1 0 0] [1 0 0 1 0 0] 3 concatmatrix ",
             "ERROR: Illegal param type to concatmatrix"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    StatusAndResources, Eval,
    ::testing::Values(
        Case{"vmstatus ", "1 100000 100000000"},
        Case{"statusdict /product get ",
             "(marlowfen postscript interpreter - all rights reservered)"},
        Case{"statusdict /processcolors get statusdict length ", "3 2"},
        // A new dictionary at every call: a definition in one is not in the next.
        Case{"statusdict dup /x 1 put length statusdict length ", "3 2"},
        Case{"/Font /Foo resourcestatus ", "0 0 true"}, Case{"1 2 resourcestatus ", "0 0 true"},
        Case{"/Foo /Font findresource ", "0.000000"},
        Case{"product ", "(foliograph ps interpreter)"}, Case{"/F 2 dict definefont length ", "0"},
        Case{"/F 1 dict dup /x 5 put definefont pop FontDirectory /F get /x get ", "5"},
        Case{"(Str) 1 dict definefont pop FontDirectory /Str known ", "true"},
        Case{"/F 1 definefont ", "ERROR: Expected ps_dictionary at popDictionaryObject"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    StatusOperators, Fails,
    ::testing::Values(
        FailCase{"5 identmatrix ", "Illegal param type to identmatrix", ""},
        FailCase{"[1 2] matrix matrix concatmatrix ", "No object at given array index", ""},
        // Position 5 is read first, so the short array fails before the
        // non-number at position 0 is seen; the target keeps its elements.
        FailCase{"/t [7] def [(x) 0 0 1 0 0] matrix t concatmatrix ", "Unsupported number type", "",
                 "t length ", "1"},
        FailCase{"matrix [1 0 0 1 0] matrix concatmatrix ", "No object at given array index", ""},
        FailCase{"(x) matrix matrix concatmatrix ", "Illegal param type to concatmatrix", ""},
        FailCase{"1 resourcestatus ", "resourcestatus invalid args", "1"},
        FailCase{"1 dict definefont ", "definefont invalid args", "-dict-"},
        FailCase{"definefont ", "definefont invalid args", ""}),
    testing_support::RowName());

// getdoubles carries the stack out top first, leaving it as it was; anything
// but a number is 0.
TEST(GetDoubles, HandsOutTheStackTopFirst) {
    testing_support::Handle h;
    uint32_t count = 99;
    const double* values = PSExecuteReturnDoubles(h.h, "1 (a) 2.5 getdoubles ", &count);
    ASSERT_NE(values, nullptr) << PSGetErrorStr(h.h);
    ASSERT_EQ(count, 3u);
    EXPECT_EQ(values[0], 2.5);
    EXPECT_EQ(values[1], 0.0);
    EXPECT_EQ(values[2], 1.0);
    values = PSExecuteReturnDoubles(h.h, "-7 getdoubles ", &count);
    ASSERT_NE(values, nullptr);
    ASSERT_EQ(count, 4u) << "the former operands stayed";
    EXPECT_EQ(values[0], -7.0);
    EXPECT_EQ(values[3], 1.0);
    values = PSExecuteReturnDoubles(h.h, "clear getdoubles ", &count);
    ASSERT_NE(values, nullptr);
    EXPECT_EQ(count, 0u);
}

// definefont defines in the font directory's own body, which findfont and
// FontDirectory answer from.
TEST(Definefont, DefinesInTheFontDirectory) {
    Session s;
    ASSERT_TRUE(s.run("/Mine 3 dict definefont pop ")) << s.error();
    EXPECT_NE(s.interpreter().dictionaries->fontDirectory->dictionaryData()->find("Mine"), nullptr);
    EXPECT_EQ(s.stackValues(), "");
}
