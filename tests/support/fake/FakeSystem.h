#pragma once

#include "platform/System.h"
#include "support/fake/FakeCalls.h"

#include <functional>
#include <map>
#include <vector>

namespace platform {

// The system as reported: any version and platform id, a user, an environment, folders,
// and a clock in virtual time.
class FakeSystem : public System {
public:
    explicit FakeSystem(FakeCalls& calls);

    std::optional<OsVersion> version = OsVersion{6, 1, 7601, 2};
    std::optional<std::u16string> user = u"anna";
    std::map<std::u16string, std::u16string> env;
    // Entries of the environment block ahead of env's, as the system keeps its "=C:=C:\x" ones.
    std::vector<std::u16string> envFirst;
    std::optional<std::tm> now = clock(2026, 3, 5, 14, 7, 9);

    // A local time with its weekday and day of the year.
    static std::tm clock(int year, int month, int day, int hour, int minute, int second);
    std::uint32_t processId = 4242, threadId = 77;
    std::int32_t bias = 0;
    std::map<KnownFolder, std::u16string> folders;
    std::u16string systemDir = u"C:\\windows\\system32";
    bool netApiPresent = true;
    std::u16string domainController = u"\\\\DC1";

    // The clock: sleeps advance it; hooks let a test change the world meanwhile.
    std::uint32_t ticks = 1000;
    std::vector<std::uint32_t> sleeps;
    std::function<void(std::uint32_t)> onSleep;
    std::vector<std::uint32_t> seeds;

    std::optional<OsVersion> osVersion() override;
    std::optional<std::u16string> userName(std::size_t bufferChars) override;
    std::optional<std::u16string> environment(const std::u16string& name) override;
    std::vector<std::u16string> environmentBlock() override;
    std::optional<std::tm> localTime() override { return now; }
    std::u16string fromAnsi(std::string_view bytes) override; // as Latin-1
    std::uint32_t tickCount() override { return ticks; }
    void sleep(std::uint32_t milliseconds) override;
    std::uint32_t currentThreadId() override { return threadId; }
    std::uint32_t currentProcessId() override { return processId; }
    void seedRandom(std::uint32_t seed) override;
    int random() override;
    std::int32_t timeZoneBias() override { return bias; }
    std::optional<Guid> createGuid() override;
    std::optional<std::u16string> knownFolder(KnownFolder folder) override;
    std::optional<std::u16string> systemDirectory() override;
    std::uint32_t lastError() override { return calls_.lastError; }
    void setLastError(std::uint32_t code) override { calls_.lastError = code; }
    std::optional<std::u16string> errorMessage(std::uint32_t code) override;
    std::unique_ptr<NetApi> loadNetApi() override;
    std::unique_ptr<LoadedLibrary> loadLibrary(const std::u16string& name) override;
    int wideToUtf8(std::u16string_view text, char* out, int size) override;

    // Every library loaded, and how many are held now.
    std::vector<std::u16string> loadedLibraries;
    int librariesHeld = 0;

private:
    FakeCalls& calls_;
    std::uint32_t randState_ = 1;
    std::uint32_t guidCounter_ = 0;
};

} // namespace platform
