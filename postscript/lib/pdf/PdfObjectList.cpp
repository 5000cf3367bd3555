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
    for (PdfObject* record : objects_) {
        if (record->kind != kind || record->dataLength < length) continue;
        if (length == 0 || std::memcmp(record->data, bytes, length) == 0) return record;
    }
    return nullptr;
}

void PdfObjectList::emptyObjects() {
    for (PdfObject* record : objects_)
        destroyRecord(record);
    objects_.clear();
    handedOut_.reset();
}

PdfObject** PdfObjectList::handOut(uint64_t* count) {
    // Even an empty list hands out an array of its own.
    handedOut_.reset();
    handedOut_.reset(new PdfObject*[objects_.size()]);
    std::copy(objects_.begin(), objects_.end(), handedOut_.get());
    *count = objects_.size();
    return handedOut_.get();
}
