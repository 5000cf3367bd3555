// makepattern and setpattern: the record's dictionary text and stream, the
// content left as it was, and the states that failures leave.
#include "Tables.h"
#include "host/HostReader.h"

#include "pdf/PdfObjectList.h"

#include <string>
#include <vector>

using testing_support::Session;

namespace {

// The pattern of the translator's design: a 10 x 20 cell with one stroke.
#define KEL_PATTERN(extra)                                                                         \
    "/pat 8 dict def pat begin /PatternType 1 def /PaintType 1 def /TilingType 1 def "             \
    "/BBox [0 0 10 20] def /XStep 10 def /YStep 20 def "                                           \
    "/PaintProc {pop 0 0 moveto 1 1 lineto stroke} def " extra " end "

#define KEL_IDENTITY " [1 0 0 1 0 0] "

const char* const designDictionary = "/Type /Pattern\n/Matrix [1 0 0 1 0 0 ]\n/XStep 10\n"
                                     "/YStep 20\n/PaintType 1\n/PatternType 1\n/TilingType 1\n"
                                     "/BBox [0 0 10 20 ]\n/Resources <<>> ";

// Records are the process's: each test starts and ends with an empty list.
class Patterns : public ::testing::Test {
protected:
    void SetUp() override { PdfObjectList::process().emptyObjects(); }
    void TearDown() override { PdfObjectList::process().emptyObjects(); }

    static std::vector<PdfObject*> records() {
        uint64_t count = 0;
        PdfObject** all = PdfObjectList::process().handOut(&count);
        return std::vector<PdfObject*>(all, all + count);
    }
    static std::string stream(const PdfObject* record) {
        return record->data ? std::string(reinterpret_cast<char*>(record->data), record->dataLength)
                            : "(none)";
    }
    std::string content() const { return std::string(s.pdf.contentText.view()); }

