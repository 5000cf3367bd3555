#include "Tables.h"

#include "core/CompositeObject.h"

using testing_support::Session;

void PrintTo(const Case& row, std::ostream* os) {
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

TEST_P(Eval, Gives) {
    expectGives(GetParam());
}

TEST_P(Fails, KeepingWhatItPopped) {
    Session s;
    expectFailure(s, GetParam());
}
