#pragma once

#include "platform/Processes.h"
#include "support/fake/FakeCalls.h"

#include <vector>

namespace platform {

// Processes are recorded and end at once with the planned exit code; nothing else runs in
// the fake, so a thread's body runs on the caller's thread, to its end.
class FakeProcesses : public Processes {
public:
    explicit FakeProcesses(FakeCalls& calls) : calls_(calls) {}

    std::vector<ProcessStart> started;
    std::uint32_t processExitCode = 0;

    std::unique_ptr<Process> createProcess(const ProcessStart& start) override;
    std::unique_ptr<Thread> startThread(std::function<void()> body) override;

private:
    FakeCalls& calls_;
    std::uint32_t nextThreadId_ = 0x200;
};

} // namespace platform