    Session s;
};

// The cell is drawn into the record, and the page's content is as before.
TEST_F(Patterns, CellGoesToTheRecordAndNotTheContent) {
    ASSERT_TRUE(s.run(KEL_PATTERN("") "0 0 1 setrgbcolor pat" KEL_IDENTITY
                                      "makepattern pat eq 5 5 moveto 6 6 lineto "));
    EXPECT_EQ(content(), "0 0 1 RG 0 0 1 rg 5 5 m\n6 6 l\n");
    // The result is the dictionary itself.
    EXPECT_EQ(s.stackValues(), "true");
    ASSERT_EQ(records().size(), 1u);
    const PdfObject* record = records()[0];
    EXPECT_STREQ(record->name, "/PA1");
    EXPECT_EQ(record->kind, 1);
    EXPECT_STREQ(record->dictionaryText, designDictionary);
    EXPECT_EQ(stream(record), "q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\nS Q\n");
    EXPECT_EQ(record->data[record->dataLength], '\0') << "one byte more, a terminator";
    EXPECT_FALSE(s.pdf.insidePattern);
    // As a host written in C reads it.
    char text[512];
    ASSERT_EQ(hostListObjects(reinterpret_cast<PSHandle>(&s.pdf), text, sizeof text), 1);
    EXPECT_EQ(std::string(text), std::string("/PA1 kind=1 uncompressed=1 reserved=0 length=35 "
                                             "data=q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\nS Q\n "
                                             "dictionary=") +
                                     designDictionary + " extra=null procedure=set\n");
}

// setpattern knows the dictionary by identity, not by contents.
TEST_F(Patterns, SetpatternSelectsTheRecordOfThatVeryDictionary) {
    ASSERT_TRUE(s.run(KEL_PATTERN("") "pat" KEL_IDENTITY "makepattern setpattern "
                                      "pat setpattern pat" KEL_IDENTITY "makepattern pop "
                                      "pat setpattern 8 dict setpattern 1 dict setpattern "))
        << s.error();
    EXPECT_EQ(content(), "/Pattern cs\n/PA1 scn\n/Pattern cs\n/PA1 scn\n/Pattern cs\n/PA1 scn\n");
    EXPECT_EQ(records().size(), 2u);
    EXPECT_FALSE(s.run("5 setpattern "));
    EXPECT_EQ(s.error(), "Expected ps_dictionary at popDictionaryObject");
}

struct DictionaryCase {
    const char* program; // run after KEL_PATTERN, with pat and a matrix to make
    const char* dictionary;
    std::string stream;
};

void PrintTo(const DictionaryCase& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

class PatternDictionary : public Patterns, public ::testing::WithParamInterface<DictionaryCase> {};

TEST_P(PatternDictionary, IsWrittenEntryByEntry) {
    const DictionaryCase& row = GetParam();
    ASSERT_TRUE(s.run(std::string(KEL_PATTERN("")) + row.program)) << s.error();
    ASSERT_EQ(records().size(), 1u);
    EXPECT_STREQ(records()[0]->dictionaryText, row.dictionary);
    EXPECT_EQ(stream(records()[0]), row.stream);
    EXPECT_EQ(content(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PatternDictionary,
    ::testing::Values(
        DictionaryCase{"pat [2 0 0 0.5 3 -4] makepattern pop ",
                       "/Type /Pattern\n/Matrix [2 0 0 0.5 3 -4 ]\n/XStep 10\n/YStep 20\n"
                       "/PaintType 1\n/PatternType 1\n/TilingType 1\n/BBox [0 0 10 20 ]\n"
                       "/Resources <<>> ",
                       "q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\nS Q\n"},
        // A vanishing matrix leaves the entry open.
        DictionaryCase{"pat [0 0.00009 -0.00009 0 5 5] makepattern pop ",
                       "/Type /Pattern\n/Matrix [/XStep 10\n/YStep 20\n/PaintType 1\n"
                       "/PatternType 1\n/TilingType 1\n/BBox [0 0 10 20 ]\n/Resources <<>> ",
                       "q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\nS Q\n"},
        DictionaryCase{"pat [0 1 -1 0 0 0] makepattern pop ",
                       "/Type /Pattern\n/Matrix [0 1 -1 0 0 0 ]\n/XStep 10\n/YStep 20\n"
                       "/PaintType 1\n/PatternType 1\n/TilingType 1\n/BBox [0 0 10 20 ]\n"
                       "/Resources <<>> ",
                       "q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\nS Q\n"},
        // Absent keys are skipped; the numbers are the content's.
        DictionaryCase{"pat /PaintType undef pat /TilingType undef pat /XStep 2.5 put "
                       "pat" KEL_IDENTITY "makepattern pop ",
                       "/Type /Pattern\n/Matrix [1 0 0 1 0 0 ]\n/XStep 2.5\n/YStep 20\n"
                       "/PatternType 1\n/BBox [0 0 10 20 ]\n/Resources <<>> ",
                       "q 2.5 0 0 20 0 0 cm\n0 0 m\n1 1 l\nS Q\n"},
        // A blank behind each of the first five numbers of the box only.
        DictionaryCase{"pat /BBox [0 0 1 2 3 4 5] put pat" KEL_IDENTITY "makepattern pop ",
                       "/Type /Pattern\n/Matrix [1 0 0 1 0 0 ]\n/XStep 10\n/YStep 20\n"
                       "/PaintType 1\n/PatternType 1\n/TilingType 1\n/BBox [0 0 1 2 3 45]\n"
                       "/Resources <<>> ",
                       "q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\nS Q\n"},
        DictionaryCase{"pat /BBox [] put pat" KEL_IDENTITY "makepattern pop ",
                       "/Type /Pattern\n/Matrix [1 0 0 1 0 0 ]\n/XStep 10\n/YStep 20\n"
                       "/PaintType 1\n/PatternType 1\n/TilingType 1\n/BBox []\n"
                       "/Resources <<>> ",
                       "q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\nS Q\n"},
        // Steps of zero write no "cm"; the cell still opens with "q ".
        DictionaryCase{"pat /XStep 0 put pat /YStep 0 put pat /PaintProc {pop 1 1 1 1 rectfill} "
                       "put pat" KEL_IDENTITY "makepattern pop ",
                       "/Type /Pattern\n/Matrix [1 0 0 1 0 0 ]\n/XStep 0\n/YStep 0\n"
                       "/PaintType 1\n/PatternType 1\n/TilingType 1\n/BBox [0 0 10 20 ]\n"
                       "/Resources <<>> ",
                       "q q 1 1 1 1 re f Q\nQ\n"},
        // Images in the cell stay inline, whatever their size.
        DictionaryCase{"/big 10000 string def pat /PaintProc {pop 10000 1 8 [1 0 0 1 0 0] big "
                       "image} put pat" KEL_IDENTITY "makepattern pop ",
                       designDictionary,
                       "q 10 0 0 20 0 0 cm\nq BI\n/W 10000 /H 1 /BPC 8 /CS /G \nID\n" +
                           std::string(10000, '\0') + "\nEI\nQ\nQ\n"}),
    testing_support::RowName());

struct PatternFailure {
    const char* program; // run after KEL_PATTERN
    const char* error;
    const char* stack;
    const char* content;
    std::size_t records;
};

void PrintTo(const PatternFailure& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

class PatternFails : public Patterns, public ::testing::WithParamInterface<PatternFailure> {};

TEST_P(PatternFails, LeavesItsState) {
    const PatternFailure& row = GetParam();
    ASSERT_TRUE(s.run(KEL_PATTERN("")));
    EXPECT_FALSE(s.run(row.program));
    EXPECT_EQ(s.error(), row.error);
    EXPECT_EQ(s.stackValues(), row.stack);
    EXPECT_EQ(content(), row.content);
    EXPECT_EQ(records().size(), row.records);
    // Once a record is made the pattern stays open until its second pass.
    EXPECT_EQ(s.pdf.insidePattern, row.records == 1);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PatternFails,
    ::testing::Values(
        PatternFailure{"pat [1 0 0 1 0] makepattern ", "expecting array of 6 doubles", "", "", 0},
        PatternFailure{"pat [1 0 0 1 0 0 0] makepattern ", "expecting array of 6 doubles", "", "",
                       0},
        PatternFailure{"pat 5 makepattern ", "Expected ps_array at popArrayObject", "-dict-", "",
                       0},
        PatternFailure{"5" KEL_IDENTITY "makepattern ",
                       "Expected ps_dictionary at popDictionaryObject", "", "", 0},
        PatternFailure{"pat /XStep (10) put pat" KEL_IDENTITY "makepattern ",
                       "Unsupported number type", "", "", 0},
        PatternFailure{"pat /YStep undef pat" KEL_IDENTITY "makepattern ",
                       "Unsupported number type", "", "", 0},
        // The matrix is read after the cell's "q" and "cm" are written.
        PatternFailure{"pat [1 0 0 1 0 (x)] makepattern ", "Unsupported number type", "",
                       "q 10 0 0 20 0 0 cm\n", 0},
        // From here on the record exists and the pattern is open.
        PatternFailure{"pat /TilingType /one put pat" KEL_IDENTITY "makepattern ",
                       "Unsupported number type", "", "q 10 0 0 20 0 0 cm\n", 1},
        PatternFailure{"pat /BBox undef pat" KEL_IDENTITY "makepattern ",
                       "expected array to be here", "", "q 10 0 0 20 0 0 cm\n", 1},
        PatternFailure{"pat /BBox [0 (a)] put pat" KEL_IDENTITY "makepattern ",
                       "Unsupported number type", "", "q 10 0 0 20 0 0 cm\n", 1},
        PatternFailure{"pat /PaintProc undef pat" KEL_IDENTITY "makepattern ",
                       "expecting paintProc", "", "q 10 0 0 20 0 0 cm\n", 1},
        // A failing PaintProc leaves its cell in the content.
        PatternFailure{"pat /PaintProc {pop 0 0 moveto 1 1 lineto (x) 1 add} put pat" KEL_IDENTITY
                       "makepattern ",
                       "Unsupported number type", "-dict-", "q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\n",
                       1}),
    testing_support::RowName());

// The PaintProc's failure leaves the operator under it: the next call runs
// the rest and closes the pattern with what that call has drawn of the cell.
TEST_F(Patterns, FailedPaintProcClosesAtTheNextCall) {
    ASSERT_TRUE(s.run("/k [{} {(x) 1 add}] def " KEL_PATTERN(
        "/PaintProc {pop 0 0 moveto k 1 get exec 2 2 lineto stroke} def")));
    EXPECT_FALSE(s.run("pat" KEL_IDENTITY "makepattern "));
    ASSERT_EQ(records().size(), 1u);
    EXPECT_EQ(records()[0]->data, nullptr);
    EXPECT_TRUE(s.run("7 "));
    EXPECT_EQ(stream(records()[0]), "0 0 m\n2 2 l\nS Q\n");
    EXPECT_EQ(content(), "");
    EXPECT_FALSE(s.pdf.insidePattern);
    EXPECT_EQ(s.stackValues(), "-dict- 7");
}

// The operator is under the missing PaintProc already: the next call closes
// the record with what that call drew before it.
TEST_F(Patterns, MissingPaintProcClosesTheRecordAtTheNextCall) {
    ASSERT_TRUE(s.run(KEL_PATTERN("") "pat /PaintProc undef "));
    EXPECT_FALSE(s.run("pat" KEL_IDENTITY "makepattern "));
    EXPECT_EQ(s.error(), "expecting paintProc");
    ASSERT_TRUE(s.run("7 "));
    ASSERT_EQ(records().size(), 1u);
    EXPECT_EQ(stream(records()[0]), "Q\n");
    EXPECT_FALSE(s.pdf.insidePattern);
    EXPECT_EQ(s.stackValues(), "7");
}

// A new page ends the pattern's inline images, not the pattern: the next
// makepattern takes itself for the second pass, and its operands stay.
TEST_F(Patterns, NewPageLeavesTheCutOffPatternForTheNextMakepattern) {
    ASSERT_TRUE(s.run(KEL_PATTERN("/PaintProc {pop 0 0 moveto 1 1 lineto (x) 1 add} def")));
    EXPECT_FALSE(s.run("pat" KEL_IDENTITY "makepattern "));
    s.interpreter().executionStack->clear();
    s.interpreter().operandStack->clear();
    const double identity[6] = {1, 0, 0, 1, 0, 0};
    s.pdf.startPage(identity);
    EXPECT_FALSE(s.pdf.insidePattern);
    ASSERT_TRUE(s.run("3 3 moveto 4 4 lineto pat" KEL_IDENTITY "makepattern "));
    EXPECT_EQ(stream(records()[0]), "3 3 m\n4 4 l\nQ\n");
    EXPECT_EQ(content(), "");
    EXPECT_EQ(s.stackValues(), "-dict- [1 0 0 1 0 0 ]");
    EXPECT_EQ(records().size(), 1u);
}

// A makepattern inside a PaintProc ends the outer pattern where it stands;
// the outer one's return then takes the inner operands as a new pattern.
TEST_F(Patterns, NestedMakepatternEndsTheOuterPattern) {
    ASSERT_TRUE(
        s.run(KEL_PATTERN("/PaintProc {pop 0 0 moveto 1 1 lineto pat2 [1 0 0 1 0 0] "
                          "makepattern 2 2 lineto} def") "/pat2 4 dict def pat2 begin /BBox [0 0 1 "
                                                         "1] def /XStep 1 def /YStep 1 def "
                                                         "/PaintProc {pop} def end "));
    ASSERT_TRUE(s.run("pat" KEL_IDENTITY "makepattern pat2 eq "));
    ASSERT_EQ(records().size(), 2u);
    EXPECT_EQ(stream(records()[0]), "q 10 0 0 20 0 0 cm\n0 0 m\n1 1 l\nQ\n");
    EXPECT_STREQ(records()[1]->dictionaryText, "/Type /Pattern\n/Matrix [1 0 0 1 0 0 ]\n/XStep 1\n"
                                               "/YStep 1\n/BBox [0 0 1 1 ]\n/Resources <<>> ");
    EXPECT_EQ(stream(records()[1]), "q 1 0 0 1 0 0 cm\nQ\n");
    // The rest of the outer cell reaches the page.
    EXPECT_EQ(content(), "2 2 l\n");
    EXPECT_EQ(s.stackValues(), "-dict- true");
}

// The print job face may empty the list while a pattern is open: the record
// went with it, and the next makepattern starts afresh.
TEST_F(Patterns, EmptiedListForgetsTheOpenPattern) {
    ASSERT_TRUE(s.run(KEL_PATTERN("/PaintProc {pop (x) 1 add} def")));
    EXPECT_FALSE(s.run("pat" KEL_IDENTITY "makepattern "));
    s.interpreter().executionStack->clear();
    s.interpreter().operandStack->clear();
    PdfObjectList::process().emptyObjects();
    ASSERT_TRUE(s.run("pat /PaintProc {pop} put pat" KEL_IDENTITY "makepattern setpattern "));
    ASSERT_EQ(records().size(), 1u);
    EXPECT_EQ(stream(records()[0]), "q 10 0 0 20 0 0 cm\nQ\n");
    EXPECT_EQ(content(), "/Pattern cs\n/PA1 scn\n");
}

} // namespace
