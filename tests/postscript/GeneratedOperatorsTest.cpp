#include "support/TestSupport.h"

#include "EvalCase.h"

#include "DictionarySet.h"
#include "GeneratedOps.h"

#include <gtest/gtest.h>
#include <set>

using testing_support::eval;
using testing_support::Session;

namespace {

using eval_case::Case;

class GeneratedStub : public eval_case::EvalTable {};

TEST_P(GeneratedStub, StackEffect) { EXPECT_EQ(eval(GetParam().program), GetParam().result); }

// Stubs keep a plausible stack and do nothing else; every default is a new
// object, every boolean true.
INSTANTIATE_TEST_SUITE_P(Table, GeneratedStub, ::testing::Values(
    Case{"1 quit start 2 ", "1 2"},
    Case{"10 rand ", "10 0"},
    Case{"rrand countexecstack realtime ", "0 0 0"},
    Case{"btrue bfalse rcheck wcheck ", "true true true true"},
    Case{"UserObjects ISOLatinEncoding ", "[] []"},
    Case{"gstate currentmiterlimit ", "0.000000 0.000000"},
    Case{"currentpagedevice ", "-dict-"},
    Case{"currentdash ", "[] 0.000000"},
    Case{"pathbbox ", "0.000000 0.000000 0.000000 0.000000"},
    Case{"currentcacheparams ", "-mark- 0 0 0"},
    Case{"ucachestatus ", "-mark- 0.000000 0.000000 0.000000 0.000000 0.000000"},
    Case{"cachestatus ",
         "0.000000 0.000000 0.000000 0.000000 0.000000 0.000000 0.000000"},
    Case{"5 srand ", ""},
    Case{"srand ", "ERROR: Expected ps_integer at popIntegerObject"},
    Case{"(x) srand ", "ERROR: Expected ps_integer at popIntegerObject"},
    Case{"1 (x) /n closefile flushfile resetfile ", ""},
    Case{"(f) run ", ""},
    Case{"1 run ", "ERROR: Expected ps_string at popStringObject"},
    Case{"btrue echo ", ""},
    Case{"(x) cvlit ", "0.000000"},
    Case{"(x) ln 1 log 2 truncate ", "0.000000 0.000000 0.000000"},
    Case{"(x) bytesavailable ", "0"},
    Case{"1 status (y) gcheck ", "true true"},
    Case{"(s) token ", "0.000000 0.000000 true"},
    Case{"(f) 1 write ", ""},
    Case{"5 (x) write ", "ERROR: Expected ps_integer at popIntegerObject"},
    Case{"2 3 exp ", "0.000000"},
    Case{"1 2 bitshift ", "0"},
    Case{"(abc) (b) search ", "0.000000 0.000000 0.000000 true"},
    Case{"1 2 (x) ashow ", ""},
    Case{"(s) btrue charpath ", ""},
    Case{"mark 1 2 3 setcacheparams ", ""},
    Case{"1 2 3 4 5 6 setcachedevice ", ""},
    Case{"1 2 3 4 setbbox 7 ", "7"},
    Case{"mark 9 setucacheparams ", ""},
    Case{"9 setucacheparams ", "ERROR: Expected ps_mark at popMarkObject"},
    Case{"countdictstack ", "3"},
    Case{"product ", "(foliograph ps interpreter)"}));

TEST(GeneratedLayer, FailedTypedPopKeepsEarlierOperandsPopped) {
    Session s;
    // charpath takes a boolean, then a string: both are gone when the second fails.
    EXPECT_FALSE(s.run("(a) 7 btrue charpath "));
    EXPECT_EQ(s.stackValues(), "(a)");
    EXPECT_EQ(s.error(), "Expected ps_string at popStringObject");
}

TEST(GeneratedLayer, ProductIsANewStringEachTime) {
    Session s;
    ASSERT_TRUE(s.run("product product "));
    ObjectStack& st = *s.interpreter().operandStack;
    ASSERT_EQ(st.size(), 2u);
    EXPECT_NE(static_cast<CompositeObject*>(st.at(0))->data,
              static_cast<CompositeObject*>(st.at(1))->data);
}

TEST(GeneratedLayer, CountdictstackFollowsTheStack) {
    Session s;
    s.interpreter().dictionaries->push(s.interpreter().dictionaries->userDict->clone(nullptr));
    ASSERT_TRUE(s.run("countdictstack "));
    EXPECT_EQ(s.stackValues(), "4");
}

// The layers: which class answers each name after start-up.
TEST(OperatorLayers, CountsAndWinners) {
    Session s;
    DictionarySet& set = *s.interpreter().dictionaries;
    ASSERT_EQ(set.generatedNames.size(), 315u);
    EXPECT_EQ(set.generatedNames.front(), "add");
    EXPECT_EQ(set.generatedNames.back(), "ucachestatus");
    EXPECT_EQ(std::set<std::string>(set.generatedNames.begin(), set.generatedNames.end()).size(),
              315u);
    // The language layer replaced generated forms, in its own order; "known"
    // is the first of its names that has one.
    ASSERT_FALSE(set.replacedNames.empty());
    EXPECT_EQ(set.replacedNames.front(), "known");

    std::size_t generated = 0, values = 0, language = 0;
    for (const auto& [name, value] : set.systemData->entries) {
        if (dynamic_cast<GeneratedOperator*>(value)) ++generated;
        else if (value->type == ps_name) ++language;
        else ++values;
    }
    EXPECT_EQ(values, 6u); // systemdict globaldict userdict errordict languagelevel version
    EXPECT_EQ(language, set.replacedNames.size() + 24)
        << "language operators: those that replaced a generated form, and the 24 built "
           "here that have none";
    EXPECT_EQ(generated + set.replacedNames.size() + 5, 315u);

    struct Winner {
        const char* name;
        bool generatedClass;
    };
    for (Winner w : {Winner{"add", false}, Winner{"roll", false}, Winner{"eq", false},
                     Winner{"cvs", false}, Winner{"stack", false}, Winner{"==", false},
                     Winner{"btrue", true}, Winner{"quit", true}, Winner{"countdictstack", true},
                     Winner{"product", true}, Winner{"search", true}, Winner{"setpagedevice", true}}) {
        PostscriptObject* value = set.systemData->findText(w.name);
        ASSERT_NE(value, nullptr) << w.name;
        EXPECT_EQ(dynamic_cast<GeneratedOperator*>(value) != nullptr, w.generatedClass) << w.name;
    }
    EXPECT_EQ(set.systemData->findText("languagelevel")->describe(), "ps_integer 2");
    EXPECT_EQ(set.systemData->findText("userdict"), set.userDict);
}

} // namespace
