#include "support/TestSupport.h"

#include "ArrayObject.h"
#include "DictionarySet.h"
#include "StringObject.h"
#include "ValueObjects.h"

#include <gtest/gtest.h>

using testing_support::Session;

namespace {

TEST(KeyText, OneRuleForAllKeys) {
    Session s;
    ASSERT_TRUE(s.run("/abc (abc) (ab\\000c) 5 5.0 (5) { 1 2 3 } { 4 5 6 } "));
    const ObjectStack& st = *s.interpreter().operandStack;
    const char* expected[] = {"abc",
                              "abc",
                              "ab",
                              "ps_integer 5",
                              "ps_real 5.000000",
                              "5",
                              "ps_array, size=3",
                              "ps_array, size=3"};
    ASSERT_EQ(st.size(), std::size(expected));
    for (std::size_t i = 0; i < st.size(); ++i)
        EXPECT_EQ(keyText(st.at(i)), expected[i]);

    auto* proc = static_cast<ArrayObject*>(st.at(6));
    proc->executable = true;
    proc->execIndex = 2;
    EXPECT_EQ(keyText(proc), "ps_array, size=3, exec index=2");
}

TEST(DictionaryData, NamesAndStringsShareKeysNumbersDoNot) {
    Session s;
    Interpreter& in = s.interpreter();
    DictionaryData& d = *in.dictionaries->userData;
    ASSERT_TRUE(s.run("/a (a) 1 1.0 { 1 2 3 } { 7 8 9 } "));
    ObjectStack& st = *in.operandStack;
    d.putObject(st.at(0), new IntegerObject(10));
    EXPECT_EQ(d.findKey(st.at(1))->describe(), "ps_integer 10");
    d.putObject(st.at(2), new IntegerObject(20));
    EXPECT_EQ(d.findKey(st.at(3)), nullptr) << "1.0 is another key than 1";
    d.putObject(st.at(4), new IntegerObject(30));
    EXPECT_EQ(d.findKey(st.at(5))->describe(), "ps_integer 30") << "arrays key by size";
}

TEST(DictionaryData, PutKeepsSelfReplacementAndReleasesReplaced) {
    Session s;
    DictionaryData d;
    auto* value = new IntegerObject(1);
    d.putText("k", value);
    d.putText("k", value);
    EXPECT_EQ(value->refCount, 1);
    EXPECT_EQ(d.findText("k"), value);

    auto* held = new IntegerObject(2);
    addReference(held); // someone else keeps it
    d.putText("k", held);
    EXPECT_EQ(held->refCount, 2);
    d.remove("k");
    EXPECT_EQ(held->refCount, 1);
    d.remove("absent");
    EXPECT_EQ(d.size(), 0u);
    releaseReference(held);
}

TEST(DictionaryData, KeysOrderByteWiseShorterFirst) {
    DictionaryData d;
    for (const char* key : {"b", "ab", "a", "\xff", "B", "abc"})
        d.putText(key, new NullObject);
    std::vector<std::string> order;
    for (auto& entry : d.entries)
        order.push_back(entry.first);
    EXPECT_EQ(order, (std::vector<std::string>{"B", "a", "ab", "abc", "b", "\xff"}));
}

TEST(DictionarySet, StartsWithTheStandardDictionaries) {
    Session s;
    DictionarySet& set = *s.interpreter().dictionaries;
    ASSERT_EQ(set.dictionaryStack->size(), 3u);
    EXPECT_EQ(set.dictionaryStack->at(0), set.systemDict);
    EXPECT_EQ(set.dictionaryStack->at(1), set.globalDict);
    EXPECT_EQ(set.dictionaryStack->at(2), set.userDict);
    EXPECT_EQ(set.userDict->describe(), "ps_dictionary User  0 entries (ps_save Local Memory)");
    EXPECT_EQ(set.systemDict->memory, s.interpreter().memory->globalMemory);
    EXPECT_EQ(set.errorDict->memory, s.interpreter().memory->localMemory);
    EXPECT_EQ(set.fontDirectory->dictionaryData()->name, "Font");
    for (const char* name : {"systemdict", "globaldict", "userdict", "errordict"})
        EXPECT_NE(set.systemData->findText(name), nullptr) << name;
    EXPECT_EQ(set.systemData->findText("systemdict"), set.systemDict);
    EXPECT_EQ(set.systemData->findText("languagelevel")->describe(), "ps_integer 2");
    EXPECT_EQ(set.systemData->findText("version")->equalsText(), "49");
    EXPECT_TRUE(set.errorData->entries.empty());
    EXPECT_TRUE(set.globalData->entries.empty());
}

TEST(DictionarySet, LookupWalksFromTheTopAndStopsAtANonDictionary) {
    Session s;
    Interpreter& in = s.interpreter();
    DictionarySet& set = *in.dictionaries;
    set.globalData->putText("x", new IntegerObject(1));
    set.userData->putText("x", new IntegerObject(2));
    EXPECT_EQ(set.lookupText("x")->describe(), "ps_integer 2");
    Popped<> name(in.makeName("x"));
    EXPECT_EQ(set.findDictionaryWith(name.get()), set.userDict);
    set.userData->remove("x");
    EXPECT_EQ(set.lookupText("x")->describe(), "ps_integer 1");
    // A string key finds what a name key defined.
    Popped<> key(in.makeString("x"));
    EXPECT_EQ(set.findDictionaryWith(key.get()), set.globalDict);
    EXPECT_EQ(set.lookup(key.get())->describe(), "ps_integer 1");
    EXPECT_EQ(set.lookupText("nothing"), nullptr);

    set.dictionaryStack->push(new IntegerObject(0));
    EXPECT_EQ(set.lookupText("x"), nullptr);
    EXPECT_EQ(set.lookupText("languagelevel"), nullptr);
}

} // namespace

