#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct OsVersion {
    std::uint32_t major = 0, minor = 0, build = 0, platformId = 0;
};

struct Guid {
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0, data3 = 0;
    std::array<std::uint8_t, 8> data4{};
};

enum class KnownFolder { LocalAppData, RoamingAppData, Documents };

// A library loaded for its presence alone: it is freed when the holder goes.
class LoadedLibrary {
public:
    virtual ~LoadedLibrary() = default;
};

// "Netapi32.dll" with NetGetDCName and NetApiBufferFree.
class NetApi {
public:
    virtual ~NetApi() = default;
    // NetGetDCName(NULL, NULL): the status, and the name on success.
    virtual std::uint32_t getDcName(std::u16string& name) = 0;
};

class System {
public:
    virtual ~System() = default;
    virtual std::optional<OsVersion> osVersion() = 0; // GetVersionExA
    // GetUserNameW with a buffer of bufferChars characters.
    virtual std::optional<std::u16string> userName(std::size_t bufferChars) = 0;
    virtual std::optional<std::u16string> environment(const std::u16string& name) = 0;
    // GetEnvironmentStringsW: the "NAME=value" entries in the system's order.
    virtual std::vector<std::u16string> environmentBlock() = 0;
    // time and localtime: the local time now; nullopt when the clock cannot say.
    virtual std::optional<std::tm> localTime() = 0;
    // MultiByteToWideChar with the ANSI code page (0) and MB_PRECOMPOSED.
    virtual std::u16string fromAnsi(std::string_view bytes) = 0;
    virtual std::uint32_t tickCount() = 0;
    virtual void sleep(std::uint32_t milliseconds) = 0;
    virtual std::uint32_t currentThreadId() = 0;
    virtual std::uint32_t currentProcessId() = 0;
    // The C runtime's generator, which the design seeds and draws from.
    virtual void seedRandom(std::uint32_t seed) = 0;
    virtual int random() = 0;
    // GetTimeZoneInformation's Bias in minutes: UTC = local time + bias.
    virtual std::int32_t timeZoneBias() = 0;
    virtual std::optional<Guid> createGuid() = 0;
    // SHGetKnownFolderIDList with flag 0x100 first, then SHGetKnownFolderPath.
    virtual std::optional<std::u16string> knownFolder(KnownFolder folder) = 0;
    virtual std::optional<std::u16string> systemDirectory() = 0;
    virtual std::uint32_t lastError() = 0;
    virtual void setLastError(std::uint32_t code) = 0;
    // FormatMessageW from the system, language 0x400; nullopt without a text.
    virtual std::optional<std::u16string> errorMessage(std::uint32_t code) = 0;
    // Null when the library or one of its two functions is missing.
    virtual std::unique_ptr<NetApi> loadNetApi() = 0;
    // LoadLibraryW; null on failure.
    virtual std::unique_ptr<LoadedLibrary> loadLibrary(const std::u16string& name) = 0;
    // WideCharToMultiByte to UTF-8 of text and its terminator (length -1) into out, which
    // holds size bytes: the bytes written, terminator included. Size 0 asks for the bytes
    // needed and writes nothing. When they do not fit, the whole characters that do are
    // written, unterminated, and the result is 0 with lastError() 122.
    virtual int wideToUtf8(std::u16string_view text, char* out, int size) = 0;
};

} // namespace platform
