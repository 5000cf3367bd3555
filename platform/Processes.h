#pragma once

#include "platform/Kernel.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

inline constexpr std::uint32_t detachedProcess = 0x8;
inline constexpr std::uint32_t normalPriorityClass = 0x20;
inline constexpr std::uint16_t swHide = 0;

struct ProcessStart {
    std::u16string commandLine;
    std::optional<std::u16string> workingDirectory;
    std::uint32_t creationFlags = 0;
    std::optional<std::uint16_t> showWindow; // STARTF_USESHOWWINDOW with this value
};

class Process {
public:
    virtual ~Process() = default; // closes both handles
    virtual bool wait(std::uint32_t milliseconds) = 0;
    virtual std::optional<std::uint32_t> exitCode() = 0;
};

// A thread's handle: waiting on it waits for the thread's end; closing it ends nothing.
class Thread : public Waitable {
public:
    virtual std::uint32_t id() = 0;
};

class Processes {
public:
    virtual ~Processes() = default;
    // CreateProcessW without inherited handles; null on failure.
    virtual std::unique_ptr<Process> createProcess(const ProcessStart& start) = 0;
    // CreateThread with the default stack and no flags: body starts at once. Null on failure.
    virtual std::unique_ptr<Thread> startThread(std::function<void()> body) = 0;
};

} // namespace platform
