#pragma once

#include "kelumpd64/conversion.h"

class PostscriptObject;

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
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
    // Only data given through setData is found by a look-up of
    // indexedPrefixLength bytes or more.
    PdfObject* findObject(int32_t kind, const unsigned char* bytes, std::size_t length) const;
    // Gives the record its data, a C heap block that the record then owns.
    void setData(PdfObject* record, unsigned char* bytes, std::size_t length);
    // Gives the record its procedure, on which it holds one count.
    void setProcedure(PdfObject* record, PostscriptObject* procedure);
    // The first record, of any kind, whose procedure is this very object.
    PdfObject* findProcedure(const PostscriptObject* procedure) const;
    // Destroys every record and the array last handed out. A record's heap
    // fields are the C heap's; its procedure, when set, holds one count
    // (addReference), which this gives back.
    void emptyObjects();
    // A snapshot of the records for the host: valid until the next call.
    PdfObject** handOut(uint64_t* count);

    std::size_t size() const { return objects_.size(); }
    // Changes whenever the list is emptied, so that a holder of a record
    // pointer can tell that its record is gone.
    uint64_t generation() const { return generation_; }

    // Every image XObject is longer than the inline limit of 4000 bytes: its
    // first bytes key the look-up, so that a new image is compared only with
    // the records that begin the same way and never with every record.
    static constexpr std::size_t indexedPrefixLength = 4001;

private:
    struct Indexed {
        PdfObject* record;
        uint64_t wholeHash; // of all its data, to pass over equal-length strangers at once
    };

    std::vector<PdfObject*> objects_;
    std::unique_ptr<PdfObject*[]> handedOut_;
    // Records by the hash of their first indexedPrefixLength bytes, each
    // bucket in creation order.
    std::unordered_map<uint64_t, std::vector<Indexed>> byPrefix_;
    std::unordered_map<const PostscriptObject*, PdfObject*> byProcedure_;
    uint64_t generation_ = 0;
};

// A fast 64-bit hash of bytes; equal hashes say only "maybe equal".
uint64_t hashBytes(const unsigned char* bytes, std::size_t length);
