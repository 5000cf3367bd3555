// What the fake adds to the contract: planned failures, virtual time and records.

#include "platform/fake/FakePlatform.h"
#include "platform/WideText.h"

#include <gtest/gtest.h>

#include <functional>

using namespace platform;

namespace {

struct CallRow {
    Call call;
    const char* name;
    std::function<bool(Platform&)> run; // true when the call succeeded
};

std::vector<CallRow> callRows() {
    auto key = [](Platform& os) {
        std::unique_ptr<RegistryKey> k;
        std::uint32_t d = 0;
        os.registry().root(RegistryRoot::CurrentUser)->createSubKey(u"Software\\T", 0, k, d);
        return k;
    };
    auto printer = [](Platform& os) { return os.spooler().openPrinter(u"P", nullptr); };
    auto descriptor = [](Platform& os) { return os.security().allocDescriptor(40); };
    auto ini = [](Platform& os) {
        std::uint32_t n;
        os.files().createFile(u"C:\\k.ini")->write("[init]\nk=7\n", 11, n);
        return std::u16string(u"C:\\k.ini");
    };
    return {
        {Call::RegOpenCurrentUser, "RegOpenCurrentUser",
         [](Platform& os) {
             std::unique_ptr<RegistryKey> k;
             return os.registry().openCurrentUser(0, k) == error::success;
         }},
        {Call::RegCreateKey, "RegCreateKey", [&](Platform& os) { return key(os) != nullptr; }},
        {Call::RegOpenKey, "RegOpenKey",
         [&](Platform& os) {
             key(os);
             std::unique_ptr<RegistryKey> k;
             return os.registry()
                        .root(RegistryRoot::CurrentUser)
                        ->openSubKey(u"Software\\T", 0, k) == 0;
         }},
        {Call::RegSetValue, "RegSetValue",
         [&](Platform& os) { return key(os)->setValue(u"v", dwordValue(1)) == 0; }},
        {Call::RegQueryValue, "RegQueryValue",
         [&](Platform& os) {
             auto k = key(os);
             k->setValue(u"v", dwordValue(1));
             RegistryValue v;
             return k->queryValue(u"v", v, 4) == 0;
         }},
        {Call::RegEnumValue, "RegEnumValue",
         [&](Platform& os) {
             auto k = key(os);
             k->setValue(u"v", dwordValue(1));
             std::u16string n;
             RegistryValue v;
             return k->enumValue(0, n, v) == 0;
         }},
        {Call::RegQueryInfoKey, "RegQueryInfoKey",
         [&](Platform& os) {
             std::uint32_t n;
             return key(os)->valueCount(n) == 0;
         }},
        {Call::EnumPrinters, "EnumPrinters",
         [](Platform& os) {
             std::vector<PrinterInfo2> v;
             return os.spooler().enumPrinters(6, v);
         }},
        {Call::OpenPrinter, "OpenPrinter", [&](Platform& os) { return printer(os) != nullptr; }},
        {Call::GetPrinter, "GetPrinter",
         [&](Platform& os) {
             PrinterInfo2 i;
             return printer(os)->getPrinter2(i);
         }},
        {Call::GetJob, "GetJob",
         [&](Platform& os) {
             JobInfo2 j;
             return printer(os)->getJob(1, j);
         }},
        {Call::EnumJobs, "EnumJobs",
         [&](Platform& os) {
             std::vector<JobInfo2> j;
             return printer(os)->enumJobs(0, 5, j);
         }},
        {Call::SetJob, "SetJob", [&](Platform& os) { return printer(os)->setJob(1, 1); }},
        {Call::WritePrinter, "WritePrinter",
         [&](Platform& os) {
             std::uint32_t n;
             return printer(os)->writePrinter("ab", 2, n);
         }},
        {Call::GetPrinterDriverDirectory, "GetPrinterDriverDirectory",
         [](Platform& os) { return os.spooler().driverDirectory().has_value(); }},
        {Call::LoadSpoolss, "LoadSpoolss",
         [](Platform& os) { return os.spooler().loadSpoolss() != nullptr; }},
        {Call::RevertToPrinterSelf, "RevertToPrinterSelf",
         [](Platform& os) { return os.spooler().loadSpoolss()->revertToPrinterSelf() != 0; }},
        {Call::ImpersonatePrinterClient, "ImpersonatePrinterClient",
         [](Platform& os) { return os.spooler().loadSpoolss()->impersonatePrinterClient(5); }},
        {Call::CreateFileMapping, "CreateFileMapping",
         [](Platform& os) { return os.kernel().createFileMapping(nullptr, 8, u"m") != nullptr; }},
        {Call::OpenFileMapping, "OpenFileMapping",
         [](Platform& os) {
             auto m = os.kernel().createFileMapping(nullptr, 8, u"m");
             return os.kernel().openFileMapping(fileMapAllAccess, u"m") != nullptr;
         }},
        {Call::MapViewOfFile, "MapViewOfFile",
         [](Platform& os) {
             return os.kernel().createFileMapping(nullptr, 8, u"m")->mapView(6) != nullptr;
         }},
        {Call::CreateEvent, "CreateEvent",
         [](Platform& os) { return os.kernel().createEvent(nullptr, 0, 0, u"e") != nullptr; }},
        {Call::OpenEvent, "OpenEvent",
         [](Platform& os) {
             auto e = os.kernel().createEvent(nullptr, 0, 0, u"e");
             return os.kernel().openEvent(eventAllAccess, u"e") != nullptr;
         }},
        {Call::SetEvent, "SetEvent",
         [](Platform& os) { return os.kernel().createEvent(nullptr, 0, 0, u"e")->set(); }},
        {Call::WaitForSingleObject, "WaitForSingleObject",
         [](Platform& os) {
             return os.kernel().createEvent(nullptr, 0, 1, u"e")->wait(0) == WaitResult::Signalled;
         }},
        {Call::CreateMutex, "CreateMutex",
         [](Platform& os) { return os.kernel().createMutex(nullptr, 0, u"x") != nullptr; }},
        {Call::OpenMutex, "OpenMutex",
         [](Platform& os) {
             auto m = os.kernel().createMutex(nullptr, 0, u"x");
             return os.kernel().openMutex(0x1F0003, u"x") != nullptr;
         }},
        {Call::CreateProcess, "CreateProcess",
         [](Platform& os) {
             ProcessStart start;
             start.commandLine = u"a.exe";
             return os.processes().createProcess(start) != nullptr;
         }},
        {Call::GetExitCodeProcess, "GetExitCodeProcess",
         [](Platform& os) {
             ProcessStart start;
             start.commandLine = u"a.exe";
             return os.processes().createProcess(start)->exitCode().has_value();
         }},
        {Call::CreateThread, "CreateThread",
         [](Platform& os) { return os.processes().startThread([] {}) != nullptr; }},
        {Call::LocalAlloc, "LocalAlloc", [&](Platform& os) { return descriptor(os) != nullptr; }},
        {Call::InitializeSecurityDescriptor, "InitializeSecurityDescriptor",
         [&](Platform& os) { return os.security().initializeDescriptor(*descriptor(os)); }},
        {Call::SetSecurityDescriptorDacl, "SetSecurityDescriptorDacl",
         [&](Platform& os) { return os.security().setNullDacl(*descriptor(os)); }},
        {Call::ConvertStringSecurityDescriptor, "ConvertStringSecurityDescriptor",
         [](Platform& os) { return os.security().descriptorFromString("S:") != nullptr; }},
        {Call::GetSecurityDescriptorSacl, "GetSecurityDescriptorSacl",
         [&](Platform& os) {
             void* acl;
             return os.security().getSacl(*descriptor(os), acl);
         }},
        {Call::SetSecurityDescriptorSacl, "SetSecurityDescriptorSacl",
         [&](Platform& os) { return os.security().setSacl(*descriptor(os), nullptr); }},
        {Call::LookupAccountName, "LookupAccountName",
         [](Platform& os) { return os.security().lookupAccountSid(u"", u"anna").has_value(); }},
        {Call::GetVersionEx, "GetVersionEx",
         [](Platform& os) { return os.system().osVersion().has_value(); }},
        {Call::GetUserName, "GetUserName",
         [](Platform& os) { return os.system().userName(260).has_value(); }},
        {Call::GetEnvironmentVariable, "GetEnvironmentVariable",
         [](Platform& os) { return os.system().environment(u"USERNAME").has_value(); }},
        {Call::CoCreateGuid, "CoCreateGuid",
         [](Platform& os) { return os.system().createGuid().has_value(); }},
        {Call::KnownFolder, "KnownFolder",
         [](Platform& os) { return os.system().knownFolder(KnownFolder::Documents).has_value(); }},
        {Call::GetSystemDirectory, "GetSystemDirectory",
         [](Platform& os) { return os.system().systemDirectory().has_value(); }},
        {Call::FormatMessage, "FormatMessage",
         [](Platform& os) { return os.system().errorMessage(2).has_value(); }},
        {Call::LoadNetApi, "LoadNetApi",
         [](Platform& os) { return os.system().loadNetApi() != nullptr; }},
        {Call::NetGetDcName, "NetGetDcName",
         [](Platform& os) {
             std::u16string n;
             return os.system().loadNetApi()->getDcName(n) == 0;
         }},
        {Call::GetFileAttributes, "GetFileAttributes",
         [](Platform& os) { return os.files().attributes(u"C:\\windows").has_value(); }},
        {Call::CreateDirectory, "CreateDirectory",
         [](Platform& os) {
             static int n = 0;
             return os.files().createDirectory(u"C:\\new" + fromUtf8(std::to_string(++n)));
         }},
        {Call::CreateFile, "CreateFile",
         [](Platform& os) { return os.files().createFile(u"C:\\f.txt") != nullptr; }},
        {Call::WriteFile, "WriteFile",
         [](Platform& os) {
             std::uint32_t n;
             return os.files().createFile(u"C:\\f.txt")->write("x", 1, n);
         }},
        {Call::ReadFile, "ReadFile",
         [](Platform& os) {
             os.files().createFile(u"C:\\f.txt");
             return os.files().readFile(u"C:\\f.txt").has_value();
         }},
        {Call::GetPrivateProfileSection, "GetPrivateProfileSection",
         [&](Platform& os) { return !os.files().profileSection(ini(os), u"init", 100).empty(); }},
        {Call::GetPrivateProfileInt, "GetPrivateProfileInt",
         [&](Platform& os) { return os.files().profileInt(ini(os), u"init", u"k", 0) == 7; }},
    };
}

class FakeFailures : public ::testing::TestWithParam<CallRow> {};

TEST_P(FakeFailures, PlannedFailureHitsOnlyItsCallAndSetsTheError) {
    const auto& row = GetParam();
    FakePlatform fake;
    JobInfo2 job;
    job.jobId = 1;
    fake.addPrinter(u"P", u"D", u"FILE:").jobs.push_back(job);
    ASSERT_TRUE(row.run(fake)) << "succeeds unplanned";
    EXPECT_GE(fake.callCount(row.call), 1);

    fake.fail(row.call, 1234, 1);
    fake.system().setLastError(0);
    EXPECT_FALSE(row.run(fake));
    EXPECT_EQ(fake.system().lastError(), 1234u);
    EXPECT_TRUE(row.run(fake)) << "a failure planned once happens once";

    fake.fail(row.call, 77);
    EXPECT_FALSE(row.run(fake));
    EXPECT_FALSE(row.run(fake));
    fake.clearFailures();
    EXPECT_TRUE(row.run(fake));
}

INSTANTIATE_TEST_SUITE_P(EveryCall, FakeFailures, ::testing::ValuesIn(callRows()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(FakePlatform, EveryCallHasARow) {
    EXPECT_EQ(callRows().size(), static_cast<std::size_t>(Call::Count));
}

TEST(FakePlatform, SleepsRunInVirtualTimeAndLetTheWorldMove) {
    FakePlatform fake;
    fake.ticks = 0xFFFFFF00; // the tick count wraps as the real one does
    std::vector<std::uint32_t> seen;
    fake.onSleep = [&](std::uint32_t) { seen.push_back(fake.ticks); }; // after the sleep
    fake.system().sleep(0x100);
    fake.system().sleep(876);
    EXPECT_EQ(fake.system().tickCount(), 876u);
    EXPECT_EQ(fake.sleeps, (std::vector<std::uint32_t>{0x100, 876}));
    EXPECT_EQ(seen, (std::vector<std::uint32_t>{0, 876}));
}

TEST(FakePlatform, WaitWithoutLimitOnASilentEventIsCountedNotHung) {
    FakePlatform fake;
    auto event = fake.kernel().createEvent(nullptr, false, false, u"e");
    EXPECT_EQ(event->wait(infinite), WaitResult::Failed);
    EXPECT_EQ(fake.foreverWaits, 1);
    auto before = fake.ticks;
    EXPECT_EQ(event->wait(300), WaitResult::Timeout);
    EXPECT_EQ(fake.ticks - before, 300u);
}

TEST(FakePlatform, EventHookRunsWhenTheNamedEventIsSet) {
    FakePlatform fake;
    int calls = 0;
    fake.onEventSet(u"req", [&] { ++calls; });
    auto req = fake.kernel().createEvent(nullptr, false, false, u"req");
    auto other = fake.kernel().createEvent(nullptr, false, false, u"other");
    other->set();
    EXPECT_EQ(calls, 0);
    req->set();
    EXPECT_EQ(calls, 1);
}

TEST(FakePlatform, ObjectsRememberTheirSecurity) {
    FakePlatform fake;
    auto& security = fake.security();
    auto d = security.allocDescriptor(40);
    security.initializeDescriptor(*d);
    security.setNullDacl(*d);
    auto label = security.descriptorFromString("S:(ML;;NW;;;LW)");
    void* acl = nullptr;
    security.getSacl(*label, acl);
    security.setSacl(*d, acl);
    SecurityAttributes sa{8, d->get(), false};
    auto e = fake.kernel().createEvent(&sa, false, false, u"secured");
    auto plain = fake.kernel().createEvent(nullptr, false, false, u"plain");
    auto s = fake.securityOf(u"secured");
    ASSERT_TRUE(s.has_value());
    EXPECT_TRUE(s->hadAttributes && s->nullDacl);
    EXPECT_EQ(s->length, 8u);
    EXPECT_EQ(s->label, "S:(ML;;NW;;;LW)");
    EXPECT_FALSE(fake.securityOf(u"plain")->hadAttributes);
}

TEST(FakePlatform, RecordsBoxesAndDebugOutput) {
    FakePlatform fake;
    fake.messageBoxResult = 2;
    EXPECT_EQ(fake.reporter().messageBox(u"text", u"caption", 0x200000), 2);
    fake.reporter().messageBoxA("narrow", "Error", 0);
    fake.reporter().debugOutput("a\n");
    fake.reporter().debugOutputW(u"\u00e9\n");
    auto boxes = fake.boxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].caption, u"caption");
    EXPECT_EQ(boxes[0].style, 0x200000u);
    EXPECT_EQ(boxes[1].text, u"narrow");
    EXPECT_EQ(fake.debugLines(), (std::vector<std::string>{"a\n", "\xc3\xa9\n"}));
}

TEST(WideText, Utf8RoundTripAndCaseFolding) {
    const std::u16string samples[] = {u"", u"plain", u"\u00e9t\u00e9", u"\u20ac", u"\U0001F600"};
    for (const auto& s : samples)
        EXPECT_EQ(fromUtf8(toUtf8(s)), s);
    EXPECT_EQ(toUtf8(u"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(std::u16string(1, u'\xD800')), "\xEF\xBF\xBD");
    EXPECT_EQ(fromUtf8("\xC3"), u"\uFFFD"); // cut sequence
    EXPECT_TRUE(equalsIgnoreCase(u"Tamarisk FOLIOGRAPH", u"tamarisk foliograph"));
    EXPECT_FALSE(equalsIgnoreCase(u"abc", u"abcd"));
}

} // namespace
