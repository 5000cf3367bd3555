// The job face on the real system, under Wine: printers in the prefix, the security of
// shared objects, and the whole conversation with a running kelmsnd.

#ifdef _WIN32

#include "platform/ObjectAccess.h"
#include "platform/Platform.h"
#include "platform/TestPrinters.h"
#include "platform/WideText.h"
#include "platform/win32/Win32Platform.h"
#include "platform/win32/Windows.h"
#include "support/fake/FakeReporter.h"
#include "tools/kelmsnd/LauncherPeer.h"
#include "umpd/DomainController.h"
#include "umpd/LauncherNames.h"
#include "umpd/LauncherProxy.h"
#include "umpd/PrintJob.h"
#include "umpd/PrinterConfig.h"
#include "umpd/SecurityAttributesHolder.h"
#include "umpd/SystemServices.h"
#include "umpd/Win32Launcher.h"

#include <gtest/gtest.h>

#include <thread>

using namespace testing_support;

namespace {

// The system's platform with its boxes and debug output caught by the in-memory one: every
// test here uses it, so that no box can wait for a user, whatever the display.
class CaughtReports : public platform::win32::Win32Platform {
public:
    CaughtReports() { platform::setCurrent(this); }
    ~CaughtReports() override { platform::setCurrent(nullptr); }
    platform::Reporter& reporter() override { return caught; }
    platform::FakeReporter caught;
};

TEST(Win32Spooler, PortFormsResolveToPrintersOfOurDriver) {
    CaughtReports reports;
    ASSERT_TRUE(addSystemPrinter(u"Kel Other Make", u"Kel Other Driver", u"\\\\kelsrv\\kelport"));
    ASSERT_TRUE(addSystemPrinter(u"Kel Port Printer", productDriver, u"\\\\kelsrv\\kelport"));
    ASSERT_TRUE(addSystemPrinter(u"Kel File Printer", productDriver, u"FILE:"));
    // The port is shared with a printer of another driver.
    PrinterConfig config;
    config.setPrinterName(u"\\\\kelsrv\\kelport");
    ASSERT_TRUE(config.openPrinter(platform::printerAccessUse));
    PrinterInfoCache cache(config.printerHandle.get());
    auto* info = cache.fetch();
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->printerName, u"Kel Port Printer");
    EXPECT_EQ(info->portName, u"\\\\kelsrv\\kelport");
    std::uint32_t count = 7;
    EXPECT_FALSE(PrintJob::getAllJobs(*config.printerHandle, count).has_value()); // no jobs
    EXPECT_EQ(count, 0u);

    // A job being written, which Wine's spooler neither counts nor lists: the config opens
    // its printer for the look-up, and the name stays as it was.
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    auto output = std::u16string(reinterpret_cast<const char16_t*>(temp)) + u"kel-current.prn";
    std::uint32_t jobId = 0;
    auto job = startSystemJob(u"Kel File Printer", u"Current doc", output, jobId);
    ASSERT_NE(job, 0u);
    PrinterConfig current;
    current.setPrinterName(u"Kel File Printer");
    std::u16string docName = u"before";
    std::uint32_t id = 0;
    getCurrentPrintJobDocName(current, docName, id);
    EXPECT_NE(current.printerHandle, nullptr);
    EXPECT_EQ(docName, u"before");
    EXPECT_EQ(id, 0u);
    EXPECT_TRUE(endSystemJob(job));
    DeleteFileW(w(output));
}

TEST(Win32Security, SharedObjectsAllowAllAndCarryTheLowLabel) {
    CaughtReports reports;
    ASSERT_GE(getOsMajorVersion(), 6u); // Wine's default system, which takes the label
    SecurityAttributesHolder holder;
    auto* sa = makeSecurityAttributes(holder);
    ASSERT_NE(sa, nullptr);
    EXPECT_EQ(sa->length, 8u);
    auto name = u"KelSecured_" + platform::fromUtf8(std::to_string(GetCurrentProcessId()));
    auto event = platform::current().kernel().createEvent(sa, false, false, name);
    ASSERT_NE(event, nullptr);
    const ObjectAccess openAndLow{true, true};
    EXPECT_EQ(systemObjectAccess(OpenEventW(READ_CONTROL, FALSE, w(name))), openAndLow);

    // A record the sender creates because no launcher made it.
    LauncherComms ipc(u"kelsecured", platform::infinite);
    ASSERT_TRUE(ipc.mapSharedMemory());
    ASSERT_TRUE(ipc.shared.created);
    EXPECT_EQ(systemObjectAccess(OpenFileMappingW(READ_CONTROL, FALSE, w(ipc.sharedMemoryName))),
              openAndLow);
    EXPECT_TRUE(reports.caught.boxes().empty() && reports.caught.debugLines().empty());
}

