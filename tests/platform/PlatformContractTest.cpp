// One suite for every implementation of the platform: what the job face relies on.

#include "platform/ObjectAccess.h"
#include "platform/Platform.h"
#include "platform/TestPrinters.h"
#include "platform/WideText.h"
#include "support/fake/FakePlatform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <string>
#include <type_traits>

using namespace platform;

namespace {

using testing_support::ObjectAccess;

struct FakeBackend {
    FakePlatform fake;
    Platform& os() { return fake; }
    void expectExitCode(std::uint32_t code) { fake.processes().processExitCode = code; }
    std::uintptr_t startJob(const std::u16string& printer, const std::u16string& document,
                            const std::u16string&, std::uint32_t& jobId) {
        return fake.spooler().callerHandle(printer, document, jobId);
    }
    bool endJob(std::uintptr_t) { return true; }
    std::string printed(const std::u16string& printer, const std::u16string&) {
        auto& bytes = fake.spooler().printer(printer)->written;
        return std::string(bytes.begin(), bytes.end());
    }
    bool addPrinter(const std::u16string& name, const std::u16string& port) {
        fake.spooler().addPrinter(name, testing_support::productDriver, port);
        return true;
    }
    void setEnvironment(const std::u16string& name, const std::u16string& value) {
        fake.system().env[name] = value;
    }
    std::optional<ObjectAccess> eventAccess(const std::u16string& name) {
        auto security = fake.kernel().securityOf(name);
        if (!security) return std::nullopt;
        return ObjectAccess{security->openToAll, security->lowIntegrity};
    }
};

#ifdef _WIN32
struct Win32Backend {
    Platform& os() { return systemPlatform(); }
    void expectExitCode(std::uint32_t) {} // the program itself says it
    std::uintptr_t startJob(const std::u16string& printer, const std::u16string& document,
                            const std::u16string& output, std::uint32_t& jobId) {
        return testing_support::startSystemJob(printer, document, output, jobId);
    }
    bool endJob(std::uintptr_t printer) { return testing_support::endSystemJob(printer); }
    std::string printed(const std::u16string&, const std::u16string& output) {
        auto bytes = os().files().readFile(output);
        return bytes ? std::string(bytes->begin(), bytes->end()) : "(no file)";
    }
    bool addPrinter(const std::u16string& name, const std::u16string& port) {
        return testing_support::addSystemPrinter(name, testing_support::productDriver, port);
    }
    void setEnvironment(const std::u16string& name, const std::u16string& value) {
        SetEnvironmentVariableW(testing_support::w(name), testing_support::w(value));
    }
    std::optional<ObjectAccess> eventAccess(const std::u16string& name) {
        return testing_support::systemObjectAccess(
            OpenEventW(READ_CONTROL, FALSE, testing_support::w(name)));
    }
};
using Implementations = ::testing::Types<FakeBackend, Win32Backend>;
#else
using Implementations = ::testing::Types<FakeBackend>;
#endif

template <typename T> class PlatformContract : public ::testing::Test {
protected:
    Platform& os() { return impl.os(); }
    // Names of this run, so that runs and tests under one Wine prefix do not meet.
    // The registry and the files outlive a run in the Wine prefix: the clock keeps them apart.
    std::u16string unique(std::u16string_view what) {
        auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        return u"KelContract_" + fromUtf8(info->name()) + u"_" + std::u16string(what) + u"_" +
               runId;
    }
    void write(const std::u16string& path, const std::string& bytes) {
        auto file = os().files().createFile(path);
        ASSERT_NE(file, nullptr);
        std::uint32_t written = 0;
        ASSERT_TRUE(file->write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), written));
        EXPECT_EQ(written, bytes.size());
    }
    std::u16string scratchDir() {
        auto base = os().system().knownFolder(KnownFolder::LocalAppData);
        EXPECT_TRUE(base.has_value());
        auto dir = base.value_or(u"C:") + u"\\" + unique(u"dir");
        os().files().createDirectory(dir);
        return dir;
    }
    T impl;
    std::u16string runId = fromUtf8(std::to_string(os().system().currentProcessId()) + "_" +
                                    std::to_string(os().system().tickCount()));
};

TYPED_TEST_SUITE(PlatformContract, Implementations);

