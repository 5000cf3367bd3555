#include "Tables.h"

#include "support/TestSupport.h"

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

TEST_P(Eval, Gives) {
    Session s;
    const bool ok = s.run(GetParam().program);
    EXPECT_EQ(ok ? s.stackValues() : "ERROR: " + s.error(), GetParam().result);
    if (!ok) return;
    EXPECT_TRUE(s.interpreter().executionStack->empty());
    EXPECT_TRUE(s.interpreter().deferredExecutionStack->empty());
}

TEST_P(Fails, KeepingWhatItPopped) {
    Session s;
    expectFailure(s, GetParam());
}
