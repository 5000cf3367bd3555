#pragma once

#include "core/DictionaryObject.h"
#include "core/NameObject.h"
#include "core/ObjectStack.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct MemoryRecord;

// The dictionaries of an interpreter and the dictionary stack. Walks go from
// the top of the stack down and stop at an entry that is not a dictionary.
// systemdict, globaldict and userdict: the bottom of the dictionary stack.
constexpr std::size_t permanentDictionaries = 3;

class DictionarySet {
public:
    DictionarySet(MemoryRecord* memories, NameTable* names);
    ~DictionarySet();
    DictionarySet(const DictionarySet&) = delete;
    DictionarySet& operator=(const DictionarySet&) = delete;

    // Every change of the dictionary stack goes through these three, so that
    // cached look-ups can follow.
    void push(PostscriptObject* dictionary);
    PostscriptObject* pop();
    // Pops and releases down to the given depth.
    void popTo(std::size_t depth);

    DictionaryObject* findDictionaryWith(const PostscriptObject* key) const;
    PostscriptObject* lookup(const PostscriptObject* key) const;
    PostscriptObject* lookupText(std::string_view text) const;
    // lookupText for a name, answered from its cache while nothing changed.
    PostscriptObject* lookupName(const NameAtom* atom) const {
        if (useLookupCache && atom->cacheStamp == names->stamp) return atom->cachedValue;
        return lookupNameAfresh(atom);
    }
    PostscriptObject* lookupHashed(std::string_view text, uint64_t hash) const;

    PostscriptObject* lookupNameAfresh(const NameAtom* atom) const;

    // Off only to measure what the cache saves.
    bool useLookupCache = true;

    // Names of the generated operators, and the names a later layer replaced.
    std::vector<std::string> replacedNames;
    std::vector<std::string> generatedNames;

    DictionaryData* systemData;
    Counted<DictionaryObject> systemDict;
    DictionaryData* globalData;
    Counted<DictionaryObject> globalDict;
    DictionaryData* userData;
    Counted<DictionaryObject> userDict;
    DictionaryData* errorData;
    Counted<DictionaryObject> errorDict;
    MemoryRecord* memories;
    NameTable* names;
    Counted<DictionaryObject> fontDirectory;
    std::unique_ptr<ObjectStack> dictionaryStack;

private:
    void stackChanged();
};
