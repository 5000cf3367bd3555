#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

#include <cstdlib>
#include <ctime>
#include <cwchar>
#include <objbase.h>
#include <shlobj.h>

namespace platform::win32 {

namespace {
using NetGetDcNameFn = DWORD(WINAPI*)(LPCWSTR, LPCWSTR, LPBYTE*);
using NetApiBufferFreeFn = DWORD(WINAPI*)(LPVOID);

class Win32NetApi : public NetApi {
public:
    Win32NetApi(HMODULE module, NetGetDcNameFn get, NetApiBufferFreeFn free)
        : module_(module), get_(get), free_(free) {}
    std::uint32_t getDcName(std::u16string& name) override {
        LPBYTE buffer = nullptr;
        DWORD status = get_(nullptr, nullptr, &buffer);
        if (status == 0 && buffer) name = fromWide(reinterpret_cast<wchar_t*>(buffer));
        if (buffer) free_(buffer);
        return status;
    }

private:
    ScopedModule module_;
    NetGetDcNameFn get_;
    NetApiBufferFreeFn free_;
};

class Win32Library : public LoadedLibrary {
public:
    explicit Win32Library(HMODULE module) : module_(module) {}

private:
    ScopedModule module_;
};

class Win32System : public System {
public:
    std::optional<OsVersion> osVersion() override {
        OSVERSIONINFOA info{};
        info.dwOSVersionInfoSize = sizeof info; // the 148 byte record
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
        if (!::GetVersionExA(&info)) return std::nullopt;
#pragma GCC diagnostic pop
        return OsVersion{info.dwMajorVersion, info.dwMinorVersion, info.dwBuildNumber,
                         info.dwPlatformId};
    }

    std::optional<std::u16string> userName(std::size_t bufferChars) override {
        std::wstring buffer(bufferChars, L'\0');
        DWORD size = static_cast<DWORD>(bufferChars);
        if (!::GetUserNameW(buffer.data(), &size)) return std::nullopt;
        return fromWide(buffer.c_str());
    }

    std::optional<std::u16string> environment(const std::u16string& name) override {
        DWORD needed = ::GetEnvironmentVariableW(wide(name), nullptr, 0);
        if (needed == 0) return std::nullopt;
        std::wstring buffer(needed, L'\0');
        DWORD got = ::GetEnvironmentVariableW(wide(name), buffer.data(), needed);
        if (got == 0 || got >= needed) return std::nullopt;
        return fromWide(buffer.c_str());
    }

    std::vector<std::u16string> environmentBlock() override {
        std::vector<std::u16string> entries;
        wchar_t* block = ::GetEnvironmentStringsW();
        if (!block) return entries;
        for (const wchar_t* p = block; *p; p += std::wcslen(p) + 1)
            entries.push_back(fromWide(p));
        ::FreeEnvironmentStringsW(block);
        return entries;
    }

    std::optional<std::tm> localTime() override {
        std::time_t now = std::time(nullptr);
        std::tm out{};
        if (now == static_cast<std::time_t>(-1) || localtime_s(&out, &now) != 0)
            return std::nullopt;
        return out;
    }

    std::u16string fromAnsi(std::string_view bytes) override {
        if (bytes.empty()) return {};
        int n = ::MultiByteToWideChar(0, MB_PRECOMPOSED, bytes.data(),
                                      static_cast<int>(bytes.size()), nullptr, 0);
        if (n <= 0) return {};
        std::wstring text(static_cast<std::size_t>(n), L'\0');
        ::MultiByteToWideChar(0, MB_PRECOMPOSED, bytes.data(), static_cast<int>(bytes.size()),
                              text.data(), n);
        return fromWide(text.c_str());
    }

    std::uint32_t tickCount() override {
        return ::GetTickCount();
    }
    void sleep(std::uint32_t milliseconds) override {
        ::Sleep(milliseconds);
    }
    std::uint32_t currentThreadId() override {
        return ::GetCurrentThreadId();
    }
    std::uint32_t currentProcessId() override {
        return ::GetCurrentProcessId();
    }
    void seedRandom(std::uint32_t seed) override {
        std::srand(seed);
    }
    int random() override {
        return std::rand();
    }

    std::int32_t timeZoneBias() override {
        TIME_ZONE_INFORMATION tz{};
        ::GetTimeZoneInformation(&tz);
        return tz.Bias;
    }

    std::optional<Guid> createGuid() override {
        GUID g;
        if (FAILED(::CoCreateGuid(&g))) return std::nullopt;
        Guid out;
        out.data1 = g.Data1;
        out.data2 = g.Data2;
        out.data3 = g.Data3;
        for (int i = 0; i < 8; ++i)
            out.data4[i] = g.Data4[i];
        return out;
    }

    std::optional<std::u16string> knownFolder(KnownFolder folder) override {
        const KNOWNFOLDERID& id = folder == KnownFolder::LocalAppData     ? FOLDERID_LocalAppData
                                  : folder == KnownFolder::RoamingAppData ? FOLDERID_RoamingAppData
                                                                          : FOLDERID_Documents;
        PIDLIST_ABSOLUTE list = nullptr;
        if (FAILED(::SHGetKnownFolderIDList(id, 0x100, nullptr, &list))) return std::nullopt;
        ::CoTaskMemFree(list);
        PWSTR path = nullptr;
        if (FAILED(::SHGetKnownFolderPath(id, 0, nullptr, &path))) return std::nullopt;
        std::u16string out = fromWide(path);
        ::CoTaskMemFree(path);
        return out;
    }

    std::optional<std::u16string> systemDirectory() override {
        wchar_t buffer[MAX_PATH + 1];
        UINT n = ::GetSystemDirectoryW(buffer, MAX_PATH + 1);
        if (n == 0 || n > MAX_PATH) return std::nullopt;
        return fromWide(buffer);
    }

    std::uint32_t lastError() override {
        return ::GetLastError();
    }
    void setLastError(std::uint32_t code) override {
        ::SetLastError(code);
    }

    std::optional<std::u16string> errorMessage(std::uint32_t code) override {
        wchar_t* text = nullptr;
        DWORD n =
            ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
                             code, 0x400, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
        ScopedLocal holder(text);
        if (n == 0 || !text) return std::nullopt;
        return fromWide(text);
    }

    std::unique_ptr<NetApi> loadNetApi() override {
        ScopedModule module(::LoadLibraryW(L"Netapi32.dll"));
        if (!module) return nullptr;
        auto get = reinterpret_cast<NetGetDcNameFn>(
            reinterpret_cast<void*>(::GetProcAddress(module.get(), "NetGetDCName")));
        auto free = reinterpret_cast<NetApiBufferFreeFn>(
            reinterpret_cast<void*>(::GetProcAddress(module.get(), "NetApiBufferFree")));
        if (!get || !free) return nullptr;
        return std::make_unique<Win32NetApi>(module.release(), get, free);
    }

    std::unique_ptr<LoadedLibrary> loadLibrary(const std::u16string& name) override {
        HMODULE module = ::LoadLibraryW(wide(name));
        if (!module) return nullptr;
        return std::make_unique<Win32Library>(module);
    }

    int wideToUtf8(std::u16string_view text, char* out, int size) override {
        std::u16string terminated(text); // the conversion reads up to the terminator
        return ::WideCharToMultiByte(CP_UTF8, 0, wide(terminated), -1, out, size, nullptr,
                                     nullptr);
    }
};
} // namespace

System& Win32Platform::system() {
    static Win32System instance;
    return instance;
}

} // namespace platform::win32

namespace platform {
Platform& systemPlatform() {
    static win32::Win32Platform instance;
    return instance;
}
} // namespace platform
