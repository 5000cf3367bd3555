#include "support/TestSupport.h"

#include <gtest/gtest.h>

TEST(Smoke, ProcedureLandsOnStack) {
    testing_support::Session s;
    ASSERT_TRUE(s.run("1 { 2 3 } "));
    EXPECT_EQ(s.stackValues(), "1 [2 3 ]");
}
