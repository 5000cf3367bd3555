// The C interface of the conversion face, as a host uses it.
#include "kelumpd64/conversion.h"
#include "kelumpd64/limits.h"

#include "support/TestSupport.h"

#include "core/Interpreter.h"

#include <cstring>
#include <gtest/gtest.h>
#include <new>
#include <string>

using testing_support::Handle;

namespace {

Postscript2Pdf& translator(PSHandle h) {
    return *reinterpret_cast<Postscript2Pdf*>(h);
}

TEST(ConversionExports, OpenKeepsTheMatrixAndStartsClean) {
    const float matrix[6] = {0.5f, 0, 0, -0.5f, 10, 800};
    PSHandle h = PSOpen(matrix);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(translator(h).defaultMatrix[0], 0.5);
    EXPECT_EQ(translator(h).defaultMatrix[5], 800.0);
    EXPECT_STREQ(PSGetErrorStr(h), "");
    PSClose(h);
    PSClose(nullptr);
    EXPECT_EQ(PSOpen(nullptr), nullptr);
}

TEST(ConversionExports, NegativeLengthMeansNulTerminated) {
    struct Row {
        uint32_t length;
        std::size_t expectedDepth;
    };
    // "1 2 3 " then a NUL, then more that only a measured length would leave out.
    const unsigned char data[] = "1 2 3 \0 4 5 ";
    for (Row row : {Row{0xFFFFFFFFu, 3}, Row{0x80000000u, 3}, Row{sizeof data - 1, 5}}) {
        Handle h;
        uint32_t length = row.length;
        ASSERT_NE(PSConvertToPdf(h.h, data, &length), nullptr);
        EXPECT_EQ(length, 0u) << "no painting operator ran";
        EXPECT_EQ(translator(h.h).interpreter->operandStack->size(), row.expectedDepth)
            << std::hex << row.length;
    }
}

// A later success leaves the text of a failure; the next failure replaces it.
TEST(ConversionExports, FailureTextStaysUntilTheNextFailure) {
    Handle h;
    uint32_t length = 1;
    EXPECT_EQ(PSConvertToPdf(h.h, reinterpret_cast<const unsigned char*>("}"), &length), nullptr);
    std::string error = PSGetErrorStr(h.h);
    length = 2;
    EXPECT_NE(PSConvertToPdf(h.h, reinterpret_cast<const unsigned char*>("1 "), &length), nullptr);
    EXPECT_EQ(PSGetErrorStr(h.h), error);
    EXPECT_EQ(PSExecuteReturnStdOut(h.h, "(x\\q)", 5), nullptr);
    EXPECT_NE(std::string(PSGetErrorStr(h.h)).find("Unsupported character escape in string"),
              std::string::npos);
}

// The host's bound ends an endless program (without it, a full stack would);
// the next call goes on with the next piece, and 0 lifts the bound.
TEST(ConversionExports, StepLimitEndsARunawayCall) {
    testing_support::Handle h;
    PSSetStepLimit(h.h, 1000);
    const unsigned char endless[] = "{ 1 } loop ";
    uint32_t length = sizeof endless - 1;
    EXPECT_EQ(PSConvertToPdf(h.h, endless, &length), nullptr);
    EXPECT_NE(std::string(PSGetErrorStr(h.h)).find("] Step limit of 1000 reached"),
              std::string::npos);
    const unsigned char next[] = "0 0 moveto 1 1 lineto ";
    length = sizeof next - 1;
    const char* content = PSConvertToPdf(h.h, next, &length);
    ASSERT_NE(content, nullptr);
    EXPECT_EQ(std::string(content, length), "0 0 m\n1 1 l\n");
    PSSetStepLimit(h.h, 0);
    const unsigned char long_[] = "0 1 5000 { pop } for ";
    length = sizeof long_ - 1;
    EXPECT_NE(PSConvertToPdf(h.h, long_, &length), nullptr) << PSGetErrorStr(h.h);
    PSSetStepLimit(nullptr, 5);
}

TEST(ConversionExports, NullArgumentsAreRefused) {
    Handle h;
    uint32_t length = 4;
    EXPECT_EQ(PSConvertToPdf(nullptr, reinterpret_cast<const unsigned char*>("1 "), &length),
              nullptr);
    EXPECT_EQ(PSConvertToPdf(h.h, reinterpret_cast<const unsigned char*>("1 "), nullptr), nullptr);
    EXPECT_EQ(PSConvertToPdf(h.h, nullptr, &length), nullptr);
    EXPECT_EQ(length, 4u);
    EXPECT_NE(std::string(PSGetErrorStr(h.h)).find("No data to run"), std::string::npos);
    length = 0;
    EXPECT_NE(PSConvertToPdf(h.h, nullptr, &length), nullptr) << "nothing to run is no failure";
    EXPECT_EQ(PSGetErrorStr(nullptr), nullptr);
    EXPECT_EQ(PSExecuteReturnStdOut(nullptr, "1 ", 2), nullptr);
    uint32_t count = 0;
    EXPECT_EQ(PSExecuteReturnDoubles(nullptr, "1 ", &count), nullptr);
}

TEST(ConversionExports, TwoHandlesAreIndependent) {
    Handle a, b;
    uint32_t length = 0xFFFFFFFFu;
    ASSERT_NE(PSConvertToPdf(a.h, reinterpret_cast<const unsigned char*>("1 2 "), &length),
              nullptr);
    length = 0xFFFFFFFFu;
    EXPECT_EQ(PSConvertToPdf(b.h, reinterpret_cast<const unsigned char*>("}"), &length), nullptr);
    EXPECT_EQ(translator(a.h).interpreter->operandStack->size(), 2u);
    EXPECT_EQ(translator(b.h).interpreter->operandStack->size(), 0u);
    EXPECT_STREQ(PSGetErrorStr(a.h), "");
}

// The three exports that run a buffer, each as a call that gives its result
// and, where the export has one, its length or count in n. The text is
// NUL-terminated, and a length of all ones has it measured.
struct RunExport {
    const char* name;
    const void* (*call)(PSHandle, const char* text, uint32_t& n);
    bool writesN;
};

void PrintTo(const RunExport& e, std::ostream* os) {
    *os << e.name;
}

const RunExport runExports[] = {
    {"PSConvertToPdf",
     [](PSHandle h, const char* text, uint32_t& n) -> const void* {
         return PSConvertToPdf(h, reinterpret_cast<const unsigned char*>(text), &n);
     },
     true},
    {"PSExecuteReturnStdOut",
     [](PSHandle h, const char* text, uint32_t&) -> const void* {
         return PSExecuteReturnStdOut(h, text, static_cast<uint32_t>(std::strlen(text)));
     },
     false},
    {"PSExecuteReturnDoubles",
     [](PSHandle h, const char* text, uint32_t& n) -> const void* {
         return PSExecuteReturnDoubles(h, text, &n);
     },
     true},
};

// What the runtime throws when memory runs out, from inside a run.
class ExhaustingOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter&) override { throw std::bad_alloc(); }
};

