#include "core/DictionaryObject.h"

#include "core/NameObject.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"

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

PostscriptObject* DictionaryData::find(std::string_view keyText) const {
    auto found = entries.find(keyText);
    return found == entries.end() ? nullptr : found->second;
}

PostscriptObject* DictionaryData::findKey(const PostscriptObject* key) const {
    return withKeyText(key, [this](std::string_view text) { return find(text); });
}

void DictionaryData::put(std::string_view keyText, PostscriptObject* value) {
    if (!value) PS_THROW("cannot push null item onto stack");
    ++value->refCount;
    if (observer) observer->keyChanged(keyText);
    auto found = entries.find(keyText);
    if (found != entries.end()) {
        PostscriptObject* old = found->second;
        found->second = value;
        releaseReference(old);
        return;
    }
    try {
        entries.emplace(std::string(keyText), value);
    } catch (...) {
        --value->refCount;
        throw;
    }
}

void DictionaryData::putObject(const PostscriptObject* key, PostscriptObject* value) {
    withKeyText(key, [&](std::string_view text) { put(text, value); });
}

void DictionaryData::remove(std::string_view keyText) {
    auto found = entries.find(keyText);
    if (found == entries.end()) return;
    if (observer) observer->keyChanged(keyText);
    PostscriptObject* old = found->second;
    entries.erase(found);
    releaseReference(old);
}

void DictionaryData::clear() noexcept {
    if (observer && !entries.empty()) observer->forgetAll();
    Map old;
    old.swap(entries);
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
