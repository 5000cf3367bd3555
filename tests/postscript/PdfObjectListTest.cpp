// The process-wide list of PDF objects: names numbered through every handle,
// the prefix look-up, the array handed to the host, and the emptying.
#include "host/HostReader.h"
#include "support/TestSupport.h"

#include "core/ValueObjects.h"
#include "pdf/PdfObjectList.h"
#include "pdf/Postscript2Pdf.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using testing_support::Handle;

namespace {

PdfObjectList& list() {
    return PdfObjectList::process();
}

Postscript2Pdf& translator(PSHandle h) {
    return *reinterpret_cast<Postscript2Pdf*>(h);
}

// A heap copy in the C heap, as the record's fields are.
template <class T = char> T* heapCopy(std::string_view bytes) {
    void* copy = std::malloc(bytes.size() + 1);
    std::memcpy(copy, bytes.data(), bytes.size());
    static_cast<char*>(copy)[bytes.size()] = '\0';
    return static_cast<T*>(copy);
}

PdfObject* addWithData(int32_t kind, const char* prefix, std::string_view data) {
    PdfObject* record = list().addObject(kind, prefix);
    // Exactly the data's bytes, so that a look-up reading past them is caught.
    auto* bytes = static_cast<unsigned char*>(std::malloc(data.size()));
    std::memcpy(bytes, data.data(), data.size());
    list().setData(record, bytes, data.size());
    return record;
}

std::vector<PdfObject*> handedOut(PSHandle h) {
    uint64_t count = 99;
    PdfObject** objects = PSGetPdfObjects(h, &count);
    EXPECT_NE(objects, nullptr);
    return objects ? std::vector<PdfObject*>(objects, objects + count) : std::vector<PdfObject*>();
}

// The list is the process's: every test starts and ends with it empty.
class PdfObjects : public ::testing::Test {
protected:
    void SetUp() override { list().emptyObjects(); }
    void TearDown() override { list().emptyObjects(); }
};

TEST_F(PdfObjects, NamesNumberOnThroughEveryHandleFromOne) {
    Handle first, second;
    ASSERT_EQ(translator(first.h).pdfObjects, translator(second.h).pdfObjects);
    PdfObject* image = translator(first.h).pdfObjects->addObject(imageObjectKind, "/PSI");
    PdfObject* pattern = translator(second.h).pdfObjects->addObject(patternObjectKind, "/PA");
    PdfObject* again = translator(first.h).pdfObjects->addObject(imageObjectKind, "/PSI");
    EXPECT_STREQ(image->name, "/PSI1");
    EXPECT_STREQ(pattern->name, "/PA2");
    EXPECT_STREQ(again->name, "/PSI3");

    // Both handles hand out the whole list; it outlives the handle that made it.
    const std::vector<PdfObject*> expected = {image, pattern, again};
    EXPECT_EQ(handedOut(second.h), expected);
    PSClose(first.h);
    first.h = nullptr;
    EXPECT_EQ(handedOut(second.h), expected);
}

TEST_F(PdfObjects, NewRecordIsZeroedButUncompressed) {
    PdfObject* record = list().addObject(imageObjectKind, "/PSI");
    EXPECT_EQ(record->dictionaryText, nullptr);
    EXPECT_EQ(record->extraText, nullptr);
    EXPECT_EQ(record->reserved, 0u);
    EXPECT_EQ(record->uncompressed, 1u);
    EXPECT_EQ(record->data, nullptr);
    EXPECT_EQ(record->dataLength, 0u);
    EXPECT_EQ(record->kind, imageObjectKind);
    EXPECT_EQ(record->procedure, nullptr);
    for (unsigned char byte : record->text)
        EXPECT_EQ(byte, 0);
}

// The look-up's answer: the record of that name, or none.
void expectFound(int32_t kind, std::string_view bytes, const char* found) {
    PdfObject* record =
        list().findObject(kind, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    if (!found) {
        EXPECT_EQ(record, nullptr) << record->name;
        return;
    }
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->name, found);
}

struct FindCase {
    int32_t kind;
    const char* bytes;
    const char* found; // the record's name, or null
};

void PrintTo(const FindCase& row, std::ostream* os) {
    *os << "kind " << row.kind << " \"" << row.bytes << "\" -> "
        << (row.found ? row.found : "none");
}

class FindObject : public PdfObjects, public ::testing::WithParamInterface<FindCase> {};

// The first record of the kind, in creation order, whose data begins with the
// bytes; a record with fewer bytes never matches.
TEST_P(FindObject, FindsTheFirstRecordBeginningWithTheBytes) {
    addWithData(imageObjectKind, "/PSI", "ab");      // 1: shorter than most queries
    addWithData(imageObjectKind, "/PSI", "abcdef");  // 2
    addWithData(patternObjectKind, "/PA", "abcxyz"); // 3
    addWithData(imageObjectKind, "/PSI", "abcxyz");  // 4
    list().addObject(patternObjectKind, "/PA");      // 5: no data yet
    const FindCase& row = GetParam();
    expectFound(row.kind, row.bytes, row.found);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FindObject,
    ::testing::Values(FindCase{3, "abcdef", "/PSI2"}, FindCase{3, "abc", "/PSI2"},
                      FindCase{3, "ab", "/PSI1"}, FindCase{3, "a", "/PSI1"},
                      FindCase{3, "", "/PSI1"}, FindCase{3, "abcxyz", "/PSI4"},
                      FindCase{1, "abc", "/PA3"}, FindCase{1, "", "/PA3"},
                      FindCase{3, "abQ", nullptr}, FindCase{3, "abcdefg", nullptr},
                      FindCase{3, "abcxyzw", nullptr}, FindCase{1, "abcdef", nullptr},
                      FindCase{2, "a", nullptr}),
    testing_support::RowName());

// Look-ups of images (more than the inline limit of bytes) go through the
// index of first bytes, with the same answers as the plain walk.
struct LongFindCase {
    int32_t kind;
    std::string bytes;
    const char* found; // the record's name, or null
};

void PrintTo(const LongFindCase& row, std::ostream* os) {
    *os << "kind " << row.kind << ", " << row.bytes.size() << " bytes -> "
        << (row.found ? row.found : "none");
}

class LongFindObject : public PdfObjects, public ::testing::WithParamInterface<LongFindCase> {};

std::string run(char byte, std::size_t count) {
    return std::string(count, byte);
}

constexpr std::size_t key = PdfObjectList::indexedPrefixLength;

TEST_P(LongFindObject, FindsTheFirstRecordBeginningWithTheBytes) {
    addWithData(imageObjectKind, "/PSI", run('a', 6000));                  // 1
    addWithData(patternObjectKind, "/PA", run('a', 6000));                 // 2
    addWithData(imageObjectKind, "/PSI", run('a', 5000) + run('b', 1000)); // 3
    addWithData(imageObjectKind, "/PSI", run('c', key));                   // 4
    addWithData(imageObjectKind, "/PSI", run('a', key));                   // 5
    addWithData(imageObjectKind, "/PSI", run('d', key - 1));               // 6: below the key
    addWithData(imageObjectKind, "/PSI", run('e', 7000) + run('f', 10));   // 7
    addWithData(imageObjectKind, "/PSI", run('e', 7000) + run('g', 10));   // 8
    const LongFindCase& row = GetParam();
    expectFound(row.kind, row.bytes, row.found);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LongFindObject,
    ::testing::Values(
        LongFindCase{3, run('a', 6000), "/PSI1"}, LongFindCase{3, run('a', key), "/PSI1"},
        LongFindCase{3, run('a', 5000) + run('b', 1000), "/PSI3"},
        LongFindCase{3, run('a', 5000) + run('b', 10), "/PSI3"},
        LongFindCase{3, run('a', 5000) + run('b', 1001), nullptr},
        LongFindCase{3, run('a', 5999) + "x", nullptr}, LongFindCase{3, run('a', 6001), nullptr},
        LongFindCase{1, run('a', 4500), "/PA2"}, LongFindCase{1, run('a', 6000), "/PA2"},
        LongFindCase{3, run('c', key), "/PSI4"}, LongFindCase{3, run('c', key - 1) + "x", nullptr},
        LongFindCase{3, run('c', key + 1), nullptr}, LongFindCase{3, run('d', key - 1), "/PSI6"},
        LongFindCase{3, run('d', key), nullptr},
        LongFindCase{3, run('e', 7000) + run('g', 10), "/PSI8"},
        LongFindCase{3, run('e', 7000) + run('g', 9), "/PSI8"},
        LongFindCase{3, run('e', 7005), nullptr}),
    testing_support::RowName());

// Emptying takes the index along; giving a record new data indexes it anew.
TEST_F(PdfObjects, IndexFollowsTheRecords) {
    const std::string image = run('q', 5000);
    const auto* bytes = reinterpret_cast<const unsigned char*>(image.data());
    addWithData(imageObjectKind, "/PSI", image);
    list().emptyObjects();
    EXPECT_EQ(list().findObject(imageObjectKind, bytes, image.size()), nullptr);
    PdfObject* record = addWithData(imageObjectKind, "/PSI", run('r', 5000));
    EXPECT_EQ(list().findObject(imageObjectKind, bytes, image.size()), nullptr);
    auto* copy = static_cast<unsigned char*>(std::malloc(image.size()));
    std::memcpy(copy, image.data(), image.size());
    list().setData(record, copy, image.size());
    EXPECT_EQ(list().findObject(imageObjectKind, bytes, image.size()), record);
}

// Each call hands out a copy of the list as it is; records made afterwards do
// not disturb an array already handed out.
TEST_F(PdfObjects, ArrayIsASnapshotOfTheList) {
    Handle h;
    EXPECT_TRUE(handedOut(h.h).empty());
    uint64_t count = 99;
    ASSERT_NE(PSGetPdfObjects(h.h, &count), nullptr) << "an empty list has an array too";
    EXPECT_EQ(count, 0u);

    PdfObject* first = list().addObject(imageObjectKind, "/PSI");
    PdfObject** array = PSGetPdfObjects(h.h, &count);
    ASSERT_EQ(count, 1u);
    for (int i = 0; i < 100; ++i)
        list().addObject(patternObjectKind, "/PA");
    EXPECT_EQ(array[0], first);
    std::vector<PdfObject*> all = handedOut(h.h);
    ASSERT_EQ(all.size(), 101u);
    EXPECT_EQ(all[0], first);
    EXPECT_STREQ(all[100]->name, "/PA101");
    EXPECT_EQ(PSGetPdfObjects(nullptr, &count), nullptr);
}

// Everything a record holds goes with it: run under the sanitizers, a leak
// fails the test. A record holds one count on its procedure.
TEST_F(PdfObjects, EmptyingFreesEveryRecordAndStartsTheNumbersOver) {
    Handle h;
    PdfObject* image = addWithData(imageObjectKind, "/PSI", "data");
    image->dictionaryText = heapCopy("/Type /XObject");
    image->extraText = heapCopy<void>("the host's");
    PdfObject* pattern = list().addObject(patternObjectKind, "/PA");
    auto* alone = new IntegerObject(1);
    addReference(alone);
    pattern->procedure = alone;
    PdfObject* shared = list().addObject(patternObjectKind, "/PA");
    Counted<IntegerObject> held(new IntegerObject(2));
    addReference(held.get());
    shared->procedure = held.get();
    handedOut(h.h);

    list().emptyObjects();
    EXPECT_EQ(list().size(), 0u);
    EXPECT_TRUE(handedOut(h.h).empty());
    EXPECT_EQ(held->refCount, 1) << "the other holder keeps it";
    EXPECT_STREQ(list().addObject(imageObjectKind, "/PSI")->name, "/PSI1");
}

// A host that reads the records by their offsets sees what the library wrote.
TEST_F(PdfObjects, HostReadsTheRecordByItsLayout) {
    Handle h;
    char text[1024];
    EXPECT_EQ(hostListObjects(h.h, text, sizeof text), 0);
    EXPECT_STREQ(text, "");

    PdfObject* image = addWithData(imageObjectKind, "/PSI", "\x01\x02z");
    image->dictionaryText = heapCopy("/Type /XObject /Width 1");
    image->uncompressed = 0;
    PdfObject* pattern = list().addObject(patternObjectKind, "/PA");
    pattern->extraText = heapCopy<void>("x");
    ASSERT_EQ(hostListObjects(h.h, text, sizeof text), 2);
    EXPECT_STREQ(text, "/PSI1 kind=3 uncompressed=0 reserved=0 length=3 data=\x01\x02z "
                       "dictionary=/Type /XObject /Width 1 extra=null procedure=null\n"
                       "/PA2 kind=1 uncompressed=1 reserved=0 length=0 data= "
                       "dictionary=- extra=set procedure=null\n");
}

} // namespace
