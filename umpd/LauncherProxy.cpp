#include "umpd/LauncherProxy.h"

#include "platform/Platform.h"
#include "umpd/LauncherNames.h"
#include "umpd/SystemServices.h"

#include <initializer_list>

namespace {
struct FieldText {
    decltype(&LauncherStruct::printerName) field;
    std::u16string_view text;
};

// Clears the fields, fills them, and writes the command last: the launcher reads it first.
bool sendMessage(LauncherComms& ipc, const char16_t* command,
                 std::initializer_list<FieldText> fields) {
    if (!ipc.record()) return false;
    for (const auto& f : fields)
        ipc.writeField(f.field, u"");
    for (const auto& f : fields)
        ipc.writeField(f.field, f.text);
    ipc.writeField(&LauncherStruct::command, command);
    return ipc.sendMsg();
}
} // namespace

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
    if (isRunning()) return sendMessage(*ipc, u"", {}); // the stop message
    // A launcher of an older version lives under the old names.
    auto& os = platform::current();
    auto base = oldVersionLauncherBase(launcherBaseWord);
    SharedRecord old;
    if (old.map(base + u"_sm", sizeof(LauncherStruct)))
        old.writeField(&LauncherStruct::command, u"");
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
    if (ipc->writeField(&LauncherStruct::printerName, u"") && printerName)
        ipc->writeField(&LauncherStruct::printerName, printerName);
    ipc->writeField(&LauncherStruct::command, printerCleanupCommand);
    return ipc->sendMsg();
}

bool sendStartPrint(LauncherComms& ipc, std::u16string_view printerName) {
    return sendMessage(ipc, startPrintCommand, {{&LauncherStruct::printerName, printerName}});
}

bool sendStopPrint(LauncherComms& ipc, std::u16string_view printerName,
                   std::u16string_view filename, std::u16string_view docName) {
    return sendMessage(ipc, stopPrintCommand,
                       {{&LauncherStruct::printerName, printerName},
                        {&LauncherStruct::filename, filename},
                        {&LauncherStruct::docName, docName}});
}
