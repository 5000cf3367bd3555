// What every translator's interpreter holds before its first job: the
// driver's abbreviations, three encodings and the Helvetica stub.
#include "Tables.h"

#include "core/DictionarySet.h"
#include "core/Interpreter.h"
#include "operators/GeneratedOps.h"
#include "operators/LanguageOperators.h"
#include "pdf/StartupTexts.h"
#include "platform/DebugOutput.h"

#include <string>

using testing_support::Session;

INSTANTIATE_TEST_SUITE_P(
    Abbreviations, Eval,
    ::testing::Values(Case{"3 4 ~ ", "4 3"}, Case{"/x 5 | x ", "5"},
                      Case{"/~ , /exch load eq ", "true"}, Case{"1 2 3 ! ", "1 2"},
                      Case{"7 @ ", "7 7"}, Case{"1 2 3 2 ^ ", "1 2 3 1"},
                      Case{"1 2 3 3 1 $ ", "3 1 2"}, Case{"F T ", "false true"},
                      Case{"true { 2 } { 3 } ? ", "2"},
                      Case{"U userdict eq & userdict eq ", "true true"},
                      // Each short name is the operator's own object.
                      Case{"/LH load /showpage load eq /K load /stroke load eq ", "true true"},
                      Case{"/b load type ", "arraytype"}, Case{"/q { 1 } b q ", "1"},
                      Case{"1 dict ` /z 9 def z & ", "9 -dict-"},
                      // A lone E scans as the real 0: only load reaches end.
                      Case{"/E load /end load eq E ", "true 0.000000"}),
    testing_support::RowName());

// Codes where the three tables differ, and a few where they agree.
INSTANTIATE_TEST_SUITE_P(
    Encodings, Eval,
    ::testing::Values(
        Case{"StandardEncoding 65 get WinAnsiEncoding 128 get ISOLatin1Encoding 45 get ",
             "A Euro minus"},
        Case{"StandardEncoding length ISOLatin1Encoding length WinAnsiEncoding length ",
             "256 256 256"},
        Case{"StandardEncoding 0 get WinAnsiEncoding 31 get ISOLatin1Encoding 127 get ",
             ".notdef .notdef .notdef"},
        Case{"StandardEncoding 39 get ISOLatin1Encoding 39 get WinAnsiEncoding 39 get ",
             "quoteright quoteright quotesingle"},
        Case{"StandardEncoding 45 get ISOLatin1Encoding 45 get WinAnsiEncoding 45 get ",
             "hyphen minus hyphen"},
        Case{"StandardEncoding 96 get ISOLatin1Encoding 96 get WinAnsiEncoding 96 get ",
             "quoteleft quoteleft grave"},
        Case{"WinAnsiEncoding dup 127 get exch dup 129 get exch dup 141 get exch dup 143 get "
             "exch dup 144 get exch 157 get ",
             "bullet bullet bullet bullet bullet bullet"},
        Case{"StandardEncoding 144 get ISOLatin1Encoding 144 get WinAnsiEncoding 145 get ",
             ".notdef dotlessi quoteleft"},
        Case{"ISOLatin1Encoding 159 get WinAnsiEncoding 159 get WinAnsiEncoding 138 get ",
             "caron Ydieresis Scaron"},
        Case{"StandardEncoding 160 get ISOLatin1Encoding 160 get WinAnsiEncoding 160 get ",
             ".notdef space space"},
        Case{"StandardEncoding 164 get ISOLatin1Encoding 164 get WinAnsiEncoding 164 get ",
             "fraction currency currency"},
        Case{"StandardEncoding 173 get ISOLatin1Encoding 173 get WinAnsiEncoding 173 get ",
             "guilsinglright hyphen hyphen"},
        Case{"StandardEncoding 198 get ISOLatin1Encoding 198 get StandardEncoding 225 get ",
             "breve AE AE"},
        Case{"StandardEncoding 251 get ISOLatin1Encoding 251 get WinAnsiEncoding 255 get ",
             "germandbls ucircumflex ydieresis"},
        Case{"StandardEncoding 208 get WinAnsiEncoding 151 get ISOLatin1Encoding 215 get ",
             "emdash emdash multiply"}),
    testing_support::RowName());

TEST(StartupTexts, TextsHaveTheirSizesAndLeaveTheStackEmpty) {
    const auto& texts = startupTexts();
    EXPECT_EQ(texts[0].size(), 783u);
    EXPECT_EQ(texts[4].size(), 241u);
    EXPECT_EQ(texts[0].substr(0, 33), "/| /def load def /, /load load | ");
    Session s;
    EXPECT_EQ(s.stackValues(), "");
    EXPECT_EQ(s.interpreter().dictionaries->dictionaryStack->size(), 3u);
}

// Every name of an encoding is a literal name.
TEST(StartupTexts, EncodingsHoldOnlyLiteralNames) {
    Session s;
    ASSERT_TRUE(s.run("0 [StandardEncoding ISOLatin1Encoding WinAnsiEncoding] { { dup type "
                      "/nametype eq exch xcheck not and { 1 add } if } forall } forall "))
        << s.error();
    EXPECT_EQ(s.stackValues(), "768");
}

// A failing text stops the rest, reports to the debug output only, and
// leaves what ran before it.
TEST(StartupTexts, AFailureSkipsTheRestAndIsOnlyReported) {
    std::string reported;
    platform::setDebugSink([&](std::string_view text) { reported += text; });
    Interpreter interpreter;
    objectpool::Scope scope(interpreter.pool.get());
    ImplementedGenOps generated(&interpreter);
    installLanguage(interpreter, generated);
    // An encoding's "256 array astore" now hands astore an integer.
    DictionaryData& system = *interpreter.dictionaries->systemData;
    system.put("array", system.find("pop"));
    runStartupTexts(interpreter);
    platform::setDebugSink({});
    EXPECT_EQ(reported.rfind("Exception in Procset:", 0), 0u) << reported;
    EXPECT_NE(reported.find("astore"), std::string::npos) << reported;
    const DictionaryData& user = *interpreter.dictionaries->userData;
    EXPECT_NE(user.find("|"), nullptr) << "the abbreviations ran before";
    EXPECT_EQ(user.find("WinAnsiEncoding"), nullptr);
    EXPECT_EQ(user.find("ISOLatin1Encoding"), nullptr) << "the later texts did not run";
}
