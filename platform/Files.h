#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

inline constexpr std::uint32_t fileAttributeDirectory = 0x10;
inline constexpr std::uint32_t fileAttributeNormal = 0x80;

class File {
public:
    virtual ~File() = default; // closes the handle
    virtual bool write(const void* data, std::uint32_t size, std::uint32_t& written) = 0;
};

class FileSystem {
public:
    virtual ~FileSystem() = default;
    // GetFileAttributesW; nullopt for INVALID_FILE_ATTRIBUTES.
    virtual std::optional<std::uint32_t> attributes(const std::u16string& path) = 0;
    virtual bool createDirectory(const std::u16string& path) = 0;
    // CreateFileW for writing, shared for reading, always created anew.
    virtual std::unique_ptr<File> createFile(const std::u16string& path) = 0;
    virtual std::optional<std::vector<std::uint8_t>> readFile(const std::u16string& path) = 0;
    // GetPrivateProfileSectionW into bufferChars characters: "key=value" lines.
    virtual std::vector<std::u16string> profileSection(const std::u16string& file,
                                                       const std::u16string& section,
                                                       std::size_t bufferChars) = 0;
    virtual std::uint32_t profileInt(const std::u16string& file, const std::u16string& section,
                                     const std::u16string& key, std::int32_t fallback) = 0;
};

} // namespace platform
