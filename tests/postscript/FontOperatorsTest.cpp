#include "Tables.h"

#include <string>

using testing_support::Session;

// The Helvetica of a bare interpreter, put into the directory by hand.
#define KEL_HELVETICA                                                                              \
    "FontDirectory /Helvetica 4 dict dup /FontName /Helvetica put "                                \
    "dup /FontMatrix [0.001 0 0 0.001 0 0] put put "

namespace {

INSTANTIATE_TEST_SUITE_P(
    Fonts, Eval,
    ::testing::Values(
        Case{KEL_HELVETICA "/Helvetica findfont /FontName get ", "Helvetica"},
        // Any unknown key is Helvetica, the stored one and not a copy.
        Case{KEL_HELVETICA "/Arial findfont /Mark 1 put /Helvetica findfont /Mark get ", "1"},
        Case{KEL_HELVETICA "/Arial findfont FontDirectory /Helvetica get eq ", "true"},
        // The key's text: a name's, a string's up to its NUL, else describe().
        Case{KEL_HELVETICA
             "FontDirectory begin (Times) 5 def end /Times findfont (Times) findfont ",
             "5 5"},
        Case{KEL_HELVETICA "FontDirectory /Times 5 put (Times\\000Roman) findfont ", "5"},
        Case{KEL_HELVETICA "FontDirectory begin 7 (seven) def end 7 findfont ", "(seven)"},
        Case{KEL_HELVETICA "FontDirectory begin 7 (seven) def end 7.0 findfont /FontName get ",
             "Helvetica"},
        Case{KEL_HELVETICA "FontDirectory begin [1 2 3] (three) def end [4 5 6] findfont ",
             "(three)"},
        Case{"FontDirectory /Odd 42 put /Odd findfont ", "42"},
        // scalefont changes the stored matrix and leaves the font where it was.
        Case{KEL_HELVETICA "/Helvetica findfont 12 scalefont /FontMatrix get ",
             "[0.012000 0.000000 0.000000 0.012000 0.000000 0.000000 ]"},
        Case{KEL_HELVETICA "/Helvetica findfont 12 scalefont pop /Helvetica findfont 2 scalefont "
                           "/FontMatrix get ",
             "[0.024000 0.000000 0.000000 0.024000 0.000000 0.000000 ]"},
        Case{KEL_HELVETICA "/Helvetica findfont 12 scalefont FontDirectory /Helvetica get eq ",
             "true"},
        // The whole product: the translation scales too.
        Case{"1 dict dup /FontMatrix [1 2 3 4 5 6] put 0.5 scalefont /FontMatrix get ",
             "[0.500000 1.000000 1.500000 2.000000 2.500000 3.000000 ]"},
        Case{"1 dict dup /FontMatrix [1 0 0 1 0 0 9] put 3 scalefont /FontMatrix get length ", "6"},
        // currentfont finds the current name, or makes and stores an empty font.
        Case{KEL_HELVETICA "currentfont /FontName get ", "Helvetica"},
        Case{"FontDirectory /Helvetica undef currentfont length FontDirectory /Helvetica known ",
             "0 true"},
        Case{"1 dict dup /FontMatrix [0.01 0 0 0.01 0 0] put setfont currentfont length "
             "FontDirectory () known ",
             "0 true"},
        Case{"1 dict dup /FontMatrix [0.01 0 0 0.01 0 0] put setfont currentfont /k 1 put "
             "currentfont /k get ",
             "1"},
        // There is one directory.
        Case{"FontDirectory GlobalFontDirectory eq ", "true"},
        Case{"FontDirectory /k 1 put GlobalFontDirectory /k get ", "1"},
        // Text is taken and dropped.
        Case{"1 (abc) show ", "1"}, Case{"(abc) stringwidth ", "10.000000 100.000000"},
        Case{"/abc stringwidth 7 stringwidth ", "10.000000 100.000000 10.000000 100.000000"}),
    testing_support::RowName());

// No font or text operator reaches the content.
INSTANTIATE_TEST_SUITE_P(Fonts, Content,
                         ::testing::Values(ContentCase{
                             KEL_HELVETICA
                             "/Helvetica findfont 12 scalefont setfont (Hello) show (Hello) "
                             "stringwidth currentfont FontDirectory GlobalFontDirectory ",
                             "", "10.000000 100.000000 -dict- -dict- -dict-"}),
                         testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    FontFailures, Fails,
    ::testing::Values(
        FailCase{"FontDirectory /Helvetica undef /Arial findfont ", "could not find helvetica", "",
                 "FontDirectory /Helvetica 1 dict put /Arial findfont length ", "0"},
        FailCase{"findfont ", "pop - expected item on stack", ""},
        FailCase{"1 dict 2 scalefont ", "expected fontmatrix array", "-dict-",
                 "dup /FontMatrix [1 0 0 1 0 0] put 2 scalefont /FontMatrix get ",
                 "[2.000000 0.000000 0.000000 2.000000 0.000000 0.000000 ]"},
        FailCase{"1 dict dup /FontMatrix 5 put 2 scalefont ", "expected fontmatrix array",
                 "-dict-"},
        FailCase{"1 dict dup /FontMatrix [1 0 0 1 0] put 2 scalefont ",
                 "No object at given array index", "-dict-", "/FontMatrix get ", "[1 0 0 1 0 ]"},
        FailCase{"(font) 2 scalefont ", "expected font dictionary", "(font)"},
        FailCase{"2 scalefont ", "expected font dictionary", ""},
        FailCase{"1 dict (x) scalefont ", "Unsupported number type", "-dict-"},
        FailCase{"scalefont ", "pop - expected item on stack", ""},
        FailCase{"(font) setfont ", "Expected ps_dictionary at popDictionaryObject", ""},
        FailCase{"setfont ", "Expected ps_dictionary at popDictionaryObject", ""},
        FailCase{"1 dict setfont ", "expected fontmatrix array", ""},
        FailCase{"1 dict dup /FontMatrix [1 0 0] put setfont ", "No object at given array index",
                 ""},
        FailCase{"/abc show ", "Expected ps_string at popStringObject", "", "(abc) show 1 ", "1"},
        FailCase{"show ", "Expected ps_string at popStringObject", ""},
        FailCase{"stringwidth ", "pop - expected item on stack", ""}),
    testing_support::RowName());

// setfont keeps a name and a size: the size is d + b of the matrix in
// thousandths, the name only a name.
struct SetfontCase {
    const char* program;
    const char* fontName;
    double fontSize;
};

void PrintTo(const SetfontCase& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

class Setfont : public ::testing::TestWithParam<SetfontCase> {};

TEST_P(Setfont, KeepsNameAndSize) {
    Session s;
    ASSERT_TRUE(s.run(GetParam().program)) << s.error();
    EXPECT_EQ(s.stackValues(), "");
    EXPECT_EQ(s.pdf.currentState().fontName, GetParam().fontName);
    EXPECT_DOUBLE_EQ(s.pdf.currentState().fontSize, GetParam().fontSize);
}

INSTANTIATE_TEST_SUITE_P(
    NameAndSize, Setfont,
    ::testing::Values(
        SetfontCase{KEL_HELVETICA "/Helvetica findfont 12 scalefont setfont ", "Helvetica", 12},
        SetfontCase{KEL_HELVETICA "/Helvetica findfont 12 scalefont pop /Helvetica findfont 2 "
                                  "scalefont setfont ",
                    "Helvetica", 24},
        // A sheared b adds into the size; a, c and the translation don't count.
        SetfontCase{"2 dict dup /FontName /Sheared put dup /FontMatrix [5 0.01 7 0.03 9 9] put "
                    "setfont ",
                    "Sheared", 40},
        SetfontCase{"1 dict dup /FontMatrix [0.001 0 0 0.001 0 0] put setfont ", "", 1},
        SetfontCase{"2 dict dup /FontName (Named) put dup /FontMatrix [0 0 0 0.002 0 0] put "
                    "setfont ",
                    "", 2}),
    testing_support::RowName());

// A failing setfont leaves the font of before.
TEST(FontOperators, FailingSetfontKeepsTheFont) {
    Session s;
    ASSERT_TRUE(s.run("2 dict dup /FontName /Kept put dup /FontMatrix [0 0 0 0.01 0 0] put "
                      "setfont "))
        << s.error();
    for (const char* program : {"1 dict setfont ", "1 dict dup /FontMatrix [0 0 0] put setfont ",
                                "2 dict dup /FontName /Lost put dup /FontMatrix 1 put setfont "}) {
        EXPECT_FALSE(s.run(program)) << program;
        EXPECT_EQ(s.pdf.currentState().fontName, "Kept") << program;
        EXPECT_DOUBLE_EQ(s.pdf.currentState().fontSize, 10) << program;
    }
}

} // namespace
