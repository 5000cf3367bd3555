#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

namespace platform::win32 {

namespace {
class Win32Key : public RegistryKey {
public:
    explicit Win32Key(HKEY key) : key_(key), raw_(key) {}

    std::uint32_t queryValue(const std::u16string& name, RegistryValue& out,
                             std::size_t bufferSize) override {
        std::vector<std::uint8_t> data(bufferSize);
        DWORD type = 0;
        DWORD size = static_cast<DWORD>(bufferSize);
        LONG rc = ::RegQueryValueExW(raw_, wide(name), nullptr, &type, data.data(), &size);
        if (rc != ERROR_SUCCESS) return static_cast<std::uint32_t>(rc);
        data.resize(size);
        out.type = type;
        out.data = std::move(data);
        return error::success;
    }

    std::uint32_t setValue(const std::u16string& name, const RegistryValue& value) override {
        return static_cast<std::uint32_t>(::RegSetValueExW(raw_, wide(name), 0, value.type,
                                                           value.data.data(),
                                                           static_cast<DWORD>(value.data.size())));
    }

    std::uint32_t enumValue(std::uint32_t index, std::u16string& name,
                            RegistryValue& out) override {
        DWORD nameChars = 0, dataSize = 0;
        LONG rc = ::RegQueryInfoKeyW(raw_, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     nullptr, &nameChars, &dataSize, nullptr, nullptr);
        if (rc != ERROR_SUCCESS) return static_cast<std::uint32_t>(rc);
        std::wstring nameBuffer(nameChars + 1, L'\0');
        std::vector<std::uint8_t> data(dataSize + 2);
        DWORD nameLength = nameChars + 1, size = dataSize + 2, type = 0;
        rc = ::RegEnumValueW(raw_, index, nameBuffer.data(), &nameLength, nullptr, &type,
                             data.data(), &size);
        if (rc != ERROR_SUCCESS) return static_cast<std::uint32_t>(rc);
        name = fromWide(nameBuffer.c_str());
        data.resize(size);
        out.type = type;
        out.data = std::move(data);
        return error::success;
    }

    std::uint32_t valueCount(std::uint32_t& count) override {
        DWORD values = 0;
        LONG rc = ::RegQueryInfoKeyW(raw_, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     &values, nullptr, nullptr, nullptr, nullptr);
        count = values;
        return static_cast<std::uint32_t>(rc);
    }

    std::uint32_t createSubKey(const std::u16string& path, std::uint32_t access,
                               std::unique_ptr<RegistryKey>& key,
                               std::uint32_t& disposition) override {
        HKEY sub = nullptr;
        DWORD how = 0;
        LONG rc = ::RegCreateKeyExW(raw_, wide(path), 0, nullptr, 0, access, nullptr, &sub, &how);
        if (rc != ERROR_SUCCESS) return static_cast<std::uint32_t>(rc);
        disposition = how;
        key = std::make_unique<Win32Key>(sub);
        return error::success;
    }

    std::uint32_t openSubKey(const std::u16string& path, std::uint32_t access,
                             std::unique_ptr<RegistryKey>& key) override {
        HKEY sub = nullptr;
        LONG rc = ::RegOpenKeyExW(raw_, wide(path), 0, access, &sub);
        if (rc != ERROR_SUCCESS) return static_cast<std::uint32_t>(rc);
        key = std::make_unique<Win32Key>(sub);
        return error::success;
    }

private:
    ScopedKey key_; // closes all but the predefined roots
    HKEY raw_;
};

using RegOpenCurrentUserFn = LONG(WINAPI*)(REGSAM, PHKEY);

RegOpenCurrentUserFn regOpenCurrentUser() {
    HMODULE advapi = ::GetModuleHandleW(L"Advapi32.DLL");
    if (!advapi) advapi = ::LoadLibraryW(L"Advapi32.DLL"); // stays loaded with the process
    if (!advapi) return nullptr;
    return reinterpret_cast<RegOpenCurrentUserFn>(
        reinterpret_cast<void*>(::GetProcAddress(advapi, "RegOpenCurrentUser")));
}

class Win32Registry : public Registry {
public:
    std::unique_ptr<RegistryKey> root(RegistryRoot root) override {
        switch (root) {
        case RegistryRoot::CurrentUser:
            return std::make_unique<Win32Key>(HKEY_CURRENT_USER);
        case RegistryRoot::LocalMachine:
            return std::make_unique<Win32Key>(HKEY_LOCAL_MACHINE);
        case RegistryRoot::Users:
            break;
        }
        return std::make_unique<Win32Key>(HKEY_USERS);
    }

    bool advapiLoads() override {
        if (::GetModuleHandleW(L"Advapi32.DLL")) return true;
        return ::LoadLibraryW(L"Advapi32.DLL") != nullptr; // stays loaded with the process
    }

    bool hasOpenCurrentUser() override { return regOpenCurrentUser() != nullptr; }

    std::uint32_t openCurrentUser(std::uint32_t access,
                                  std::unique_ptr<RegistryKey>& key) override {
        auto open = regOpenCurrentUser();
        if (!open) return ERROR_PROC_NOT_FOUND;
        HKEY user = nullptr;
        LONG rc = open(access, &user);
        if (rc != ERROR_SUCCESS) return static_cast<std::uint32_t>(rc);
        key = std::make_unique<Win32Key>(user);
        return error::success;
    }
};
} // namespace

Registry& Win32Platform::registry() {
    static Win32Registry instance;
    return instance;
}

} // namespace platform::win32
