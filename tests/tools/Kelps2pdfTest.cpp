// kelps2pdf in-process: the comment parsing, the line reader, the options,
// the PDF writer's bytes, and whole runs of the program on small jobs
// (pages, resources, failures, bad input and what is left on disk).
#include "Kelps2pdf.h"
#include "Converter.h"
#include "Dsc.h"
#include "LineReader.h"
#include "Options.h"
#include "PdfWriter.h"
#include "kelumpd64/conversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace kelps2pdf;

namespace {

// ---- comments ----

TEST(Dsc, CommentValues) {
    struct Row {
        const char* line;
        const char* key;
        const char* value; // null: not that comment
    } rows[] = {
        {"%%Title: (a job)\r\n", "Title", "(a job)"},
        {"%%EOF\n", "EOF", ""},
        {"%%EOF", "EOF", ""},
        {"%%Page: 1 1\n", "Page", "1 1"},
        {"%%PageBoundingBox: 0 0 1 1", "Page", nullptr},
        {"%%Pages: 3\n", "Page", nullptr},
        {"% %Title: x\n", "Title", nullptr},
        {"%Title: x\n", "Title", nullptr},
    };
    for (const Row& row : rows) {
        const auto value = commentValue(row.line, row.key);
        SCOPED_TRACE(row.line);
        ASSERT_EQ(value.has_value(), row.value != nullptr);
        if (row.value) {
            EXPECT_EQ(*value, row.value);
        }
    }
}

TEST(Dsc, Boxes) {
    EXPECT_EQ(parseBoundingBox("0 0 612 792"), (Box{0, 0, 612, 792}));
    EXPECT_EQ(parseBoundingBox(" 21 54.5 565 824 \r\n"), (Box{21, 54.5, 565, 824}));
    for (const char* bad : {"(atend)", "0 0 612", "0 0 612 792 5", "612 792 0 0", "0 0 0.5 10",
                            "0 0 1e9 10", "a b c d", ""})
        EXPECT_FALSE(parseBoundingBox(bad)) << bad;
    EXPECT_EQ(parseDocumentMedia("A4 595 842 0 () ()"), (Box{0, 0, 595, 842}));
    EXPECT_EQ(parseDocumentMedia("Letter 612 792 75 white ()"), (Box{0, 0, 612, 792}));
    EXPECT_FALSE(parseDocumentMedia("A4"));
    EXPECT_FALSE(parseDocumentMedia("A4 x 842"));
    EXPECT_EQ(findPageSize("<< /PageSize [595.22 842] /ImagingBBox null >> setpagedevice"),
              (Box{0, 0, 595.22, 842}));
    EXPECT_EQ(findPageSize("dup /PageSize [612 792] put"), (Box{0, 0, 612, 792}));
    EXPECT_FALSE(findPageSize("/PageSize get"));
    EXPECT_FALSE(findPageSize("/PageSize [w h]"));
    EXPECT_EQ(paperByName("Letter"), (Box{0, 0, 612, 792}));
    EXPECT_EQ(paperByName("a4"), a4Paper);
    EXPECT_EQ(paperByName("300x400.5"), (Box{0, 0, 300, 400.5}));
    for (const char* bad : {"a9", "300x", "x400", "300x400x5", "0x400", ""})
        EXPECT_FALSE(paperByName(bad)) << bad;
}

TEST(Dsc, TextAndJobControl) {
    EXPECT_EQ(dscText("(Report \\(draft\\))"), "Report (draft)");
    EXPECT_EQ(dscText("(caf\\351)"), "caf\xe9");
    EXPECT_EQ(dscText("plain title "), "plain title");
    const struct {
        std::string line, left;
    } rows[] = {
        {"\x04%!PS-Adobe-3.0\n", "%!PS-Adobe-3.0\n"},
        {"\x1b%-12345X@PJL JOB\r\n", ""},
        {"@PJL ENTER LANGUAGE = POSTSCRIPT\r\n", ""},
        {"\x1b%-12345X%!PS\n", "%!PS\n"},
        {"\x04\x1b%-12345X", ""},
        {"\x04", ""},
        {"0 0 moveto\n", "0 0 moveto\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(stripJobControl(row.line), row.left) << row.line;
}

// ---- lines ----

std::vector<Line> readAll(const std::string& text, std::size_t longest,
                          std::vector<std::string>& pieces) {
    std::FILE* file = std::tmpfile();
    std::fwrite(text.data(), 1, text.size(), file);
    std::rewind(file);
    LineReader reader(file, longest);
    std::vector<Line> lines;
    Line line;
    while (reader.next(line)) {
        pieces.emplace_back(line.text);
        lines.push_back(line);
    }
    EXPECT_EQ(reader.consumed(), text.size());
    std::fclose(file);
    return lines;
}

TEST(LineReader, SplitsAtEveryKindOfLineEnd) {
    std::vector<std::string> pieces;
    const auto lines = readAll("a\nbb\r\ncc\rd\r\r\ne", 100, pieces);
    EXPECT_EQ(pieces, (std::vector<std::string>{"a\n", "bb\r\n", "cc\r", "d\r", "\r\n", "e"}));
    for (const Line& line : lines)
        EXPECT_TRUE(line.startsLine);
}

TEST(LineReader, LongLinesComeInPiecesThatDoNotStartLines) {
    std::vector<std::string> pieces;
    const auto lines = readAll(std::string(25, 'x') + "\n%%Page:\n", 10, pieces);
    ASSERT_EQ(pieces.size(), 4u);
    EXPECT_EQ(pieces[0], std::string(10, 'x'));
    EXPECT_EQ(pieces[2], "xxxxx\n");
    EXPECT_FALSE(lines[1].startsLine);
    EXPECT_FALSE(lines[2].startsLine);
    EXPECT_TRUE(lines[3].startsLine);
}

TEST(LineReader, GivesBackEveryByteAcrossItsBuffer) {
    // Lines of every length around the buffer's size, with CR LF pairs that
    // straddle the refills.
    std::mt19937 random(7);
    std::string text;
    while (text.size() < 600000) {
        text.append(random() % 70000, 'a' + random() % 26);
        text += random() % 2 ? "\r\n" : "\r";
    }
    for (std::size_t longest : {1u, 7u, 4096u, 65536u, 1u << 20}) {
        std::vector<std::string> pieces;
        readAll(text, longest, pieces);
        std::string joined;
        for (const auto& piece : pieces) {
            EXPECT_LE(piece.size(), longest + 1);
            joined += piece;
        }
        EXPECT_EQ(joined, text) << longest;
    }
}

// ---- options ----

TEST(Options, Parses) {
    struct Row {
        std::vector<const char*> args;
        Parsed parsed;
        std::string input, output;
    } rows[] = {
        {{"job.ps"}, Parsed::run, "job.ps", "job.pdf"},
        {{"dir.v2/job"}, Parsed::run, "dir.v2/job", "dir.v2/job.pdf"},
        {{"-", "-"}, Parsed::run, "-", "-"},
        {{"-"}, Parsed::run, "-", "-"},
        {{"-q", "--paper", "letter", "a.prn", "b.pdf"}, Parsed::run, "a.prn", "b.pdf"},
        {{"--chunk-size=64K", "--", "-x.ps"}, Parsed::run, "-x.ps", "-x.pdf"},
        {{}, Parsed::bad, "", ""},
        {{"a", "b", "c"}, Parsed::bad, "", ""},
        {{"--paper", "a9", "a"}, Parsed::bad, "", ""},
        {{"--chunk-size", "10", "a"}, Parsed::bad, "", ""},
        {{"--chunk-size", "2G", "a"}, Parsed::bad, "", ""},
        {{"--max-steps", "-1", "a"}, Parsed::bad, "", ""},
        {{"--max-steps"}, Parsed::bad, "", ""},
        {{"--frobnicate", "a"}, Parsed::bad, "", ""},
    };
    for (const Row& row : rows) {
        std::vector<const char*> argv{"kelps2pdf"};
        argv.insert(argv.end(), row.args.begin(), row.args.end());
        Options options;
        std::string message;
        const Parsed parsed =
            parseOptions(static_cast<int>(argv.size()), argv.data(), options, message);
        SCOPED_TRACE(row.args.empty() ? "(none)" : row.args[0]);
        EXPECT_EQ(parsed, row.parsed);
        if (parsed == Parsed::bad) {
            EXPECT_FALSE(message.empty());
        }
        if (parsed != Parsed::run) continue;
        EXPECT_EQ(options.input, row.input);
        EXPECT_EQ(options.output, row.output);
    }
    Options options;
    std::string message;
    const char* argv[] = {"kelps2pdf", "--chunk-size",    "3M", "--max-steps", "0", "--strict",
                          "-n",        "--paper=200x300", "in"};
    ASSERT_EQ(parseOptions(9, argv, options, message), Parsed::run);
    EXPECT_EQ(options.chunkSize, 3u << 20);
    EXPECT_EQ(options.maxSteps, 0u);
    EXPECT_TRUE(options.strict && options.dryRun);
    EXPECT_EQ(options.paper, (Box{0, 0, 200, 300}));
}

// ---- the PDF writer ----

TEST(PdfWriter, TextStringsAndNumbers) {
    EXPECT_EQ(pdfTextString("a (b) \\c"), "(a \\(b\\) \\\\c)");
    EXPECT_EQ(pdfTextString("tab\there"), "(tab\\011here)");
    EXPECT_EQ(pdfTextString("caf\xc3\xa9"), "<FEFF00630061006600E9>");
    EXPECT_EQ(pdfTextString("\xf0\x9f\x98\x80"), "<FEFFD83DDE00>");
    EXPECT_EQ(pdfTextString("caf\xe9"), "(caf\xe9)"); // not UTF-8: the bytes
    EXPECT_EQ(pdfNumber(595.2756), "595.28");
    EXPECT_EQ(pdfNumber(612), "612");
    EXPECT_EQ(pdfNumber(0.5), "0.5");
    EXPECT_EQ(pdfNumber(-0.001), "0");
}

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Every cross-reference entry points at its object, and startxref at the table.
void expectConsistentXref(const std::string& pdf) {
    const std::size_t start = pdf.rfind("startxref\n");
    ASSERT_NE(start, std::string::npos);
    const std::size_t xref = std::stoull(pdf.substr(start + 10));
    ASSERT_EQ(pdf.compare(xref, 5, "xref\n"), 0);
    std::istringstream table(pdf.substr(xref + 5));
    int first = 0, count = 0;
    table >> first >> count;
    ASSERT_EQ(first, 0);
    std::string line;
    std::getline(table, line);
    for (int number = 0; number < count; ++number) {
        std::getline(table, line);
        ASSERT_EQ(line.size(), 19u) << line; // 20 bytes with the line feed
        if (number == 0) continue;
        const std::size_t offset = std::stoull(line.substr(0, 10));
        EXPECT_EQ(pdf.compare(offset, std::to_string(number).size() + 7,
                              std::to_string(number) + " 0 obj\n"),
                  0)
            << "object " << number;
    }
    EXPECT_NE(pdf.find("/Size " + std::to_string(count) + " "), std::string::npos);
}

TEST(PdfWriter, WritesAConsistentDocument) {
    const fs::path path = fs::temp_directory_path() / "kelps2pdf-writer-test.pdf";
    std::FILE* file = std::fopen(path.string().c_str(), "wb");
    ASSERT_TRUE(file);
    {
        PdfWriter writer(file);
        const int content = writer.writeContent("0 0 m 10 10 l S\n");
        PdfObject record{};
        char dictionary[] = "/Type /XObject /Subtype /Image /Width 1 /Height 1";
        char name[] = "/PSI1";
        unsigned char data[] = {1, 2, 3};
        record.dictionaryText = dictionary;
        record.name = name;
        record.kind = 3;
        record.data = data;
        record.dataLength = 3;
        record.uncompressed = 0;
        const int image = writer.writeRecord(record);
        writer.writePage(Box{0, 0, 612, 792}, {content}, PageResources{{{"PSI1", image}}, {}});
        writer.writePage(a4Paper, {}, {});
        writer.finish(DocumentInfo{"T", "P", "D:20000101000000Z"});
        EXPECT_FALSE(writer.failed());
        EXPECT_EQ(writer.pageCount(), 2u);
    }
    std::fclose(file);
    const std::string pdf = readFile(path);
    fs::remove(path);
    EXPECT_EQ(pdf.substr(0, 9), "%PDF-1.7\n");
    EXPECT_NE(pdf.find("/Type /Pages /Count 2"), std::string::npos);
    EXPECT_NE(pdf.find("/XObject << /PSI1 4 0 R >>"), std::string::npos);
    // Data with a filter of their own stay as they are: no Flate around them.
    EXPECT_NE(pdf.find("/Height 1 /Length 3 >>\nstream\n\x01\x02\x03\nendstream"),
              std::string::npos);
    EXPECT_NE(pdf.find("/MediaBox [0 0 595.28 841.89]"), std::string::npos);
    EXPECT_NE(pdf.find("/Title (T) /Producer (P) /CreationDate (D:20000101000000Z)"),
              std::string::npos);
    expectConsistentXref(pdf);
}

// ---- whole runs ----

class Run : public ::testing::Test {
protected:
    void SetUp() override {
        folder = fs::temp_directory_path() /
                 ("kelps2pdf-test-" +
                  std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }

    fs::path write(const std::string& name, const std::string& bytes) {
        const fs::path path = folder / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    // Runs the program; stderr is kept in errors.
    int run(std::vector<std::string> args) {
        std::vector<const char*> argv{"kelps2pdf"};
        for (const std::string& arg : args)
            argv.push_back(arg.c_str());
        ::testing::internal::CaptureStderr();
        const int status = runKelps2pdf(static_cast<int>(argv.size()), argv.data());
        errors = ::testing::internal::GetCapturedStderr();
        return status;
    }

    std::vector<std::string> filesLeft() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    fs::path folder;
    std::string errors;
};

const std::string header = "%!PS-Adobe-3.0\n%%Title: (Test job)\n%%EndComments\n";

std::string page(int number, const std::string& body) {
    return "%%Page: " + std::to_string(number) + " " + std::to_string(number) + "\n" + body +
           "showpage\n";
}

int count(const std::string& text, const std::string& what) {
    int n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++n;
    return n;
}

// 40 x 40 RGB (4800 bytes: beyond what stands inline) from readhexstring.
std::string bigImage() {
    std::string hex;
    std::mt19937 random(3);
    for (int i = 0; i < 4800; ++i) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned>(random() % 256));
        hex += pair;
        if (i % 39 == 38) hex += '\n';
    }
    return "/buf 120 string def 40 40 8 [40 0 0 -40 0 40] "
           "{currentfile buf readhexstring pop} false 3 colorimage\n" +
           hex + "\n";
}

TEST_F(Run, PagesSizesTitleAndASharedImage) {
    const std::string job =
        "\x04\x1b%-12345X@PJL JOB\n@PJL ENTER LANGUAGE=POSTSCRIPT\n" + header +
        "%%DocumentMedia: Letter 612 792 0 () ()\n%%EndComments\n" +
        page(1, "0 0 moveto 100 100 lineto stroke\n" + bigImage()) +
        page(2, "%%PageBoundingBox: 0 0 300 400\n" + bigImage()) +
        page(3, "%%BeginPageSetup\n2 dict dup /PageSize [200 250] put setpagedevice\n"
                "%%EndPageSetup\n") +
        "%%Trailer\n%%EOF\n\x1b%-12345X";
    const fs::path input = write("job.ps", job);
    ASSERT_EQ(run({"-q", input.string()}), exitClean) << errors;
    EXPECT_EQ(errors, "");
    const std::string pdf = readFile(folder / "job.pdf");
    EXPECT_EQ(count(pdf, "/Type /Page "), 3);
    EXPECT_NE(pdf.find("/MediaBox [0 0 612 792]"), std::string::npos);
    EXPECT_NE(pdf.find("/MediaBox [0 0 200 250]"), std::string::npos); // the page's request
    EXPECT_NE(pdf.find("/Title (Test job)"), std::string::npos);
    // The image data stand once, and both pages name the object.
    EXPECT_EQ(count(pdf, "/Subtype /Image"), 1);
    const std::size_t at = pdf.find("/XObject << /PSI");
    ASSERT_NE(at, std::string::npos);
    const std::string resource = pdf.substr(at, pdf.find(">>", at) + 2 - at);
    EXPECT_EQ(count(pdf, resource), 2) << resource;
    expectConsistentXref(pdf);
    EXPECT_EQ(filesLeft(), (std::vector<std::string>{"job.pdf", "job.ps"}));
}

TEST_F(Run, FailuresAreReportedWithTheirPageAndTheRestGoesOn) {
    const std::string job =
        header +
        "%%BeginSetup\nfeaturebegin{\n%%BeginFeature: *X\n"
        "(a) 1 add\n%%EndFeature\n}exec\n%%EndSetup\n" +
        page(1, "0 0 moveto 10 10 lineto stroke\n") +
        page(2, "1 0 0 setrgbcolor\n(x) 1 add\n5 5 moveto 9 9 lineto stroke\n") + "%%EOF\n";
    const fs::path input = write("job.ps", "/featurebegin {} def\n" + job);
    // Not PostScript unless the first line says so: the prelude goes after the header.
    const fs::path real =
        write("real.ps", header + "/featurebegin {} def\n" + job.substr(header.size()));
    EXPECT_EQ(run({input.string()}), exitNothingWritten);
    ASSERT_EQ(run({real.string(), (folder / "out.pdf").string()}), exitPageFailures);
    EXPECT_NE(errors.find("setup: (feature code) "), std::string::npos) << errors;
    EXPECT_NE(errors.find("page 2: "), std::string::npos) << errors;
    EXPECT_EQ(errors.find("page 1: "), std::string::npos) << errors;
    const std::string pdf = readFile(folder / "out.pdf");
    EXPECT_EQ(count(pdf, "/Type /Page "), 2);

    // --strict: nothing at all, and an existing file stays as it was.
    write("out.pdf", "old");
    EXPECT_EQ(run({"--strict", real.string(), (folder / "out.pdf").string()}), exitNothingWritten);
    EXPECT_EQ(readFile(folder / "out.pdf"), "old");
    // -q keeps the page's failure, drops the feature note.
    EXPECT_EQ(run({"-q", "-n", real.string()}), exitPageFailures);
    EXPECT_EQ(errors.find("feature"), std::string::npos);
    EXPECT_NE(errors.find("page 2: "), std::string::npos);
}

TEST_F(Run, APrologFailureLosesOnlyItsLine) {
    // The prolog goes a line a call: the definition after the failing line
    // survives, and the page that uses it converts cleanly.
    const fs::path input =
        write("job.ps", header + "%%BeginProlog\n(x) 1 add\n/five 5 def\n%%EndProlog\n" +
                            page(1, "five five moveto 9 9 lineto stroke\n") + "%%EOF\n");
    EXPECT_EQ(run({"-n", input.string()}), exitPageFailures);
    EXPECT_EQ(count(errors, "Exception"), 1) << errors;
    EXPECT_NE(errors.find("setup: "), std::string::npos) << errors;
}

TEST_F(Run, ARunawayPageEndsAtTheStepLimitAndKeepsWhatItDrew) {
    const fs::path input =
        write("loop.ps", header + page(1, "0 0 moveto 50 50 lineto stroke\n") +
                             page(2, "1 1 moveto 7 7 lineto stroke\n{1 pop} loop\n") +
                             page(3, "2 2 moveto 3 3 lineto stroke\n") + "%%EOF\n");
    ASSERT_EQ(run({"--max-steps", "100000", input.string()}), exitPageFailures);
    EXPECT_NE(errors.find("page 2: "), std::string::npos);
    EXPECT_NE(errors.find("Step limit of 100000"), std::string::npos) << errors;
    EXPECT_EQ(count(errors, "Exception"), 1) << errors; // reported once
    const std::string pdf = readFile(folder / "loop.pdf");
    EXPECT_EQ(count(pdf, "/Type /Page "), 3);
}

TEST_F(Run, BadInputGetsAClearMessageAndLeavesNothing) {
    std::string noise(3000, 0);
    std::mt19937 random(11);
    for (char& c : noise)
        c = static_cast<char>(random());
    noise[0] = 'x';
    const std::string imageJob = header + page(1, bigImage()) + "%%EOF\n";
    const std::size_t inHex = imageJob.find("colorimage") + 2000;
    const struct {
        const char* name;
        std::string bytes;
        int status;
        const char* message;
    } rows[] = {
        {"empty.ps", "", exitNothingWritten, "holds no PostScript"},
        {"pjl-only.ps", "\x1b%-12345X@PJL JOB\n\x1b%-12345X", exitNothingWritten,
         "holds no PostScript"},
        {"noise.ps", noise, exitNothingWritten, "is not PostScript"},
        {"text.ps", "Dear reader,\nthis is a letter.\n", exitNothingWritten, "is not PostScript"},
        {"truncated.ps", header + page(1, "0 0 moveto 9 9 lineto stroke\n") + "%%Page: 2 2\n0 0 mo",
         exitPageFailures, "ends before its %%EOF"},
        {"cut-in-hex.ps", imageJob.substr(0, inHex), exitPageFailures, "ends before its %%EOF"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const fs::path input = write(row.name, row.bytes);
        const fs::path output = folder / "out.pdf";
        EXPECT_EQ(run({input.string(), output.string()}), row.status);
        EXPECT_NE(errors.find(row.message), std::string::npos) << errors;
        EXPECT_EQ(fs::exists(output), row.status != exitNothingWritten);
        for (const std::string& name : filesLeft())
            EXPECT_EQ(name.find(".part-"), std::string::npos) << name;
        fs::remove(output);
        fs::remove(input);
    }
}

TEST_F(Run, UnreadableInputAndUnwritableOutputNameTheFile) {
    const fs::path input = write("job.ps", header + page(1, "") + "%%EOF\n");
    EXPECT_EQ(run({(folder / "missing.ps").string()}), exitNothingWritten);
    EXPECT_NE(errors.find("cannot read " + (folder / "missing.ps").string() + ": "),
              std::string::npos)
        << errors;
    EXPECT_EQ(run({folder.string()}), exitNothingWritten);
    EXPECT_NE(errors.find("it is a folder"), std::string::npos) << errors;
    const fs::path nowhere = folder / "no-such-folder" / "out.pdf";
    EXPECT_EQ(run({input.string(), nowhere.string()}), exitNothingWritten);
    EXPECT_NE(errors.find("cannot write " + nowhere.string() + ": "), std::string::npos) << errors;
    EXPECT_EQ(run({input.string(), input.string()}), exitNothingWritten);
    EXPECT_NE(errors.find("is the input file"), std::string::npos) << errors;
    EXPECT_EQ(filesLeft(), std::vector<std::string>{"job.ps"});
}

TEST_F(Run, OutputIsTheSameForEveryChunkSize) {
    // No failures, so every call boundary must give the same document.
    std::string body;
    for (int i = 0; i < 400; ++i)
        body += std::to_string(i) + " 0 moveto " + std::to_string(i) + " 500 lineto stroke\n";
    const fs::path input = write("job.ps", header + page(1, body + bigImage()) +
                                               page(2, body + bigImage()) + "%%EOF\n");
    std::string first;
    for (const char* chunk : {"64", "4K", "64K", "1G"}) {
        ASSERT_EQ(run({"--chunk-size", chunk, input.string(), (folder / "out.pdf").string()}),
                  exitClean)
            << errors;
        std::string pdf = readFile(folder / "out.pdf");
        const std::size_t date = pdf.find("/CreationDate (");
        if (date != std::string::npos) pdf.erase(date, pdf.find(')', date) + 1 - date);
        if (first.empty()) first = pdf;
        EXPECT_EQ(pdf, first) << chunk;
    }
}

} // namespace
