// A buffer may end anywhere: every split of a program must give what one
// buffer gives.
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <random>

using testing_support::scanAll;
using testing_support::Session;

namespace {

// Each program visits the scanner's states and the engine's procedure building.
const char* const corpus[] = {
    "/name 16#FF 36#zz 2147483648 -17 +4 1.5e3 .5 e 2e 1e5e // /  abc\n",
    "(plain) (a(b)c) (esc\\n\\t\\\\\\(\\)) (oct\\101\\1x\\12y) (cont\\\nline) (lfcr\\\n\rx) "
    "(crlf\\\r\ny) (stray)) ",
    "<48656C6C6F> <~87cURD]i,\"Ebo80~> <~a>b~> <> <~~> << /k 1 >> ",
    "% a comment\n1 %% another\r2 %x\f3 ",
    "{ 1 { 2 { 3 } } (s) /lit //languagelevel } { } { [ ] } unknown ",
    "//version //languagelevel 1 2 { //userdict } ",
};

struct Outcome {
    std::string stack;
    std::string error;
    std::size_t deferred;
    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Outcome& o) {
    return os << "stack [" << o.stack << "] error [" << o.error << "] deferred " << o.deferred;
}

Outcome runSplit(std::string_view program, const std::vector<std::size_t>& cuts) {
    Session s;
    s.runSplit(program, cuts);
    return {s.stack(), s.pdf.errorText.empty() ? "" : s.error(),
            s.interpreter().deferredExecutionStack->size()};
}

TEST(Resumability, EveryTwoWaySplitMatchesOneBuffer) {
    for (std::string_view program : corpus) {
        Outcome whole = runSplit(program, {});
        ASSERT_EQ(whole.error, "") << program;
        for (std::size_t cut = 0; cut <= program.size(); ++cut)
            ASSERT_EQ(runSplit(program, {cut}), whole) << program << " split at " << cut;
    }
}

TEST(Resumability, RandomManyWaySplitsMatchOneBuffer) {
    std::mt19937 random(20261122);
    for (std::string_view program : corpus) {
        Outcome whole = runSplit(program, {});
        for (int round = 0; round < 50; ++round) {
            std::vector<std::size_t> cuts;
            std::uniform_int_distribution<std::size_t> at(0, program.size());
            for (int i = 0; i < 8; ++i)
                cuts.push_back(at(random));
            std::sort(cuts.begin(), cuts.end());
            ASSERT_EQ(runSplit(program, cuts), whole) << program;
        }
        // And one byte at a time.
        std::vector<std::size_t> bytes;
        for (std::size_t i = 1; i < program.size(); ++i)
            bytes.push_back(i);
        ASSERT_EQ(runSplit(program, bytes), whole) << program;
    }
}

// Real driver output, scanned in random pieces, gives the same objects, up to
// and including the first failure, where both scans stop.
TEST(Resumability, SampleFilesScanTheSameInPieces) {
    auto samples = testing_support::samplePrograms();
    if (samples.empty()) GTEST_SKIP() << "no sample PostScript beside the repository";
    std::mt19937 random(7);
    for (const auto& path : samples) {
        std::string text = testing_support::readFile(path);
        auto whole = scanAll(text);
        ASSERT_FALSE(whole.empty()) << path;
        std::vector<std::size_t> cuts;
        std::uniform_int_distribution<std::size_t> at(0, text.size());
        for (int i = 0; i < 64; ++i)
            cuts.push_back(at(random));
        std::sort(cuts.begin(), cuts.end());
        EXPECT_EQ(scanAll(text, cuts), whole) << path;
    }
}

} // namespace
