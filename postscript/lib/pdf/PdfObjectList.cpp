#include "pdf/PdfObjectList.h"

#include "core/PostscriptObject.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

// Hosts read the record by these offsets.
static_assert(offsetof(PdfObject, dictionaryText) == 0);
static_assert(offsetof(PdfObject, extraText) == 8);
static_assert(offsetof(PdfObject, reserved) == 16);
static_assert(offsetof(PdfObject, uncompressed) == 20);
static_assert(offsetof(PdfObject, data) == 24);
static_assert(offsetof(PdfObject, dataLength) == 32);
static_assert(offsetof(PdfObject, name) == 40);
static_assert(offsetof(PdfObject, kind) == 48);
static_assert(offsetof(PdfObject, procedure) == 56);
static_assert(offsetof(PdfObject, text) == 64);
static_assert(sizeof(PdfObject) == 96);

namespace {

// The heap fields are the C heap's, so that a host may hang its own
// extraText on a record for the library to free.
void destroyRecord(PdfObject* record) noexcept {
    std::free(record->dictionaryText);
    std::free(record->extraText);
    std::free(record->data);
    std::free(record->name);
    // The record holds one count on the pattern's dictionary.
    releaseReference(static_cast<PostscriptObject*>(record->procedure));
    delete record;
}

} // namespace

uint64_t hashBytes(const unsigned char* bytes, std::size_t length) {
    // Four independent lanes keep the multipliers busy; each word is mixed in
    // by a multiply and a shift.
    constexpr uint64_t k = 0x9E3779B97F4A7C15ull;
    uint64_t lane[4] = {k ^ length, k * 3, k * 5, k * 7};
    auto mix = [](uint64_t h, uint64_t word) {
        h = (h ^ word) * 0xFF51AFD7ED558CCDull;
        return h ^ (h >> 32);
    };
    std::size_t at = 0;
    for (; at + 32 <= length; at += 32)
        for (int i = 0; i < 4; ++i) {
            uint64_t word;
            std::memcpy(&word, bytes + at + 8 * i, 8);
            lane[i] = mix(lane[i], word);
        }
    uint64_t tail[4] = {};
    std::memcpy(tail, bytes + at, length - at);
    for (int i = 0; i < 4; ++i)
        lane[i] = mix(lane[i], tail[i]);
    return mix(mix(lane[0], lane[1]), mix(lane[2], lane[3]));
}

PdfObjectList& PdfObjectList::process() {
    static PdfObjectList list;
    return list;
}

PdfObject* PdfObjectList::addObject(int32_t kind, const char* prefix) {
    objects_.reserve(objects_.size() + 1);
    auto record = std::make_unique<PdfObject>();
    const std::size_t prefixLength = std::strlen(prefix);
    record->name = static_cast<char*>(std::malloc(prefixLength + 20));
    if (!record->name) throw std::bad_alloc();
    std::memcpy(record->name, prefix, prefixLength);
    *std::to_chars(record->name + prefixLength, record->name + prefixLength + 19,
                   objects_.size() + 1)
         .ptr = '\0';
    record->uncompressed = 1;
    record->kind = kind;
    objects_.push_back(record.get());
    return record.release();
}

PdfObject* PdfObjectList::findObject(int32_t kind, const unsigned char* bytes,
                                     std::size_t length) const {
    auto matches = [&](const PdfObject* record) {
        return record->kind == kind && record->dataLength >= length &&
               (length == 0 || std::memcmp(record->data, bytes, length) == 0);
    };
    if (length < indexedPrefixLength) {
        for (PdfObject* record : objects_)
            if (matches(record)) return record;
        return nullptr;
    }
    // Every record that can match is at least as long as the key: it is in
    // the bucket of these first bytes, where creation order is kept.
    auto bucket = byPrefix_.find(hashBytes(bytes, indexedPrefixLength));
    if (bucket == byPrefix_.end()) return nullptr;
    uint64_t wholeHash = 0;
    bool hashed = false;
    for (const Indexed& entry : bucket->second) {
        const PdfObject* record = entry.record;
        if (record->dataLength == length && record->kind == kind) {
            if (!hashed) {
                wholeHash = hashBytes(bytes, length);
                hashed = true;
            }
            if (entry.wholeHash != wholeHash) continue;
        }
        if (matches(record)) return entry.record;
    }
    return nullptr;
}

void PdfObjectList::setData(PdfObject* record, unsigned char* bytes, std::size_t length) {
    std::free(record->data);
    record->data = bytes;
    record->dataLength = length;
    if (length < indexedPrefixLength) return;
    byPrefix_[hashBytes(bytes, indexedPrefixLength)].push_back(
        Indexed{record, hashBytes(bytes, length)});
}

void PdfObjectList::setProcedure(PdfObject* record, PostscriptObject* procedure) {
    byProcedure_.reserve(byProcedure_.size() + 1);
    addReference(procedure);
    releaseReference(static_cast<PostscriptObject*>(record->procedure));
    record->procedure = procedure;
    // Records come in creation order: the first one named stays.
    byProcedure_.emplace(procedure, record);
}

PdfObject* PdfObjectList::findProcedure(const PostscriptObject* procedure) const {
    auto found = byProcedure_.find(procedure);
    return found == byProcedure_.end() ? nullptr : found->second;
}

void PdfObjectList::emptyObjects() {
    for (PdfObject* record : objects_)
        destroyRecord(record);
    objects_.clear();
    handedOut_.reset();
    byPrefix_.clear();
    byProcedure_.clear();
    ++generation_;
}

PdfObject** PdfObjectList::handOut(uint64_t* count) {
    // Even an empty list hands out an array of its own.
    handedOut_.reset();
    handedOut_.reset(new PdfObject*[objects_.size()]);
    std::copy(objects_.begin(), objects_.end(), handedOut_.get());
    *count = objects_.size();
    return handedOut_.get();
}
