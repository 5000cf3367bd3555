#include "umpd/FakeOs.h"
#include "umpd/LauncherNames.h"
#include "umpd/LauncherProxy.h"
#include "umpd/SecurityAttributesHolder.h"
#include "umpd/SystemServices.h"

#include <cstring>
#include <ostream>
#include <set>

namespace platform {
static void PrintTo(const FakeViewWrite& write, std::ostream* out) {
    *out << "{" << write.offset << ", " << write.size << "}";
}
} // namespace platform

using namespace testing_support;
using platform::Call;

namespace {

const std::u16string base = u"Local\\kelsend_anna";

// Where the launcher finds the fields this side writes.
constexpr std::size_t commandAt = 4, printerAt = 524, fileAt = 1044, docAt = 1564;
using Writes = std::vector<platform::FakeViewWrite>;
// A write of a text of that many units and its NUL.
platform::FakeViewWrite text(std::size_t at, std::size_t units) {
    return {at, 2 * (units + 1)};
}

using Names = FakeOsTest;

TEST_F(Names, UserNameFallsBackToTheEnvironment) {
    fake.fail(Call::GetUserName);
    fake.system().env[u"USERNAME"] = u"bob";
    EXPECT_EQ(launcherUserName(), u"bob");
    fake.fail(Call::GetEnvironmentVariable);
    EXPECT_EQ(launcherUserName(), u"");
    fake.clearFailures();
    fake.system().user = std::u16string(260, u'u'); // needs 261 characters with its NUL
    EXPECT_EQ(launcherUserName(), u"bob");
}

using Comms = FakeOsTest;

TEST_F(Comms, FailedMapLeavesNothingMapped) {
    for (auto call : {Call::CreateFileMapping, Call::MapViewOfFile}) {
        CurrentFake local;
        local.fail(call);
        LauncherComms ipc(u"kelsend", platform::infinite);
        EXPECT_FALSE(ipc.mapSharedMemory());
        EXPECT_EQ(ipc.shared.mapping, nullptr);
        EXPECT_EQ(ipc.record(), nullptr);
        EXPECT_EQ(local.callCount(Call::CreateFileMapping), 2); // record() tries again
        EXPECT_FALSE(local.kernel().exists(base + u"_sm"));
    }
}

// One sendMsg against a launcher that answers, one that never does, or none.
enum class Peer { None, Answers, Silent };

struct SendRow {
    const char* name;
    Peer peer;
    bool mapped;
    std::uint32_t timeout;
    Call fails; // Call::Count: none
    int failures;
    bool delivered;
    std::size_t messages;
    int foreverWaits;
    const char* box = ""; // the box shown
};

class Send : public FakeOsTest, public ::testing::WithParamInterface<SendRow> {};

TEST_P(Send, OnlyATimeOutOrAFailedStepIsNotDelivered) {
    const auto& row = GetParam();
    std::unique_ptr<FakeLauncher> launcher;
    if (row.peer != Peer::None)
        launcher = std::make_unique<FakeLauncher>(fake, base, row.peer == Peer::Answers);
    LauncherComms ipc(u"kelsend", row.timeout);
    ASSERT_TRUE(!row.mapped || ipc.mapSharedMemory());
    if (row.fails != Call::Count) fake.fail(row.fails, 6, row.failures);
    EXPECT_EQ(ipc.sendMsg(), row.delivered);
    EXPECT_EQ(launcher ? launcher->messages.size() : 0u, row.messages);
    EXPECT_EQ(fake.kernel().foreverWaits, row.foreverWaits);
    EXPECT_EQ(boxesShown(), row.box);
    // The sender keeps no handle: its answer event is gone, the request is the launcher's.
    EXPECT_FALSE(fake.kernel().exists(base + u"_event_end"));
    EXPECT_EQ(fake.kernel().references(base + u"_event"), launcher ? 1 : 0);
}

constexpr auto none = Call::Count;
constexpr auto forever = platform::infinite;
const char* const settingFailed = "IPC sendMsg setting event failed|System error 6.\r\n|0\n";

INSTANTIATE_TEST_SUITE_P(
    Launchers, Send,
    ::testing::Values(
        SendRow{"NotMapped", Peer::Answers, false, forever, none, 0, false, 0, 0},
        SendRow{"NoLauncher", Peer::None, true, forever, none, 0, false, 0, 0},
        SendRow{"CreateEventFails", Peer::Answers, true, forever, Call::CreateEvent, 1, false, 0, 0,
                "IPC sendMsg create event failed|System error 6.\r\n|0\n"},
        SendRow{"OpenEventFails", Peer::Answers, true, forever, Call::OpenEvent, 1, false, 0, 0,
                settingFailed},
        SendRow{"SetEventFails", Peer::Answers, true, forever, Call::SetEvent, 1, false, 0, 0,
                settingFailed},
        SendRow{"Answered", Peer::Answers, true, forever, none, 0, true, 1, 0},
        SendRow{"SilentTimesOut", Peer::Silent, true, 300, none, 0, false, 1, 0},
        SendRow{"SilentHoldsForEver", Peer::Silent, true, forever, none, 0, true, 1, 1},
        // The launcher's wait and then the sender's fail: a failed wait is no time-out.
        SendRow{"FailedWait", Peer::Silent, true, 300, Call::WaitForSingleObject, 2, true, 0, 0}),
    rowName);

// The conversation on each system: the names, the security of what either side creates,
// and the access rights the sender asks for.
struct SystemRow {
    const char* name;
    std::uint32_t major, platformId;
    const char16_t* base;
    bool secured;      // created with security attributes
    bool lowIntegrity; // open to low-integrity processes too
};

class ConversationBySystem : public FakeOsTest, public ::testing::WithParamInterface<SystemRow> {};

TEST_P(ConversationBySystem, NamesSecurityAndAccess) {
    const auto& row = GetParam();
    setVersion(row.major, row.platformId);
    const std::u16string base = row.base;
    SecurityAttributesHolder holder;
    auto* sa = makeSecurityAttributes(holder);
    ASSERT_EQ(sa, row.secured ? &holder.record : nullptr);
    EXPECT_FALSE(sa && sa->inheritHandle);
    const platform::FakeObjectSecurity expected{row.secured, row.secured ? 8u : 0u, row.secured,
                                                row.lowIntegrity};
    {
        LauncherComms alone(u"kelsend", platform::infinite);
        ASSERT_TRUE(alone.mapSharedMemory());
        ASSERT_TRUE(alone.shared.created);
        EXPECT_EQ(fake.kernel().securityOf(base + u"_sm"), expected);
        EXPECT_EQ(fake.kernel().creationOf(base + u"_sm"),
                  (platform::FakeObjectCreation{.size = 8152}));
    }
    FakeLauncher launcher(fake, base);
    LauncherComms ipc(u"kelsend", platform::infinite);
    ASSERT_TRUE(sendStartPrint(ipc, u"P"));
    ASSERT_EQ(launcher.messages.size(), 1u);
    EXPECT_EQ(fake.kernel().securityOf(base + u"_event_end"), expected);
    // Auto-reset and not set: the launcher's one signal answers one wait.
    EXPECT_EQ(fake.kernel().creationOf(base + u"_event_end"), platform::FakeObjectCreation{});
    using Access = std::set<std::uint32_t>;
    EXPECT_EQ(fake.accessAsked[Call::OpenFileMapping], Access{0xF001F});
    EXPECT_EQ(fake.accessAsked[Call::MapViewOfFile], Access{6});
    EXPECT_EQ(fake.accessAsked[Call::OpenMutex], Access{0x1F0003});
    EXPECT_EQ(fake.accessAsked[Call::OpenEvent], Access{0x1F0003});
    EXPECT_TRUE(fake.reporter().boxes().empty());
    EXPECT_TRUE(fake.reporter().debugLines().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Systems, ConversationBySystem,
    ::testing::Values(SystemRow{"Platform1", 4, 1, u"kelsend_anna", false, false},
                      SystemRow{"Platform1Major5", 5, 1, u"Local\\kelsend_anna", false, false},
                      SystemRow{"Nt4", 4, 2, u"kelsend_anna", true, false},
                      SystemRow{"Major5", 5, 2, u"Local\\kelsend_anna", true, false},
                      SystemRow{"Major6", 6, 2, u"Local\\kelsend_anna", true, true},
                      SystemRow{"Major10", 10, 2, u"Local\\kelsend_anna", true, true}),
    rowName);

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
    FakeLauncher launcher{fake, base};
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
    // The name cleared first, and the command last, as the launcher reads it first.
    EXPECT_EQ(launcher.writes.at(0),
              (Writes{text(printerAt, 0), text(printerAt, 10), text(commandAt, 10)}));
}

TEST_F(Messages, StopPrintCarriesThreeFieldsCutToFitAndNoMore) {
    std::memset(launcher.record().reserved, 0xAB, sizeof launcher.record().reserved);
    std::memset(launcher.record().launcherOwned, 0xCD, sizeof launcher.record().launcherOwned);
    ASSERT_TRUE(sendStopPrint(ipc, std::u16string(400, u'p'), u"C:\\out\\a.pdf",
                              std::u16string(300, u'd')));
    const auto& m = launcher.messages.at(0);
    EXPECT_EQ(fieldText(m.command), u"stopprint");
    EXPECT_EQ(fieldText(m.printerName), std::u16string(259, u'p'));
    EXPECT_EQ(fieldText(m.filename), u"C:\\out\\a.pdf");
    EXPECT_EQ(fieldText(m.docName), std::u16string(259, u'd'));
    EXPECT_EQ(m.docName[259], u'\0');
    for (auto b : m.reserved)
        EXPECT_EQ(b, 0xAB);
    for (auto b : m.launcherOwned)
        ASSERT_EQ(b, 0xCD);
    EXPECT_EQ(launcher.writes.at(0),
              (Writes{text(printerAt, 0), text(fileAt, 0), text(docAt, 0), text(printerAt, 259),
                      text(fileAt, 12), text(docAt, 259), text(commandAt, 9)}));
}

TEST_F(Messages, UnmappableRecordSkipsTheSend) {
    fake.fail(Call::OpenFileMapping);
    fake.fail(Call::CreateFileMapping);
    EXPECT_FALSE(sendStartPrint(ipc, u"P"));
    EXPECT_FALSE(sendStopPrint(ipc, u"P", u"f", u"d"));
    EXPECT_TRUE(launcher.messages.empty());
    EXPECT_TRUE(fake.reporter().boxes().empty());
}

// isRunning: the names tried, the staggering sleeps, the answer.
struct RunningRow {
    const char* name;
    bool session; // the session-aware proxy, or the plain one
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
    std::unique_ptr<LauncherProxy> proxy =
        row.session ? std::make_unique<CitrixLauncherProxy>(3) : std::make_unique<LauncherProxy>();
    EXPECT_EQ(proxy->isRunning(), row.running);
    EXPECT_EQ(fake.kernel().openedMutexNames, row.tried);
    // Each look closes its handle at once: the launcher's own is the only one left.
    if (launcher) {
        EXPECT_EQ(fake.kernel().references(std::u16string(row.launcherBase) + u"_mutex"), 1);
    }
    ASSERT_EQ(fake.system().sleeps.size(), row.sleeps);
    // Each staggering sleep is the C runtime's draw after seeding with the process id.
    fake.system().seedRandom(fake.system().processId);
    auto stagger = static_cast<std::uint32_t>(fake.system().random() % 1000 + 50);
    for (auto ms : fake.system().sleeps)
        EXPECT_EQ(ms, stagger);
}

const char16_t* const sessionBase = u"Session\\3\\kelsend_anna";
const std::u16string plain = u"Local\\kelsend_anna_mutex", nt4 = u"kelsend_anna_mutex",
                     session = sessionBase + std::u16string(u"_mutex");

INSTANTIATE_TEST_SUITE_P(
    Launchers, Running,
    ::testing::Values(
        RunningRow{"PlainAtOnce", true, 10, base.c_str(), true, {plain}, 0},
        RunningRow{"NoneOn6", true, 6, nullptr, false, {plain, plain, session, session}, 2},
        RunningRow{"SessionOn10", true, 10, sessionBase, true, {plain, plain, session}, 1},
        RunningRow{"OtherSessionUnseenOn5", true, 5, sessionBase, false, {plain, plain}, 1},
        RunningRow{"NoneOnNt4", true, 4, nullptr, false, {nt4, nt4}, 1},
        RunningRow{
            "PlainProxyNeverLooksAtSessions", false, 10, sessionBase, false, {plain, plain}, 1}),
    rowName);

TEST_F(FakeOsTest, SessionProxyStaysOnTheSessionForm) {
    FakeLauncher launcher(fake, sessionBase);
    CitrixLauncherProxy proxy(3);
    ASSERT_TRUE(proxy.isRunning());
    EXPECT_EQ(proxy.comms().sharedMemoryName, u"Session\\3\\kelsend_anna_sm");
    fake.kernel().openedMutexNames.clear();
    EXPECT_TRUE(proxy.isRunning());
    EXPECT_EQ(fake.kernel().openedMutexNames, std::vector<std::u16string>{session});
    ASSERT_TRUE(sendStartPrint(proxy.comms(), u"P"));
    EXPECT_EQ(launcher.messages.size(), 1u);
}

// stopLauncher: the running launcher by message, an old one woken under the old names.
struct StopRow {
    const char* name;
    std::uint32_t major;
    const char16_t* base; // where the launcher lives, or where the old one is looked for
    bool launcher;
    Call fails;
    const char16_t* commandSeen; // the command of the one message, or null for none
    bool oldNames;               // woken under the old names: the 150 ms pause
    bool cleared;                // the empty command written, as the one write of the message
    bool done = true;
    const char* box = "";
};

class Stop : public FakeOsTest, public ::testing::WithParamInterface<StopRow> {};

TEST_P(Stop, EndsWithTheEmptyCommandAndReportsTheSend) {
    const auto& row = GetParam();
    setVersion(row.major, 2);
    const std::u16string base = row.base;
    std::unique_ptr<FakeLauncher> launcher;
    if (row.launcher) {
        launcher = std::make_unique<FakeLauncher>(fake, base);
        copyField(launcher->record().command, u"stopprint");
    }
    if (row.fails != Call::Count) fake.fail(row.fails, 6);
    LauncherProxy proxy;
    fake.system().sleeps.clear();
    EXPECT_EQ(proxy.stopLauncher(), row.done);
    ASSERT_EQ(launcher ? launcher->messages.size() : 0u, row.commandSeen ? 1u : 0u);
    if (row.commandSeen) {
        EXPECT_EQ(fieldText(launcher->messages[0].command), row.commandSeen);
        EXPECT_EQ(launcher->writes[0], row.cleared ? Writes{text(commandAt, 0)} : Writes{});
    }
    EXPECT_EQ(fake.kernel().openedEventNames.at(0), base + u"_event");
    EXPECT_EQ(fake.kernel().openedMappingNames.back(), base + u"_sm");
    EXPECT_EQ(!fake.system().sleeps.empty() && fake.system().sleeps.back() == 150, row.oldNames);
    EXPECT_EQ(fake.kernel().exists(base + u"_sm"),
              row.launcher); // a record made for the try is gone
    // The launcher's record, or the one made for the try, is a whole record.
    EXPECT_EQ(fake.kernel().creationOf(base + u"_sm"),
              (platform::FakeObjectCreation{.size = 8152}));
    EXPECT_EQ(boxesShown(), row.box);
}

INSTANTIATE_TEST_SUITE_P(
    Launchers, Stop,
    ::testing::Values(StopRow{"Running", 10, u"Local\\kelsend_anna", true, none, u"", false, true},
                      StopRow{"RunningButTheSendFails", 10, u"Local\\kelsend_anna", true,
                              Call::OpenEvent, nullptr, false, true, false, settingFailed},
                      StopRow{"OldVersion", 5, u"Global\\kelsend_anna", true, none, u"", true,
                              true},
                      // Nothing could clear the old record, and the launcher is woken all the same.
                      StopRow{"OldVersionWithoutItsRecord", 10, u"Global\\kelsend_anna", true,
                              Call::MapViewOfFile, u"stopprint", true, false},
                      StopRow{"NoneAtAll", 4, u"kelsend_anna", false, none, nullptr, false, true}),
    rowName);

TEST_F(FakeOsTest, CleanupCarriesThePrinterNameOrNone) {
    CitrixLauncherProxy proxy(1);
    EXPECT_FALSE(proxy.sendPrinterCleanup(u"Foliograph")); // nobody listens yet
    FakeLauncher launcher(fake, base);
    copyField(launcher.record().printerName, u"stale");
    EXPECT_TRUE(proxy.sendPrinterCleanup(u"Foliograph"));
    EXPECT_TRUE(proxy.sendPrinterCleanup(nullptr));
    ASSERT_EQ(launcher.messages.size(), 2u);
    EXPECT_EQ(fieldText(launcher.messages[0].command), u"printercleanup");
    EXPECT_EQ(fieldText(launcher.messages[0].printerName), u"Foliograph");
    EXPECT_EQ(fieldText(launcher.messages[1].printerName), u"");
    EXPECT_EQ(launcher.writes,
              (std::vector<Writes>{{text(printerAt, 0), text(printerAt, 10), text(commandAt, 14)},
                                   {text(printerAt, 0), text(commandAt, 14)}}));
    EXPECT_TRUE(fake.reporter().boxes().empty());
}

} // namespace
