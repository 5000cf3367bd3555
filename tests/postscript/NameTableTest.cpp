#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <string>

using testing_support::Session;

namespace {

// Names that turn up once each, as data scanned as tokens would.
std::string namesUsedOnce(int count) {
    std::string program;
    for (int i = 0; i < count; ++i)
        program += "once" + std::to_string(i) + (i % 100 == 99 ? " clear\n" : " ");
    return program;
}

TEST(NameTable, NamesUsedOnceAreSweptWhileHeldAndDefinedNamesKeepWorking) {
    Session s;
    ASSERT_TRUE(s.run("/held [ /kept { defined } ] def /defined 1 def "));
    const std::size_t start = s.interpreter().names.size();
    ASSERT_TRUE(s.run(namesUsedOnce(60000)));
    EXPECT_LT(s.interpreter().names.size(), start + 10000);

    // The held names kept their entries, and look-ups see later changes.
    ASSERT_TRUE(s.run("held == held 1 get exec /defined 2 def held 1 get exec "));
    EXPECT_EQ(s.stackValues(), "1 2");
    EXPECT_EQ(s.interpreter().stdoutText, "[kept [defined ] ]\n");
}

} // namespace
