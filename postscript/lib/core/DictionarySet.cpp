#include "core/DictionarySet.h"

#include "core/Interpreter.h"
#include "core/NameObject.h"

namespace {
// Held for the life of the set, whatever a program does to the stack.
Counted<DictionaryObject> newDictionary(VirtualMemoryObject* memory, const char* name,
                                        DictionaryData*& data) {
    data = new DictionaryData(name);
    return Counted<DictionaryObject>(new DictionaryObject(memory, data));
}

const char* const dictionaryNames[] = {"systemdict", "globaldict", "userdict", "errordict"};
} // namespace

DictionarySet::DictionarySet(MemoryRecord* memories, NameTable* names)
    : memories(memories), names(names),
      dictionaryStack(std::make_unique<ObjectStack>("Dictionary Stack")) {
    systemDict = newDictionary(memories->globalMemory.get(), "System", systemData);
    globalDict = newDictionary(memories->globalMemory.get(), "Global", globalData);
    userDict = newDictionary(memories->localMemory.get(), "User", userData);
    errorDict = newDictionary(memories->localMemory.get(), "Error", errorData);
    DictionaryData* fontData = nullptr;
    fontDirectory = newDictionary(memories->globalMemory.get(), "Font", fontData);
    push(systemDict.get());
    push(globalDict.get());
    push(userDict.get());
}

DictionarySet::~DictionarySet() {
    // systemdict holds the four dictionaries, itself among them: break the loop
    // first. Our own counts keep the bodies alive meanwhile, also when a
    // program has popped them all off the stack.
    for (const char* name : dictionaryNames)
        systemData->remove(name);
    dictionaryStack.reset();
    names->topBody = nullptr;
}

void DictionarySet::push(PostscriptObject* dictionary) {
    dictionaryStack->push(dictionary);
    if (dictionary->type == ps_dictionary) {
        DictionaryData* body = static_cast<DictionaryObject*>(dictionary)->dictionaryData();
        if (!body->observer) body->observer = names;
    }
    stackChanged();
}

PostscriptObject* DictionarySet::pop() {
    PostscriptObject* top = dictionaryStack->pop();
    stackChanged();
    return top;
}

void DictionarySet::stackChanged() {
    names->forgetAll();
    const PostscriptObject* top = dictionaryStack->top();
    names->topBody = top && top->type == ps_dictionary
                         ? static_cast<const DictionaryObject*>(top)->dictionaryData()
                         : nullptr;
}

void DictionarySet::popTo(std::size_t depth) {
    while (dictionaryStack->size() > depth)
        releaseIfUnreferenced(pop());
}

PostscriptObject* DictionarySet::lookupNameAfresh(const NameAtom* atom) const {
    if (!useLookupCache) return lookupHashed(atom->text, atom->hash);
    PostscriptObject* value = lookupHashed(atom->text, atom->hash);
    atom->cachedValue = value;
    atom->cacheStamp = names->stamp;
    return value;
}

DictionaryObject* DictionarySet::findDictionaryWith(const PostscriptObject* key) const {
    const std::string text = keyText(key);
    const uint64_t hash = textHash(text);
    const auto& stack = dictionaryStack->items;
    for (auto it = stack.rbegin(); it != stack.rend(); ++it) {
        if ((*it)->type != ps_dictionary) return nullptr;
        auto* dictionary = static_cast<DictionaryObject*>(*it);
        if (dictionary->dictionaryData()->findHashed(text, hash)) return dictionary;
    }
    return nullptr;
}

PostscriptObject* DictionarySet::lookup(const PostscriptObject* key) const {
    if (key->type == ps_name) return lookupText(static_cast<const NameObject*>(key)->text());
    return lookupText(keyText(key));
}

PostscriptObject* DictionarySet::lookupText(std::string_view text) const {
    return lookupHashed(text, textHash(text));
}

PostscriptObject* DictionarySet::lookupHashed(std::string_view text, uint64_t hash) const {
    const auto& stack = dictionaryStack->items;
    for (auto it = stack.rbegin(); it != stack.rend(); ++it) {
        if ((*it)->type != ps_dictionary) return nullptr;
        if (PostscriptObject* value =
                static_cast<DictionaryObject*>(*it)->dictionaryData()->findHashed(text, hash))
            return value;
    }
    return nullptr;
}
