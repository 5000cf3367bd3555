#include "support/TestSupport.h"

#include "DictionarySet.h"
#include "StringObject.h"
#include "ValueObjects.h"

#include <gtest/gtest.h>

using testing_support::Session;

namespace {

TEST(DictionarySet, StartsWithTheStandardDictionaries) {
    Session s;
    DictionarySet& set = *s.interpreter().dictionaries;
    ASSERT_EQ(set.dictionaryStack->size(), 3u);
    EXPECT_EQ(set.dictionaryStack->at(0), set.systemDict);
    EXPECT_EQ(set.dictionaryStack->at(1), set.globalDict);
    EXPECT_EQ(set.dictionaryStack->at(2), set.userDict);
    EXPECT_EQ(set.systemDict->memory, s.interpreter().memory->globalMemory);
    EXPECT_EQ(set.errorDict->memory, s.interpreter().memory->localMemory);
    EXPECT_EQ(set.fontDirectory->dictionaryData()->name, "Font");
}

// No program can put anything but a dictionary on the dictionary stack; a
// walk that meets something else stops there.
TEST(DictionarySet, LookupStopsAtANonDictionary) {
    Session s;
    DictionarySet& set = *s.interpreter().dictionaries;
    set.globalData->putText("x", new IntegerObject(1));
    Popped<> key(s.interpreter().makeString("x"));
    EXPECT_EQ(set.findDictionaryWith(key.get()), set.globalDict);
    set.dictionaryStack->push(new IntegerObject(0));
    EXPECT_EQ(set.lookupText("x"), nullptr);
    EXPECT_EQ(set.lookupText("languagelevel"), nullptr);
}

// Name look-ups are cached; every change, also one made without a program,
// must show at once.
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

TEST(DictionarySetTearDown, SurvivesAProgramThatPoppedEveryDictionary) {
    long before = CompositeData::liveCount();
    {
        Session s;
        ASSERT_TRUE(s.run("end end end begin "));
        EXPECT_EQ(s.stackValues(), "(begin)");
    }
    EXPECT_EQ(CompositeData::liveCount(), before);
}

} // namespace
