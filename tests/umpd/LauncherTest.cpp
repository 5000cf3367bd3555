#include "umpd/FakeOs.h"
#include "umpd/LauncherNames.h"
#include "umpd/LauncherProxy.h"
#include "umpd/SystemServices.h"

#include <set>

using namespace testing_support;
using platform::Call;

namespace {

using Names = FakeOsTest;

TEST_F(Names, ThreeFormsOfTheBase) {
    struct Row {
        std::uint32_t major;
        const char16_t *plain, *session, *old;
    } rows[] = {
        {4, u"kelsend_anna", u"Session\\3\\kelsend_anna", u"kelsend_anna"},
        {5, u"Local\\kelsend_anna", u"Session\\3\\kelsend_anna", u"Global\\kelsend_anna"},
        {10, u"Local\\kelsend_anna", u"Session\\3\\kelsend_anna", u"Global\\kelsend_anna"},
    };
    for (const auto& row : rows) {
        setVersion(row.major, 2);
        EXPECT_EQ(plainLauncherBase(u"kelsend"), row.plain);
        EXPECT_EQ(sessionLauncherBase(u"kelsend", 3), row.session);
        EXPECT_EQ(oldVersionLauncherBase(u"kelsend"), row.old);
    }
}

TEST_F(Names, UserNameFallsBackToTheEnvironment) {
    fake.fail(Call::GetUserName);
    fake.env[u"USERNAME"] = u"bob";
    EXPECT_EQ(launcherUserName(), u"bob");
    fake.fail(Call::GetEnvironmentVariable);
    EXPECT_EQ(launcherUserName(), u"");
    fake.clearFailures();
    fake.user = std::u16string(260, u'u'); // needs 261 characters with its NUL
    EXPECT_EQ(launcherUserName(), u"bob");
}

TEST_F(Names, CommsDeriveFourNames) {
    LauncherComms ipc(u"kelsend", platform::infinite);
    EXPECT_EQ(ipc.eventName, u"Local\\kelsend_anna_event");
    EXPECT_EQ(ipc.endEventName, u"Local\\kelsend_anna_event_end");
    EXPECT_EQ(ipc.mutexName, u"Local\\kelsend_anna_mutex");
    EXPECT_EQ(ipc.sharedMemoryName, u"Local\\kelsend_anna_sm");
    EXPECT_TRUE(ipc.connected);
    EXPECT_TRUE(ipc.stopped);
    EXPECT_EQ(ipc.timeout, 0xFFFFFFFFu);
    EXPECT_EQ(ipc.view(), nullptr); // construction does not touch the mapping
    EXPECT_TRUE(fake.openedMappingNames.empty());
}

class Comms : public FakeOsTest {
protected:
    const std::u16string base = u"Local\\kelsend_anna";
};

TEST_F(Comms, MapOpensTheLaunchersRecordOrCreatesOne) {
    {
        LauncherComms ipc(u"kelsend", platform::infinite);
        ASSERT_TRUE(ipc.mapSharedMemory());
        EXPECT_TRUE(ipc.shared.created);
        auto security = fake.securityOf(base + u"_sm");
        ASSERT_TRUE(security.has_value());
        EXPECT_TRUE(security->nullDacl);
    }
    FakeLauncher launcher(fake, base);
    copyField(launcher.record().docName, u"left by the launcher");
    LauncherComms ipc(u"kelsend", platform::infinite);
    ASSERT_TRUE(ipc.mapSharedMemory());
    EXPECT_FALSE(ipc.shared.created);
    EXPECT_EQ(fieldText(ipc.view()->docName), u"left by the launcher");
}

TEST_F(Comms, FailedMapLeavesNothingMapped) {
    struct Row {
        Call call;
        int creates; // CreateFileMapping calls made
    } rows[] = {{Call::CreateFileMapping, 1}, {Call::MapViewOfFile, 1}};
    for (auto row : rows) {
        platform::FakePlatform local;
        platform::setCurrent(&local);
        local.fail(row.call);
        LauncherComms ipc(u"kelsend", platform::infinite);
        EXPECT_FALSE(ipc.mapSharedMemory());
        EXPECT_EQ(ipc.shared.mapping, nullptr);
        EXPECT_EQ(ipc.view(), nullptr);
        EXPECT_EQ(ipc.record(), nullptr);
        EXPECT_EQ(local.callCount(Call::CreateFileMapping), 2 * row.creates); // record() retries
        EXPECT_FALSE(local.exists(u"Local\\kelsend_anna_sm"));
        platform::setCurrent(&fake);
    }
}

TEST_F(Comms, SendWithoutMappingOrLauncherIsNotDelivered) {
    LauncherComms ipc(u"kelsend", platform::infinite);
    EXPECT_FALSE(ipc.sendMsg()); // not mapped
    ASSERT_TRUE(ipc.mapSharedMemory());
    EXPECT_FALSE(ipc.sendMsg()); // no alive mutex
    EXPECT_EQ(fake.callCount(Call::CreateEvent), 0);
    EXPECT_TRUE(fake.boxes().empty());
}

TEST_F(Comms, SendFailuresShowTheirBoxes) {
    struct Row {
        Call call;
        const char16_t* caption;
    } rows[] = {
        {Call::CreateEvent, u"IPC sendMsg create event failed"},
        {Call::OpenEvent, u"IPC sendMsg setting event failed"},
        {Call::SetEvent, u"IPC sendMsg setting event failed"},
    };
    FakeLauncher launcher(fake, base);
    for (auto row : rows) {
        fake.fail(row.call, 6, 1);
        LauncherComms ipc(u"kelsend", platform::infinite);
        ASSERT_TRUE(ipc.mapSharedMemory());
        EXPECT_FALSE(ipc.sendMsg());
        auto boxes = fake.boxes();
        ASSERT_FALSE(boxes.empty());
        EXPECT_EQ(boxes.back().caption, row.caption);
        EXPECT_EQ(boxes.back().text, u"System error 6.\r\n");
        EXPECT_EQ(boxes.back().style, 0u);
    }
    EXPECT_TRUE(launcher.messages.empty());
}

TEST_F(Comms, AnswerEndsTheSendAndTimeoutFailsIt) {
    FakeLauncher launcher(fake, base);
    LauncherComms ipc(u"kelsend", platform::infinite);
    ASSERT_TRUE(ipc.mapSharedMemory());
    EXPECT_TRUE(ipc.sendMsg());
    EXPECT_EQ(launcher.messages.size(), 1u);
    EXPECT_EQ(fake.foreverWaits, 0);
    auto answer = fake.securityOf(base + u"_event_end");
    ASSERT_TRUE(answer.has_value());
    EXPECT_TRUE(answer->hadAttributes && answer->nullDacl);

    FakeLauncher silent(fake, u"Local\\quiet_anna", false);
    LauncherComms waiting(u"quiet", 300);
    ASSERT_TRUE(waiting.mapSharedMemory());
    EXPECT_FALSE(waiting.sendMsg());

    // Without a limit a launcher that never answers holds the sender for ever; every
    // result but a time-out counts as delivered.
    LauncherComms forever(u"quiet", platform::infinite);
    ASSERT_TRUE(forever.mapSharedMemory());
    EXPECT_TRUE(forever.sendMsg());
    EXPECT_EQ(fake.foreverWaits, 1);
}

TEST_F(Comms, FailedWaitCountsAsDelivered) {
    FakeLauncher launcher(fake, base);
    LauncherComms ipc(u"kelsend", platform::infinite);
    ASSERT_TRUE(ipc.mapSharedMemory());
    fake.fail(Call::WaitForSingleObject, 6, 1);
    EXPECT_TRUE(ipc.sendMsg()); // only a time-out is a failure
    EXPECT_TRUE(fake.boxes().empty());
}

// The conversation on each system: the names, the security of what the sender creates,
// and the access rights it asks for.
struct SystemRow {
    const char* name;
    std::uint32_t major, platformId;
    const char16_t* base;
    bool secured;      // created with security attributes
    const char* label; // the integrity label they carry
};

class ConversationBySystem : public FakeOsTest, public ::testing::WithParamInterface<SystemRow> {};

TEST_P(ConversationBySystem, NamesSecurityAndAccess) {
    const auto& row = GetParam();
    setVersion(row.major, row.platformId);
    const std::u16string base = row.base;
    {
        LauncherComms alone(u"kelsend", platform::infinite);
        ASSERT_TRUE(alone.mapSharedMemory());
        auto record = fake.securityOf(base + u"_sm");
        ASSERT_TRUE(record.has_value());
        EXPECT_EQ(record->hadAttributes, row.secured);
        EXPECT_EQ(record->nullDacl, row.secured);
        EXPECT_EQ(record->label, row.label);
    }
    FakeLauncher launcher(fake, base);
    LauncherComms ipc(u"kelsend", platform::infinite);
    ASSERT_TRUE(sendStartPrint(ipc, u"P"));
    ASSERT_EQ(launcher.messages.size(), 1u);
    auto answer = fake.securityOf(base + u"_event_end");
    ASSERT_TRUE(answer.has_value());
    EXPECT_EQ(answer->hadAttributes, row.secured);
    EXPECT_EQ(answer->length, row.secured ? 8u : 0u);
    EXPECT_EQ(answer->label, row.label);
    using Access = std::set<std::uint32_t>;
    EXPECT_EQ(fake.accessAsked[Call::OpenFileMapping], Access{0xF001F});
    EXPECT_EQ(fake.accessAsked[Call::MapViewOfFile], Access{6});
    EXPECT_EQ(fake.accessAsked[Call::OpenMutex], Access{0x1F0003});
    EXPECT_EQ(fake.accessAsked[Call::OpenEvent], Access{0x1F0003});
}

INSTANTIATE_TEST_SUITE_P(
    Systems, ConversationBySystem,
    ::testing::Values(SystemRow{"Platform1", 4, 1, u"kelsend_anna", false, ""},
                      SystemRow{"Nt4", 4, 2, u"kelsend_anna", true, ""},
                      SystemRow{"Major5", 5, 2, u"Local\\kelsend_anna", true, ""},
                      SystemRow{"Major6", 6, 2, u"Local\\kelsend_anna", true, "S:(ML;;NW;;;LW)"},
                      SystemRow{"Major10", 10, 2, u"Local\\kelsend_anna", true, "S:(ML;;NW;;;LW)"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(Comms, OnlyAnUnstoppedObjectWakesItsListenerWhenItGoes) {
    FakeLauncher launcher(fake, base);
    { LauncherComms stopped(u"kelsend", platform::infinite); }
    EXPECT_TRUE(launcher.messages.empty());
    {
        LauncherComms listening(u"kelsend", platform::infinite);
        listening.stopped = false;
    }
    EXPECT_EQ(launcher.messages.size(), 1u);
}

class Messages : public FakeOsTest {
protected:
    FakeLauncher launcher{fake, u"Local\\kelsend_anna"};
    LauncherComms ipc{u"kelsend", platform::infinite};
};

TEST_F(Messages, StartPrintCarriesThePrinterNameOnly) {
    copyField(launcher.record().filename, u"C:\\old.pdf");
    copyField(launcher.record().printerName, u"a much longer earlier name");
    ASSERT_TRUE(sendStartPrint(ipc, u"Foliograph"));
    ASSERT_EQ(launcher.messages.size(), 1u);
    const auto& m = launcher.messages[0];
    EXPECT_EQ(fieldText(m.command), u"startprint");
    EXPECT_EQ(fieldText(m.printerName), u"Foliograph");
    EXPECT_EQ(fieldText(m.filename), u"C:\\old.pdf"); // not cleared
    // The old name's tail is still behind the new terminator.
    EXPECT_EQ(m.printerName[11], u'e'); // "a much longer"[11]
}

TEST_F(Messages, StopPrintCarriesThreeFieldsCutToFit) {
    std::u16string longDoc(300, u'd');
    ASSERT_TRUE(sendStopPrint(ipc, u"Foliograph", u"C:\\out\\a.pdf", longDoc));
    const auto& m = launcher.messages.at(0);
    EXPECT_EQ(fieldText(m.command), u"stopprint");
    EXPECT_EQ(fieldText(m.printerName), u"Foliograph");
    EXPECT_EQ(fieldText(m.filename), u"C:\\out\\a.pdf");
    EXPECT_EQ(fieldText(m.docName), std::u16string(259, u'd'));
    EXPECT_EQ(m.docName[259], u'\0');
}

TEST_F(Messages, ReservedPartsAreNeverWritten) {
    std::memset(launcher.record().reserved, 0xAB, sizeof launcher.record().reserved);
    std::memset(launcher.record().launcherOwned, 0xCD, sizeof launcher.record().launcherOwned);
    ASSERT_TRUE(sendStopPrint(ipc, std::u16string(400, u'p'), std::u16string(400, u'f'),
                              std::u16string(400, u'd')));
    const auto& m = launcher.messages.at(0);
    for (auto b : m.reserved)
        EXPECT_EQ(b, 0xAB);
    for (auto b : m.launcherOwned)
        ASSERT_EQ(b, 0xCD);
    EXPECT_EQ(fieldText(m.printerName).size(), 259u);
    EXPECT_EQ(fieldText(m.filename).size(), 259u);
}

TEST_F(Messages, UnmappableRecordSkipsTheSend) {
    fake.fail(Call::OpenFileMapping);
    fake.fail(Call::CreateFileMapping);
    EXPECT_FALSE(sendStartPrint(ipc, u"P"));
    EXPECT_FALSE(sendStopPrint(ipc, u"P", u"f", u"d"));
    EXPECT_TRUE(launcher.messages.empty());
    EXPECT_TRUE(fake.boxes().empty());
}

// isRunning: the names tried, the staggering sleep, the answer.
struct RunningRow {
    const char* name;
    std::uint32_t major;
    const char16_t* launcherBase; // null: no launcher
    bool running;
    std::vector<std::u16string> tried;
    std::size_t sleeps;
};

class Running : public FakeOsTest, public ::testing::WithParamInterface<RunningRow> {};

TEST_P(Running, TriesPlainThenSessionNames) {
    const auto& row = GetParam();
    setVersion(row.major, 2);
    std::unique_ptr<FakeLauncher> launcher;
    if (row.launcherBase) launcher = std::make_unique<FakeLauncher>(fake, row.launcherBase);
    CitrixLauncherProxy proxy(3);
    EXPECT_EQ(proxy.isRunning(), row.running);
    EXPECT_EQ(fake.openedMutexNames, row.tried);
    ASSERT_EQ(fake.sleeps.size(), row.sleeps);
    for (auto ms : fake.sleeps) {
        EXPECT_GE(ms, 50u);
        EXPECT_LE(ms, 1049u);
    }
    for (auto seed : fake.seeds)
        EXPECT_EQ(seed, fake.processId);
}

const std::u16string plainMutex = u"Local\\kelsend_anna_mutex";
const std::u16string sessionMutex = u"Session\\3\\kelsend_anna_mutex";

INSTANTIATE_TEST_SUITE_P(
    Launchers, Running,
    ::testing::Values(
        RunningRow{"PlainAtOnce", 10, u"Local\\kelsend_anna", true, {plainMutex}, 0},
        RunningRow{
            "NoneOn6", 6, nullptr, false, {plainMutex, plainMutex, sessionMutex, sessionMutex}, 2},
        RunningRow{"SessionOn10",
                   10,
                   u"Session\\3\\kelsend_anna",
                   true,
                   {plainMutex, plainMutex, sessionMutex},
                   1},
        RunningRow{"OtherSessionUnseenOn5",
                   5,
                   u"Session\\3\\kelsend_anna",
                   false,
                   {plainMutex, plainMutex},
                   1},
        RunningRow{
            "NoneOnNt4", 4, nullptr, false, {u"kelsend_anna_mutex", u"kelsend_anna_mutex"}, 1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(FakeOsTest, BaseProxyNeverLooksAtSessions) {
    LauncherProxy proxy;
    EXPECT_FALSE(proxy.isRunning());
    EXPECT_EQ(fake.openedMutexNames, (std::vector<std::u16string>{plainMutex, plainMutex}));
    // The staggering sleep is the C runtime's draw after seeding with the process id.
    fake.system().seedRandom(fake.processId);
    EXPECT_EQ(fake.sleeps.at(0), static_cast<std::uint32_t>(fake.system().random() % 1000 + 50));
}

TEST_F(FakeOsTest, SessionProxyStaysOnTheSessionForm) {
    FakeLauncher launcher(fake, u"Session\\3\\kelsend_anna");
    CitrixLauncherProxy proxy(3);
    ASSERT_TRUE(proxy.isRunning());
    EXPECT_EQ(proxy.comms().sharedMemoryName, u"Session\\3\\kelsend_anna_sm");
    fake.openedMutexNames.clear();
    EXPECT_TRUE(proxy.isRunning());
    EXPECT_EQ(fake.openedMutexNames, std::vector<std::u16string>{sessionMutex});
    ASSERT_TRUE(sendStartPrint(proxy.comms(), u"P"));
    EXPECT_EQ(launcher.messages.size(), 1u);
}

using Stop = FakeOsTest;

TEST_F(Stop, RunningLauncherGetsTheEmptyCommand) {
    FakeLauncher launcher(fake, u"Local\\kelsend_anna");
    copyField(launcher.record().command, u"stopprint");
    LauncherProxy proxy;
    EXPECT_TRUE(proxy.stopLauncher());
    ASSERT_EQ(launcher.messages.size(), 1u);
    EXPECT_EQ(launcher.messages[0].command[0], u'\0');
}

TEST_F(Stop, OldVersionLauncherIsWokenUnderTheOldNames) {
    FakeLauncher old(fake, u"Global\\kelsend_anna");
    copyField(old.record().command, u"stopprint");
    LauncherProxy proxy;
    fake.sleeps.clear();
    EXPECT_TRUE(proxy.stopLauncher());
    ASSERT_EQ(old.messages.size(), 1u);
    EXPECT_EQ(old.messages[0].command[0], u'\0');
    ASSERT_FALSE(fake.sleeps.empty());
    EXPECT_EQ(fake.sleeps.back(), 150u);
    EXPECT_EQ(fake.openedEventNames.front(), u"Global\\kelsend_anna_event");
}

TEST_F(Stop, OldVersionLauncherIsWokenEvenWithoutItsRecord) {
    FakeLauncher old(fake, u"Global\\kelsend_anna");
    copyField(old.record().command, u"stopprint");
    fake.fail(Call::MapViewOfFile);
    LauncherProxy proxy;
    EXPECT_TRUE(proxy.stopLauncher());
    ASSERT_EQ(old.messages.size(), 1u);
    EXPECT_EQ(fieldText(old.messages[0].command), u"stopprint"); // nothing could clear it
    EXPECT_EQ(fake.sleeps.back(), 150u);
}

TEST_F(Stop, NoLauncherAtAllStillReportsDone) {
    setVersion(4, 2);
    LauncherProxy proxy;
    EXPECT_TRUE(proxy.stopLauncher());
    EXPECT_EQ(fake.openedEventNames, std::vector<std::u16string>{u"kelsend_anna_event"});
    EXPECT_EQ(fake.openedMappingNames.back(), u"kelsend_anna_sm");
    EXPECT_FALSE(fake.exists(u"kelsend_anna_sm")); // made for the try, gone with it
    EXPECT_TRUE(fake.boxes().empty());
}

using Cleanup = FakeOsTest;

TEST_F(Cleanup, CarriesThePrinterNameOrNone) {
    FakeLauncher launcher(fake, u"Local\\kelsend_anna");
    copyField(launcher.record().printerName, u"stale");
    CitrixLauncherProxy proxy(1);
    EXPECT_TRUE(proxy.sendPrinterCleanup(u"Foliograph"));
    EXPECT_TRUE(proxy.sendPrinterCleanup(nullptr));
    ASSERT_EQ(launcher.messages.size(), 2u);
    EXPECT_EQ(fieldText(launcher.messages[0].command), u"printercleanup");
    EXPECT_EQ(fieldText(launcher.messages[0].printerName), u"Foliograph");
    EXPECT_EQ(fieldText(launcher.messages[1].printerName), u"");
}

TEST_F(Cleanup, WithoutLauncherNothingIsDelivered) {
    CitrixLauncherProxy proxy(1);
    EXPECT_FALSE(proxy.sendPrinterCleanup(u"Foliograph"));
    EXPECT_TRUE(fake.boxes().empty());
}

} // namespace
