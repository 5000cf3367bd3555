#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

namespace platform::win32 {

namespace {
class Win32File : public File {
public:
    explicit Win32File(HANDLE h) : handle_(h) {}
    bool write(const void* data, std::uint32_t size, std::uint32_t& written) override {
        DWORD n = 0;
        BOOL ok = ::WriteFile(handle_.get(), data, size, &n, nullptr);
        written = n;
        return ok != FALSE;
    }

private:
    ScopedKernelHandle handle_;
};

class Win32FileSystem : public FileSystem {
public:
    std::optional<std::uint32_t> attributes(const std::u16string& path) override {
        DWORD a = ::GetFileAttributesW(wide(path));
        if (a == INVALID_FILE_ATTRIBUTES) return std::nullopt;
        return a;
    }

    bool createDirectory(const std::u16string& path) override {
        return ::CreateDirectoryW(wide(path), nullptr) != FALSE;
    }

    std::unique_ptr<File> createFile(const std::u16string& path) override {
        HANDLE h = ::CreateFileW(wide(path), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
        if (h == INVALID_HANDLE_VALUE) return nullptr;
        return std::make_unique<Win32File>(h);
    }

    std::optional<std::vector<std::uint8_t>> readFile(const std::u16string& path) override {
        ScopedKernelHandle h(::CreateFileW(wide(path), GENERIC_READ,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!h) return std::nullopt;
        std::vector<std::uint8_t> bytes;
        std::uint8_t chunk[4096];
        DWORD n = 0;
        while (::ReadFile(h.get(), chunk, sizeof chunk, &n, nullptr) && n > 0)
            bytes.insert(bytes.end(), chunk, chunk + n);
        return bytes;
    }

    std::vector<std::u16string> profileSection(const std::u16string& file,
                                               const std::u16string& section,
                                               std::size_t bufferChars) override {
        std::vector<std::u16string> lines;
        if (bufferChars < 2) return lines;
        std::wstring buffer(bufferChars, L'\0');
        DWORD n = ::GetPrivateProfileSectionW(wide(section), buffer.data(),
                                              static_cast<DWORD>(bufferChars), wide(file));
        for (DWORD i = 0; i < n && buffer[i];) {
            std::u16string line = fromWide(buffer.c_str() + i);
            i += static_cast<DWORD>(line.size()) + 1;
            lines.push_back(std::move(line));
        }
        return lines;
    }

    std::uint32_t profileInt(const std::u16string& file, const std::u16string& section,
                             const std::u16string& key, std::int32_t fallback) override {
        return ::GetPrivateProfileIntW(wide(section), wide(key), fallback, wide(file));
    }
};
} // namespace

FileSystem& Win32Platform::files() {
    static Win32FileSystem instance;
    return instance;
}

} // namespace platform::win32
