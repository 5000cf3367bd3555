#include "Tables.h"

#include "core/StringObject.h"
#include "pdf/GraphicsOperators.h"
#include "pdf/Postscript2Pdf.h"

#include <string>

using testing_support::Session;

namespace {

INSTANTIATE_TEST_SUITE_P(
    Construction, Content,
    ::testing::Values(
        // Only the last of a run of movetos is written, and only when a line needs it.
        ContentCase{"10 20 moveto 30 40 moveto 50 60 lineto ", "30 40 m\n50 60 l\n"},
        ContentCase{"10 20 moveto fill 30 40 lineto ", "f\n10 20 m\n30 40 l\n"},
        ContentCase{"1 1 moveto stroke eofill 2 2 lineto ", "S f*\n1 1 m\n2 2 l\n"},
        ContentCase{"5 5 lineto ", "5 5 l\n"},
        ContentCase{"10 10 moveto 5 -5 rmoveto 1 1 rlineto ", "15 5 m\n16 6 l\n"},
        ContentCase{"1 2 moveto 3 4 rlineto 1.5 0 rlineto currentpoint ", "1 2 m\n4 6 l\n5.5 6 l\n",
                    "5.500000 6.000000"},
        ContentCase{"0 0 moveto 1 2 3 4 5 6 curveto currentpoint ", "0 0 m\n1 2 3 4 5 6 c\n",
                    "5.000000 6.000000"},
        ContentCase{"10 20 moveto 1 2 3 4 5 6 rcurveto currentpoint ",
                    "10 20 m\n11 22 13 24 15 26 c\n", "15.000000 26.000000"},
        // closepath leaves the point where the last segment ended and flushes nothing.
        ContentCase{"0 0 moveto 10 0 lineto 10 10 lineto closepath currentpoint ",
                    "0 0 m\n10 0 l\n10 10 l\nh ", "10.000000 10.000000"},
        ContentCase{"5 5 moveto closepath 6 6 lineto ", "h 5 5 m\n6 6 l\n"},
        ContentCase{"0 0 moveto 1 1 lineto newpath 2 2 moveto 3 3 lineto ",
                    "0 0 m\n1 1 l\n2 2 m\n3 3 l\n"},
        ContentCase{"initclip newpath ", ""}, ContentCase{"currentpoint ", "", "0.000000 0.000000"},
        ContentCase{"0.123456 1234.56 moveto 99999.9 -0.000001 lineto -3 2147483647 lineto ",
                    "0.12346 1234.6 m\n100000 0 l\n-3 2147483647 l\n"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Rectangles, Content,
    ::testing::Values(
        ContentCase{"1 2 3 4 rectfill ", "q 1 2 3 4 re f Q\n"},
        ContentCase{"0.5 -1.25 100.5 1e4 rectstroke ", "q 0.5 -1.25 100.5 10000 re S Q\n"},
        // The array form takes all four numbers from every fourth element.
        ContentCase{"[1 2 3 4] rectfill ", "q 1 1 1 1 re f Q\n"},
        ContentCase{"[1 (a) (b) (c) 5 /x null true] rectstroke ",
                    "q 1 1 1 1 re S Q\nq 5 5 5 5 re S Q\n"},
        ContentCase{"{1 2 3 4} rectfill ", "q 1 1 1 1 re f Q\n"},
        ContentCase{"[] rectfill [] rectstroke [] rectclip currentpoint ", "", "0.000000 0.000000"},
        ContentCase{"1 2 3 4 rectclip currentpoint ", "1 2 3 4 re W n\n", "1.000000 2.000000"},
        ContentCase{"[7 0 0 0 9.5 0 0 0] rectclip currentpoint ",
                    "7 7 7 7 re W n\n9.5 9.5 9.5 9.5 re W n\n", "9.500000 9.500000"},
        // Painted rectangles neither move the point nor flush the moveto.
        ContentCase{"5 6 moveto 1 2 3 4 rectfill [8 0 0 0] rectstroke currentpoint 7 8 lineto ",
                    "q 1 2 3 4 re f Q\nq 8 8 8 8 re S Q\n5 6 m\n7 8 l\n", "5.000000 6.000000"},
        // The point a rectclip leaves is where a later moveto is relative to.
        ContentCase{"1 2 moveto 10 20 3 4 rectclip 1 1 rmoveto 0 0 lineto ",
                    "10 20 3 4 re W n\n11 21 m\n0 0 l\n"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    ClipPlacement, Content,
    ::testing::Values(
        ContentCase{"0 0 moveto 10 0 lineto clip ", "0 0 m\n10 0 l\nW n "},
        ContentCase{"0 0 moveto 10 0 lineto eoclip ", "0 0 m\n10 0 l\nW* n "},
        ContentCase{"0 0 moveto 10 0 lineto clippath ", "0 0 m\n10 0 l\nW n "},
        ContentCase{"clip eoclip ", "W n W* n "},
        // A "q" but no segment token anywhere: appended.
        ContentCase{"1 2 3 4 rectfill clip ", "q 1 2 3 4 re f Q\nW n "},
        // The segment token comes before any "q": appended.
        ContentCase{"0 0 moveto 1 2 3 4 rectfill 10 0 lineto clip ",
                    "q 1 2 3 4 re f Q\n0 0 m\n10 0 l\nW n "},
        // "re" stops no scan: a path of rectangles alone never moves a clip.
        ContentCase{"1 2 3 4 rectclip 1 2 3 4 rectfill clip ",
                    "1 2 3 4 re W n\nq 1 2 3 4 re f Q\nW n "},
        // The rest move in front of the "q" of a painted rectangle, to the start of
        // the line after the last segment. The segment is written by an earlier
        // operator of the program, and a call hands out its content: split between
        // the two, the clip's call sees no segment and appends. So these rows run
        // in one buffer only.
        ContentCase{"0 0 moveto 10 0 lineto 1 2 3 4 rectfill clip ",
                    "0 0 m\n10 0 l\nW n q 1 2 3 4 re f Q\n", "", false},
        ContentCase{"0 0 moveto 1 1 2 2 3 3 curveto 1 2 3 4 rectstroke eoclip ",
                    "0 0 m\n1 1 2 2 3 3 c\nW* n q 1 2 3 4 re S Q\n", "", false},
        // Neither "h", "m", "W", "n" nor "re" stops the scan.
        ContentCase{"0 0 moveto 5 5 lineto closepath 1 2 3 4 rectclip 1 1 1 1 rectfill "
                    "6 6 1 1 rectfill clippath ",
                    "0 0 m\n5 5 l\nW n h 1 2 3 4 re W n\nq 1 1 1 1 re f Q\nq 6 6 1 1 re f Q\n", "",
                    false}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Paths, Fails,
    ::testing::Values(FailCase{"9 (a) lineto ", "Unsupported number type", "9"},
                      FailCase{"9 (a) 1 lineto ", "Unsupported number type", "9"},
                      FailCase{"9 1 (a) moveto ", "Unsupported number type", "9 1"},
                      FailCase{"9 /a 2 rmoveto ", "Unsupported number type", "9"},
                      FailCase{"9 1 true rlineto ", "Unsupported number type", "9 1"},
                      FailCase{"9 1 2 3 4 (5) 6 curveto ", "Unsupported number type", "9 1 2 3 4"},
                      FailCase{"9 1 2 3 4 5 null rcurveto ", "Unsupported number type",
                               "9 1 2 3 4 5"},
                      FailCase{"lineto ", "pop - expected item on stack", ""},
                      FailCase{"1 moveto ", "pop - expected item on stack", ""},
                      FailCase{"1 2 3 4 5 curveto ", "pop - expected item on stack", ""},
                      FailCase{"1 rlineto ", "pop - expected item on stack", ""}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Rectangles, Fails,
    ::testing::Values(
        FailCase{"9 [1 2 3] rectfill ", "Array must have a multiple of 4 elements", "9"},
        FailCase{"9 [1 2 3 4 5] rectclip ", "Array must have a multiple of 4 elements", "9"},
        // The matrix operand of rectstroke is not supported.
        FailCase{"9 1 2 3 4 [1 0 0 1 0 0] rectstroke ", "Array must have a multiple of 4 elements",
                 "9 1 2 3 4"},
        FailCase{"9 (a) rectclip ", "Unsupported parameter type for rectclip", "9"},
        FailCase{"9 1 2 3 <0102> rectfill ", "Unsupported parameter type for rectfill", "9 1 2 3"},
        FailCase{"9 /h rectstroke ", "Unsupported parameter type for rectstroke", "9"},
        FailCase{"9 1 2 (3) 4 rectstroke ", "Unsupported number type", "9 1 2"},
        FailCase{"9 [(a) 0 0 0] rectfill ", "Unsupported number type", "9"},
        FailCase{"2 3 4 rectclip ", "pop - expected item on stack", ""},
        FailCase{"rectfill ", "pop - expected item on stack", ""}),
    testing_support::RowName());

// A failing program: its message, the content written before the failure, the
// operand stack it leaves, and what a next buffer then writes and leaves.
struct AfterFailure {
    const char* program;
    const char* error;
    const char* content;
    const char* stack;
    const char* next;
    const char* nextContent;
    const char* nextStack;
};

void PrintTo(const AfterFailure& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

class LeavesState : public ::testing::TestWithParam<AfterFailure> {};

TEST_P(LeavesState, AsTheFailureLeftIt) {
    const AfterFailure& row = GetParam();
    Session s;
    ASSERT_FALSE(s.run(row.program));
    EXPECT_EQ(s.error(), row.error);
    EXPECT_EQ(s.pdf.contentText.view(), row.content);
    EXPECT_EQ(s.stackValues(), row.stack);
    ASSERT_TRUE(s.run(row.next)) << s.error();
    EXPECT_EQ(s.pdf.contentText.view(), row.nextContent);
    EXPECT_EQ(s.stackValues(), row.nextStack);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, LeavesState,
    ::testing::Values(
        // lineto flushes before it pops, rlineto after.
        AfterFailure{"1 2 moveto (a) 3 lineto ", "Unsupported number type", "1 2 m\n", "",
                     "5 6 lineto ", "5 6 l\n", ""},
        AfterFailure{"1 2 moveto (a) 3 rlineto ", "Unsupported number type", "", "", "1 1 rlineto ",
                     "1 2 m\n2 3 l\n", ""},
        AfterFailure{"1 2 moveto 7 (a) 5 6 7 8 curveto ", "Unsupported number type", "1 2 m\n", "7",
                     "currentpoint ", "", "7 1.000000 2.000000"},
        AfterFailure{"1 2 moveto 7 1 2 3 4 5 (a) rcurveto ", "Unsupported number type", "1 2 m\n",
                     "7 1 2 3 4 5", "currentpoint ", "", "7 1 2 3 4 5 1.000000 2.000000"},
        // A failing moveto keeps the former point, still pending.
        AfterFailure{"3 4 moveto 9 (a) moveto ", "Unsupported number type", "", "9",
                     "currentpoint 1 1 lineto ", "3 4 m\n1 1 l\n", "9 3.000000 4.000000"},
        AfterFailure{"3 4 moveto 1 (a) rmoveto ", "Unsupported number type", "", "1",
                     "currentpoint ", "", "1 3.000000 4.000000"},
        // Rectangles read before the failing one are written.
        AfterFailure{"[1 0 0 0 (a) 0 0 0] rectfill ", "Unsupported number type",
                     "q 1 1 1 1 re f Q\n", "", "", "", ""},
        // Arcs flush before they pop; a failing arcto pushes nothing.
        AfterFailure{"1 2 moveto 0 0 (r) 0 90 arc ", "Unsupported number type", "1 2 m\n", "0 0",
                     "3 4 lineto ", "3 4 l\n", "0 0"},
        AfterFailure{"1 2 moveto 9 1 2 3 4 (r) arcto ", "Unsupported number type", "1 2 m\n",
                     "9 1 2 3 4", "currentpoint ", "", "9 1 2 3 4 1.000000 2.000000"},
        AfterFailure{"[5 0 0 0 (a) 0 0 0] rectclip ", "Unsupported number type", "5 5 5 5 re W n\n",
                     "", "currentpoint ", "", "5.000000 5.000000"}),
    testing_support::RowName());

// text emit -   appends the string's bytes to the content, as any operator's
// template would have.
KEL_GRAPHICS_OPERATOR(EmitOperator);

void EmitOperator::execute(Interpreter& interpreter) {
    Popped<StringObject> text = interpreter.operandStack->pop<StringObject>("emit");
    pdf->contentText.append(text->text());
}

// A literal string of the bytes, each by its octal escape.
std::string escapedString(std::string_view bytes) {
    std::string text = "(";
    for (unsigned char c : bytes) {
        const char escape[] = {'\\', static_cast<char>('0' + (c >> 6)),
                               static_cast<char>('0' + ((c >> 3) & 7)),
                               static_cast<char>('0' + (c & 7))};
        text.append(escape, sizeof escape);
    }
    return text + ")";
}

// Content that another operator wrote, a clip operator, and the content after it.
struct Placement {
    std::string_view before;
    const char* op;
    std::string_view after;
};

void PrintTo(const Placement& row, std::ostream* os) {
    *os << ::testing::PrintToString(std::string(row.before)) << ' ' << row.op;
}

class ClipScan : public ::testing::TestWithParam<Placement> {};

TEST_P(ClipScan, PlacesTheClip) {
    const Placement& row = GetParam();
    Session s;
    s.interpreter().registerOperator(new EmitOperator(s.interpreter().intern("emit"), s.pdf));
    ASSERT_TRUE(s.run(escapedString(row.before) + " emit " + row.op + " ")) << s.error();
    EXPECT_EQ(s.pdf.contentText.view(), row.after);
}

using namespace std::string_view_literals;

INSTANTIATE_TEST_SUITE_P(
    Tokens, ClipScan,
    ::testing::Values(
        // What gsave writes after a path.
        Placement{"0 0 m\n10 0 l\nq ", "clip", "0 0 m\n10 0 l\nW n q "},
        Placement{"0 0 m\n10 0 l\nq ", "eoclip", "0 0 m\n10 0 l\nW* n q "},
        Placement{"0 0 m\n10 0 l\nq ", "clippath", "0 0 m\n10 0 l\nW n q "},
        Placement{"0 0 m\n10 0 l\nq 1 0 0 RG q\n", "clip", "0 0 m\n10 0 l\nW n q 1 0 0 RG q\n"},
        Placement{"1 2 3 4 5 6 c\nq ", "clip", "1 2 3 4 5 6 c\nW n q "},
        Placement{"1 2 3 4 v\nq ", "clip", "1 2 3 4 v\nW n q "},
        Placement{"1 2 3 4 y\nq ", "clip", "1 2 3 4 y\nW n q "},
        // Only the last segment counts.
        Placement{"0 0 l\nq 1 1 l\n", "clip", "0 0 l\nq 1 1 l\nW n "},
        Placement{"q 0 0 l\n1 1 l\nq ", "clip", "q 0 0 l\n1 1 l\nW n q "},
        Placement{"1 1 l\n0 0 m\nh 1 2 3 4 re\nW n q ", "clip",
                  "1 1 l\nW n 0 0 m\nh 1 2 3 4 re\nW n q "},
        Placement{"0 0 m\nq ", "clip", "0 0 m\nq W n "},
        // Tokens are whole: "ll", "Q", "qq" and "q0" are none of them.
        Placement{"0 0 ll\nq ", "clip", "0 0 ll\nq W n "},
        Placement{"0 0 l\nQ qq q0 ", "clip", "0 0 l\nQ qq q0 W n "},
        // The clip goes behind the one character after the token, whatever it is.
        Placement{"0 0 l q ", "clip", "0 0 l W n q "},
        Placement{"0 0 l\r\nq ", "clip", "0 0 l\rW n \nq "},
        Placement{"l\r\r q\r", "clip", "l\rW n \r q\r"},
        // Image bytes are scanned like text: NUL separates nothing, a blank does.
        Placement{"0 0 l\nBI ID \0l\0 EI q "sv, "clip", "0 0 l\nW n BI ID \0l\0 EI q "sv},
        Placement{"0 0 l\nBI ID \xFF l \xFE EI q ", "clip", "0 0 l\nBI ID \xFF l W n \xFE EI q "},
        Placement{"", "clip", "W n "}, Placement{" \r\n", "eoclip", " \r\nW* n "}),
    testing_support::RowName());

} // namespace
