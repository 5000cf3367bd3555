#include "umpd/ProcessRunner.h"

#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/SystemServices.h"

bool runProcess(const std::u16string& commandLine,
                const std::optional<std::u16string>& workingDirectory, bool wait,
                std::uint32_t* exitCodeOut, std::uint16_t showWindow) {
    auto& os = platform::current();
    trace(u"about to execute [%s]\n", commandLine);
    platform::ProcessStart start;
    start.commandLine = commandLine;
    start.workingDirectory = workingDirectory;
    start.creationFlags = platform::detachedProcess | platform::normalPriorityClass;
    if (showWindow != 0)
        start.showWindow = showWindow == showWindowHide ? platform::swHide : showWindow;
    auto process = os.processes().createProcess(start);
    if (!process) {
        auto code = os.system().lastError();
        os.reporter().debugOutputW(u"CreateProcess failed [" +
                                   platform::fromUtf8(std::to_string(static_cast<int>(code))) +
                                   u"].  Cmd Line : " + commandLine + u"\n");
        return false;
    }
    if (wait) {
        process->wait(platform::infinite);
        if (exitCodeOut)
            if (auto code = process->exitCode()) *exitCodeOut = *code;
    }
    return true;
}

namespace {
constexpr std::uint32_t runKeyAccess = 0x2001F; // KEY_READ | KEY_WRITE
constexpr std::size_t runValueBytes = 260;
} // namespace

void checkAutostart(std::u16string_view printerName, std::u16string_view driverDirectory) {
    auto& registry = platform::current().registry();
    std::unique_ptr<platform::RegistryKey> run;
    std::uint32_t disposition = 0;
    if (registry.root(platform::RegistryRoot::CurrentUser)
            ->createSubKey(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", runKeyAccess, run,
                           disposition) != platform::error::success)
        return;
    platform::RegistryValue value;
    if (run->queryValue(u"kelmsnd.exe", value, runValueBytes) != platform::error::success)
        return; // a missing entry is left missing
    run.reset();
    auto entry = platform::valueText(value).value_or(u"");
    bool oldDriver = entry.find(u"\\2\\kelmsnd") != std::u16string::npos;
    if (!oldDriver && entry.find(driverDirectory) != std::u16string::npos) return;
    if (driverDirectory.size() + 12 > 259) return;
    std::u16string text(driverDirectory);
    text += u"kelsetup.exe -printer=\"";
    text += printerName;
    text += u"\" -installStartmenu";
    char16_t command[260]; // the path's buffer: only the setup name was checked to fit
    copyField(command, text);
    runProcess(fieldText(command), std::nullopt, true, nullptr, 0);
}
