#pragma once

#include "core/CompositeObject.h"
#include "core/TextHash.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

// An ordered map from key text to object. Keys order byte-wise, the shorter
// first on a tie: forall and dictionary equality walk in this order.
class NameTable;
struct NameAtom;

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

    PostscriptObject* find(std::string_view keyText) const {
        return findHashed(keyText, textHash(keyText));
    }
    // find() for a text whose hash is known: a name's, for every dictionary
    // of the stack.
    PostscriptObject* findHashed(std::string_view keyText, uint64_t hash) const;
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

private:
    void putEntry(std::string_view keyText, PostscriptObject* value, const NameAtom* atom);

    // Beside the ordered map, which keeps the key order, a hash index of its
    // entries answers look-ups: a name is looked up in every dictionary of the
    // stack, most of which lack it. Open addressing, at most half full; the
    // map's nodes don't move, so the index points into them. entries changes
    // only through put, remove and clear, which keep the two in step.
    struct IndexSlot {
        uint64_t hash;
        Map::value_type* entry; // null: free
    };
    IndexSlot* slotFor(std::string_view keyText, uint64_t hash) const;
    void reserveIndex(std::size_t entryCount);
    void eraseSlot(IndexSlot* slot) noexcept;

    std::unique_ptr<IndexSlot[]> index_;
    std::size_t indexMask_ = 0; // slot count - 1, once there is an index
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
