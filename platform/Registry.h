#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

enum class RegistryRoot { CurrentUser, LocalMachine, Users };

namespace regtype {
inline constexpr std::uint32_t string = 1;       // REG_SZ
inline constexpr std::uint32_t expandString = 2; // REG_EXPAND_SZ
inline constexpr std::uint32_t dword = 4;        // REG_DWORD
} // namespace regtype

inline constexpr std::uint32_t regCreatedNewKey = 1;
inline constexpr std::uint32_t regOpenedExistingKey = 2;

struct RegistryValue {
    std::uint32_t type = 0;
    std::vector<std::uint8_t> data; // as stored: REG_SZ in 16-bit units with its NUL
    bool operator==(const RegistryValue&) const = default;
};

// Typed helpers for the stored forms.
RegistryValue stringValue(const std::u16string& text);
RegistryValue dwordValue(std::uint32_t value);
// The text of a (expandable) string value up to its first NUL; nullopt for other types.
std::optional<std::u16string> valueText(const RegistryValue& value);
std::optional<std::uint32_t> valueDword(const RegistryValue& value);

class RegistryKey {
public:
    virtual ~RegistryKey() = default;
    // Every operation returns a system error code (error::success on success).
    // A value larger than bufferSize bytes gives error::moreData and no data.
    virtual std::uint32_t queryValue(const std::u16string& name, RegistryValue& out,
                                     std::size_t bufferSize) = 0;
    virtual std::uint32_t setValue(const std::u16string& name, const RegistryValue& value) = 0;
    // Values in the key's own order; error::noMoreItems past the end.
    virtual std::uint32_t enumValue(std::uint32_t index, std::u16string& name,
                                    RegistryValue& out) = 0;
    virtual std::uint32_t valueCount(std::uint32_t& count) = 0;
    // RegCreateKeyExW below this key; disposition is regCreatedNewKey or regOpenedExistingKey.
    virtual std::uint32_t createSubKey(const std::u16string& path, std::uint32_t access,
                                       std::unique_ptr<RegistryKey>& key,
                                       std::uint32_t& disposition) = 0;
    virtual std::uint32_t openSubKey(const std::u16string& path, std::uint32_t access,
                                     std::unique_ptr<RegistryKey>& key) = 0;
};

class Registry {
public:
    virtual ~Registry() = default;
    // A root as a key; a predefined key is never really closed.
    virtual std::unique_ptr<RegistryKey> root(RegistryRoot root) = 0;
    // Whether "Advapi32.DLL" loads at all; without it there is no RegOpenCurrentUser either.
    virtual bool advapiLoads() = 0;
    // RegOpenCurrentUser, looked up at run time: false when the system lacks it.
    virtual bool hasOpenCurrentUser() = 0;
    virtual std::uint32_t openCurrentUser(std::uint32_t access,
                                          std::unique_ptr<RegistryKey>& key) = 0;
};

} // namespace platform