TYPED_TEST(PlatformContract, RegistryKeysKeepTypedValuesAndTheUsersHiveIsTheRoot) {
    auto& registry = this->os().registry();
    auto path = u"Software\\KelContract\\" + this->unique(u"key");
    auto root = registry.root(RegistryRoot::CurrentUser);
    ASSERT_TRUE(registry.hasOpenCurrentUser());
    std::unique_ptr<RegistryKey> user, key;
    ASSERT_EQ(registry.openCurrentUser(0x2001F, user), error::success);
    std::uint32_t disposition = 0;
    ASSERT_EQ(root->createSubKey(path, 0x2001F, key, disposition), error::success);
    EXPECT_EQ(disposition, regCreatedNewKey);
    ASSERT_EQ(user->createSubKey(path, 0x2001F, key, disposition), error::success);
    EXPECT_EQ(disposition, regOpenedExistingKey);

    ASSERT_EQ(key->setValue(u"name", stringValue(u"Anna \u00e9")), error::success);
    ASSERT_EQ(key->setValue(u"count", dwordValue(0xDEADBEEF)), error::success);
    RegistryValue value;
    ASSERT_EQ(key->queryValue(u"NAME", value, 260), error::success);
    EXPECT_EQ(valueText(value), u"Anna \u00e9");
    EXPECT_EQ(key->queryValue(u"name", value, 4), error::moreData);
    EXPECT_EQ(key->queryValue(u"absent", value, 260), error::fileNotFound);

    std::uint32_t count = 0;
    ASSERT_EQ(key->valueCount(count), error::success);
    EXPECT_EQ(count, 2u);
    std::u16string name;
    bool sawName = false, sawCount = false;
    for (std::uint32_t i = 0; i < count; ++i) {
        ASSERT_EQ(key->enumValue(i, name, value), error::success);
        sawName |= name == u"name" && valueText(value) == u"Anna \u00e9";
        sawCount |= name == u"count" && valueDword(value) == 0xDEADBEEFu;
    }
    EXPECT_TRUE(sawName && sawCount);
    EXPECT_EQ(key->enumValue(count, name, value), error::noMoreItems);

    std::unique_ptr<RegistryKey> opened;
    EXPECT_EQ(root->openSubKey(path + u"\\missing", 0x20019, opened), error::fileNotFound);
    ASSERT_EQ(root->openSubKey(path, 0x20019, opened), error::success);
    ASSERT_EQ(opened->queryValue(u"count", value, 4), error::success);
    EXPECT_EQ(valueDword(value), 0xDEADBEEFu);
}

TYPED_TEST(PlatformContract, NamedMappingIsSharedBetweenHandles) {
    auto& kernel = this->os().kernel();
    auto name = this->unique(u"sm");
    EXPECT_EQ(kernel.openFileMapping(fileMapAllAccess, name), nullptr);
    EXPECT_EQ(this->os().system().lastError(), error::fileNotFound);
    auto created = kernel.createFileMapping(nullptr, 8152, name);
    ASSERT_NE(created, nullptr);
    auto opened = kernel.openFileMapping(fileMapAllAccess, name);
    ASSERT_NE(opened, nullptr);
    auto a = created->mapView(fileMapReadWrite);
    auto b = opened->mapView(fileMapReadWrite);
    ASSERT_TRUE(a && b);
    EXPECT_EQ(b->data()[8151], 0); // page-file memory starts zeroed
    a->write(8000, "kel", 4);
    EXPECT_STREQ(reinterpret_cast<const char*>(b->data() + 8000), "kel");
    a->write(8148, "end", 4); // the last bytes of the record
    EXPECT_STREQ(reinterpret_cast<const char*>(b->data() + 8148), "end");
    // A second create of the name gives the same object.
    auto again = kernel.createFileMapping(nullptr, 8152, name);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(this->os().system().lastError(), error::alreadyExists);
    EXPECT_STREQ(reinterpret_cast<const char*>(again->mapView(fileMapReadWrite)->data() + 8000),
                 "kel");
}

// UTF-8 as WideCharToMultiByte gives it with the terminator: whole characters only, and
// nothing that says so in a buffer too small but its result.
TYPED_TEST(PlatformContract, WideTextToUtf8CountsAndCutsWholeCharacters) {
    auto& system = this->os().system();
    const std::u16string text = u"a\u00e9\u20ac\U0001F600"; // 1, 2, 3 and 4 bytes
    const std::string utf8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(system.wideToUtf8(text, nullptr, 0), 11);
    char out[16];
    std::memset(out, '#', sizeof out);
    EXPECT_EQ(system.wideToUtf8(text, out, 16), 11);
    EXPECT_EQ(std::string(out, 11), utf8 + '\0');
    EXPECT_EQ(out[11], '#');
    struct Short {
        int size;
        std::size_t written;
    };
    for (auto row : {Short{10, 10}, Short{9, 6}, Short{5, 3}, Short{2, 1}, Short{1, 1}}) {
        std::memset(out, '#', sizeof out);
        EXPECT_EQ(system.wideToUtf8(text, out, row.size), 0) << row.size;
        EXPECT_EQ(system.lastError(), error::insufficientBuffer);
        EXPECT_EQ(std::string(out, row.written), utf8.substr(0, row.written)) << row.size;
        EXPECT_EQ(out[row.written], '#') << row.size;
    }
}

