#include "core/NameObject.h"

#include "core/DictionarySet.h"
#include "core/Interpreter.h"
#include "core/StringObject.h"
#include "core/TextEquals.h"

#include <algorithm>

NameTable::~NameTable() {
    for (Slot& slot : slots_)
        delete slot.atom;
}

NameTable::Slot* NameTable::find(std::string_view text, uint64_t hash) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        Slot& slot = slots_[i];
        if (!slot.atom || (slot.hash == hash && textEquals(slot.atom->text, text))) return &slot;
    }
}

void NameTable::insert(NameAtom* atom) {
    Slot* slot = find(atom->text, atom->hash);
    *slot = Slot{atom->hash, atom};
    ++count_;
}

const NameAtom* NameTable::intern(std::string_view text) {
    const uint64_t hash = textHash(text);
    Slot* slot = find(text, hash);
    if (slot->atom) return slot->atom;
    if (count_ >= sweepAt_) {
        rebuild(slots_.size(), true);
        sweepAt_ = std::max(smallestSweep, 2 * count_);
    }
    // At most half full, so that probes stay short.
    if (2 * (count_ + 1) > slots_.size()) rebuild(2 * slots_.size(), false);
    auto atom = std::make_unique<NameAtom>(text);
    NameAtom* result = atom.get();
    insert(atom.release());
    return result;
}

void NameTable::rebuild(std::size_t slotCount, bool sweep) {
    std::vector<Slot> old(slotCount);
    old.swap(slots_);
    count_ = 0;
    for (Slot& slot : old) {
        if (!slot.atom) continue;
        if (sweep && slot.atom->users == 0)
            delete slot.atom;
        else
            insert(slot.atom);
    }
}

void NameTable::keyChanged(std::string_view text) {
    if (NameAtom* atom = find(text, textHash(text))->atom) atom->cacheStamp = 0;
}

std::string NameObject::describe() const {
    return std::string(typeName(type)) + " " + atom->text;
}

void NameObject::execute(Interpreter& interpreter) {
    if (PostscriptObject* found = interpreter.executeName(this))
        interpreter.executionStack->push(found);
}
