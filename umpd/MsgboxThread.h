#pragma once

#include "platform/Processes.h"

#include <cstdint>
#include <memory>
#include <string>

// A thread object with one thing to do.
class WindowsThread {
public:
    virtual ~WindowsThread() = default;
    virtual std::uint32_t run() = 0;
};

// A message box on a thread of its own, so that a failure on the job path reaches the user
// without holding the spooler's thread. Nobody waits for it: the object stays for the life
// of the process.
class MsgboxThread : public WindowsThread {
public:
    // Copies text and caption and starts the thread at once.
    static void show(std::u16string_view text, std::u16string_view caption, std::uint32_t flags);
    // Shows the box; the answer does not matter.
    std::uint32_t run() override;

    std::unique_ptr<platform::Thread> thread;
    std::uint32_t threadId = 0;
    std::u16string text;
    std::u16string caption;
    std::uint32_t flags = 0;

private:
    MsgboxThread(std::u16string_view text, std::u16string_view caption, std::uint32_t flags)
        : text(text), caption(caption), flags(flags) {}
};

// The style of every box on the job path: a service notification with the error icon.
inline constexpr std::uint32_t jobPathBoxStyle = 0x200010;
