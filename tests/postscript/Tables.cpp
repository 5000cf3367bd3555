#include "Tables.h"

#include "core/CompositeObject.h"

#include <initializer_list>
#include <string>

using testing_support::Session;

void PrintTo(const Case& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

void PrintTo(const ContentCase& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

void PrintTo(const FailCase& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

void expectFailure(Session& session, const FailCase& row) {
    EXPECT_FALSE(session.run(row.program));
    EXPECT_EQ(session.error(), row.error);
    EXPECT_EQ(session.stackValues(), row.stackAfter);
    if (!row.next) return;
    EXPECT_TRUE(session.run(row.next)) << session.error();
    EXPECT_EQ(session.stackValues(), row.stackAfterNext);
}

void expectGives(const Case& row) {
    const long before = CompositeData::liveCount();
    {
        Session s;
        const bool ok = s.run(row.program);
        EXPECT_EQ(ok ? s.stackValues() : "ERROR: " + s.error(), row.result) << row.program;
        EXPECT_TRUE(!ok || s.interpreter().executionStack->empty());
        EXPECT_TRUE(!ok || s.interpreter().deferredExecutionStack->empty());
    }
    EXPECT_EQ(CompositeData::liveCount(), before) << "bodies outlive their handle";
}

namespace {

// The content and stack of a program run as the given buffers on a fresh
// handle; the content is what the calls wrote, joined.
struct Outcome {
    std::string content;
    std::string stack;
    std::string error;
};

Outcome runBuffers(std::initializer_list<std::string_view> buffers) {
    Session s;
    Outcome out;
    for (std::string_view buffer : buffers) {
        if (!s.run(buffer)) {
            out.error = s.error();
            break;
        }
        out.content += s.pdf.contentText.view();
    }
    out.stack = s.stackValues();
    return out;
}

} // namespace

void expectContent(const ContentCase& row) {
    const std::string_view program = row.program;
    const Outcome whole = runBuffers({program});
    ASSERT_EQ(whole.error, "") << program;
    EXPECT_EQ(whole.content, row.content) << program;
    EXPECT_EQ(whole.stack, row.stack) << program;
    if (!row.splits) return;
    for (std::size_t cut = 1; cut < program.size(); ++cut) {
        const Outcome split = runBuffers({program.substr(0, cut), program.substr(cut)});
        ASSERT_EQ(split.error, "") << "split at " << cut;
        EXPECT_EQ(split.content, whole.content) << "split at " << cut;
        EXPECT_EQ(split.stack, whole.stack) << "split at " << cut;
    }
}

TEST_P(Content, WritesExactlyAlsoSplitInTwo) {
    expectContent(GetParam());
}

TEST_P(Eval, Gives) {
    expectGives(GetParam());
}

TEST_P(Fails, KeepingWhatItPopped) {
    Session s;
    expectFailure(s, GetParam());
}
