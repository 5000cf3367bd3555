#pragma once

#include "core/PostscriptObject.h"
#include "core/TextHash.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

// One entry per distinct name text of an interpreter. Look-up stays by text;
// the entry only spares a copy of the text per token and is where cached
// look-up results can live.
struct NameAtom {
    explicit NameAtom(std::string_view text) : text(text), hash(textHash(text)) {}
    std::string text;
    uint64_t hash;
    // The last look-up of this name through the dictionary stack, valid while
    // cacheStamp equals the table's stamp.
    mutable PostscriptObject* cachedValue = nullptr;
    mutable uint64_t cacheStamp = 0;
    // Name objects on this entry; an entry nobody uses may be swept.
    mutable uint32_t users = 0;
};

// The entries live while name objects use them. Entries that no name uses
// any more are swept whenever the table has doubled since the last sweep, so
// a stream of names that are used once (data scanned as tokens after a
// failure, say) cannot grow it without bound, while the names a program keeps
// using keep their cached look-ups. Every name token is looked up here, so it
// is an open-addressing table over a cheap hash rather than a node map.
class NameTable {
public:
    NameTable() : slots_(minimumSlots) {}
    ~NameTable();
    NameTable(const NameTable&) = delete;
    NameTable& operator=(const NameTable&) = delete;

    const NameAtom* intern(std::string_view text);
    std::size_t size() const { return count_; }

    // Cached look-ups follow every change: a key defined or removed in a
    // dictionary forgets that name's look-up; a change of the dictionary
    // stack, or a dictionary emptied, forgets all.
    void keyChanged(std::string_view text);
    void forgetAll() { ++stamp; }
    // A name defined in the top dictionary looks up to the new value at once.
    void definedOnTop(const NameAtom* atom, PostscriptObject* value) const {
        atom->cachedValue = value;
        atom->cacheStamp = stamp;
    }

    uint64_t stamp = 1;
    // The body of the dictionary on top of the stack, or null when the top is
    // not a dictionary.
    const void* topBody = nullptr;

private:
    struct Slot {
        uint64_t hash = 0;
        NameAtom* atom = nullptr;
    };
    static constexpr std::size_t minimumSlots = 1024;
    static constexpr std::size_t smallestSweep = 4096;

    Slot* find(std::string_view text, uint64_t hash);
    void insert(NameAtom* atom);
    void rebuild(std::size_t slotCount, bool sweep);

    std::size_t sweepAt_ = smallestSweep;
    std::size_t count_ = 0;
    std::vector<Slot> slots_;
};

// A name, and the base of every operator: an operator is a name whose execute
// is its action.
class NameObject : public PostscriptObject {
public:
    static constexpr uint32_t tag = ps_name;
    explicit NameObject(const NameAtom* atom, bool executable = true)
        : PostscriptObject(tag, executable), atom(atom) {
        ++atom->users;
    }
    ~NameObject() override { --atom->users; }

    // A name and nothing more: its execute is the look-up below, which the
    // run loop may do in place. Operators, which derive from this class,
    // never are.
    static NameObject* makePlain(const NameAtom* atom, bool executable) {
        auto* name = new NameObject(atom, executable);
        name->plain = true;
        return name;
    }

    const std::string& text() const { return atom->text; }

    void execute(Interpreter& interpreter) override;
    std::string describe() const override;
    std::string doubleEqualsText() const override { return atom->text; }
    std::string equalsText() const override { return atom->text; }
    // A plain executable name with the same text, also for operators: the
    // clone finds the operator again by look-up.
    PostscriptObject* clone(VirtualMemoryObject*) const override { return makePlain(atom, true); }

    // In the base's tail padding: a name stays 32 bytes.
    bool plain = false;
    const NameAtom* atom;
};
