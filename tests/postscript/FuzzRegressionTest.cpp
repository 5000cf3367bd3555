#include "InterpreterInput.h"
#include "Tables.h"

#include <filesystem>

using testing_support::readFile;
using testing_support::Session;

namespace {

constexpr uint64_t budget = 100000;

// Every input the interpreter fuzz target kept ends, under the budget, with
// no sanitizer report; the endless ones fail with the budget's text.
TEST(FuzzRegressions, EveryKeptInputEnds) {
    const std::filesystem::path folder =
        std::filesystem::path(KEL_SOURCE_DIR) / "fuzz" / "regressions" / "interpreter";
    std::size_t inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string bytes = readFile(entry.path());
        const std::vector<std::string> failures = runInterpreterInput(
            reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), budget);
        ++inputs;
        for (const std::string& failure : failures)
            EXPECT_NE(failure.find("Step limit of 100000 reached"), std::string::npos)
                << entry.path().filename() << ": " << failure;
        EXPECT_FALSE(failures.empty()) << entry.path().filename() << " ran to its end";
    }
    EXPECT_GE(inputs, 4u);
}

// The limit bounds one call. The runaway's remaining work is dropped, so the
// next call starts afresh with a budget of its own; its operands stay.
TEST(StepLimit, BoundsEachCallAndTheHandleGoesOn) {
    Session s;
    s.interpreter().stepLimit = 50;
    EXPECT_FALSE(s.run("/p { 1 p } def p "));
    EXPECT_EQ(s.error(), "Step limit of 50 reached");
    const std::size_t after = s.interpreter().operandStack->size();
    EXPECT_GT(after, 0u);
    EXPECT_TRUE(s.interpreter().executionStack->empty());
    EXPECT_TRUE(s.run("")) << "the recursion did not go on";
    EXPECT_EQ(s.interpreter().operandStack->size(), after);
    EXPECT_TRUE(s.run("clear 1 2 add ")) << s.error();
    EXPECT_EQ(s.stackValues(), "3");
}

// Without a limit nothing is bounded: a long finite loop runs to its end.
TEST(StepLimit, NoneByDefault) {
    Session s;
    EXPECT_EQ(s.interpreter().stepLimit, 0u);
    EXPECT_TRUE(s.run("0 1 1 300000 { add } for ")) << s.error();
    // 1 to 299999: the limit itself is never reached; the sum wraps at 32 bits.
    EXPECT_EQ(s.stackValues(), "2050177040");
}

} // namespace