TYPED_TEST(PlatformContract, LibrariesLoadByNameAndMissingOnesDoNot) {
    auto& system = this->os().system();
    EXPECT_NE(system.loadLibrary(u"ieframe.dll"), nullptr);
    if constexpr (std::is_same_v<TypeParam, FakeBackend>)
        this->impl.fake.fail(Call::LoadLibrary, error::fileNotFound);
    EXPECT_EQ(system.loadLibrary(u"kel-no-such-library.dll"), nullptr);
}

TYPED_TEST(PlatformContract, AutoResetEventWakesOneWait) {
    auto& kernel = this->os().kernel();
    auto name = this->unique(u"event");
    EXPECT_EQ(kernel.openEvent(eventAllAccess, name), nullptr);
    EXPECT_EQ(this->os().system().lastError(), error::fileNotFound);
    auto event = kernel.createEvent(nullptr, false, false, name);
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(event->wait(0), WaitResult::Timeout);
    auto other = kernel.openEvent(eventAllAccess, name);
    ASSERT_NE(other, nullptr);
    ASSERT_TRUE(other->set());
    EXPECT_EQ(event->wait(0), WaitResult::Signalled);
    EXPECT_EQ(event->wait(0), WaitResult::Timeout);

    auto manual = kernel.createEvent(nullptr, true, true, this->unique(u"manual"));
    ASSERT_NE(manual, nullptr);
    EXPECT_EQ(manual->wait(0), WaitResult::Signalled);
    EXPECT_EQ(manual->wait(0), WaitResult::Signalled);
}

TYPED_TEST(PlatformContract, MutexIsOwnedUntilReleasedAndGoesWithItsLastHandle) {
    auto& kernel = this->os().kernel();
    auto name = this->unique(u"mutex");
    {
        auto mutex = kernel.createMutex(nullptr, false, name);
        ASSERT_NE(mutex, nullptr);
        EXPECT_FALSE(mutex->release()); // not owned yet
        EXPECT_EQ(mutex->wait(0), WaitResult::Signalled);
        EXPECT_TRUE(mutex->release());
        EXPECT_NE(kernel.openMutex(0x1F0003, name), nullptr);
        EXPECT_EQ(kernel.openEvent(eventAllAccess, name), nullptr); // not an event
    }
    EXPECT_EQ(kernel.openMutex(0x1F0003, name), nullptr);
}

TYPED_TEST(PlatformContract, SystemFacts) {
    auto& system = this->os().system();
    auto version = system.osVersion();
    ASSERT_TRUE(version.has_value());
    EXPECT_GE(version->major, 4u);
    EXPECT_TRUE(version->platformId == 1 || version->platformId == 2);

    auto user = system.userName(260);
    ASSERT_TRUE(user.has_value());
    EXPECT_FALSE(user->empty());
    EXPECT_FALSE(system.userName(1).has_value());
    EXPECT_EQ(system.lastError(), error::insufficientBuffer);
    EXPECT_FALSE(system.environment(u"KEL_SURELY_NOT_SET_42").has_value());

    auto before = system.tickCount();
    system.sleep(100);
    EXPECT_GE(system.tickCount() - before, 80u); // the tick has a coarse grain

    system.seedRandom(1);
    EXPECT_EQ(system.random(), 41); // the C runtime's first draw after srand(1)
    EXPECT_EQ(system.random(), 18467);

    auto a = system.createGuid(), b = system.createGuid();
    ASSERT_TRUE(a && b);
    EXPECT_TRUE(a->data1 != b->data1 || a->data4 != b->data4);
    EXPECT_EQ(a->data3 >> 12, 4); // random GUIDs are of version 4

    EXPECT_TRUE(system.errorMessage(error::fileNotFound).has_value());
    system.setLastError(1234);
    EXPECT_EQ(system.lastError(), 1234u);
    EXPECT_TRUE(system.systemDirectory().has_value());
    EXPECT_LE(system.timeZoneBias(), 12 * 60); // within a day
    EXPECT_GE(system.timeZoneBias(), -14 * 60);
}

