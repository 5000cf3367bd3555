#pragma once

#include "kelumpd64/conversion.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

// The kinds of record that the translator makes.
constexpr int32_t patternObjectKind = 1;
constexpr int32_t imageObjectKind = 3;

// The PDF objects of the process, shared by every translator so that resource
// names number on through all handles; it outlives them, and only the print
// job face empties it. No lock: conversions of a process run one at a time.
class PdfObjectList {
public:
    PdfObjectList() = default;
    ~PdfObjectList() { emptyObjects(); }
    PdfObjectList(const PdfObjectList&) = delete;
    PdfObjectList& operator=(const PdfObjectList&) = delete;

    // The one list of the process.
    static PdfObjectList& process();

    // Appends a zeroed record (uncompressed 1) named by the prefix and the
    // list's new size: the first record of a list is number 1.
    PdfObject* addObject(int32_t kind, const char* prefix);
    // The first record of the kind, in creation order, whose data begins with
    // these bytes; a record with fewer bytes does not match. Null if none.
    PdfObject* findObject(int32_t kind, const unsigned char* bytes, std::size_t length) const;
    // Destroys every record and the array last handed out. A record's heap
    // fields are the C heap's; its procedure, when set, holds one count
    // (addReference), which this gives back.
    void emptyObjects();
    // A snapshot of the records for the host: valid until the next call.
    PdfObject** handOut(uint64_t* count);

    std::size_t size() const { return objects_.size(); }

private:
    std::vector<PdfObject*> objects_;
    std::unique_ptr<PdfObject*[]> handedOut_;
};