class RunExports : public ::testing::TestWithParam<RunExport> {};

TEST_P(RunExports, EmptyTheContentOfTheLastCall) {
    Handle h;
    translator(h.h).contentText.append("stale content");
    uint32_t n = 0xFFFFFFFFu;
    GetParam().call(h.h, "1 ", n);
    EXPECT_EQ(translator(h.h).contentText.view(), "");
}

TEST_P(RunExports, FailureGivesNullKeepsTheCountAndReportsText) {
    Handle h;
    uint32_t n = 0xFFFFFFFFu;
    EXPECT_EQ(GetParam().call(h.h, "1 2 } 3 ", n), nullptr);
    if (GetParam().writesN) {
        EXPECT_EQ(n, 0xFFFFFFFFu);
    }
    std::string error = PSGetErrorStr(h.h);
    EXPECT_EQ(error.rfind("Exception:[", 0), 0u) << error;
    EXPECT_EQ(error.substr(error.find("] ")), "] Expected ps_array at Mark execute\n");
    EXPECT_EQ(translator(h.h).interpreter->operandStack->size(), 2u);
}

// Out of memory and the like pass the guard of the run and stop at the
// export: a null result, and the error text of before.
TEST_P(RunExports, OtherExceptionsStopAtTheExportWithoutText) {
    Handle h;
    Interpreter& in = *translator(h.h).interpreter;
    in.registerOperator(new ExhaustingOperator(in.intern("exhaust")));
    uint32_t n = 1;
    ASSERT_EQ(PSConvertToPdf(h.h, reinterpret_cast<const unsigned char*>("}"), &n), nullptr);
    std::string before = PSGetErrorStr(h.h);
    n = 0xFFFFFFFFu;
    EXPECT_EQ(GetParam().call(h.h, "1 exhaust 2 ", n), nullptr);
    if (GetParam().writesN) {
        EXPECT_EQ(n, 0xFFFFFFFFu);
    }
    EXPECT_EQ(PSGetErrorStr(h.h), before);
    // The handle goes on.
    EXPECT_NE(PSExecuteReturnStdOut(h.h, "3 ", 2), nullptr);
    EXPECT_EQ(in.operandStack->size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(All, RunExports, ::testing::ValuesIn(runExports),
                         testing_support::RowName());

} // namespace
