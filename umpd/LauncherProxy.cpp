#include "umpd/LauncherProxy.h"

#include "platform/Platform.h"
#include "umpd/LauncherNames.h"
#include "umpd/SystemServices.h"

LauncherProxy::LauncherProxy()
    : ipc(std::make_unique<LauncherComms>(launcherBaseWord, platform::infinite)) {}

LauncherProxy::~LauncherProxy() = default;

bool LauncherProxy::isRunning() {
    if (ipc->isAlive()) return true;
    // Stagger processes that start together.
    auto& system = platform::current().system();
    system.seedRandom(system.currentProcessId());
    system.sleep(static_cast<std::uint32_t>(system.random() % 1000 + 50));
    return ipc->isAlive();
}

bool LauncherProxy::stopLauncher() {
    if (isRunning()) {
        if (auto* record = ipc->record()) copyField(record->command, u"");
        return ipc->sendMsg();
    }
    // A launcher of an older version lives under the old names.
    auto& os = platform::current();
    auto base = oldVersionLauncherBase(launcherBaseWord);
    SharedRecord old;
    if (old.map(base + u"_sm", sizeof(LauncherStruct)))
        copyField(reinterpret_cast<LauncherStruct*>(old.view->data())->command, u"");
    if (auto event = os.kernel().openEvent(platform::eventAllAccess, base + u"_event")) {
        trace(u"Sending old version kill msg to kelmsnd\n");
        event->set();
        os.system().sleep(150);
    } else {
        trace(u"Open KelEvent [%s] failed.\n", base + u"_event");
        trace(u"Could not send kill msg to kelmsnd\n");
    }
    old.unmap();
    return true;
}

bool CitrixLauncherProxy::isRunning() {
    if (LauncherProxy::isRunning()) return true;
    if (getOsMajorVersion() < 6) return false;
    // From here on this proxy talks to the launcher of the job's session.
    auto base = sessionLauncherBase(launcherBaseWord, sessionId);
    trace(u"Session name is , %s", base);
    ipc->setNames(base);
    return LauncherProxy::isRunning();
}

bool CitrixLauncherProxy::sendPrinterCleanup(const char16_t* printerName) {
    if (auto* record = ipc->record()) {
        copyField(record->printerName, u"");
        if (printerName) copyField(record->printerName, printerName);
    }
    if (auto* record = ipc->record()) copyField(record->command, printerCleanupCommand);
    return ipc->sendMsg();
}

bool sendStartPrint(LauncherComms& ipc, std::u16string_view printerName) {
    auto* record = ipc.record();
    if (!record) return false;
    record->printerName[0] = u'\0';
    copyField(record->printerName, printerName);
    copyField(record->command, startPrintCommand); // last: the launcher reads it first
    return ipc.sendMsg();
}

bool sendStopPrint(LauncherComms& ipc, std::u16string_view printerName,
                   std::u16string_view filename, std::u16string_view docName) {
    auto* record = ipc.record();
    if (!record) return false;
    record->printerName[0] = record->filename[0] = record->docName[0] = u'\0';
    copyField(record->printerName, printerName);
    copyField(record->filename, filename);
    copyField(record->docName, docName);
    copyField(record->command, stopPrintCommand);
    return ipc.sendMsg();
}
