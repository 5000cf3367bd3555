#pragma once

#include "core/CompositeObject.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

// An ordered map from key text to object. Keys order byte-wise, the shorter
// first on a tie: forall and dictionary equality walk in this order.
class NameTable;

class DictionaryData : public CompositeData {
public:
    using Map = std::map<std::string, PostscriptObject*, std::less<>>;

    explicit DictionaryData(std::string name = {})
        : CompositeData(ps_dictionary), name(std::move(name)) {}
    ~DictionaryData() override { clear(); }
    void releaseContents() override {
        clear();
        observer = nullptr; // the interpreter is going
    }

    PostscriptObject* find(std::string_view keyText) const;
    PostscriptObject* findKey(const PostscriptObject* key) const;
    PostscriptObject* findText(const char* text) const { return find(text); }

    // Counts the value first, so that replacing an entry by itself keeps it.
    void put(std::string_view keyText, PostscriptObject* value);
    void putObject(const PostscriptObject* key, PostscriptObject* value);
    void putText(const char* text, PostscriptObject* value) { put(text, value); }
    void remove(std::string_view keyText);
    void clear() noexcept;

    std::size_t size() const { return entries.size(); }

    Map entries;
    std::string name;
    // The names whose cached look-ups this body's changes must reach; set
    // while the body is on a dictionary stack, or was.
    NameTable* observer = nullptr;
};

class DictionaryObject : public CompositeObject {
public:
    static constexpr uint32_t tag = ps_dictionary;
    DictionaryObject(VirtualMemoryObject* memory, DictionaryData* data)
        : CompositeObject(tag, true, memory, data) {}
    explicit DictionaryObject(const DictionaryObject& other) : CompositeObject(other) {}

    DictionaryData* dictionaryData() const { return static_cast<DictionaryData*>(data); }

    std::string describe() const override;
    std::string doubleEqualsText() const override { return "-dict-"; }
    PostscriptObject* clone(VirtualMemoryObject*) const override {
        return new DictionaryObject(*this);
    }
};

// The one rule for dictionary keys: a name gives its text, a string its text
// up to the first NUL, anything else its describe() text.
std::string keyText(const PostscriptObject* key);
