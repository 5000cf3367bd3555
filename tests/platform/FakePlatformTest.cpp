// What the fake adds to the contract: planned failures, virtual time and records.

#include "platform/fake/FakePlatform.h"
#include "platform/WideText.h"

#include <gtest/gtest.h>

#include <functional>

using namespace platform;

namespace {

// A fake with one of everything to call on, and room for what the calls give back.
struct World {
    explicit World(FakePlatform& fake) : os(fake) {
        JobInfo2 job;
        job.jobId = 1;
        fake.addPrinter(u"P", u"D", u"FILE:").jobs.push_back(job);
        fake.setRegistryValue(RegistryRoot::CurrentUser, u"Software\\T", u"v", dwordValue(1));
        fake.writeFile(u"C:\\k.ini", "[init]\nk=7\n");
        hkcu = os.registry().root(RegistryRoot::CurrentUser);
        hkcu->openSubKey(u"Software\\T", 0, key);
        printer = os.spooler().openPrinter(u"P", nullptr);
        spoolss = os.spooler().loadSpoolss();
        mapping = os.kernel().createFileMapping(nullptr, 8, u"m");
        event = os.kernel().createEvent(nullptr, true, true, u"e");
        mutex = os.kernel().createMutex(nullptr, false, u"x");
        start.commandLine = u"a.exe";
        process = os.processes().createProcess(start);
        descriptor = os.security().allocDescriptor(40);
        netApi = os.system().loadNetApi();
        file = os.files().createFile(u"C:\\f.txt");
    }
    Platform& os;
    std::unique_ptr<RegistryKey> hkcu, key, newKey;
    std::unique_ptr<Printer> printer;
    std::unique_ptr<SpoolssModule> spoolss;
    std::unique_ptr<FileMapping> mapping;
    std::unique_ptr<Event> event;
    std::unique_ptr<Mutex> mutex;
    ProcessStart start;
    std::unique_ptr<Process> process;
    std::unique_ptr<SecurityDescriptor> descriptor;
    std::unique_ptr<NetApi> netApi;
    std::unique_ptr<File> file;
    // What the calls give back.
    RegistryValue value;
    std::u16string text;
    std::uint32_t n = 0;
    PrinterInfo2 info;
    JobInfo2 job;
    std::vector<PrinterInfo2> printers;
    std::vector<JobInfo2> jobs;
    void* acl = nullptr;
};

using W = World;

struct CallRow {
    Call call;
    const char* name;
    std::function<bool(World&)> run; // true when the call succeeded
};

// A row's call and its name.
#define ROW(call) Call::call, #call

const CallRow callRows[] = {
    {ROW(RegOpenCurrentUser),
     [](W& w) { return w.os.registry().openCurrentUser(0, w.newKey) == 0; }},
    {ROW(RegCreateKey),
     [](W& w) { return w.hkcu->createSubKey(u"Software\\T", 0, w.newKey, w.n) == 0; }},
    {ROW(RegOpenKey), [](W& w) { return w.hkcu->openSubKey(u"Software\\T", 0, w.newKey) == 0; }},
    {ROW(RegSetValue), [](W& w) { return w.key->setValue(u"v", {}) == 0; }},
    {ROW(RegQueryValue), [](W& w) { return w.key->queryValue(u"v", w.value, 4) == 0; }},
    {ROW(RegEnumValue), [](W& w) { return w.key->enumValue(0, w.text, w.value) == 0; }},
    {ROW(RegQueryInfoKey), [](W& w) { return w.key->valueCount(w.n) == 0; }},
    {ROW(EnumPrinters), [](W& w) { return w.os.spooler().enumPrinters(6, w.printers); }},
    {ROW(OpenPrinter), [](W& w) { return w.os.spooler().openPrinter(u"P", nullptr) != nullptr; }},
    {ROW(GetPrinter), [](W& w) { return w.printer->getPrinter2(w.info); }},
    {ROW(GetJob), [](W& w) { return w.printer->getJob(1, w.job); }},
    {ROW(EnumJobs), [](W& w) { return w.printer->enumJobs(0, 5, w.jobs); }},
    {ROW(SetJob), [](W& w) { return w.printer->setJob(1, 1); }},
    {ROW(WritePrinter), [](W& w) { return w.printer->writePrinter("ab", 2, w.n); }},
    {ROW(GetPrinterDriverDirectory),
     [](W& w) { return w.os.spooler().driverDirectory().has_value(); }},
    {ROW(LoadSpoolss), [](W& w) { return w.os.spooler().loadSpoolss() != nullptr; }},
    {ROW(RevertToPrinterSelf), [](W& w) { return w.spoolss->revertToPrinterSelf() != 0; }},
    {ROW(ImpersonatePrinterClient), [](W& w) { return w.spoolss->impersonatePrinterClient(5); }},
    {ROW(CreateFileMapping),
     [](W& w) { return w.os.kernel().createFileMapping(nullptr, 8, u"m2") != nullptr; }},
    {ROW(OpenFileMapping),
     [](W& w) { return w.os.kernel().openFileMapping(fileMapAllAccess, u"m") != nullptr; }},
    {ROW(MapViewOfFile), [](W& w) { return w.mapping->mapView(6) != nullptr; }},
    {ROW(CreateEvent),
     [](W& w) { return w.os.kernel().createEvent(nullptr, 0, 0, u"e2") != nullptr; }},
    {ROW(OpenEvent), [](W& w) { return w.os.kernel().openEvent(eventAllAccess, u"e") != nullptr; }},
    {ROW(SetEvent), [](W& w) { return w.event->set(); }},
    {ROW(WaitForSingleObject), [](W& w) { return w.event->wait(0) == WaitResult::Signalled; }},
    {ROW(CreateMutex),
     [](W& w) { return w.os.kernel().createMutex(nullptr, 0, u"x2") != nullptr; }},
    {ROW(OpenMutex), [](W& w) { return w.os.kernel().openMutex(0x1F0003, u"x") != nullptr; }},
    {ROW(CreateProcess), [](W& w) { return w.os.processes().createProcess(w.start) != nullptr; }},
    {ROW(GetExitCodeProcess), [](W& w) { return w.process->exitCode().has_value(); }},
    {ROW(CreateThread), [](W& w) { return w.os.processes().startThread([] {}) != nullptr; }},
    {ROW(LocalAlloc), [](W& w) { return w.os.security().allocDescriptor(40) != nullptr; }},
    {ROW(InitializeSecurityDescriptor),
     [](W& w) { return w.os.security().initializeDescriptor(*w.descriptor); }},
    {ROW(SetSecurityDescriptorDacl),
     [](W& w) { return w.os.security().setNullDacl(*w.descriptor); }},
    {ROW(ConvertStringSecurityDescriptor),
     [](W& w) { return w.os.security().descriptorFromString("S:") != nullptr; }},
    {ROW(GetSecurityDescriptorSacl),
     [](W& w) { return w.os.security().getSacl(*w.descriptor, w.acl); }},
    {ROW(SetSecurityDescriptorSacl),
     [](W& w) { return w.os.security().setSacl(*w.descriptor, nullptr); }},
    {ROW(LookupAccountName),
     [](W& w) { return w.os.security().lookupAccountSid(u"", u"anna").has_value(); }},
    {ROW(GetVersionEx), [](W& w) { return w.os.system().osVersion().has_value(); }},
    {ROW(GetUserName), [](W& w) { return w.os.system().userName(260).has_value(); }},
    {ROW(GetEnvironmentVariable),
     [](W& w) { return w.os.system().environment(u"USERNAME").has_value(); }},
    {ROW(CoCreateGuid), [](W& w) { return w.os.system().createGuid().has_value(); }},
    {ROW(KnownFolder),
     [](W& w) { return w.os.system().knownFolder(KnownFolder::Documents).has_value(); }},
    {ROW(GetSystemDirectory), [](W& w) { return w.os.system().systemDirectory().has_value(); }},
    {ROW(FormatMessage), [](W& w) { return w.os.system().errorMessage(2).has_value(); }},
    {ROW(LoadNetApi), [](W& w) { return w.os.system().loadNetApi() != nullptr; }},
    {ROW(NetGetDcName), [](W& w) { return w.netApi->getDcName(w.text) == 0; }},
    {ROW(GetFileAttributes),
     [](W& w) { return w.os.files().attributes(u"C:\\windows").has_value(); }},
    {ROW(CreateDirectory),
     [](W& w) { return w.os.files().createDirectory(u"C:\\" + std::u16string(++w.n, u'd')); }},
    {ROW(CreateFile), [](W& w) { return w.os.files().createFile(u"C:\\g.txt") != nullptr; }},
    {ROW(WriteFile), [](W& w) { return w.file->write("x", 1, w.n); }},
    {ROW(ReadFile), [](W& w) { return w.os.files().readFile(u"C:\\k.ini").has_value(); }},
    {ROW(GetPrivateProfileSection),
     [](W& w) { return !w.os.files().profileSection(u"C:\\k.ini", u"init", 100).empty(); }},
    {ROW(GetPrivateProfileInt),
     [](W& w) { return w.os.files().profileInt(u"C:\\k.ini", u"init", u"k", 0) == 7; }},
};

#undef ROW

static_assert(std::size(callRows) == static_cast<std::size_t>(Call::Count), "a row for each call");

class FakeFailures : public ::testing::TestWithParam<CallRow> {};

TEST_P(FakeFailures, PlannedFailureHitsItsCallAndSetsTheError) {
    const auto& row = GetParam();
    FakePlatform fake;
    World world(fake);
    auto before = fake.callCount(row.call);
    ASSERT_TRUE(row.run(world)) << "succeeds unplanned";
    EXPECT_EQ(fake.callCount(row.call), before + 1);

    fake.fail(row.call, 1234, 1);
    fake.system().setLastError(0);
    EXPECT_FALSE(row.run(world));
    EXPECT_EQ(fake.system().lastError(), 1234u);
    EXPECT_TRUE(row.run(world)) << "a failure planned once happens once";

    fake.fail(row.call, 77);
    EXPECT_FALSE(row.run(world));
    EXPECT_FALSE(row.run(world));
    fake.clearFailures();
    EXPECT_TRUE(row.run(world));
}

INSTANTIATE_TEST_SUITE_P(EveryCall, FakeFailures, ::testing::ValuesIn(callRows),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(FakePlatform, WaitWithoutLimitOnASilentEventIsCountedNotHung) {
    FakePlatform fake;
    auto event = fake.kernel().createEvent(nullptr, false, false, u"e");
    EXPECT_EQ(event->wait(infinite), WaitResult::Failed);
    EXPECT_EQ(fake.foreverWaits, 1);
    auto before = fake.ticks;
    EXPECT_EQ(event->wait(300), WaitResult::Timeout);
    EXPECT_EQ(fake.ticks - before, 300u);
}

TEST(FakePlatform, RecordsBoxesAndDebugOutput) {
    FakePlatform fake;
    fake.messageBoxResult = 2;
    EXPECT_EQ(fake.reporter().messageBox(u"text", u"caption", 0x200000), 2);
    fake.reporter().debugOutput("a\n");
    fake.reporter().debugOutputW(u"\u00e9\n");
    ASSERT_EQ(fake.boxes().size(), 1u);
    EXPECT_EQ(fake.boxes()[0].caption, u"caption");
    EXPECT_EQ(fake.debugLines(), (std::vector<std::string>{"a\n", "\xc3\xa9\n"}));
}

TEST(WideText, Utf8RoundTripAndCaseFolding) {
    for (std::u16string s : {u"", u"plain", u"\u00e9t\u00e9", u"\u20ac", u"\U0001F600"})
        EXPECT_EQ(fromUtf8(toUtf8(s)), s);
    EXPECT_EQ(toUtf8(u"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(std::u16string(1, u'\xD800')), "\xEF\xBF\xBD");
    EXPECT_EQ(fromUtf8("\xC3"), u"\uFFFD"); // cut sequence
    EXPECT_TRUE(equalsIgnoreCase(u"Tamarisk FOLIOGRAPH", u"tamarisk foliograph"));
    EXPECT_FALSE(equalsIgnoreCase(u"abc", u"abcd"));
}

} // namespace
