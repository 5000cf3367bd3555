#include "support/TestSupport.h"

#include "EvalCase.h"
#include "FailureCase.h"

#include "DictionarySet.h"
#include "Operands.h"
#include "ValueObjects.h"

#include <gtest/gtest.h>

using eval_case::Case;
using failure_case::FailureCase;
using testing_support::eval;
using testing_support::Session;

namespace {

class DictionaryOperators : public eval_case::EvalTable {};

TEST_P(DictionaryOperators, Eval) {
    EXPECT_EQ(eval(GetParam().program), GetParam().result);
}

// The operand of dict is no capacity; maxlength is made up from the count.
// clang-format off
INSTANTIATE_TEST_SUITE_P(Sizes, DictionaryOperators, ::testing::Values(
    Case{"5 dict ", "-dict-"},
    Case{"5 dict maxlength 5 dict length ", "10 0"},
    Case{"(x) dict length ", "0"},
    Case{"dict ", "ERROR: pop - expected item on stack"},
    Case{"5 dict begin /k 0 def currentdict maxlength currentdict length end ", "11 1"},
    Case{"1 dict begin 1 1 def 2 2 def 3 3 def currentdict maxlength end ", "13"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(Stack, DictionaryOperators, ::testing::Values(
    Case{"1 dict begin /zq 1 def zq end zq ", "1 (zq)"},
    // Nothing guards the permanent dictionaries; without them names are strings.
    Case{"end end end 1 2 add ", "1 2 (add)"},
    Case{"currentdict ", "-dict-"}));
// clang-format on

// clang-format off
INSTANTIATE_TEST_SUITE_P(Definitions, DictionaryOperators, ::testing::Values(
    Case{"/k 7 def k ", "7"},
    Case{"(k) 7 def /k load ", "7"},
    Case{"/a 1 def (a) load ", "1"},
    // A key redefined with its own value keeps it.
    Case{"/k [ 1 ] def /k dup load def k ", "[1 ]"},
    Case{"/k 1 def (k) 2 def k ", "2"},
    Case{"(k\\000x) 3 def k ", "3"},
    Case{"1 (one) def 1 load ", "(one)"},
    Case{"1 (one) def 1.0 load ", "ERROR: Undefined name passed to load operator"},
    Case{"{ 1 2 3 } (a) def { 4 5 6 } load ", "(a)"},
    Case{"1 dict begin /zq 1 def end /zq where ", "false"},
    Case{"load ", "ERROR: pop - expected item on stack"},
    Case{"/add load /add load length ", "add 3"},
    Case{"/k 1 def 1 dict begin /k 2 def /k load end /k load ", "2 1"},
    // store goes where the key is, or else to the top.
    Case{"/k 1 def 1 dict begin /k 2 store currentdict length end k ", "0 2"},
    Case{"1 dict begin /zq 2 store currentdict length zq end /zq where ", "1 2 false"},
    Case{"/k 1 def currentdict /k undef /k where ", "false"},
    Case{"/k 1 def currentdict (k) undef /k where ", "false"},
    Case{"currentdict /zq undef ", ""},
    Case{"1 5 /k undef ", "1"},
    Case{"/k 1 def /k where ", "-dict- true"},
    Case{"/k 7 def /k where pop /k get ", "7"},
    Case{"/zq where ", "false"},
    Case{"/k 1 def currentdict /k known currentdict (k) known currentdict /zq known ", "true true false"},
    Case{"1 dict begin 1 (x) def currentdict 1 known currentdict 1.0 known end ", "true false"}));
// clang-format on

// Names are looked up anew after every change a definition makes.
// clang-format off
INSTANTIATE_TEST_SUITE_P(LookupFollows, DictionaryOperators, ::testing::Values(
    Case{"/k 1 def k /k 2 def k ", "1 2"},
    Case{"/k 1 def k 1 dict begin k /k 2 def k end k ", "1 1 2 1"},
    Case{"/k 1 def k currentdict /k undef k ", "1 (k)"},
    Case{"/k 1 def k currentdict /k 3 put k ", "1 3"},
    Case{"/k 1 def 1 dict begin k /k 5 store k end k ", "1 5 5"},
    Case{"1 dict begin /zq 1 def zq cleardictstack zq ", "1 (zq)"}));
// clang-format on

// get and put take only names as dictionary keys, unlike def and known.
// clang-format off
INSTANTIATE_TEST_SUITE_P(GetPut, DictionaryOperators, ::testing::Values(
    Case{"/a 1 def currentdict /a get ", "1"},
    Case{"currentdict 1 get ", "ERROR: Unsupported parameter types to get"},
    Case{"currentdict /k 5 put k ", "5"},
    Case{"1 dict begin /a 1 def /b 2 def currentdict length end ", "2"}));
// clang-format on

class DictionaryFailure : public failure_case::FailureTable {};

TEST_P(DictionaryFailure, KeepsWhatItPopped) {
    Session s;
    failure_case::expectFailure(s, GetParam());
}

// The operands popped before a failure stay popped; the 7 below them stays.
// clang-format off
INSTANTIATE_TEST_SUITE_P(Texts, DictionaryFailure, ::testing::Values(
    FailureCase{"7 1 maxlength ", "Expected ps_dictionary at maxlength", "7"},
    FailureCase{"7 1 begin ", "expecting dictionary on op stack", "7"},
    FailureCase{"7 /zq load ", "Undefined name passed to load operator", "7"},
    FailureCase{"7 5 /k known ", "Expected ps_dictionary at known", "7"},
    FailureCase{"7 /k known ", "Expected ps_dictionary at known", ""},
    FailureCase{"7 currentdict /zq get ", "get could not find element", "7"},
    FailureCase{"7 /a 1 def currentdict (a) get ", "Unsupported parameter types to get", "7"},
    FailureCase{"7 currentdict (k) 5 put ", "Unsupported parameter types to put", "7"},
    FailureCase{"7 currentdict 1 5 put ", "Unsupported parameter types to put", "7"}));
// clang-format on

TEST(DictionaryOperators, DefStoresTheValueItself) {
    Session s;
    Interpreter& in = s.interpreter();
    auto* value = new IntegerObject(4);
    in.operandStack->push(in.makeName("k", false));
    in.operandStack->push(value);
    ASSERT_TRUE(s.run("def "));
    EXPECT_EQ(in.dictionaries->userData->findText("k"), value);
    ASSERT_TRUE(s.run("k /k load "));
    EXPECT_EQ(in.operandStack->at(0), value);
    EXPECT_EQ(in.operandStack->at(1), value);
}

TEST(DictionaryOperators, WhereAndCurrentdictGiveTheStackObject) {
    Session s;
    Interpreter& in = s.interpreter();
    ASSERT_TRUE(s.run("/k 1 def /k where currentdict "));
    EXPECT_EQ(in.operandStack->at(0), in.dictionaries->userDict);
    EXPECT_EQ(in.operandStack->at(2), in.dictionaries->userDict);
    EXPECT_NE(in.operandStack->at(2)->describe().find("User"), std::string::npos);
}

TEST(DictionaryOperators, BeginPushesTheSameObject) {
    Session s;
    Interpreter& in = s.interpreter();
    ASSERT_TRUE(s.run("/d 1 dict def d begin "));
    EXPECT_EQ(in.dictionaries->dictionaryStack->size(), 4u);
    EXPECT_EQ(in.dictionaries->dictionaryStack->top(), in.dictionaries->userData->findText("d"));
    ASSERT_TRUE(s.run("end end "));
    EXPECT_EQ(in.dictionaries->dictionaryStack->top(), in.dictionaries->globalDict);
}

TEST(DictionaryOperators, CleardictstackStopsAtTheTopmostPermanent) {
    Session s;
    DictionarySet& set = *s.interpreter().dictionaries;
    ASSERT_TRUE(s.run("1 dict begin 2 dict begin cleardictstack "));
    EXPECT_EQ(set.dictionaryStack->size(), 3u);
    EXPECT_EQ(set.dictionaryStack->top(), set.userDict);
    // Without userdict, globaldict stops it at once.
    ASSERT_TRUE(s.run("end 1 dict begin cleardictstack "));
    EXPECT_EQ(set.dictionaryStack->size(), 2u);
    EXPECT_EQ(set.dictionaryStack->top(), set.globalDict);
    // userdict pushed again by begin counts as the object itself.
    ASSERT_TRUE(s.run("userdict begin 1 dict begin cleardictstack "));
    EXPECT_EQ(set.dictionaryStack->size(), 3u);
    EXPECT_EQ(set.dictionaryStack->top(), set.userDict);
}

// A session whose dictionary stack "end end end" has emptied, so that no name
// is found any more.
class EmptiedSession : public Session {
public:
    EmptiedSession() { emptied = run("end end end "); }

    // Runs operators of systemdict by their objects, as a procedure holds them.
    bool runOperators(std::initializer_list<const char*> names) {
        Interpreter& in = interpreter();
        for (auto name = std::rbegin(names); name != std::rend(names); ++name)
            in.executionStack->push(in.dictionaries->systemData->findText(*name));
        return run("");
    }

    bool emptied;
};

TEST(DictionaryOperators, EmptyDictionaryStack) {
    struct Row {
        const char* op;
        const char* error;
    };
    const Row rows[] = {
        {"end", "pop - expected item on stack"},
        {"currentdict", "cannot push null item onto stack"},
        {"cleardictstack", "pop - expected item on stack"},
        {"def", "def - expected dictionary on dictionary stack"},
        {"store", "store - expected dictionary on dictionary stack"},
    };
    for (const Row& row : rows) {
        EmptiedSession s;
        ASSERT_TRUE(s.emptied && s.run("/k 1 "));
        EXPECT_FALSE(s.runOperators({row.op})) << row.op;
        EXPECT_EQ(s.error(), row.error) << row.op;
    }
}

TEST(DictionaryOperators, CleardictstackWithNoPermanentEmptiesTheStack) {
    EmptiedSession s;
    Interpreter& in = s.interpreter();
    ASSERT_TRUE(s.emptied);
    in.dictionaries->push(in.makeDictionary());
    in.dictionaries->push(in.makeDictionary());
    EXPECT_FALSE(s.runOperators({"cleardictstack"}));
    EXPECT_EQ(s.error(), "pop - expected item on stack");
    EXPECT_TRUE(in.dictionaries->dictionaryStack->empty());
}

TEST(DictionaryOperators, DefineAndEndOnARefilledStack) {
    EmptiedSession s;
    Interpreter& in = s.interpreter();
    ASSERT_TRUE(s.emptied && s.run("/k 1 "));
    Popped<DictionaryObject> dictionary(in.makeDictionary());
    in.dictionaries->push(dictionary.get());
    ASSERT_TRUE(s.runOperators({"def", "end"}));
    EXPECT_TRUE(in.dictionaries->dictionaryStack->empty());
    EXPECT_EQ(dictionary->dictionaryData()->findText("k")->describe(), "ps_integer 1");
}

} // namespace