TYPED_TEST(PlatformContract, EnvironmentBlockClockAndAnsiText) {
    auto& system = this->os().system();
    this->impl.setEnvironment(u"KEL_CONTRACT_ENV", u"a=b");
    auto block = system.environmentBlock();
    EXPECT_EQ(std::count(block.begin(), block.end(), u"KEL_CONTRACT_ENV=a=b"), 1);
    auto now = system.localTime();
    ASSERT_TRUE(now.has_value());
    EXPECT_GE(now->tm_year, 125);
    EXPECT_TRUE(now->tm_mon >= 0 && now->tm_mon <= 11 && now->tm_mday >= 1 && now->tm_mday <= 31 &&
                now->tm_wday >= 0 && now->tm_wday <= 6 && now->tm_yday >= 0 && now->tm_yday <= 365);
    EXPECT_EQ(system.fromAnsi("Inv 7.pdf"), u"Inv 7.pdf");
    EXPECT_EQ(system.fromAnsi(""), u"");
    EXPECT_TRUE(this->os().registry().advapiLoads());
}

TYPED_TEST(PlatformContract, FilesAreWrittenAndReadBack) {
    auto& files = this->os().files();
    for (auto folder : {KnownFolder::LocalAppData, KnownFolder::RoamingAppData}) {
        auto path = this->os().system().knownFolder(folder);
        ASSERT_TRUE(path.has_value());
        EXPECT_EQ(files.attributes(*path).value_or(0) & fileAttributeDirectory,
                  fileAttributeDirectory);
    }
    auto dir = this->scratchDir();
    EXPECT_FALSE(files.createDirectory(dir)); // exists
    EXPECT_EQ(files.createFile(dir + u"\\missing\\x.txt"), nullptr);
    auto path = dir + u"\\out.bin";
    this->write(path, std::string("%PDF-1.4\n\0x", 11));
    auto attributes = files.attributes(path);
    ASSERT_TRUE(attributes.has_value());
    EXPECT_FALSE(*attributes & fileAttributeDirectory);
    auto bytes = files.readFile(path);
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(std::string(bytes->begin(), bytes->end()), std::string("%PDF-1.4\n\0x", 11));
    EXPECT_FALSE(files.attributes(dir + u"\\nothing").has_value());
}

TYPED_TEST(PlatformContract, ProfileSectionsAndIntegers) {
    auto& files = this->os().files();
    auto path = this->scratchDir() + u"\\kelconf.ini";
    std::string text = "[init]\r\noverrideUserSettings=1\r\nDefaultSaveDir = C:\\out \r\n"
                       "TrimNameChar=-5\r\n[My Printer]\r\npdfa=2\r\n";
    this->write(path, text);
    EXPECT_EQ(files.profileSection(path, u"INIT", 32767),
              (std::vector<std::u16string>{u"overrideUserSettings=1", u"DefaultSaveDir=C:\\out",
                                           u"TrimNameChar=-5"}));
    EXPECT_EQ(files.profileSection(path, u"My Printer", 32767),
              std::vector<std::u16string>{u"pdfa=2"});
    EXPECT_TRUE(files.profileSection(path, u"absent", 32767).empty());

    EXPECT_EQ(files.profileInt(path, u"init", u"overrideUserSettings", 0), 1u);
    EXPECT_EQ(files.profileInt(path, u"init", u"TrimNameChar", 0), static_cast<std::uint32_t>(-5));
    EXPECT_EQ(files.profileInt(path, u"init", u"absent", 45), 45u);
    EXPECT_EQ(files.profileInt(path + u"x", u"init", u"overrideUserSettings", 3), 3u);
}

TYPED_TEST(PlatformContract, SharedObjectSecurityAndTheUsersSid) {
    auto& security = this->os().security();
    for (bool lowIntegrity : {false, true}) {
        auto shared = security.sharedObjectSecurity(lowIntegrity);
        EXPECT_EQ(shared.failure, SharedSecurityFailure::None);
        ASSERT_NE(shared.security, nullptr);
        SecurityAttributes attributes{8, shared.security.get(), false};
        auto name = this->unique(lowIntegrity ? u"low" : u"open");
        auto event = this->os().kernel().createEvent(&attributes, false, false, name);
        ASSERT_NE(event, nullptr);
        EXPECT_EQ(this->impl.eventAccess(name), (ObjectAccess{true, lowIntegrity}));
    }
    EXPECT_EQ(this->impl.eventAccess(this->unique(u"none")), std::nullopt);

    auto user = this->os().system().userName(260);
    ASSERT_TRUE(user.has_value());
    auto sid = security.lookupAccountSid(u"", *user);
    ASSERT_TRUE(sid.has_value());
    EXPECT_EQ(sid->revision, 1);
    EXPECT_EQ(sid->authority[5], 5); // the NT authority
    ASSERT_FALSE(sid->subAuthorities.empty());
    EXPECT_EQ(sid->subAuthorities[0], 21u); // a user's domain
    EXPECT_FALSE(security.lookupAccountSid(u"", u"KelNoSuchAccount42").has_value());
}

