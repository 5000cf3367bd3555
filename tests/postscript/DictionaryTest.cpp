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
