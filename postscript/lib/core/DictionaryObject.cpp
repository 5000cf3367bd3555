#include "core/DictionaryObject.h"

#include "core/NameObject.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/TextEquals.h"

#include <algorithm>

namespace {
// The key text without a copy where the key already holds it.
template <class F> decltype(auto) withKeyText(const PostscriptObject* key, F&& use) {
    if (key->type == ps_name)
        return use(std::string_view(static_cast<const NameObject*>(key)->text()));
    if (key->type == ps_string) return use(static_cast<const StringObject*>(key)->cText());
    return use(std::string_view(key->describe()));
}
} // namespace

std::string keyText(const PostscriptObject* key) {
    return withKeyText(key, [](std::string_view text) { return std::string(text); });
}

DictionaryData::IndexSlot* DictionaryData::slotFor(std::string_view keyText, uint64_t hash) const {
    for (std::size_t i = hash & indexMask_;; i = (i + 1) & indexMask_) {
        IndexSlot* slot = &index_[i];
        if (!slot->entry || (slot->hash == hash && textEquals(slot->entry->first, keyText)))
            return slot;
    }
}

PostscriptObject* DictionaryData::findHashed(std::string_view keyText, uint64_t hash) const {
    if (!index_) return nullptr;
    const IndexSlot* slot = slotFor(keyText, hash);
    return slot->entry ? slot->entry->second : nullptr;
}

void DictionaryData::reserveIndex(std::size_t entryCount) {
    std::size_t slots = index_ ? indexMask_ + 1 : 0;
    if (2 * entryCount <= slots) return;
    slots = std::max<std::size_t>(slots * 2, 8);
    while (2 * entryCount > slots)
        slots *= 2;
    std::unique_ptr<IndexSlot[]> old = std::move(index_);
    const std::size_t oldCount = old ? indexMask_ + 1 : 0;
    index_ = std::make_unique<IndexSlot[]>(slots);
    indexMask_ = slots - 1;
    for (std::size_t i = 0; i < oldCount; ++i)
        if (old[i].entry) *slotFor(old[i].entry->first, old[i].hash) = old[i];
}

void DictionaryData::eraseSlot(IndexSlot* slot) noexcept {
    // Linear probing without tombstones: pull later entries of the run back
    // into the hole when the hole lies on their way from their home slot.
    std::size_t hole = static_cast<std::size_t>(slot - index_.get());
    index_[hole].entry = nullptr;
    for (std::size_t i = (hole + 1) & indexMask_; index_[i].entry; i = (i + 1) & indexMask_) {
        const std::size_t home = index_[i].hash & indexMask_;
        const bool movable = hole <= i ? (home <= hole || home > i) : (home <= hole && home > i);
        if (!movable) continue;
        index_[hole] = index_[i];
        index_[i].entry = nullptr;
        hole = i;
    }
}

PostscriptObject* DictionaryData::findKey(const PostscriptObject* key) const {
    return withKeyText(key, [this](std::string_view text) { return find(text); });
}

void DictionaryData::put(std::string_view keyText, PostscriptObject* value) {
    putEntry(keyText, value, nullptr);
}

void DictionaryData::putEntry(std::string_view keyText, PostscriptObject* value,
                              const NameAtom* atom) {
    if (!value) PS_THROW("cannot push null item onto stack");
    ++value->refCount;
    if (observer) {
        // A name key brings its entry along: no search of the table by text.
        if (!atom)
            observer->keyChanged(keyText);
        else if (observer->topBody == this)
            observer->definedOnTop(atom, value);
        else
            atom->cacheStamp = 0;
    }
    const uint64_t hash = atom ? atom->hash : textHash(keyText);
    try {
        reserveIndex(entries.size() + 1);
        IndexSlot* slot = slotFor(keyText, hash);
        if (slot->entry) {
            PostscriptObject* old = slot->entry->second;
            slot->entry->second = value;
            releaseReference(old);
            return;
        }
        auto inserted = entries.emplace(std::string(keyText), value).first;
        *slot = IndexSlot{hash, &*inserted};
    } catch (...) {
        --value->refCount;
        throw;
    }
}

void DictionaryData::putObject(const PostscriptObject* key, PostscriptObject* value) {
    if (key->type == ps_name) {
        const auto* name = static_cast<const NameObject*>(key);
        putEntry(name->text(), value, name->atom);
        return;
    }
    withKeyText(key, [&](std::string_view text) { put(text, value); });
}

void DictionaryData::remove(std::string_view keyText) {
    if (!index_) return;
    IndexSlot* slot = slotFor(keyText, textHash(keyText));
    if (!slot->entry) return;
    if (observer) observer->keyChanged(keyText);
    PostscriptObject* old = slot->entry->second;
    eraseSlot(slot);
    entries.erase(entries.find(keyText));
    releaseReference(old);
}

void DictionaryData::clear() noexcept {
    if (observer && !entries.empty()) observer->forgetAll();
    Map old;
    old.swap(entries);
    index_.reset();
    indexMask_ = 0;
    for (auto& entry : old)
        releaseReference(entry.second);
}

std::string DictionaryObject::describe() const {
    std::string text = typeName(type);
    const DictionaryData* body = dictionaryData();
    if (!body->name.empty()) text += " " + body->name + " ";
    text += formatString(" %d entries (%s)", static_cast<int>(body->size()),
                         memory ? memory->describe().c_str() : "");
    return text;
}
