#include "support/fake/FakeSystem.h"

#include "platform/WideText.h"

namespace platform {

FakeSystem::FakeSystem(FakeCalls& calls) : calls_(calls) {
    folders[KnownFolder::LocalAppData] = u"C:\\users\\anna\\AppData\\Local";
    folders[KnownFolder::RoamingAppData] = u"C:\\users\\anna\\AppData\\Roaming";
    folders[KnownFolder::Documents] = u"C:\\users\\anna\\Documents";
    env[u"USERNAME"] = u"anna";
}

std::optional<OsVersion> FakeSystem::osVersion() {
    if (calls_.failing(Call::GetVersionEx)) return std::nullopt;
    return version;
}

std::optional<std::u16string> FakeSystem::userName(std::size_t bufferChars) {
    if (calls_.failing(Call::GetUserName)) return std::nullopt;
    if (!user) {
        calls_.lastError = error::accessDenied;
        return std::nullopt;
    }
    if (user->size() + 1 > bufferChars) {
        calls_.lastError = error::insufficientBuffer;
        return std::nullopt;
    }
    return user;
}

std::optional<std::u16string> FakeSystem::environment(const std::u16string& name) {
    if (calls_.failing(Call::GetEnvironmentVariable)) return std::nullopt;
    for (const auto& [key, value] : env)
        if (equalsIgnoreCase(key, name)) return value;
    calls_.lastError = 203; // ERROR_ENVVAR_NOT_FOUND
    return std::nullopt;
}

void FakeSystem::sleep(std::uint32_t milliseconds) {
    sleeps.push_back(milliseconds);
    ticks += milliseconds;
    if (onSleep) onSleep(milliseconds);
}

void FakeSystem::seedRandom(std::uint32_t seed) {
    seeds.push_back(seed);
    randState_ = seed;
}

// The generator of the Microsoft C runtime, so that sequences match the product's.
int FakeSystem::random() {
    randState_ = randState_ * 214013u + 2531011u;
    return static_cast<int>((randState_ >> 16) & 0x7FFF);
}

std::optional<Guid> FakeSystem::createGuid() {
    if (calls_.failing(Call::CoCreateGuid)) return std::nullopt;
    Guid g;
    g.data1 = 0x12345678 + guidCounter_++;
    g.data2 = 0x9ABC;
    g.data3 = 0x4DEF;
    g.data4 = {0x80, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, static_cast<std::uint8_t>(guidCounter_)};
    return g;
}

std::optional<std::u16string> FakeSystem::knownFolder(KnownFolder folder) {
    if (calls_.failing(Call::KnownFolder)) return std::nullopt;
    auto it = folders.find(folder);
    if (it == folders.end()) return std::nullopt;
    return it->second;
}

std::optional<std::u16string> FakeSystem::systemDirectory() {
    if (calls_.failing(Call::GetSystemDirectory)) return std::nullopt;
    return systemDir;
}

std::optional<std::u16string> FakeSystem::errorMessage(std::uint32_t code) {
    if (calls_.failing(Call::FormatMessage)) return std::nullopt;
    return u"System error " + fromUtf8(std::to_string(code)) + u".\r\n";
}

namespace {
class FakeNetApi : public NetApi {
public:
    FakeNetApi(FakeCalls& calls, const std::u16string& domainController)
        : calls_(calls), domainController_(domainController) {}
    std::uint32_t getDcName(std::u16string& name) override {
        if (calls_.failing(Call::NetGetDcName)) return calls_.lastError;
        name = domainController_;
        return error::success;
    }

private:
    FakeCalls& calls_;
    const std::u16string& domainController_;
};
} // namespace

std::unique_ptr<NetApi> FakeSystem::loadNetApi() {
    if (calls_.failing(Call::LoadNetApi) || !netApiPresent) return nullptr;
    return std::make_unique<FakeNetApi>(calls_, domainController);
}

} // namespace platform
