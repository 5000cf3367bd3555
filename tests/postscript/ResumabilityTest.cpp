// A buffer may end anywhere: every split of a program must give what one
// buffer gives, up to the objects, the stacks, the scanner's state and the
// failures.
#include "support/TestSupport.h"

#include "core/ArrayObject.h"
#include "core/DictionarySet.h"
#include "core/Parser.h"
#include "operators/FileOperators.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>

using namespace std::string_view_literals;
using testing_support::render;
using testing_support::scanAll;
using testing_support::Session;

namespace {

// Together the programs visit every scanner state and every way out of it,
// NUL bytes, the building of procedures, the loop contexts, and failures of
// the scanner and of operators (one per program: a failure drops the rest of
// its buffer).
const std::string_view corpus[] = {
    "/name 16#FF 36#zz 2#102 0#0x1F 8#\v7 2147483648 -17 +4 + 1.5e3 .5 e 2e 1e5e 1e-5 // "
    "///x /  abc\n"sv,
    "(plain) (a(b)c) (nested (paren (deep) here) end) (esc\\n\\r\\t\\b\\f\\\\\\(\\)) "
    "(oct\\101\\1x\\12y\\1234\\08\\400) "
    "(cont\\\nline) (lfcr\\\n\rx) (crcr\\\r\ry) (crlf\\\r\ny) (lflf\\\n\nz) (stray)) "sv,
    "<48656C6C6F> <~87cURD]i,\"Ebo80~> <~a>b~> <> <~~> <~> << /k 1 >> <4\n1> "sv,
    "% a comment\n1 %% another\r2 %x\f3 %nul\0 4 %end"sv,
    "5\0 /ab\0 <41\0 <~a>b\0 <~c~\0 (x) \0 6 "sv,
    "{ 1 { 2 { 3 } } (s) /lit //languagelevel } { } { [ ] } unknown //version { //add } "sv,
    "/p { 1 2 add { 3 } exec } def p p /q { p (q) } def q "sv,
    "3 { 1 } repeat 0 1 2 { } for [ 1 2 ] { } forall { exit } loop { stop } stopped "sv,
    "1 2 { 3 } } 4 "sv,
    "(a\\q) 5 "sv,
    "7 (a\0b) 6 "sv,
    "{ 1 { //nothing } 7 "sv,
    "/r { 1 pop pop pop 7 } def 0 r 8 "sv,
    // Reads of the current file wait for their data over any split. Booleans
    // that say whether a buffer held more are dropped: a split changes them.
    // Data read by readstring has no white space past its start, which only a
    // read finishing in one call would drop.
    "currentfile 6 string readstring \n\t \0\377\f\200AB pop "
    "2 { currentfile 2 string readstring pop } repeat xyZW (end) "sv,
    "currentfile 4 string readhexstring 4 1\n4 2 zz 6\3771 6 2 pop "
    "2 { currentfile 1 string readhexstring pop } repeat 7e7F (end) "sv,
    "currentfile 9 string readhexstring 41 4"sv,
    "currentfile 5 string readstring \0ab"sv,
    "{ (abc) /B filter } /A filter 0 () /SubFileDecode filter 0 string readstring pop "
    "<41> /C filter 3 string readstring pop "sv,
};

// Arrays element by element, with their bracket, attribute and position;
// operators apart from names; strings with their bytes and filters.
std::string picture(const PostscriptObject* object, int depth = 0) {
    // Save objects are numbered across the process: every run's differ.
    if (object->type == ps_save) return "ps_save";
    if (object->type != ps_array) return render(object);
    const auto* array = static_cast<const ArrayObject*>(object);
    if (depth > 16) return "...";
    std::string text = array->executable ? "x" : "";
    text += array->arrayData()->bracket;
    text += std::to_string(array->execIndex);
    for (const PostscriptObject* element : array->items().items)
        text += ' ' + picture(element, depth + 1);
    return text + (array->arrayData()->bracket == '{' ? " }" : " ]");
}

std::string picture(const ObjectStack& stack) {
    std::string text;
    for (const PostscriptObject* object : stack.items)
        text += picture(object) + " | ";
    return text;
}

struct Outcome {
    std::string operands, execution, deferred, definitions, scanner, reads, output, error;
    std::size_t reached = 0; // where the scanner stopped in the program
    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Outcome& o) {
    return os << "operands [" << o.operands << "]\nexecution [" << o.execution << "]\ndeferred ["
              << o.deferred << "]\ndefinitions [" << o.definitions << "]\nscanner [" << o.scanner
              << "]\nreads [" << o.reads << "]\noutput [" << o.output << "]\nerror [" << o.error
              << "]\nreached " << o.reached;
}

// Runs the program in pieces on a fresh handle and stops after the first
// failure, whose buffer's rest is dropped in either case.
Outcome run(std::string_view program, const std::vector<std::size_t>& cuts) {
    Session s;
    Interpreter& in = s.interpreter();
    // The driver's terminate loop runs until a stack is full: a small limit
    // ends it soon, the same way in any split.
    in.operandStack->limit = 20000;
    Outcome outcome;
    std::size_t from = 0;
    std::vector<std::size_t> ends(cuts);
    ends.push_back(program.size());
    const Parser& p = *in.parser;
    for (std::size_t end : ends) {
        bool ok = s.run(program.substr(from, end - from));
        outcome.output += in.stdoutText;
        outcome.reached = from + static_cast<std::size_t>(p.cursor - p.begin);
        from = end;
        if (!ok) {
            outcome.error = s.error();
            break;
        }
    }
    outcome.operands = picture(*in.operandStack);
    outcome.execution = picture(*in.executionStack);
    outcome.deferred = picture(*in.deferredExecutionStack);
    for (const auto& [key, value] : in.dictionaries->userData->entries)
        outcome.definitions += key + "=" + picture(value) + " ";
    outcome.scanner = std::to_string(p.state) + " [" + p.token + "] " +
                      (p.inEscape ? "escape [" + p.escape + "] " : "") +
                      std::to_string(p.parenDepth);
    // What a waiting read holds.
    DictionaryData& system = *in.dictionaries->systemData;
    const auto& text = static_cast<ReadstringOperator*>(system.find("readstring"))->resumeText;
    const auto& hex = *static_cast<ReadhexstringOperator*>(system.find("readhexstring"));
    outcome.reads = text + " | " + hex.resumeText + " | " + std::to_string(hex.pendingDigit);
    return outcome;
}

// Ascending cuts, count of them, spread over [0, limit].
std::vector<std::size_t> randomCuts(std::mt19937& random, std::size_t limit, int count) {
    std::uniform_int_distribution<std::size_t> at(0, limit);
    std::vector<std::size_t> cuts;
    for (int i = 0; i < count; ++i)
        cuts.push_back(at(random));
    std::sort(cuts.begin(), cuts.end());
    return cuts;
}

// Pieces of 1 to maxPiece bytes up to limit.
std::vector<std::size_t> smallPieces(std::mt19937& random, std::size_t limit,
                                     std::size_t maxPiece) {
    std::uniform_int_distribution<std::size_t> step(1, maxPiece);
    std::vector<std::size_t> cuts;
    for (std::size_t at = step(random); at < limit; at += step(random))
        cuts.push_back(at);
    return cuts;
}

TEST(Resumability, EveryTwoWaySplitMatchesOneBuffer) {
    std::vector<std::string> errors;
    for (std::string_view program : corpus) {
        Outcome whole = run(program, {});
        if (!whole.error.empty()) errors.push_back(whole.error);
        auto objects = scanAll(program);
        for (std::size_t cut = 0; cut <= program.size(); ++cut) {
            ASSERT_EQ(run(program, {cut}), whole)
                << ::testing::PrintToString(program) << " split at " << cut;
            ASSERT_EQ(scanAll(program, {cut}), objects)
                << ::testing::PrintToString(program) << " split at " << cut;
        }
    }
    // That the corpus holds the failures it claims.
    EXPECT_EQ(errors, (std::vector<std::string>{
                          "Expected ps_array at Mark execute",
                          "Unsupported character escape in string",
                          "Unexpected separator when parsing for end of literal string",
                          "Undefined Immediately Evaluated Name",
                          "pop - expected item on stack",
                      }));
}

TEST(Resumability, ManyWaySplitsMatchOneBuffer) {
    std::mt19937 random(20261122);
    for (std::string_view program : corpus) {
        Outcome whole = run(program, {});
        auto objects = scanAll(program);
        for (int round = 0; round < 24; ++round) {
            auto cuts = randomCuts(random, program.size(), 8);
            ASSERT_EQ(run(program, cuts), whole) << ::testing::PrintToString(program);
            ASSERT_EQ(scanAll(program, cuts), objects) << ::testing::PrintToString(program);
        }
        // And one byte at a time.
        auto bytes = smallPieces(random, program.size(), 1);
        ASSERT_EQ(run(program, bytes), whole) << ::testing::PrintToString(program);
        ASSERT_EQ(scanAll(program, bytes), objects) << ::testing::PrintToString(program);
    }
}

// Real driver output. The scan goes over the whole file, past failures; the
// run stops at its first failure, so the pieces that matter lie before it.
TEST(Resumability, SampleFilesGiveTheSameInPieces) {
    auto samples = testing_support::samplePrograms();
    if (samples.empty()) GTEST_SKIP() << "no sample PostScript beside the repository";
    std::mt19937 random(7);
    for (const auto& path : samples) {
        std::string text = testing_support::readFile(path);
        auto objects = scanAll(text);
        ASSERT_FALSE(objects.empty()) << path;
        EXPECT_EQ(scanAll(text, randomCuts(random, text.size(), 256)), objects) << path;
        EXPECT_EQ(scanAll(text, smallPieces(random, text.size(), 64)), objects) << path;

        Outcome whole = run(text, {});
        std::size_t limit = std::min(text.size(), whole.reached + 16);
        EXPECT_EQ(run(text, randomCuts(random, limit, 128)), whole) << path;
        EXPECT_EQ(run(text, smallPieces(random, limit, 16)), whole) << path;
    }
}

// An image of many lines, read line by line as drivers do, in binary and in
// hexadecimal, cut into many buffers of every size.
TEST(Resumability, LongImageDataGivesTheSameInPieces) {
    std::mt19937 random(4096);
    std::uniform_int_distribution<int> byte(0, 255);
    std::string binary = "40 { currentfile 100 string readstring pop } repeat ";
    for (int i = 0; i < 4000; ++i) {
        char c = static_cast<char>(byte(random));
        // White space past the start of a read is kept only when the read resumes.
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') c = 'w';
        binary += c;
    }
    binary += " (end) ";
    std::string hex = "50 { currentfile 100 string readhexstring pop } repeat\n";
    for (int i = 0; i < 5000; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, i % 2 ? "%02x" : "%02X", byte(random));
        hex += digits;
        if (i % 32 == 31) hex += '\n';
    }
    hex += "\n(end) ";
    for (const std::string& program : {binary, hex}) {
        Outcome whole = run(program, {});
        ASSERT_EQ(whole.error, "");
        ASSERT_NE(whole.operands.find("(end)"), std::string::npos);
        for (int round = 0; round < 16; ++round)
            ASSERT_EQ(run(program, randomCuts(random, program.size(), 64)), whole);
        ASSERT_EQ(run(program, smallPieces(random, program.size(), 7)), whole);
        ASSERT_EQ(run(program, smallPieces(random, program.size(), 1)), whole);
    }
}

} // namespace
