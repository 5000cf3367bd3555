#pragma once

#include "platform/Registry.h"
#include "platform/Security.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace keyAccess {
inline constexpr std::uint32_t keyQueryValue = 1;
inline constexpr std::uint32_t keySetValue = 2;
inline constexpr std::uint32_t keyCreateSubKey = 4;
inline constexpr std::uint32_t keyRead = 0x20019;
} // namespace keyAccess

// A key of the user's hive with the root it was made under; both close with the holder.
struct UserKey {
    platform::RegistryKey* get() const { return key.get(); }
    explicit operator bool() const { return key != nullptr; }
    bool created() const { return disposition == platform::regCreatedNewKey; }

    std::unique_ptr<platform::RegistryKey> key; // the root itself when no subkey was asked
    std::uint32_t disposition = 0;
    std::unique_ptr<platform::RegistryKey> root;
};

// The hive of the user the job runs for, which under the print service is not simply the
// current user's, then subkey below it, created if missing. Empty when it cannot be had.
UserKey openUserKey(std::uint32_t access, const std::u16string* subkey);

// "S-1-..." of the user, for the HKEY_USERS road of systems without RegOpenCurrentUser.
std::optional<std::u16string> userSidText();
// The text of a SID; nullopt, with the last error 122, when it has too many parts for the
// 260 characters it must fit in.
std::optional<std::u16string> sidText(const platform::Sid& sid);

// The domain controller the SID look-up asks; tests put a look-up of their own.
extern std::u16string (*userKeyDomainController)();
