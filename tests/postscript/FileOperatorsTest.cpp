#include "Tables.h"

#include "core/DictionarySet.h"
#include "core/FileObject.h"
#include "core/Parser.h"
#include "core/ValueObjects.h"
#include "operators/FileOperators.h"

#include <string>
#include <string_view>

using namespace std::string_view_literals;
using testing_support::render;
using testing_support::Session;

namespace {

INSTANTIATE_TEST_SUITE_P(
    CurrentfileAndRead, Eval,
    ::testing::Values(Case{"currentfile type currentfile xcheck ", "filetype true"},
                      // read takes the delimiter that ended its own name.
                      Case{"currentfile read Z ", "32 true (Z)"},
                      // Bytes come out signed; each file reads at the one cursor.
                      Case{"{ currentfile dup read pop exch read } exec \310A ", "-56 65 true"},
                      // currentfile eats one white byte behind the token before it, and no more.
                      Case{"{ currentfile 9 string readline } exec\nab\n", "(ab) true"},
                      Case{"{ currentfile 9 string readline } exec\tab\n", "(ab) true"},
                      Case{"{ currentfile 9 string readline } exec \tab\n", "(\tab) true"},
                      Case{"{ currentfile 9 string readline } exec/ab\n", "(/ab) true"},
                      Case{"{ currentfile currentfile pop 9 string readline } exec \fab\n",
                           "(ab) true"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Readstring, Eval,
    ::testing::Values(
        // A read that finishes in one call drops every blank, tab and line end of its data.
        Case{"currentfile 3 string readstring a b c d ", "(abc) true (d)"},
        Case{"currentfile 3 string readstring \r\n\ta\nb\rc ", "(abc) true"},
        // Form feeds are data.
        Case{"currentfile 3 string readstring \fa\fy ", "(\fa\f) true (y)"},
        Case{"currentfile 0 string readstring abc ", "() true (abc)"},
        // The boolean says whether the buffer holds more, not whether the read ended early.
        Case{"{ currentfile 3 string readstring } exec abc", "(abc) false"},
        Case{"{ currentfile 0 string readstring } exec ", "() false"},
        // The operand is not written; the data is in the new string only.
        Case{"/s 3 string def currentfile s readstring abc pop pop s length s 0 get ", "3 0"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Readhexstring, Eval,
    ::testing::Values(Case{"currentfile 2 string readhexstring 4 1 4\n2", "(AB) false"},
                      Case{"currentfile 2 string readhexstring 4a4B ", "(JK) true"},
                      Case{"currentfile 1 string readhexstring g4z1 ", "(A) true"},
                      // Exactly two digits a byte: the rest is for the scanner.
                      Case{"currentfile 1 string readhexstring 414243 ", "(A) true 4243"},
                      Case{"currentfile 0 string readhexstring 41 ", "() true 41"},
                      Case{"currentfile 2 string readhexstring 7f80 exch {} forall ",
                           "true 127 -128"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Readline, Eval,
    ::testing::Values(
        // The stop byte stays unread: the next read finds an empty line at once.
        Case{"{ currentfile dup 9 string readline 3 2 roll 9 string readline } exec\nab\ncd ",
             "(ab) true () true (cd)"},
        Case{"{ currentfile 9 string readline } exec\na\ry\n", "(a) true (y)"},
        // A held operand gets the line too; the result is a new string.
        Case{"/s (x) def { currentfile s readline } exec\nab\n pop s ", "(ab) (xab)"},
        Case{"{ (x) dup currentfile exch readline } exec\nab\n", "(x) (ab) true"},
        // The operand's length plays no part.
        Case{"{ currentfile 1 string readline } exec\nab\n", "(ab) true"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Filter, Eval,
    ::testing::Values(Case{"(abc) /ASCIIHexDecode filter type ", "filetype"},
                      Case{"(abc) 0 () /SubFileDecode filter type ", "filetype"},
                      // The base string comes whole, whatever the length asked.
                      Case{"(abcdef) /A filter 2 string readstring ", "(abcdef) true"},
                      Case{"(a\\000b) /A filter 0 string readstring pop length ", "3"},
                      // A procedure makes the source; a literal array runs as well.
                      Case{"{ (abc) } /A filter 0 string readstring ", "(abc) true"},
                      Case{"[ (abc) ] /A filter 0 string readstring ", "(abc) true"},
                      // A held operand gets the text appended; the result is still a new string.
                      Case{"/s (12) def (abc) /A filter s readstring pop s ", "(abc) (12abc)"},
                      Case{"/s (ab) def s /A filter s readstring pop s ", "(ab) (abab)"},
                      // Held is said of the object: a copy that shares the body gets nothing.
                      Case{"(12) dup (abc) /A filter exch readstring ", "(12) (abc) true"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Files, Fails,
    ::testing::Values(
        FailCase{"7 (abc) read ", "Expected ps_file at read operator", "7"},
        FailCase{"7 (abc) /A filter read ", "Read not supported on this file type", "7"},
        FailCase{"7 { currentfile read } exec ",
                 "Progam attempting to read char when insufficient current file is loaded", "7"},
        // The rest of the procedure waits for the next call.
        FailCase{"7 { currentfile read 8 } exec ",
                 "Progam attempting to read char when insufficient current file is loaded", "7",
                 "9 ", "7 8 9"},
        FailCase{"7 (abc) 5 filter ", "Expected ps_name at filter operator", "7 (abc)"},
        FailCase{"7 5 /A filter ", "SubFileDecode expected string or proc param", "7"},
        FailCase{"7 (abc) 1 () /SubFileDecode filter ", "Unsupported SubFileDecode EOD params",
                 "7 (abc)"},
        FailCase{"7 (abc) 0 (x) /SubFileDecode filter ", "Unsupported SubFileDecode EOD params",
                 "7 (abc)"},
        FailCase{"7 (abc) 0 5 /SubFileDecode filter ",
                 "Expected ps_string at SubFileDecode EODString param", "7 (abc) 0"},
        FailCase{"7 (abc) (x) () /SubFileDecode filter ",
                 "Expected ps_integer at SubFileDecode EODCount param", "7 (abc)"},
        // Over a procedure the filter comes again with its name alone, so that
        // the procedure's result is taken for the end-of-data string.
        FailCase{"(x) { (abc) } 0 () /SubFileDecode filter ",
                 "Expected ps_integer at SubFileDecode EODCount param", ""},
        FailCase{"7 (abc) 1 string readstring ", "Expected ps_file at readstring", "7"},
        FailCase{"7 currentfile 5 readstring ", "Expected ps_string at readstring", "7 ps_file"},
        FailCase{"7 currentfile /A filter 1 string readstring ",
                 "Expected base object to be string", "7"},
        FailCase{"7 (abc) 1 string readhexstring ", "Expected ps_file at readhexstring", "7"},
        FailCase{"7 currentfile 5 readhexstring ", "Expected ps_string at readhexstring",
                 "7 ps_file"},
        FailCase{"7 (41) /A filter 1 string readhexstring ",
                 "Only supports readline from currentfile", "7"},
        FailCase{"7 (abc) 1 string readline ", "Expected ps_file at readline", "7"},
        FailCase{"7 currentfile 5 readline ", "Expected ps_string at readline", "7 ps_file"},
        FailCase{"7 (41) /A filter 1 string readline ", "Only supports readline from currentfile",
                 "7"}),
    testing_support::RowName());

// The operand stack with every byte of every string and its filters.
std::string exactStack(Session& s) {
    std::string text;
    for (const PostscriptObject* object : s.interpreter().operandStack->items) {
        if (!text.empty()) text += ' ';
        text += object->type == ps_string ? render(object) : object->doubleEqualsText();
    }
    return text;
}

struct ExactCase {
    std::string_view program;
    const char* stack;
};

void PrintTo(const ExactCase& row, std::ostream* os) {
    *os << ::testing::PrintToString(std::string(row.program));
}

class Exact : public ::testing::TestWithParam<ExactCase> {};

TEST_P(Exact, LeavesTheseBytesAndFilters) {
    Session s;
    ASSERT_TRUE(s.run(GetParam().program)) << s.error();
    EXPECT_EQ(exactStack(s), GetParam().stack);
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, Exact,
    ::testing::Values(
        // Binary data: NUL, 255 and the bytes above 127 are data, and no filter is named.
        ExactCase{"currentfile 5 string readstring \0\377\200A\1"sv,
                  "(\\x00\\xFF\\x80A\\x01) false"},
        ExactCase{"currentfile 2 string readhexstring \0004\3771\377ff "sv, "(A\\xFF) true"},
        ExactCase{"{ currentfile 9 string readline } exec ab\0cd "sv, "(ab) true (cd)"},
        // currentfile eats a NUL as it eats white space.
        ExactCase{"{ currentfile 9 string readline } exec\0ab\n"sv, "(ab) true"},
        // A NUL is the end of the file.
        ExactCase{"{ currentfile read } exec \0"sv, "false"},
        // The outer filter's name comes first in the walk; SubFileDecode adds nothing.
        ExactCase{"(abc) /A filter /B filter 0 string readstring "sv, "(abc) /B /A true"},
        ExactCase{"(abc) 0 () /SubFileDecode filter /A filter 5 string readstring "sv,
                  "(abc) /A true"},
        ExactCase{"{ (abc) /B filter } /A filter 0 string readstring "sv, "(abc) /A /B true"},
        // The base string's filters come first, in reverse order.
        ExactCase{"<41> /A filter 0 string readstring "sv, "(41>) /ASCIIHexDecode /A true"},
        ExactCase{"<~ab~> /A filter 0 string readstring "sv, "(ab~>) /ASCII85Decode /A true"},
        ExactCase{
            "(x) /A filter /B filter 0 string readstring pop /C filter 0 string readstring "sv,
            "(x) /A /B /C true"}),
    testing_support::RowName());

// A read suspended by the end of a buffer: its operands wait on the operand
// stack, the operator on the execution stack, until the next buffer.
struct ResumeCase {
    std::string_view first;
    std::string_view second;
    const char* reader;
    const char* waiting;
    const char* stack;
};

void PrintTo(const ResumeCase& row, std::ostream* os) {
    *os << ::testing::PrintToString(std::string(row.first) + "|" + std::string(row.second));
}

class Resumes : public ::testing::TestWithParam<ResumeCase> {};

TEST_P(Resumes, AcrossTwoBuffers) {
    const ResumeCase& row = GetParam();
    Session s;
    Interpreter& in = s.interpreter();
    ASSERT_TRUE(s.run(row.first)) << s.error();
    EXPECT_TRUE(in.suspended);
    EXPECT_EQ(in.executionStack->top(), in.dictionaries->systemData->find(row.reader));
    EXPECT_EQ(exactStack(s), row.waiting);
    // A buffer with nothing in it changes nothing.
    ASSERT_TRUE(s.run(""));
    EXPECT_TRUE(in.suspended);
    EXPECT_EQ(exactStack(s), row.waiting);
    ASSERT_TRUE(s.run(row.second)) << s.error();
    EXPECT_FALSE(in.suspended);
    EXPECT_TRUE(in.executionStack->empty());
    EXPECT_EQ(exactStack(s), row.stack);
}

INSTANTIATE_TEST_SUITE_P(
    Reads, Resumes,
    ::testing::Values(
        // A read that resumes with bytes in hand keeps white space.
        ResumeCase{"currentfile 3 string readstring ab", " c ", "readstring",
                   "ps_file (\\x00\\x00\\x00)", "(ab ) true (c)"},
        ResumeCase{"currentfile 3 string readstring a", "b c d ", "readstring",
                   "ps_file (\\x00\\x00\\x00)", "(ab ) true (c) (d)"},
        // One that resumes empty-handed still drops it.
        ResumeCase{"currentfile 3 string readstring ", "a b c", "readstring",
                   "ps_file (\\x00\\x00\\x00)", "(abc) false"},
        ResumeCase{"currentfile 2 string readhexstring 4", "1 42 ", "readhexstring",
                   "ps_file (\\x00\\x00)", "(AB) true"},
        ResumeCase{"currentfile 2 string readhexstring 41 4", "2", "readhexstring",
                   "ps_file (\\x00\\x00)", "(AB) false"},
        // A line cut by the buffer's end is lost; the read starts again.
        ResumeCase{"{ currentfile 9 string readline } exec ab", "cd\nx ", "readline",
                   "ps_file (\\x00\\x00\\x00\\x00\\x00\\x00\\x00\\x00\\x00)", "(cd) true (x)"},
        // Inside a loop the read resumes, and the loop goes on.
        ResumeCase{"2 { currentfile 2 string readstring pop } repeat ab", "cd (e) ", "readstring",
                   "(ab) ps_file (\\x00\\x00)", "(ab) (cd) (e)"}),
    testing_support::RowName());

ReadstringOperator& readstring(Session& s) {
    return *static_cast<ReadstringOperator*>(
        s.interpreter().dictionaries->systemData->find("readstring"));
}

ReadhexstringOperator& readhexstring(Session& s) {
    return *static_cast<ReadhexstringOperator*>(
        s.interpreter().dictionaries->systemData->find("readhexstring"));
}

// What a suspended read has got is kept in the operator, and let go at its end.
TEST(FileOperators, SuspendedReadsKeepTheirBytesInTheOperator) {
    Session s;
    ASSERT_TRUE(s.run("currentfile 4 string readstring ab"));
    EXPECT_EQ(readstring(s).resumeText, "ab");
    ASSERT_TRUE(s.run("cd "));
    EXPECT_EQ(readstring(s).resumeText, "");

    ASSERT_TRUE(s.run("currentfile 3 string readhexstring 414"));
    EXPECT_EQ(readhexstring(s).resumeText, "A");
    EXPECT_EQ(readhexstring(s).pendingDigit, 4);
    ASSERT_TRUE(s.run("2 4"));
    EXPECT_EQ(readhexstring(s).resumeText, "AB");
    EXPECT_EQ(readhexstring(s).pendingDigit, 4);
    ASSERT_TRUE(s.run("3 "));
    EXPECT_EQ(readhexstring(s).resumeText, "");
    EXPECT_EQ(readhexstring(s).pendingDigit, -1);
    EXPECT_EQ(exactStack(s), "(abcd) true (ABC) true");
}

// A filter holds its source, and the source lives as long as the filter.
TEST(FileOperators, AFilterHoldsItsSource) {
    Session s;
    ASSERT_TRUE(s.run("/f (abc) /A filter def /f load "));
    const auto* file = objectAs<FileObject>(s.interpreter().operandStack->top());
    ASSERT_NE(file, nullptr);
    const FileData& data = *file->fileData();
    EXPECT_EQ(data.kind, FileData::filterFile);
    EXPECT_EQ(data.filterName, "A");
    ASSERT_NE(data.source.get(), nullptr);
    EXPECT_EQ(render(data.source.get()), "(abc)");
    ASSERT_TRUE(s.run("pop /f load 0 string readstring pop "));
    EXPECT_EQ(exactStack(s), "(abc) /A");
}

TEST(FileOperators, AFilterTakesOnlyAStringOrAFile) {
    Session s;
    Counted<> number(new IntegerObject(1));
    EXPECT_EQ(testing_support::failureOf([&] { FileData data(number.get(), "A"); }),
              "Unsupported FileData source object type");
    EXPECT_EQ(number->refCount, 1);
}

} // namespace