TYPED_TEST(PlatformContract, PrintersAreListedOpenedAndWritten) {
    auto& spooler = this->os().spooler();
    EXPECT_EQ(spooler.openPrinter(this->unique(u"no printer"), nullptr), nullptr);
    EXPECT_FALSE(spooler.driverDirectory().value_or(u"").empty());
    std::u16string name = u"KelContract printer"; // stays in the prefix for later runs
    ASSERT_TRUE(this->impl.addPrinter(name, u"FILE:"));
    std::vector<PrinterInfo2> printers;
    ASSERT_TRUE(spooler.enumPrinters(printerEnumLocal | printerEnumConnections, printers));
    const PrinterInfo2* ours = nullptr;
    for (const auto& p : printers)
        if (p.printerName && *p.printerName == name) ours = &p;
    ASSERT_NE(ours, nullptr);
    EXPECT_EQ(ours->driverName, testing_support::productDriver);
    EXPECT_EQ(ours->portName, u"FILE:");

    PrinterDefaults defaults;
    defaults.datatype = u"RAW";
    defaults.desiredAccess = printerAccessUse;
    auto printer = spooler.openPrinter(name, &defaults);
    ASSERT_NE(printer, nullptr);
    PrinterInfo2 info;
    ASSERT_TRUE(printer->getPrinter2(info));
    EXPECT_EQ(info.printerName, name);
    EXPECT_EQ(info.driverName, testing_support::productDriver);
    JobInfo2 job;
    EXPECT_FALSE(printer->getJob(987654, job));
}

TYPED_TEST(PlatformContract, ProcessesAndThreadsAreWaitedFor) {
    this->impl.expectExitCode(3);
    ProcessStart start;
    start.commandLine = u"cmd.exe /c exit 3";
    start.creationFlags = detachedProcess | normalPriorityClass;
    start.showWindow = swHide;
    auto process = this->os().processes().createProcess(start);
    ASSERT_NE(process, nullptr);
    ASSERT_TRUE(process->wait(infinite));
    EXPECT_EQ(process->exitCode(), 3u);

    std::atomic<int> runs{0};
    auto thread = this->os().processes().startThread([&] { ++runs; });
    ASSERT_NE(thread, nullptr);
    EXPECT_NE(thread->id(), 0u);
    EXPECT_EQ(thread->wait(infinite), WaitResult::Signalled);
    EXPECT_EQ(runs.load(), 1);
}

TYPED_TEST(PlatformContract, CallersJobIsWrittenThroughABorrowedHandle) {
    std::u16string name = u"KelContract printer";
    ASSERT_TRUE(this->impl.addPrinter(name, u"FILE:"));
    auto output = this->scratchDir() + u"\\job.prn";
    std::uint32_t jobId = 0;
    auto handle = this->impl.startJob(name, u"Contract doc", output, jobId);
    ASSERT_NE(handle, 0u);
    ASSERT_NE(jobId, 0u);
    {
        auto printer = this->os().spooler().borrowPrinter(handle);
        std::uint32_t written = 0;
        ASSERT_TRUE(printer->writePrinter("%!PS\n", 5, written));
        EXPECT_EQ(written, 5u);
        JobInfo2 job;
        ASSERT_TRUE(printer->getJob(jobId, job));
        EXPECT_EQ(job.jobId, jobId);
        EXPECT_EQ(job.document, u"Contract doc");
        PrinterInfo2 info;
        ASSERT_TRUE(printer->getPrinter2(info));
        EXPECT_EQ(info.printerName, name);
    }
    ASSERT_TRUE(this->impl.endJob(handle)); // the borrowed handle was left open
    EXPECT_EQ(this->impl.printed(name, output), "%!PS\n");
    JobInfo2 job;
    EXPECT_FALSE(this->os().spooler().borrowPrinter(0)->getJob(jobId, job));
}

} // namespace
