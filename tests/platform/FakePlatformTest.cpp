// What the fake adds to the contract and no test of the job face pins: a failure
// planned for a count of calls, and the virtual time of a timed wait.

#include "support/fake/FakePlatform.h"
#include "platform/WideText.h"

#include <gtest/gtest.h>

using namespace platform;

namespace {

TEST(FakePlatform, CountedFailuresEndAndTimedWaitsTakeVirtualTime) {
    FakePlatform fake;
    fake.fail(Call::GetUserName, 1234, 2);
    EXPECT_FALSE(fake.system().userName(260).has_value());
    EXPECT_FALSE(fake.system().userName(260).has_value());
    EXPECT_TRUE(fake.system().userName(260).has_value());
    auto event = fake.kernel().createEvent(nullptr, false, false, u"e");
    auto before = fake.system().ticks;
    EXPECT_EQ(event->wait(300), WaitResult::Timeout);
    EXPECT_EQ(fake.system().ticks - before, 300u);
}

TEST(WideText, Utf8RoundTripAndCaseFolding) {
    for (std::u16string s : {u"", u"plain", u"\u00e9t\u00e9", u"\u20ac", u"\U0001F600"})
        EXPECT_EQ(fromUtf8(toUtf8(s)), s);
    EXPECT_EQ(toUtf8(u"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(std::u16string(1, u'\xD800')), "\xEF\xBF\xBD");
    EXPECT_EQ(fromUtf8("\xC3"), u"\uFFFD"); // cut sequence
    EXPECT_TRUE(equalsIgnoreCase(u"Tamarisk FOLIOGRAPH", u"tamarisk foliograph"));
    EXPECT_FALSE(equalsIgnoreCase(u"abc", u"abcd"));
}

} // namespace