namespace {

// Name look-ups are cached; every change a program can make must show at once.
TEST(LookupCache, FollowsEveryChange) {
    Session s;
    Interpreter& in = s.interpreter();
    DictionarySet& set = *in.dictionaries;
    auto value = [&](const char* program) {
        in.operandStack->clear();
        EXPECT_TRUE(s.run(program));
        return s.stackValues();
    };
    EXPECT_EQ(value("x "), "(x)") << "a miss is cached too";
    set.globalData->putText("x", new IntegerObject(1));
    EXPECT_EQ(value("x x "), "1 1");
    set.userData->putText("x", new IntegerObject(2));
    EXPECT_EQ(value("x "), "2");

    auto* extra = in.makeDictionary();
    extra->dictionaryData()->putText("x", new IntegerObject(3));
    set.push(extra);
    EXPECT_EQ(value("x "), "3");
    extra->dictionaryData()->putText("x", new IntegerObject(4));
    EXPECT_EQ(value("x "), "4") << "a body changed while on the stack";
    extra->dictionaryData()->clear();
    EXPECT_EQ(value("x "), "2");
    extra->dictionaryData()->putText("x", new IntegerObject(5));
    EXPECT_EQ(value("x "), "5");
    releaseIfUnreferenced(set.pop());
    EXPECT_EQ(value("x "), "2");
    set.userData->remove("x");
    EXPECT_EQ(value("x "), "1");

    // The same answers with the cache off.
    set.useLookupCache = false;
    EXPECT_EQ(value("x "), "1");
}

} // namespace

namespace {

TEST(DictionarySetTearDown, SurvivesAProgramThatPoppedEveryDictionary) {
    long before = CompositeData::liveCount();
    {
        Session s;
        ASSERT_TRUE(s.run("end end end "));
        EXPECT_EQ(s.interpreter().dictionaries->dictionaryStack->size(), 0u);
        // With nothing to look names up in, they turn into strings.
        ASSERT_TRUE(s.run("begin "));
        EXPECT_EQ(s.stackValues(), "(begin)");
    }
    EXPECT_EQ(CompositeData::liveCount(), before);
}

} // namespace
