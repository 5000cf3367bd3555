#include "Tables.h"

#include "core/DictionarySet.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <string>

using testing_support::Session;

namespace {

INSTANTIATE_TEST_SUITE_P(
    Dictionaries, Eval,
    ::testing::Values(
        // The operand of dict is no capacity; maxlength is made up from the count.
        Case{"5 dict ", "-dict-"}, Case{"5 dict maxlength 5 dict length ", "10 0"},
        Case{"(x) dict length ", "0"}, Case{"dict ", "ERROR: pop - expected item on stack"},
        Case{"5 dict begin /k 0 def currentdict maxlength currentdict length end ", "11 1"},
        Case{"1 dict begin 1 1 def 2 2 def 3 3 def currentdict maxlength end ", "13"},
        Case{"1 dict begin /zq 1 def zq end zq ", "1 (zq)"},
        // Nothing guards the permanent dictionaries; without them names are strings.
        Case{"end end end 1 2 add ", "1 2 (add)"}, Case{"currentdict ", "-dict-"},
        // begin, where and currentdict give the dictionary itself.
        Case{"/d 1 dict def d begin /x 1 def countdictstack end d /x get ", "4 1"},
        Case{"end /q 1 def globaldict /q known countdictstack ", "true 2"},
        Case{"/k 1 def /k where pop /j 2 put j currentdict /m 3 put m ", "2 3"},
        // cleardictstack stops at the topmost permanent dictionary, userdict
        // pushed again by begin too; without userdict, globaldict stops it.
        Case{"1 dict begin 2 dict begin cleardictstack countdictstack /q 1 def userdict /q known ",
             "3 true"},
        Case{"end 1 dict begin cleardictstack countdictstack /q 1 def globaldict /q known ",
             "2 true"},
        Case{"end userdict begin 1 dict begin cleardictstack countdictstack /q 1 def "
             "userdict /q known ",
             "3 true"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Definitions, Eval,
    ::testing::Values(
        Case{"/k 7 def k ", "7"}, Case{"(k) 7 def /k load ", "7"}, Case{"/a 1 def (a) load ", "1"},
        // A key redefined with its own value keeps it.
        Case{"/k [ 1 ] def /k dup load def k ", "[1 ]"}, Case{"/k 1 def (k) 2 def k ", "2"},
        Case{"(k\\000x) 3 def k ", "3"}, Case{"1 (one) def 1 load ", "(one)"},
        Case{"1 (one) def 1.0 load ", "ERROR: Undefined name passed to load operator"},
        Case{"(5) 1 def 5 2 def (5) load 5 load ", "1 2"},
        Case{"{ 1 2 3 } (a) def { 4 5 6 } load ", "(a)"},
        // def stores the value itself; load and look-up give it back.
        Case{"[ 5 ] dup 0 get /k exch def 0 get cvx pop /k load xcheck k xcheck ", "true true"},
        Case{"1 dict begin /zq 1 def end /zq where ", "false"},
        Case{"load ", "ERROR: pop - expected item on stack"},
        Case{"/add load /add load length ", "add 3"},
        Case{"/k 1 def 1 dict begin /k 2 def /k load end /k load ", "2 1"},
        // store goes where the key is, or else to the top.
        Case{"/k 1 def 1 dict begin /k 2 store currentdict length end k ", "0 2"},
        Case{"1 dict begin /zq 2 store currentdict length zq end /zq where ", "1 2 false"},
        Case{"/k 1 def currentdict /k undef /k where ", "false"},
        Case{"/k 1 def currentdict (k) undef /k where ", "false"},
        Case{"currentdict /zq undef ", ""}, Case{"1 5 /k undef ", "1"},
        Case{"/k 1 def /k where ", "-dict- true"}, Case{"/k 7 def /k where pop /k get ", "7"},
        Case{"/zq where ", "false"},
        Case{"/k 1 def currentdict /k known currentdict (k) known currentdict /zq known ",
             "true true false"},
        Case{"1 dict begin 1 (x) def currentdict 1 known currentdict 1.0 known end ", "true false"},
        // get and put take only names as dictionary keys, unlike def and known.
        Case{"/a 1 def currentdict /a get ", "1"},
        Case{"currentdict 1 get ", "ERROR: Unsupported parameter types to get"},
        Case{"currentdict /k 5 put k ", "5"},
        Case{"1 dict begin /a 1 def /b 2 def currentdict length end ", "2"}),
    testing_support::RowName());

// A key is its text: bytes in order, a shorter one first, numbers and arrays
// by their description, a running procedure with its position.
INSTANTIATE_TEST_SUITE_P(
    KeyTexts, Eval,
    ::testing::Values(
        Case{"1 dict dup begin /b 0 def /ab 0 def /a 0 def (\\377) 0 def /B 0 def /abc 0 def end "
             "{ pop } forall ",
             "B a ab abc b \xff"},
        Case{"1 dict dup begin 5 0 def 5.0 0 def (5) 0 def { 1 2 3 } 0 def end { pop } forall ",
             "5 ps_array, size=3 ps_integer 5 ps_real 5.000000"},
        Case{"1 dict begin /p { /p load 1 def } def p currentdict { pop } forall ",
             "p ps_array, size=4, exec index=4"},
        // A clone keeps the position of the running procedure it was made from.
        Case{"1 dict begin /p { /p load dup exch pop 1 def } def p currentdict { pop } forall ",
             "p ps_array, size=7, exec index=3"}),
    testing_support::RowName());

// Names are looked up anew after every change a program can make.
INSTANTIATE_TEST_SUITE_P(
    LookupFollows, Eval,
    ::testing::Values(Case{"/k 1 def k /k 2 def k ", "1 2"},
                      Case{"/k 1 def k 1 dict begin k /k 2 def k end k ", "1 1 2 1"},
                      Case{"/k 1 def k currentdict /k undef k ", "1 (k)"},
                      Case{"/k 1 def k currentdict /k 3 put k ", "1 3"},
                      Case{"/k 1 def 1 dict begin k /k 5 store k end k ", "1 5 5"},
                      Case{"1 dict begin /zq 1 def zq cleardictstack zq ", "1 (zq)"},
                      // A miss is cached too; a body changes while on the stack.
                      Case{"x globaldict /x 1 put x x userdict /x 2 put x userdict /x undef x ",
                           "(x) 1 1 2 1"},
                      Case{"1 dict dup begin /x 3 def x exch /x 4 put x end ", "3 4"},
                      Case{"/x 2 def 1 dict dup /x 3 put dup begin x exch 1 dict exch copy pop x "
                           "end ",
                           "3 2"}),
    testing_support::RowName());

// Operators kept in a procedure still run once "end end end" has emptied the
// dictionary stack.
INSTANTIATE_TEST_SUITE_P(
    EmptyDictionaryStack, Eval,
    ::testing::Values(
        Case{"{ //end //end //end //end } exec ", "ERROR: pop - expected item on stack"},
        Case{"{ //end //end //end //currentdict } exec ",
             "ERROR: cannot push null item onto stack"},
        Case{"{ //end //end //end //cleardictstack } exec ", "ERROR: pop - expected item on stack"},
        Case{"{ //end //end //end /k 1 //def } exec ",
             "ERROR: def - expected dictionary on dictionary stack"},
        Case{"{ //end //end //end /k 1 //store } exec ",
             "ERROR: store - expected dictionary on dictionary stack"},
        // A refilled stack takes definitions and empties again.
        Case{"1 dict dup { //end //end //end //begin /k 1 //def //end /k //get //countdictstack } "
             "exec ",
             "1 0"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Dictionaries, Fails,
    ::testing::Values(
        FailCase{"7 1 maxlength ", "Expected ps_dictionary at maxlength", "7"},
        FailCase{"7 1 begin ", "expecting dictionary on op stack", "7"},
        FailCase{"7 /zq load ", "Undefined name passed to load operator", "7"},
        FailCase{"7 5 /k known ", "Expected ps_dictionary at known", "7"},
        FailCase{"7 /k known ", "Expected ps_dictionary at known", ""},
        FailCase{"7 currentdict /zq get ", "get could not find element", "7"},
        FailCase{"7 /a 1 def currentdict (a) get ", "Unsupported parameter types to get", "7"},
        FailCase{"7 currentdict (k) 5 put ", "Unsupported parameter types to put", "7"},
        FailCase{"7 currentdict 1 5 put ", "Unsupported parameter types to put", "7"},
        // Without a permanent dictionary cleardictstack pops everything, then fails;
        // the rest of the procedure counts the dictionaries left.
        FailCase{"{ //end //end //end 1 //dict //begin 1 //dict //begin //cleardictstack "
                 "//countdictstack } exec ",
                 "pop - expected item on stack", "", "", "0"}),
    testing_support::RowName());

TEST(DictionarySet, StartsWithTheStandardDictionaries) {
    Session s;
    DictionarySet& set = *s.interpreter().dictionaries;
    EXPECT_EQ(set.systemDict->memory, s.interpreter().memory->globalMemory.get());
    EXPECT_EQ(set.errorDict->memory, s.interpreter().memory->localMemory.get());
    EXPECT_EQ(set.fontDirectory->dictionaryData()->name, "Font");
}

// No program can put anything but a dictionary on the dictionary stack; a
// walk that meets something else stops there.
TEST(DictionarySet, LookupStopsAtANonDictionary) {
    Session s;
    DictionarySet& set = *s.interpreter().dictionaries;
    set.globalData->putText("x", new IntegerObject(1));
    Popped<> key(s.interpreter().makeString("x"));
    EXPECT_EQ(set.findDictionaryWith(key.get()), set.globalDict.get());
    set.dictionaryStack->push(new IntegerObject(0));
    EXPECT_EQ(set.lookupText("x"), nullptr);
    EXPECT_EQ(set.lookupText("languagelevel"), nullptr);
}

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