TEST(Win32Services, SpoolerIdentityAndDomainController) {
    CaughtReports reports;
    {
        PrinterSelfScope scope; // Wine's spoolss.dll has both functions
        EXPECT_NE(scope.spoolss, nullptr);
        EXPECT_NE(scope.token, 0u);
    }
    // Wine knows no domain: the failed look-up is shared as an empty name, ready.
    EXPECT_EQ(lookupDomainController(), u"");
    HANDLE mapping = OpenFileMappingW(FILE_MAP_READ, FALSE, L"Local\\DomainControllerData");
    ASSERT_NE(mapping, nullptr);
    auto* view = static_cast<const DomainControllerData*>(
        MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, sizeof(DomainControllerData)));
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->state, 'r');
    EXPECT_EQ(view->domainController[0], u'\0');
    UnmapViewOfFile(view);
    CloseHandle(mapping);
    EXPECT_TRUE(reports.caught.boxes().empty());
}

TEST(Win32Launcher, MessagesArriveByteForByte) {
    CaughtReports reports;
    LauncherPeerProcess peer;
    ASSERT_TRUE(peer.running) << "kelmsnd did not start";
    CitrixLauncherProxy proxy(1);
    ASSERT_TRUE(proxy.isRunning());
    ASSERT_TRUE(sendStartPrint(proxy.comms(), u"Kel Printer"));
    ASSERT_TRUE(sendStopPrint(proxy.comms(), u"Kel Printer", u"C:\\out\\My document.pdf",
                              u"My document \u00e9"));
    ASSERT_TRUE(proxy.sendPrinterCleanup(u"Kel Printer"));
    ASSERT_TRUE(proxy.stopLauncher());
    EXPECT_EQ(peer.exitCode(10000), 0u); // the empty command stops it
    EXPECT_TRUE(reports.caught.boxes().empty());

    // The record at each message, logged as the peer logs it: fields written over the
    // launcher's fresh (zeroed) mapping, with what earlier messages left behind.
    LauncherStruct m{};
    std::string expected;
    copyField(m.printerName, u"Kel Printer");
    copyField(m.command, u"startprint");
    expected += LauncherPeer::describe(m);
    copyField(m.filename, u"C:\\out\\My document.pdf");
    copyField(m.docName, u"My document \u00e9");
    copyField(m.command, u"stopprint");
    expected += LauncherPeer::describe(m);
    copyField(m.command, u"printercleanup");
    expected += LauncherPeer::describe(m);
    m.command[0] = u'\0';
    expected += LauncherPeer::describe(m);
    EXPECT_EQ(peer.logText(), expected);
}

// A launcher on a thread of this process keeps its handle to the answer event: once the
// sender's wait has returned, the event must have reset itself.
TEST(Win32Launcher, TheAnswerResetsItselfAsTheSenderTakesIt) {
    CaughtReports reports;
    const std::u16string word = u"kelreset";
    LauncherPeer peer(plainLauncherBase(word));
    ASSERT_TRUE(peer.start());
    HANDLE answer = nullptr;
    std::thread launcher([&] {
        LauncherStruct message;
        if (!peer.next(message, 10000)) return;
        answer = OpenEventW(EVENT_ALL_ACCESS, FALSE, w(plainLauncherBase(word) + u"_event_end"));
        if (answer) SetEvent(answer);
    });
    LauncherComms ipc(word, 10000); // a limit, so that a failed launcher cannot hold the test
    bool sent = sendStartPrint(ipc, u"Kel Printer");
    launcher.join();
    EXPECT_TRUE(sent);
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(WaitForSingleObject(answer, 0), static_cast<DWORD>(WAIT_TIMEOUT));
    CloseHandle(answer);
    EXPECT_TRUE(reports.caught.boxes().empty());
}

} // namespace

#endif
