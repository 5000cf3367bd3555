#include "support/fake/FakeSystem.h"

#include "platform/WideText.h"

#include <algorithm>

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

std::tm FakeSystem::clock(int year, int month, int day, int hour, int minute, int second) {
    std::tm t{};
    t.tm_year = year - 1900;
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_hour = hour;
    t.tm_min = minute;
    t.tm_sec = second;
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const int before[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
    t.tm_yday = before[month - 1] + day - 1 + (leap && month > 2 ? 1 : 0);
    // Days since 1970-01-01, a Thursday.
    int y = month <= 2 ? year - 1 : year;
    int era = (y >= 0 ? y : y - 399) / 400;
    int yoe = y - era * 400;
    int doy = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    int doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    long days = static_cast<long>(era) * 146097 + doe - 719468;
    t.tm_wday = static_cast<int>(((days % 7) + 11) % 7);
    return t;
}

std::vector<std::u16string> FakeSystem::environmentBlock() {
    auto entries = envFirst;
    for (const auto& [key, value] : env)
        entries.push_back(key + u"=" + value);
    return entries;
}

std::u16string FakeSystem::fromAnsi(std::string_view bytes) {
    std::u16string text;
    for (char c : bytes)
        text += static_cast<char16_t>(static_cast<unsigned char>(c));
    return text;
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

namespace {
class FakeLibrary : public LoadedLibrary {
public:
    explicit FakeLibrary(int& held) : held_(held) { ++held_; }
    ~FakeLibrary() override { --held_; }

private:
    int& held_;
};
} // namespace

std::unique_ptr<LoadedLibrary> FakeSystem::loadLibrary(const std::u16string& name) {
    loadedLibraries.push_back(name);
    if (calls_.failing(Call::LoadLibrary)) return nullptr;
    return std::make_unique<FakeLibrary>(librariesHeld);
}

int FakeSystem::wideToUtf8(std::u16string_view text, char* out, int size) {
    if (calls_.failing(Call::WideCharToMultiByte)) return 0;
    auto bytes = toUtf8(text.substr(0, text.find(u'\0'))) + '\0';
    if (size == 0) return static_cast<int>(bytes.size());
    if (size < 0 || !out) {
        calls_.lastError = error::invalidParameter;
        return 0;
    }
    if (bytes.size() <= static_cast<std::size_t>(size)) {
        std::copy(bytes.begin(), bytes.end(), out);
        return static_cast<int>(bytes.size());
    }
    // As much as fits, in whole characters: a byte that starts no sequence continues one.
    std::size_t fits = static_cast<std::size_t>(size);
    while (fits > 0 && (static_cast<unsigned char>(bytes[fits]) & 0xC0) == 0x80)
        --fits;
    std::copy(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(fits), out);
    calls_.lastError = error::insufficientBuffer;
    return 0;
}

std::unique_ptr<NetApi> FakeSystem::loadNetApi() {
    if (calls_.failing(Call::LoadNetApi) || !netApiPresent) return nullptr;
    return std::make_unique<FakeNetApi>(calls_, domainController);
}

} // namespace platform
