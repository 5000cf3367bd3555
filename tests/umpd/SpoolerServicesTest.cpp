#include "umpd/DevMode.h"
#include "umpd/FakeOs.h"
#include "umpd/PrintJob.h"
#include "umpd/PrinterConfig.h"
#include "umpd/PrinterEnumeration.h"
#include "umpd/SystemServices.h"

using namespace testing_support;
using platform::Call;

namespace {

const std::u16string ourDriver = u"Tamarisk Foliograph";

// setPrinterName with each form of name, over one set of installed printers.
struct NameRow {
    const char* name;
    const char16_t* given;
    const char16_t* printerName;
    const char16_t* portName;
    const char16_t* currentName;
};

class SetPrinterName : public FakeOsTest, public ::testing::WithParamInterface<NameRow> {
protected:
    SetPrinterName() {
        fake.addPrinter(u"Other make", u"Another Driver", u"\\\\srv\\port");
        fake.addPrinter(u"Office PDF", ourDriver, u"KELPORT1:");
        fake.addPrinter(u"\\\\srv\\queue", ourDriver, u"\\\\srv\\port");
        fake.addPrinter(u"Second", u"TAMARISK foliograph", u"\\KELPORT2");
        fake.addPrinter(u"Also on 2", ourDriver, u"\\KELPORT2");
    }
};

TEST_P(SetPrinterName, ResolvesPortForms) {
    auto row = GetParam();
    PrinterConfig config;
    config.settings.set(u"stale", u"1");
    config.setPrinterName(row.given);
    EXPECT_EQ(config.printerName, row.printerName);
    EXPECT_EQ(config.portName, row.portName);
    EXPECT_EQ(config.currentName(), row.currentName);
}

INSTANTIATE_TEST_SUITE_P(
    Names, SetPrinterName,
    ::testing::Values(
        NameRow{"Plain", u"Office PDF", u"Office PDF", u"", u"Office PDF"},
        NameRow{"LocalPortNameIsAPlainName", u"kelport1:", u"kelport1:", u"", u"kelport1:"},
        NameRow{"CommaFormOfPortOfOurDriverOnly", u",,srv,port", u"\\\\srv\\queue", u",,srv,port",
                u",,srv,port"},
        NameRow{"BackslashFormOfPort", u"\\\\srv\\port", u"\\\\srv\\queue", u"\\\\srv\\port",
                u"\\\\srv\\port"},
        NameRow{"CommaFormOfPrinter", u",,SRV,QUEUE", u"\\\\srv\\queue", u",,SRV,QUEUE",
                u",,SRV,QUEUE"},
        NameRow{"FirstMatchWins", u",kelport2", u"Second", u",kelport2", u",kelport2"},
        NameRow{"NoPrinterOnPort", u",nowhere", u"", u",nowhere", u",nowhere"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(FakeOsTest, EmptyNameLoadsTheDefaultAndClearsSettings) {
    PrinterConfig config;
    config.portName = u",old";
    config.settings.set(u"stale", u"1");
    config.setPrinterName(nullptr);
    EXPECT_EQ(config.printerName, u"Tamarisk Foliograph");
    EXPECT_EQ(config.portName, u"");
    EXPECT_EQ(config.settings.size(), 0u);

    fake.setRegistryValue(platform::RegistryRoot::CurrentUser, u"Software\\Foliograph",
                          u"printerName", platform::stringValue(u"Stored default"));
    config.setPrinterName(u"");
    EXPECT_EQ(config.printerName, u"Stored default");
    // A stored name above 520 bytes is not taken.
    fake.setRegistryValue(platform::RegistryRoot::CurrentUser, u"Software\\Foliograph",
                          u"printerName", platform::stringValue(std::u16string(260, u'n')));
    config.setPrinterName(u"");
    EXPECT_EQ(config.printerName, u"Tamarisk Foliograph");
}

TEST_F(FakeOsTest, PortFormsAreCutAndSpoolerFailureMatchesNothing) {
    fake.addPrinter(u"P", ourDriver, u"KELPORT1:");
    PrinterConfig config;
    config.setPrinterName((u"," + std::u16string(400, u'p')).c_str());
    EXPECT_EQ(config.portName.size(), 259u);
    EXPECT_EQ(config.printerName, u"");
    fake.fail(Call::EnumPrinters);
    config.setPrinterName(u",KELPORT1:");
    EXPECT_EQ(config.printerName, u"");
    EXPECT_EQ(config.portName, u",KELPORT1:");
}

TEST_F(FakeOsTest, FindPortSkipsRecordsWithoutDriverOrPort) {
    std::u16string result = u"untouched";
    FindPort finder(result, u"KELPORT1:");
    platform::PrinterInfo2 info;
    info.printerName = u"X";
    info.portName = u"KELPORT1:";
    EXPECT_FALSE(finder.found(&info)); // no driver name
    info.driverName = ourDriver;
    info.portName.reset();
    EXPECT_FALSE(finder.found(&info)); // no port
    info.portName = u"KELPORT1:";
    info.printerName.reset();
    EXPECT_TRUE(finder.found(&info)); // matched by port; no printer name to give
    EXPECT_EQ(result, u"");
    info.printerName = std::u16string(300, u'q');
    EXPECT_TRUE(finder.found(&info));
    EXPECT_EQ(result, std::u16string(259, u'q'));
}

struct DeviceRow {
    const char16_t* printer;
    const char16_t* device;
};

class DeviceName : public ::testing::TestWithParam<DeviceRow> {};

TEST_P(DeviceName, IsTheLastPathComponentCutTo31) {
    auto bytes = buildDevMode(GetParam().printer);
    DevModeRecord dm;
    std::memcpy(&dm, bytes.data(), sizeof dm);
    EXPECT_EQ(fieldText(dm.dmDeviceName), GetParam().device);
}

INSTANTIATE_TEST_SUITE_P(Names, DeviceName,
                         ::testing::Values(DeviceRow{u"Office PDF", u"Office PDF"},
                                           DeviceRow{u"\\\\srv\\queue", u"queue"},
                                           DeviceRow{u"\\\\srv\\queue\\", u"\\"},
                                           DeviceRow{u"", u""},
                                           DeviceRow{u"A printer name of forty characters long!",
                                                     u"A printer name of forty charact"}));

TEST_F(FakeOsTest, OpenPrinterPassesRawDefaultsAndTheDevMode) {
    fake.addPrinter(u"\\\\srv\\queue", ourDriver, u"KELPORT1:");
    PrinterConfig config;
    config.setPrinterName(u"\\\\srv\\queue");
    ASSERT_TRUE(config.openPrinter(8));
    ASSERT_TRUE(config.openPrinter(8)); // already open: no second open
    EXPECT_EQ(fake.callCount(Call::OpenPrinter), 1);
    const auto& defaults = fake.printer(u"\\\\srv\\queue")->lastDefaults;
    ASSERT_TRUE(defaults.has_value());
    EXPECT_EQ(defaults->datatype, u"RAW");
    EXPECT_EQ(defaults->desiredAccess, 8u);
    ASSERT_EQ(defaults->devMode.size(), 220u + 180u);
    auto u16 = [&](std::size_t at) {
        return defaults->devMode[at] | defaults->devMode[at + 1] << 8;
    };
    struct Field {
        std::size_t offset;
        int value;
    } fields[] = {{64, 0x401}, {66, 0x400}, {68, 220},   {70, 180}, {72, 0x4F13}, {74, 1},
                  {76, 1},     {78, 1},     {80, 0},     {82, 0},   {84, 100},    {86, 1},
                  {88, 15},    {90, 300},   {92, 2},     {94, 1},   {96, 0},      {98, 3},
                  {100, 0},    {102, u'A'}, {104, u'4'}, {106, 0}};
    for (auto f : fields)
        EXPECT_EQ(u16(f.offset), f.value) << "offset " << f.offset;
    EXPECT_EQ(u16(0), u'q');
    for (std::size_t i = 166; i < defaults->devMode.size(); ++i)
        ASSERT_EQ(defaults->devMode[i], 0) << i;

    PrinterConfig missing;
    missing.setPrinterName(u"absent");
    EXPECT_FALSE(missing.openPrinter(8));
    EXPECT_EQ(missing.printerHandle, nullptr);
}

// The current job's document name: the job last in the queue.
platform::JobInfo2 job(std::uint32_t id, std::int32_t position, const char16_t* document) {
    platform::JobInfo2 j;
    j.jobId = id;
    j.position = static_cast<std::uint32_t>(position);
    if (document) j.document = document;
    return j;
}

class CurrentJob : public FakeOsTest {
protected:
    CurrentJob() { fake.addPrinter(u"P", ourDriver, u"KELPORT1:"); }
    std::vector<platform::JobInfo2>& jobs() { return fake.printer(u"P")->jobs; }
    PrinterConfig config() {
        PrinterConfig c;
        c.setPrinterName(u"P");
        return c;
    }
};

TEST_F(CurrentJob, LastInQueueAndFirstOfEquals) {
    struct Row {
        std::vector<platform::JobInfo2> jobs;
        const char16_t* docName;
        std::uint32_t jobId;
    } rows[] = {
        {{job(4, 1, u"a"), job(5, 3, u"b"), job(6, 3, u"c"), job(7, 2, u"d")}, u"b", 5},
        {{job(4, -1, u"neg"), job(5, -7, u"more neg")}, u"neg", 4},
        {{job(9, 1, nullptr)}, u"", 9},
        {{job(9, 1, std::u16string(300, u'z').c_str())}, nullptr, 9},
    };
    for (auto& row : rows) {
        jobs() = row.jobs;
        auto c = config();
        std::u16string docName = u"before";
        std::uint32_t jobId = 0;
        getCurrentPrintJobDocName(c, docName, jobId);
        EXPECT_EQ(docName, row.docName ? std::u16string(row.docName) : std::u16string(259, u'z'));
        EXPECT_EQ(jobId, row.jobId);
    }
}

TEST_F(CurrentJob, KnownJobIdIsKept) {
    jobs() = {job(4, 1, u"a")};
    auto c = config();
    std::u16string docName;
    std::uint32_t jobId = 77;
    getCurrentPrintJobDocName(c, docName, jobId);
    EXPECT_EQ(docName, u"a");
    EXPECT_EQ(jobId, 77u);
}

TEST_F(CurrentJob, FailuresLeaveTheDocumentNameAlone) {
    jobs() = {job(4, 1, u"a")};
    struct Row {
        const char* name;
        Call call;
    } rows[] = {
        {"open", Call::OpenPrinter}, {"printer", Call::GetPrinter}, {"jobs", Call::EnumJobs}};
    for (auto row : rows) {
        SCOPED_TRACE(row.name);
        fake.fail(row.call, 5, 1);
        auto c = config();
        std::u16string docName = u"kept";
        std::uint32_t jobId = 0;
        getCurrentPrintJobDocName(c, docName, jobId);
        EXPECT_EQ(docName, u"kept");
        EXPECT_EQ(jobId, 0u);
    }
    jobs().clear(); // an empty queue gives no list at all
    auto c = config();
    std::u16string docName = u"kept";
    std::uint32_t jobId = 0;
    getCurrentPrintJobDocName(c, docName, jobId);
    EXPECT_EQ(docName, u"kept");
    fake.printer(u"P")->countedJobs = 1; // counted, yet none listed: an empty list
    getCurrentPrintJobDocName(c, docName, jobId);
    EXPECT_EQ(docName, u"");
    EXPECT_EQ(jobId, 0u);
}

TEST_F(CurrentJob, AllJobsAskForTwoMoreThanCounted) {
    for (std::uint32_t i = 1; i <= 7; ++i)
        jobs().push_back(job(i, static_cast<int>(i), u"d"));
    auto c = config();
    ASSERT_TRUE(c.openPrinter(8));
    struct Row {
        std::uint32_t counted, listed;
    } rows[] = {{7, 7}, {5, 7}, {4, 6}, {1, 3}};
    for (auto row : rows) {
        fake.printer(u"P")->countedJobs = row.counted; // the queue grew since it was counted
        std::uint32_t count = 99;
        auto list = PrintJob::getAllJobs(*c.printerHandle, count);
        ASSERT_TRUE(list.has_value());
        EXPECT_EQ(count, row.listed);
        EXPECT_EQ(list->size(), row.listed);
    }
    std::uint32_t count = 99;
    fake.printer(u"P")->countedJobs.reset();
    jobs().clear();
    EXPECT_FALSE(PrintJob::getAllJobs(*c.printerHandle, count).has_value());
    EXPECT_EQ(count, 0u);
}

TEST_F(CurrentJob, CompletedJobsAreCancelledOrDeleted) {
    using Controls = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
    struct Row {
        std::uint32_t platformId, command;
    } rows[] = {{1, 3}, {2, 5}};
    for (auto row : rows) {
        fake.version->platformId = row.platformId;
        jobs() = {job(4, 1, u"a"), job(5, 2, u"b"), job(6, 3, u"c")};
        jobs()[0].status = 0x1000;        // complete
        jobs()[1].status = 0x10;          // printing
        jobs()[2].status = 0x1000 | 0x80; // complete and printed
        fake.printer(u"P")->jobControls.clear();
        auto c = config();
        ASSERT_TRUE(c.openPrinter(8));
        PrintJob::deleteCompletedJobs(*c.printerHandle);
        EXPECT_EQ(fake.printer(u"P")->jobControls, (Controls{{4, row.command}, {6, row.command}}));
    }
    EXPECT_TRUE(fake.debugLines().empty());
    jobs().clear();
    auto c = config();
    ASSERT_TRUE(c.openPrinter(8));
    PrintJob::deleteCompletedJobs(*c.printerHandle);
    EXPECT_EQ(fake.debugLines(), std::vector<std::string>{"PrintJob::getAllJobs FAILED"});
}

TEST_F(CurrentJob, InfoCacheFetchesAnewEachTime) {
    PrinterInfoCache none;
    EXPECT_EQ(none.fetch(), nullptr);
    auto c = config();
    ASSERT_TRUE(c.openPrinter(8));
    PrinterInfoCache cache(c.printerHandle.get());
    auto* info = cache.fetch();
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->portName, u"KELPORT1:");
    fake.fail(Call::GetPrinter);
    EXPECT_EQ(cache.fetch(), nullptr);
    EXPECT_EQ(cache.info, nullptr);
}

using SelfScope = FakeOsTest;

TEST_F(SelfScope, RevertsForTheScopeAndImpersonatesAfter) {
    {
        PrinterSelfScope scope;
        EXPECT_NE(scope.token, 0u);
        EXPECT_EQ(fake.impersonatedWith, 0u);
    }
    EXPECT_NE(fake.impersonatedWith, 0u);
    EXPECT_TRUE(fake.boxes().empty());
}

TEST_F(SelfScope, FailuresAndOldSystems) {
    struct Row {
        const char* name;
        std::uint32_t platformId;
        Call fails; // Call::Count: none
        bool noRevert;
        const char16_t* caption; // null: no box
        const char16_t* text;
    } rows[] = {
        {"platform 1", 1, Call::Count, false, nullptr, nullptr},
        {"no spoolss", 2, Call::LoadSpoolss, false, u"LoadLibrary spoolss.dll",
         u"System error 5.\r\n"},
        {"no RevertToPrinterSelf", 2, Call::Count, true, u"GetProcAddress RevertToPrinterSelf",
         u"System error 127.\r\n"},
        {"no token", 2, Call::RevertToPrinterSelf, false, nullptr, nullptr},
    };
    for (auto row : rows) {
        SCOPED_TRACE(row.name);
        platform::FakePlatform local;
        platform::setCurrent(&local);
        local.version->platformId = row.platformId;
        if (row.fails != Call::Count) local.fail(row.fails);
        local.spoolssHasRevert = !row.noRevert;
        { PrinterSelfScope scope; }
        EXPECT_EQ(local.callCount(Call::ImpersonatePrinterClient), 0);
        EXPECT_EQ(local.callCount(Call::LoadSpoolss), row.platformId == 1 ? 0 : 1);
        auto boxes = local.boxes();
        ASSERT_EQ(boxes.size(), row.caption ? 1u : 0u);
        if (row.caption) {
            EXPECT_EQ(boxes[0].caption, row.caption);
            EXPECT_EQ(boxes[0].text, row.text);
            EXPECT_EQ(boxes[0].style, 0x200000u);
        }
        platform::setCurrent(&fake);
    }
}

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
