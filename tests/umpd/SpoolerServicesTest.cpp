#include "platform/WideText.h"
#include "umpd/DevMode.h"
#include "umpd/FakeOs.h"
#include "umpd/PrintJob.h"
#include "umpd/PrinterConfig.h"
#include "umpd/PrinterEnumeration.h"
#include "umpd/SystemServices.h"

#include <cstring>

using namespace testing_support;
using platform::Call;

namespace {

const std::u16string ourDriver = u"Tamarisk Foliograph";
const std::u16string longPort = u"," + std::u16string(400, u'p');
const std::u16string longPortCut = longPort.substr(0, 259);
const std::u16string longPrinterCut(259, u'q');

// setPrinterName with each form of name, over one set of installed printers.
struct NameRow {
    const char* name;
    const char16_t* given;
    const char16_t* printerName;
    const char16_t* portName; // also the current name when not empty
    Call fails = Call::Count;
};

class SetPrinterName : public FakeOsTest, public ::testing::WithParamInterface<NameRow> {
protected:
    SetPrinterName() {
        fake.spooler().addPrinter(u"Other make", u"Another Driver", u"\\\\srv\\port");
        fake.spooler().addPrinter(u"Office PDF", ourDriver, u"KELPORT1:");
        fake.spooler().addPrinter(u"\\\\srv\\queue", ourDriver, u"\\\\srv\\port");
        fake.spooler().addPrinter(u"Second", u"TAMARISK foliograph", u"\\KELPORT2");
        fake.spooler().addPrinter(u"Also on 2", ourDriver, u"\\KELPORT2");
        // Records the walk must pass over, or match without a name to give.
        fake.spooler().addPrinter(u"No driver", ourDriver, u"\\KELPORT3").info.driverName.reset();
        fake.spooler().addPrinter(u"Third", ourDriver, u"\\KELPORT3");
        fake.spooler().addPrinter(u"\\\\srv\\noport", ourDriver, u"").info.portName.reset();
        fake.spooler().addPrinter(u"No name", ourDriver, u"\\KELPORT4").info.printerName.reset();
        fake.spooler().addPrinter(u"Fourth", ourDriver, u"\\KELPORT4");
        fake.spooler().addPrinter(std::u16string(300, u'q'), ourDriver, u"\\KELPORT5");
    }
};

TEST_P(SetPrinterName, ResolvesPortForms) {
    const auto& row = GetParam();
    if (row.fails != Call::Count) fake.fail(row.fails);
    PrinterConfig config;
    config.settings.set(u"stale", u"1");
    config.setPrinterName(row.given);
    EXPECT_EQ(config.printerName, row.printerName);
    EXPECT_EQ(config.portName, row.portName);
    EXPECT_EQ(config.currentName(), *row.portName ? row.portName : row.printerName);
    EXPECT_EQ(config.settings.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Names, SetPrinterName,
    ::testing::Values(
        NameRow{"Plain", u"Office PDF", u"Office PDF", u""},
        NameRow{"LocalPortNameIsAPlainName", u"kelport1:", u"kelport1:", u""},
        NameRow{"CommaFormOfPortOfOurDriverOnly", u",,srv,port", u"\\\\srv\\queue", u",,srv,port"},
        NameRow{"BackslashFormOfPort", u"\\\\srv\\port", u"\\\\srv\\queue", u"\\\\srv\\port"},
        NameRow{"CommaFormOfPrinter", u",,SRV,QUEUE", u"\\\\srv\\queue", u",,SRV,QUEUE"},
        NameRow{"FirstMatchWins", u",kelport2", u"Second", u",kelport2"},
        NameRow{"NoPrinterOnPort", u",nowhere", u"", u",nowhere"},
        NameRow{"LongPortFormIsCut", longPort.c_str(), u"", longPortCut.c_str()},
        NameRow{"RecordWithoutDriverIsPassed", u",kelport3", u"Third", u",kelport3"},
        NameRow{"RecordWithoutPortIsPassed", u",,srv,noport", u"", u",,srv,noport"},
        NameRow{"MatchWithoutNameGivesNone", u",kelport4", u"", u",kelport4"},
        NameRow{"LongPrinterNameIsCut", u",kelport5", longPrinterCut.c_str(), u",kelport5"},
        NameRow{"SpoolerFailureMatchesNothing", u",kelport2", u"", u",kelport2",
                Call::EnumPrinters}),
    rowName);

TEST_F(FakeOsTest, EmptyNameLoadsTheDefaultAndClearsSettings) {
    PrinterConfig config;
    config.portName = u",old";
    config.settings.set(u"stale", u"1");
    config.setPrinterName(nullptr);
    EXPECT_EQ(config.printerName, u"Tamarisk Foliograph");
    EXPECT_EQ(config.portName, u"");
    EXPECT_EQ(config.settings.size(), 0u);
    // A stored name is taken, unless it is above 520 bytes.
    for (auto stored : {std::u16string(u"Stored default"), std::u16string(260, u'n')}) {
        fake.registry().setRegistryValue(platform::RegistryRoot::CurrentUser,
                                         u"Software\\Foliograph", u"printerName",
                                         platform::stringValue(stored));
        config.setPrinterName(u"");
        EXPECT_EQ(config.printerName, stored.size() < 260 ? stored : u"Tamarisk Foliograph");
    }
}

TEST(DeviceName, IsTheLastPathComponentCutTo31) {
    struct Row {
        const char16_t *printer, *device;
    } rows[] = {{u"Office PDF", u"Office PDF"},
                {u"\\\\srv\\queue", u"queue"},
                {u"\\\\srv\\queue\\", u"\\"},
                {u"", u""},
                {u"A printer name of forty characters long!", u"A printer name of forty charact"}};
    for (auto row : rows) {
        DevModeRecord dm;
        std::memcpy(&dm, buildDevMode(row.printer).data(), sizeof dm);
        EXPECT_EQ(fieldText(dm.dmDeviceName), row.device);
    }
}

TEST_F(FakeOsTest, OpenPrinterPassesRawDefaultsAndTheDevMode) {
    fake.spooler().addPrinter(u"\\\\srv\\queue", ourDriver, u"KELPORT1:");
    PrinterConfig config;
    config.setPrinterName(u"\\\\srv\\queue");
    ASSERT_TRUE(config.openPrinter(8));
    ASSERT_TRUE(config.openPrinter(8)); // already open: no second open
    EXPECT_EQ(fake.callCount(Call::OpenPrinter), 1);
    const auto& defaults = fake.spooler().printer(u"\\\\srv\\queue")->lastDefaults;
    ASSERT_TRUE(defaults.has_value());
    EXPECT_EQ(defaults->datatype, u"RAW");
    EXPECT_EQ(defaults->desiredAccess, 8u);
    const auto& bytes = defaults->devMode;
    ASSERT_EQ(bytes.size(), 220u + 180u);
    auto word = [&](std::size_t at) { return bytes[at] | bytes[at + 1] << 8; };
    EXPECT_EQ(word(0), u'q'); // the device name's first unit
    // Every 16-bit word from the version to the form name's terminator.
    const int words[] = {0x401, 0x400, 220, 180, 0x4F13, 1, 1, 1, 0,   0,   100,
                         1,     15,    300, 2,   1,      0, 3, 0, 'A', '4', 0};
    for (std::size_t i = 0; i < std::size(words); ++i)
        EXPECT_EQ(word(64 + 2 * i), words[i]) << "offset " << 64 + 2 * i;
    for (std::size_t i = 166; i < bytes.size(); ++i)
        ASSERT_EQ(bytes[i], 0) << i;

    PrinterConfig missing;
    missing.setPrinterName(u"absent");
    EXPECT_FALSE(missing.openPrinter(8));
    EXPECT_EQ(missing.printerHandle, nullptr);
}

platform::JobInfo2 job(std::uint32_t id, std::int32_t position, const char16_t* document) {
    platform::JobInfo2 j;
    j.jobId = id;
    j.position = static_cast<std::uint32_t>(position);
    if (document) j.document = document;
    return j;
}

class PrinterP : public FakeOsTest {
protected:
    PrinterP() { fake.spooler().addPrinter(u"P", ourDriver, u"KELPORT1:"); }
    std::vector<platform::JobInfo2>& jobs() { return fake.spooler().printer(u"P")->jobs; }
    // A config of P with its printer opened, or left to open itself.
    PrinterConfig config(bool open = true) {
        PrinterConfig c;
        c.setPrinterName(u"P");
        EXPECT_TRUE(!open || c.openPrinter(8));
        return c;
    }
};

// The current job's document name: the job last in the queue, or the name left alone.
struct CurrentJobRow {
    const char* name;
    std::vector<platform::JobInfo2> jobs;
    std::uint32_t jobIdIn;
    const char16_t* docName; // null: 259 'z'
    std::uint32_t jobId;
    Call fails = Call::Count;
    std::optional<std::uint32_t> counted = std::nullopt;
};

class CurrentJob : public PrinterP, public ::testing::WithParamInterface<CurrentJobRow> {};

TEST_P(CurrentJob, IsTheLastInTheQueue) {
    const auto& row = GetParam();
    jobs() = row.jobs;
    fake.spooler().printer(u"P")->countedJobs = row.counted;
    if (row.fails != Call::Count) fake.fail(row.fails);
    auto c = config(false);
    std::u16string docName = u"before";
    std::uint32_t jobId = row.jobIdIn;
    getCurrentPrintJobDocName(c, docName, jobId);
    EXPECT_EQ(docName, row.docName ? std::u16string(row.docName) : std::u16string(259, u'z'));
    EXPECT_EQ(jobId, row.jobId);
}

const std::u16string longDocument(300, u'z');
const std::vector<platform::JobInfo2> fourJobs = {job(4, 1, u"a"), job(5, 3, u"b"), job(6, 3, u"c"),
                                                  job(7, 2, u"d")};

INSTANTIATE_TEST_SUITE_P(
    Queues, CurrentJob,
    ::testing::Values(
        CurrentJobRow{"FirstOfEqualPositions", fourJobs, 0, u"b", 5},
        CurrentJobRow{"SignedPositions", {job(4, -1, u"neg"), job(5, -7, u"more")}, 0, u"neg", 4},
        CurrentJobRow{"NoDocument", {job(9, 1, nullptr)}, 0, u"", 9},
        CurrentJobRow{"LongDocumentIsCut", {job(9, 1, longDocument.c_str())}, 0, nullptr, 9},
        CurrentJobRow{"KnownJobIdIsKept", {job(4, 1, u"a")}, 77, u"a", 77},
        CurrentJobRow{"OpenFails", {job(4, 1, u"a")}, 0, u"before", 0, Call::OpenPrinter},
        CurrentJobRow{"GetPrinterFails", {job(4, 1, u"a")}, 0, u"before", 0, Call::GetPrinter},
        CurrentJobRow{"EnumJobsFails", {job(4, 1, u"a")}, 0, u"before", 0, Call::EnumJobs},
        CurrentJobRow{"EmptyQueueGivesNoList", {}, 0, u"before", 0},
        CurrentJobRow{"CountedButNoneListed", {}, 0, u"", 0, Call::Count, 1}),
    rowName);

using PrintJobs = PrinterP;

TEST_F(PrintJobs, AllJobsAskForTwoMoreThanCounted) {
    for (std::uint32_t i = 1; i <= 7; ++i)
        jobs().push_back(job(i, static_cast<int>(i), u"d"));
    auto c = config();
    struct Row {
        std::optional<std::uint32_t> counted;
        std::uint32_t listed;
    } rows[] = {{7, 7}, {5, 7}, {4, 6}, {1, 3}};
    for (auto row : rows) {
        fake.spooler().printer(u"P")->countedJobs =
            row.counted; // the queue grew since it was counted
        std::uint32_t count = 99;
        auto list = PrintJob::getAllJobs(*c.printerHandle, count);
        ASSERT_TRUE(list.has_value());
        EXPECT_EQ(count, row.listed);
        EXPECT_EQ(list->size(), row.listed);
    }
    std::uint32_t count = 99;
    fake.spooler().printer(u"P")->countedJobs.reset();
    jobs().clear();
    EXPECT_FALSE(PrintJob::getAllJobs(*c.printerHandle, count).has_value());
    EXPECT_EQ(count, 0u);
}

TEST_F(PrintJobs, CompletedJobsAreCancelledOrDeleted) {
    using Controls = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
    auto c = config();
    for (auto [platformId, command] : {std::pair{1u, 3u}, std::pair{2u, 5u}}) {
        fake.system().version->platformId = platformId;
        jobs() = {job(4, 1, u"a"), job(5, 2, u"b"), job(6, 3, u"c")};
        jobs()[0].status = 0x1000;        // complete
        jobs()[1].status = 0x10;          // printing
        jobs()[2].status = 0x1000 | 0x80; // complete and printed
        fake.spooler().printer(u"P")->jobControls.clear();
        PrintJob::deleteCompletedJobs(*c.printerHandle);
        EXPECT_EQ(fake.spooler().printer(u"P")->jobControls,
                  (Controls{{4, command}, {6, command}}));
    }
    EXPECT_TRUE(fake.reporter().debugLines().empty());
    jobs().clear();
    PrintJob::deleteCompletedJobs(*c.printerHandle);
    EXPECT_EQ(fake.reporter().debugLines(),
              std::vector<std::string>{"PrintJob::getAllJobs FAILED"});
}

TEST_F(PrintJobs, InfoCacheFetchesAnewEachTime) {
    EXPECT_EQ(PrinterInfoCache().fetch(), nullptr);
    auto c = config();
    PrinterInfoCache cache(c.printerHandle.get());
    auto* info = cache.fetch();
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->portName, u"KELPORT1:");
    fake.fail(Call::GetPrinter);
    EXPECT_EQ(cache.fetch(), nullptr);
    EXPECT_EQ(cache.info, nullptr);
}

// The spooler's identity for the scope, the client's after it.
struct SelfRow {
    const char* name;
    std::uint32_t platformId;
    Call fails; // Call::Count: none
    bool hasRevert;
    bool impersonates;
    const char* box = ""; // the box shown
};

class SelfScope : public FakeOsTest, public ::testing::WithParamInterface<SelfRow> {};

TEST_P(SelfScope, RevertsForTheScopeAndImpersonatesAfter) {
    const auto& row = GetParam();
    fake.system().version->platformId = row.platformId;
    if (row.fails != Call::Count) fake.fail(row.fails);
    fake.spooler().spoolssHasRevert = row.hasRevert;
    {
        PrinterSelfScope scope;
        EXPECT_EQ(scope.token != 0, row.impersonates);
        EXPECT_EQ(fake.spooler().impersonatedWith, 0u);
    }
    EXPECT_EQ(fake.spooler().impersonatedWith != 0, row.impersonates);
    EXPECT_EQ(fake.callCount(Call::ImpersonatePrinterClient), row.impersonates ? 1 : 0);
    EXPECT_EQ(fake.callCount(Call::LoadSpoolss), row.platformId == 1 ? 0 : 1);
    EXPECT_EQ(boxesShown(), row.box);
}

INSTANTIATE_TEST_SUITE_P(
    Systems, SelfScope,
    ::testing::Values(SelfRow{"Works", 2, Call::Count, true, true},
                      SelfRow{"Platform1", 1, Call::Count, true, false},
                      SelfRow{"NoSpoolss", 2, Call::LoadSpoolss, true, false,
                              "LoadLibrary spoolss.dll|System error 5.\r\n|200000\n"},
                      SelfRow{"NoRevertToPrinterSelf", 2, Call::Count, false, false,
                              "GetProcAddress RevertToPrinterSelf|System error 127.\r\n|200000\n"},
                      SelfRow{"NoToken", 2, Call::RevertToPrinterSelf, true, false}),
    rowName);

TEST(StringMapTest, KeysWithoutCaseAndAFixedSize) {
    StringMap map;
    map.set(u"printerData4", u"1");
    map.set(u"PrinterData4", u"2");
    map.set(u"empty", nullptr);
    map.setInt(u"TrimNameChar", -45);
    ASSERT_NE(map.get(u"PRINTERDATA4"), nullptr);
    EXPECT_EQ(*map.get(u"printerdata4"), u"2");
    EXPECT_EQ(*map.get(u"empty"), u"");
    EXPECT_EQ(*map.get(u"TrimNameChar"), u"-45");
    EXPECT_EQ(map.get(u"absent"), nullptr);
    for (int i = 0; i < 300; ++i)
        map.setInt(u"k" + platform::fromUtf8(std::to_string(i)), i);
    EXPECT_EQ(map.size(), StringMap::capacity);
    map.set(u"printerData4", u"3"); // an existing key still takes a value
    EXPECT_EQ(*map.get(u"printerData4"), u"3");
    map.clear();
    EXPECT_EQ(map.size(), 0u);
}

} // namespace
