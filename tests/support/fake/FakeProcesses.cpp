#include "support/fake/FakeProcesses.h"

namespace platform {

namespace {
class FakeProcess : public Process {
public:
    FakeProcess(FakeCalls& calls, std::uint32_t exitCode) : calls_(calls), exitCode_(exitCode) {}
    bool wait(std::uint32_t) override { return true; }
    std::optional<std::uint32_t> exitCode() override {
        if (calls_.failing(Call::GetExitCodeProcess)) return std::nullopt;
        return exitCode_;
    }

private:
    FakeCalls& calls_;
    std::uint32_t exitCode_;
};

class FakeThread : public Thread {
public:
    explicit FakeThread(std::uint32_t id) : id_(id) {}
    WaitResult wait(std::uint32_t) override { return WaitResult::Signalled; } // it has ended
    std::uint32_t id() override { return id_; }

private:
    std::uint32_t id_;
};
} // namespace

std::unique_ptr<Process> FakeProcesses::createProcess(const ProcessStart& start) {
    if (calls_.failing(Call::CreateProcess)) return nullptr;
    started.push_back(start);
    return std::make_unique<FakeProcess>(calls_, processExitCode);
}

std::unique_ptr<Thread> FakeProcesses::startThread(std::function<void()> body) {
    if (calls_.failing(Call::CreateThread)) return nullptr;
    body();
    return std::make_unique<FakeThread>(nextThreadId_++);
}

} // namespace platform
