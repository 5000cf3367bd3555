#pragma once

// kelmsnd beside the test program, under Wine: started for a test, logging each message it
// answers to a file of its own, ended with the test.

#ifdef _WIN32

#include "platform/Platform.h"
#include "platform/win32/Windows.h"
#include "umpd/LauncherNames.h"
#include "umpd/LauncherStruct.h"

#include <string>
#include <vector>

namespace testing_support {

// The folder of the running test program, ending in "\".
inline std::wstring programFolder() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring dir(path);
    dir.resize(dir.find_last_of(L'\\') + 1);
    return dir;
}

inline std::wstring tempFolder() {
    wchar_t path[MAX_PATH];
    GetTempPathW(MAX_PATH, path);
    return path;
}

// Whether the plain launcher's alive mutex is there.
inline bool launcherListens() {
    auto mutex = plainLauncherBase(launcherBaseWord) + u"_mutex";
    return platform::current().kernel().openMutex(SYNCHRONIZE, mutex) != nullptr;
}

// Waits up to ten seconds for the alive mutex to come or to go.
inline bool awaitLauncher(bool listening) {
    for (int i = 0; i < 200; ++i) {
        if (launcherListens() == listening) return true;
        Sleep(50);
    }
    return false;
}

class LauncherPeerProcess {
public:
    explicit LauncherPeerProcess(const std::wstring& options = L"") {
        log = tempFolder() + L"kelmsnd-" + std::to_wstring(GetCurrentProcessId()) + L".log";
        DeleteFileW(log.c_str());
        std::wstring command =
            L"\"" + programFolder() + L"kelmsnd.exe\" --log \"" + log + L"\" " + options;
        STARTUPINFOW si{};
        si.cb = sizeof si;
        if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                            &si, &info))
            return;
        CloseHandle(info.hThread);
        running = awaitLauncher(true); // it listens once its alive mutex is there
    }
    ~LauncherPeerProcess() {
        if (!info.hProcess) return;
        if (WaitForSingleObject(info.hProcess, 0) == WAIT_TIMEOUT)
            TerminateProcess(info.hProcess, 9);
        WaitForSingleObject(info.hProcess, 5000);
        CloseHandle(info.hProcess);
        DeleteFileW(log.c_str());
    }
    DWORD exitCode(DWORD waitMs) {
        if (WaitForSingleObject(info.hProcess, waitMs) != WAIT_OBJECT_0) return 0xFFFF;
        DWORD code = 0;
        GetExitCodeProcess(info.hProcess, &code);
        return code;
    }
    std::string logText() const { return readLog(log); }

    // A log as kelmsnd writes it, or "(no log)".
    static std::string readLog(const std::wstring& path) {
        auto bytes = platform::current().files().readFile(std::u16string(path.begin(), path.end()));
        return bytes ? std::string(bytes->begin(), bytes->end()) : "(no log)";
    }
    // The field lines of a log, without the bytes that follow each.
    static std::vector<std::string> messages(const std::string& logText) {
        std::vector<std::string> lines;
        std::size_t at = 0;
        while (at < logText.size()) {
            auto end = logText.find('\n', at);
            if (end == std::string::npos) end = logText.size();
            auto line = logText.substr(at, end - at);
            if (line.rfind("command=", 0) == 0) lines.push_back(line);
            at = end + 1;
        }
        return lines;
    }

    PROCESS_INFORMATION info{};
    std::wstring log;
    bool running = false;
};

} // namespace testing_support

#endif
