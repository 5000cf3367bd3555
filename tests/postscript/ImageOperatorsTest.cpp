// image, colorimage and imagemask: the inline forms, exact and split at every
// byte; the XObject records above the inline limit; the failures and the
// state each leaves.
#include "Tables.h"
#include "host/HostReader.h"

#include "pdf/PdfObjectList.h"

#include <cstring>
#include <string>
#include <vector>

using testing_support::Session;

namespace {

// The matrix operand is dropped: any array will do.
#define KEL_M " [1 0 0 1 0 0] "

// A dictionary image of 2 x 2 gray samples, ready for a DataSource.
#define KEL_DICT                                                                                   \
    "8 dict dup /Width 2 put dup /Height 2 put dup /BitsPerComponent 8 put "                       \
    "dup /Decode [0 1] put "

using namespace std::string_view_literals;

INSTANTIATE_TEST_SUITE_P(
    Images, Content,
    ::testing::Values(
        // The default state is gray: one component, however level one reads it.
        ContentCase{"2 2 8" KEL_M "(abcd) image ",
                    "q BI\n/W 2 /H 2 /BPC 8 /CS /G \nID\nabcd\nEI\nQ\n"},
        // The current colour decides the components of level-one image.
        ContentCase{"0 0 1 setrgbcolor 1 1 8" KEL_M "(xyz) image ",
                    "0 0 1 RG 0 0 1 rg q BI\n/W 1 /H 1 /BPC 8 /CS /RGB \nID\nxyz\nEI\nQ\n"},
        ContentCase{"0 0 0 1 setcmykcolor 1 1 8" KEL_M "(wxyz) image ",
                    "0 0 0 1 K 0 0 0 1 k q BI\n/W 1 /H 1 /BPC 8 /CS /CMYK \nID\nwxyz\nEI\nQ\n"},
        ContentCase{"0 1 1 sethsbcolor 1 1 8" KEL_M "(xyz) image ",
                    "1 0 0 RG 1 0 0 rg q BI\n/W 1 /H 1 /BPC 8 /CS /RGB \nID\nxyz\nEI\nQ\n"},
        // Bit depths: the size is bits x height x components x width / 8, no padding.
        ContentCase{"8 2 1" KEL_M "(\\377\\000) image ",
                    "q BI\n/W 8 /H 2 /BPC 1 /CS /G \nID\n\xff\0\nEI\nQ\n"sv},
        ContentCase{"3 3 1" KEL_M "(\\252) image ",
                    "q BI\n/W 3 /H 3 /BPC 1 /CS /G \nID\n\xaa\nEI\nQ\n"},
        ContentCase{"4 1 2" KEL_M "(z) image ", "q BI\n/W 4 /H 1 /BPC 2 /CS /G \nID\nz\nEI\nQ\n"},
        ContentCase{"2 3 4" KEL_M "(abc) image ",
                    "q BI\n/W 2 /H 3 /BPC 4 /CS /G \nID\nabc\nEI\nQ\n"},
        ContentCase{"1 1 16 [] 1 0 0 setrgbcolor (abcdef) image ",
                    "1 0 0 RG 1 0 0 rg q BI\n/W 1 /H 1 /BPC 16 /CS /RGB \nID\nabcdef\nEI\nQ\n"},
        // Encoded tokens travel undecoded, raw text and filter together; the
        // size test counts their encoded bytes.
        ContentCase{"2 2 8" KEL_M "<61626364> image ",
                    "q BI\n/W 2 /H 2 /BPC 8 /CS /G /Filter [ /ASCIIHexDecode] \nID\n"
                    "61626364>\nEI\nQ\n"},
        ContentCase{"2 2 8" KEL_M "<~@:E_W~> image ",
                    "q BI\n/W 2 /H 2 /BPC 8 /CS /G /Filter [ /ASCII85Decode] \nID\n"
                    "@:E_W~>\nEI\nQ\n"},
        // A short encoded text is simply run again, and appended again.
        ContentCase{"4 4 8" KEL_M "{<6162>} image ",
                    "q BI\n/W 4 /H 4 /BPC 8 /CS /G /Filter [ /ASCIIHexDecode] \nID\n"
                    "6162>6162>6162>6162>\nEI\nQ\n"},
        // Procedures inside a source are armed with it, and so run in place.
        ContentCase{"1 1 8" KEL_M "{{(a)} (b) pop} image ",
                    "q BI\n/W 1 /H 1 /BPC 8 /CS /G \nID\na\nEI\nQ\n"},
        // A procedure runs until enough has come; the surplus stays.
        ContentCase{"2 2 8" KEL_M "{(ab)} image ",
                    "q BI\n/W 2 /H 2 /BPC 8 /CS /G \nID\nabab\nEI\nQ\n"},
        ContentCase{"3 1 8" KEL_M "{(ab)} image ",
                    "q BI\n/W 3 /H 1 /BPC 8 /CS /G \nID\nabab\nEI\nQ\n"},
        ContentCase{"/n 0 def 3 1 8" KEL_M "{/n n 1 add def n 1 eq {(a)} {(bcd)} ifelse} image n ",
                    "q BI\n/W 3 /H 1 /BPC 8 /CS /G \nID\nabcd\nEI\nQ\n", "2"},
        // The driver's source, one buffer-full per round, the data in the
        // program's own text and split anywhere.
        ContentCase{"/b 2 string def 3 2 8" KEL_M "{currentfile b readhexstring pop} image\n"
                    "61 62\n6364 6566\n 0 0 moveto 1 1 lineto ",
                    "q BI\n/W 3 /H 2 /BPC 8 /CS /G \nID\nabcdef\nEI\nQ\n0 0 m\n1 1 l\n"},
        ContentCase{"/b 3 string def 0 1 0 setrgbcolor 2 1 8" KEL_M
                    "{currentfile b readstring pop} image\nabcdef 7 ",
                    "0 1 0 RG 0 1 0 rg q BI\n/W 2 /H 1 /BPC 8 /CS /RGB \nID\nabcdef\nEI\nQ\n", "7"},
        // colorimage: one source of interleaved samples, or separate ones.
        ContentCase{"1 1 8" KEL_M "(abc) false 3 colorimage ",
                    "q BI\n/W 1 /H 1 /BPC 8 /CS /RGB \nID\nabc\nEI\nQ\n"},
        ContentCase{"1 1 8" KEL_M "(abcd) false 4 colorimage ",
                    "q BI\n/W 1 /H 1 /BPC 8 /CS /CMYK \nID\nabcd\nEI\nQ\n"},
        ContentCase{"1 2 8" KEL_M "{(a)} false 1 colorimage ",
                    "q BI\n/W 1 /H 2 /BPC 8 /CS /G \nID\naa\nEI\nQ\n"},
        // Three sources leave in reversed order: third, second, first.
        ContentCase{"2 1 8" KEL_M "(ab) (cd) (ef) true 3 colorimage ",
                    "q BI\n/W 2 /H 1 /BPC 8 /CS /RGB \nID\necafdb\nEI\nQ\n"},
        ContentCase{"2 2 8" KEL_M "{(ab)} {(cd)} {(ef)} true 3 colorimage ",
                    "q BI\n/W 2 /H 2 /BPC 8 /CS /RGB \nID\necafdbecafdb\nEI\nQ\n"},
        ContentCase{"/b1 1 string def /b2 1 string def /b3 1 string def 2 1 8" KEL_M
                    "{currentfile b1 readhexstring pop} {currentfile b2 readhexstring pop} "
                    "{currentfile b3 readhexstring pop} true 3 colorimage\n414243444546\n",
                    "q BI\n/W 2 /H 1 /BPC 8 /CS /RGB \nID\nCBAFED\nEI\nQ\n"},
        // Two components make no image: the sources' results stay.
        ContentCase{"2 1 8" KEL_M "(a) (b) (c) true 3 colorimage ",
                    "q BI\n/W 2 /H 1 /BPC 8 /CS /RGB \nID\ncbacba\nEI\nQ\n"},
        ContentCase{"1 1 8" KEL_M "(ab) false 2 colorimage ", "", "(ab)"},
        ContentCase{"1 1 8" KEL_M "{(a)} {(b)} true 2 colorimage ", "", "(a) (b)"},
        // The dictionary form: components from Decode, whatever the colour.
        ContentCase{"0 0 1 setrgbcolor " KEL_DICT "dup /DataSource (abcd) put image ",
                    "0 0 1 RG 0 0 1 rg q BI\n/W 2 /H 2 /BPC 8 /CS /G \nID\nabcd\nEI\nQ\n"},
        ContentCase{KEL_DICT "dup /Decode [0 1 0 1 0 1 0 1] put dup /DataSource {(abcdefgh)} put "
                             "image ",
                    "q BI\n/W 2 /H 2 /BPC 8 /CS /CMYK \nID\nabcdefghabcdefgh\nEI\nQ\n"},
        ContentCase{"8 dict dup /Width 2 put dup /Height 1 put dup /BitsPerComponent 8 put "
                    "dup /Decode [0 1 0 1 0 1] put dup /MultipleDataSources true put "
                    "dup /DataSource [{(ab)} {(cd)} {(ef)}] put image ",
                    "q BI\n/W 2 /H 1 /BPC 8 /CS /RGB \nID\necafdb\nEI\nQ\n"},
        // imagemask: inline, no "q", its own blanks in the filter list.
        ContentCase{"3 2 true" KEL_M "(ab) imagemask ",
                    "BI\n/W 3 /H 2 /BPC 1 /ImageMask true /Decode [1 0] \nID\nab\nEI\n"},
        ContentCase{"3 2 false" KEL_M "(ab) imagemask ",
                    "BI\n/W 3 /H 2 /BPC 1 /ImageMask true /Decode [0 1] \nID\nab\nEI\n"},
        ContentCase{"3 2 true" KEL_M "<6162> imagemask ",
                    "BI\n/W 3 /H 2 /BPC 1 /ImageMask true /Decode [1 0] /Filter [/ASCIIHexDecode ] "
                    "\nID\n6162>\nEI\n"},
        // Its procedure never runs: the literal string in front is the data.
        ContentCase{"3 2 true" KEL_M "{(ab) 1 2 add} imagemask ",
                    "BI\n/W 3 /H 2 /BPC 1 /ImageMask true /Decode [1 0] \nID\nab\nEI\n"},
        ContentCase{"/m (xy) def 3 2 true" KEL_M "/m imagemask ",
                    "BI\n/W 3 /H 2 /BPC 1 /ImageMask true /Decode [1 0] \nID\nxy\nEI\n"},
        ContentCase{"/m (xy) def 1 dict begin /m (zw) def 3 2 true" KEL_M "/m imagemask end ",
                    "BI\n/W 3 /H 2 /BPC 1 /ImageMask true /Decode [1 0] \nID\nzw\nEI\n"},
        ContentCase{"3 2 true" KEL_M "() imagemask 5 ", "", "5"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Images, Fails,
    ::testing::Values(
        FailCase{"8 dict image ", "expecting datasource", ""},
        FailCase{"1 dict dup /DataSource (a) put image ", "expecting width", ""},
        FailCase{"2 dict dup /DataSource (a) put dup /Width 2.0 put image ", "expecting width", ""},
        FailCase{"2 dict dup /DataSource (a) put dup /Width 2 put image ", "expecting height", ""},
        FailCase{"3 dict dup /DataSource (a) put dup /Width 2 put dup /Height 2 put image ",
                 "expecting bitsPerComponent", ""},
        FailCase{"8 dict dup /DataSource (a) put dup /Width 2 put dup /Height 2 put "
                 "dup /BitsPerComponent 8 put image ",
                 "exepected deocde array in image dict", ""},
        FailCase{"8 dict dup /DataSource (a) put dup /Width 2 put dup /Height 2 put "
                 "dup /BitsPerComponent 8 put dup /Decode 5 put image ",
                 "exepected deocde array in image dict", ""},
        // Separate sources of unequal length, or not three of them.
        FailCase{"2 1 8" KEL_M "(ab) (cd) (e) true 3 colorimage ",
                 "exepecting strings to be same size", ""},
        FailCase{"1 1 8" KEL_M "(a) (b) (c) (d) true 4 colorimage ",
                 "unsupported image color seperation", "(a) (b) (c) (d)"},
        FailCase{KEL_DICT "dup /Decode [0 1 0 1 0 1 0 1] put dup /MultipleDataSources true put "
                          "dup /DataSource [(a) (b) (c) (d)] put image ",
                 "unsupported image color seperation", "(a) (b) (c) (d)"},
        // A string cannot deliver more.
        FailCase{"2 2 8" KEL_M "(abc) image ", "invalid data in image, excpecting proc", ""},
        // A file is no string.
        FailCase{"2 2 8" KEL_M "currentfile image ", "Expected ps_string at popStringObject", ""},
        FailCase{"2 2 8" KEL_M "{5} image ", "Expected ps_string at popStringObject", ""},
        // Operand types, in the order they are taken.
        FailCase{"2 2 8 5 (abcd) image ", "Expected ps_array at image", "2 2 8"},
        FailCase{"2 2 (8)" KEL_M "(abcd) image ", "Expected ps_integer at popIntegerObject", "2 2"},
        FailCase{"1 1 8 5 (abc) false 3 colorimage ", "Expected ps_array at colorimage", "1 1 8"},
        FailCase{"1 1 8" KEL_M "(abc) 0 3 colorimage ", "Expected ps_boolean at popBooleanObject",
                 "1 1 8 [1 0 0 1 0 0 ] (abc)"},
        FailCase{"1 1 8" KEL_M "(abc) false (3) colorimage ",
                 "Expected ps_integer at popIntegerObject", "1 1 8 [1 0 0 1 0 0 ] (abc) false"},
        FailCase{"1 1 8" KEL_M "(b) true 3 colorimage ", "Expected ps_array at colorimage", "1"},
        // imagemask finds its string before it takes the other operands.
        FailCase{"3 2 true" KEL_M "5 imagemask ", "Could not find image mask data source string",
                 "3 2 true [1 0 0 1 0 0 ]"},
        FailCase{"3 2 true" KEL_M "[] imagemask ", "Could not find image mask data source string",
                 "3 2 true [1 0 0 1 0 0 ]"},
        FailCase{"3 2 true" KEL_M "{1 (ab)} imagemask ",
                 "Could not find image mask data source string", "3 2 true [1 0 0 1 0 0 ]"},
        FailCase{"3 2 true" KEL_M "/nowhere imagemask ",
                 "Could not find image mask data source string", "3 2 true [1 0 0 1 0 0 ]"},
        FailCase{"3 2 true 5 (ab) imagemask ", "Expected ps_array at imagemask", "3 2 true"},
        FailCase{"3 2 1" KEL_M "(ab) imagemask ", "Expected ps_boolean at imagemask", "3 2"},
        FailCase{"3 (2) true" KEL_M "(ab) imagemask ", "Expected ps_integer at imagemask height",
                 "3"},
        FailCase{"3.0 2 true" KEL_M "(ab) imagemask ", "Expected ps_integer at imagemask width",
                 ""}),
    testing_support::RowName());

// A source that fails leaves the image under way: the rest of its procedure
// runs at the next call, and the operator then takes up where it was.
TEST(ImageState, SourceFailingHalfWayResumesAtTheNextCall) {
    Session s;
    // The second round fails in its last element.
    ASSERT_TRUE(s.run("/n 0 def /k [{} {} {1 (x) add}] def "));
    EXPECT_FALSE(s.run("4 1 8" KEL_M "{(ab) /n n 1 add def k n get exec} image "
                       "0 0 moveto 5 5 lineto "));
    EXPECT_EQ(s.error(), "Unsupported number type");
    EXPECT_EQ(std::string(s.pdf.contentText.view()), "");
    EXPECT_EQ(s.stackValues(), "(ab)");
    EXPECT_TRUE(s.run("7 "));
    EXPECT_EQ(std::string(s.pdf.contentText.view()),
              "q BI\n/W 4 /H 1 /BPC 8 /CS /G \nID\nabab\nEI\nQ\n");
    EXPECT_EQ(s.stackValues(), "7");
    // Only the successful image cleared the state: the next image starts afresh.
    EXPECT_TRUE(s.run("1 1 8" KEL_M "(z) image "));
    EXPECT_EQ(std::string(s.pdf.contentText.view()),
              "q BI\n/W 1 /H 1 /BPC 8 /CS /G \nID\nz\nEI\nQ\n");
}

// A failure of the source while the caller then drops the rest of the work
// (another program calls image): the operator goes straight to the round's
// return, with what is on the stack.
TEST(ImageState, OperatorUnderWayTakesTheStackAsItsRound) {
    Session s;
    EXPECT_FALSE(s.run("2 1 8" KEL_M "{1 (x) add} image "));
    s.interpreter().executionStack->clear();
    EXPECT_TRUE(s.run("(cd) image "));
    EXPECT_EQ(std::string(s.pdf.contentText.view()),
              "q BI\n/W 2 /H 1 /BPC 8 /CS /G \nID\ncd\nEI\nQ\n");
    EXPECT_EQ(s.stackValues(), "");
}

// A failure after the round's return ends the image: the next one starts afresh.
TEST(ImageState, FailureAtTheReturnEndsTheImage) {
    Session s;
    EXPECT_FALSE(s.run("2 1 8" KEL_M "(ab) (cd) (e) true 3 colorimage "));
    EXPECT_TRUE(s.run("1 1 8" KEL_M "(w) image "));
    EXPECT_EQ(std::string(s.pdf.contentText.view()),
              "q BI\n/W 1 /H 1 /BPC 8 /CS /G \nID\nw\nEI\nQ\n");
    EXPECT_EQ(s.stackValues(), "");
}

// image and colorimage each keep their own image under way.
TEST(ImageState, EachOperatorHasItsOwnImage) {
    Session s;
    EXPECT_FALSE(s.run("1 1 8" KEL_M "{1 (x) add} false 3 colorimage "));
    s.interpreter().executionStack->clear();
    s.interpreter().operandStack->clear();
    EXPECT_TRUE(s.run("1 1 8" KEL_M "(g) image (abc) colorimage "));
    EXPECT_EQ(std::string(s.pdf.contentText.view()),
              "q BI\n/W 1 /H 1 /BPC 8 /CS /G \nID\ng\nEI\nQ\n"
              "q BI\n/W 1 /H 1 /BPC 8 /CS /RGB \nID\nabc\nEI\nQ\n");
}

// Records are the process's: each test starts and ends with an empty list.
class XObjects : public ::testing::Test {
protected:
    static std::string ones(std::size_t count) { return std::string(count, '\1'); }
    void SetUp() override { PdfObjectList::process().emptyObjects(); }
    void TearDown() override { PdfObjectList::process().emptyObjects(); }

    // A gray image of one row of these bytes, from a literal string.
    static std::string grayImage(const std::string& bytes) {
        return std::to_string(bytes.size()) + " 1 8" KEL_M "(" + bytes + ") image ";
    }
    static std::string repeated(const std::string& piece, int times) {
        std::string text;
        for (int i = 0; i < times; ++i)
            text += piece;
        return text;
    }
    static std::vector<PdfObject*> records() {
        uint64_t count = 0;
        PdfObject** all = PdfObjectList::process().handOut(&count);
        return std::vector<PdfObject*>(all, all + count);
    }
};

TEST_F(XObjects, InlineUpToTheLimitAndARecordAbove) {
    Session s;
    ASSERT_TRUE(s.run(grayImage(std::string(4000, '\7'))));
    const std::string head = "q BI\n/W 4000 /H 1 /BPC 8 /CS /G \nID\n";
    EXPECT_EQ(std::string(s.pdf.contentText.view()), head + std::string(4000, '\7') + "\nEI\nQ\n");
    EXPECT_TRUE(records().empty());

    ASSERT_TRUE(s.run(grayImage(std::string(4001, '\7'))));
    EXPECT_EQ(std::string(s.pdf.contentText.view()), "/PSI1 Do\n");
    ASSERT_EQ(records().size(), 1u);
    const PdfObject& record = *records()[0];
    EXPECT_STREQ(record.dictionaryText, "/Type /XObject /Subtype /Image /BitsPerComponent 8 "
                                        "/Width 4001 /Height 1 /ColorSpace /DeviceGray ");
    EXPECT_EQ(record.uncompressed, 1u);
    EXPECT_EQ(record.kind, 3);
    ASSERT_EQ(record.dataLength, 4001u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(record.data), 4001), std::string(4001, '\7'));
}

// An equal image costs its "Do" only, and so does one whose bytes begin an
// earlier one; an image that differs anywhere is a record of its own.
TEST_F(XObjects, EqualImagesShareOneRecord) {
    Session s;
    ASSERT_TRUE(s.run(grayImage(ones(5000)) + grayImage(ones(5000)) + grayImage(ones(4500)) +
                      grayImage(ones(4999) + "\2") + grayImage(ones(5000))));
    EXPECT_EQ(std::string(s.pdf.contentText.view()),
              "/PSI1 Do\n/PSI1 Do\n/PSI1 Do\n/PSI2 Do\n/PSI1 Do\n");
    ASSERT_EQ(records().size(), 2u);
    EXPECT_EQ(records()[1]->data[4999], 2);
    // A new handle finds the records of the first.
    Session other;
    ASSERT_TRUE(other.run(grayImage(ones(4999) + "\2")));
    EXPECT_EQ(std::string(other.pdf.contentText.view()), "/PSI2 Do\n");
}

TEST_F(XObjects, ColourAndFilterReachTheDictionary) {
    Session s;
    // 1700 x 1 RGB samples in hexadecimal: 10200 digits and a ">".
    std::string program = "0 1 0 setrgbcolor 1700 1 8" KEL_M "<";
    for (int i = 0; i < 1700 * 3; ++i)
        program += "a5";
    program += "> image 1 0 0 0 setcmykcolor 1100 1 8" KEL_M "{(abcd)} image ";
    ASSERT_TRUE(s.run(program));
    EXPECT_EQ(std::string(s.pdf.contentText.view()),
              "0 1 0 RG 0 1 0 rg /PSI1 Do\n1 0 0 0 K 1 0 0 0 k /PSI2 Do\n");
    ASSERT_EQ(records().size(), 2u);
    EXPECT_STREQ(records()[0]->dictionaryText,
                 "/Type /XObject /Subtype /Image /BitsPerComponent 8 /Width 1700 /Height 1 "
                 "/ColorSpace /DeviceRGB /Filter [ /ASCIIHexDecode] ");
    EXPECT_EQ(records()[0]->uncompressed, 0u);
    EXPECT_EQ(records()[0]->dataLength, 1700u * 6 + 1);
    EXPECT_EQ(records()[0]->data[1700 * 6], '>');
    EXPECT_STREQ(records()[1]->dictionaryText,
                 "/Type /XObject /Subtype /Image /BitsPerComponent 8 /Width 1100 /Height 1 "
                 "/ColorSpace /DeviceCMYK ");
    EXPECT_EQ(records()[1]->dataLength, 4400u);
}

// A host written in C reads the records by their offsets.
TEST_F(XObjects, HostReadsTheImageRecord) {
    testing_support::Handle h;
    std::string program = "/b (ab) def 4002 1 8" KEL_M "{b} image ";
    uint32_t length = static_cast<uint32_t>(program.size());
    ASSERT_NE(PSConvertToPdf(h.h, reinterpret_cast<const unsigned char*>(program.data()), &length),
              nullptr);
    std::vector<char> text(8192);
    ASSERT_EQ(hostListObjects(h.h, text.data(), text.size()), 1);
    EXPECT_EQ(std::string(text.data()),
              "/PSI1 kind=3 uncompressed=1 reserved=0 length=4002 data=" + repeated("ab", 2001) +
                  " dictionary=/Type /XObject /Subtype /Image /BitsPerComponent 8 /Width 4002 "
                  "/Height 1 /ColorSpace /DeviceGray  extra=null procedure=null\n");
}

// The records keep every byte of a large image that came in many rounds.
TEST_F(XObjects, ManyRoundsOverManyBuffers) {
    Session s;
    ASSERT_TRUE(
        s.run("/b 1000 string def 300 100 8" KEL_M "{currentfile b readhexstring pop} image\n"));
    std::string hex;
    for (int i = 0; i < 30000; ++i) {
        static const char digits[] = "0123456789abcdef";
        hex += digits[(i * 7) % 16];
        hex += digits[(i / 16) % 16];
        if (i % 40 == 39) hex += '\n';
    }
    for (std::size_t at = 0; at < hex.size(); at += 4096)
        ASSERT_TRUE(s.run(hex.substr(at, 4096))) << s.error();
    ASSERT_TRUE(s.run(" "));
    ASSERT_EQ(records().size(), 1u);
    ASSERT_EQ(records()[0]->dataLength, 30000u);
    for (int i = 0; i < 30000; i += 997)
        EXPECT_EQ(records()[0]->data[i], ((i * 7) % 16) * 16 + (i / 16) % 16) << i;
}

} // namespace
