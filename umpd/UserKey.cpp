#include "umpd/UserKey.h"

#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/DomainController.h"
#include "umpd/LauncherNames.h"
#include "umpd/PrinterConfig.h"
#include "umpd/SystemServices.h"

#include <cstdio>

std::u16string (*userKeyDomainController)() = lookupDomainController;

namespace {
constexpr std::size_t sidTextChars = 260;
constexpr std::size_t maxSubAuthorities = 15; // SID_MAX_SUB_AUTHORITIES

bool isValidSid(const platform::Sid& sid) {
    return sid.revision == 1 && sid.subAuthorities.size() <= maxSubAuthorities;
}

// Old systems: the user's key under HKEY_USERS, unless the site turned the look-up off.
std::unique_ptr<platform::RegistryKey> oldSystemHive(std::uint32_t access) {
    auto& registry = platform::current().registry();
    std::unique_ptr<platform::RegistryKey> product;
    auto machine = registry.root(platform::RegistryRoot::LocalMachine);
    if (machine->openSubKey(productKey, keyAccess::keyRead, product) == platform::error::success) {
        platform::RegistryValue value;
        auto rc = product->queryValue(u"DisableDomainControllerLookup", value, 0);
        // Its existence alone counts, whatever it holds.
        if (rc == platform::error::success || rc == platform::error::moreData)
            return registry.root(platform::RegistryRoot::CurrentUser);
    }
    auto sid = userSidText();
    if (!sid) return nullptr;
    std::unique_ptr<platform::RegistryKey> hive;
    if (registry.root(platform::RegistryRoot::Users)->openSubKey(*sid, access, hive) !=
        platform::error::success)
        return nullptr;
    return hive;
}
} // namespace

std::optional<std::u16string> sidText(const platform::Sid& sid) {
    if (sid.subAuthorities.size() * 24 + 56 > sidTextChars) {
        platform::current().system().setLastError(platform::error::insufficientBuffer);
        return std::nullopt;
    }
    char text[sidTextChars];
    int n = std::snprintf(text, sizeof text, "S-%lu-", 1ul);
    const auto& a = sid.authority;
    if (a[0] != 0 || a[1] != 0) {
        n += std::snprintf(text + n, sizeof text - n, "0x%02hx%02hx%02hx%02hx%02hx%02hx",
                           static_cast<unsigned short>(a[0]), static_cast<unsigned short>(a[1]),
                           static_cast<unsigned short>(a[2]), static_cast<unsigned short>(a[3]),
                           static_cast<unsigned short>(a[4]), static_cast<unsigned short>(a[5]));
    } else {
        unsigned long value = (static_cast<unsigned long>(a[2]) << 24) |
                              (static_cast<unsigned long>(a[3]) << 16) |
                              (static_cast<unsigned long>(a[4]) << 8) | a[5];
        n += std::snprintf(text + n, sizeof text - n, "%lu", value);
    }
    for (auto part : sid.subAuthorities)
        n += std::snprintf(text + n, sizeof text - n, "-%lu", static_cast<unsigned long>(part));
    return platform::fromUtf8(text);
}

std::optional<std::u16string> userSidText() {
    if (getPlatformId() == platformWindows) return std::nullopt;
    auto user = launcherUserName();
    if (user.empty()) return std::nullopt;
    auto sid = platform::current().security().lookupAccountSid(userKeyDomainController(), user);
    if (!sid || !isValidSid(*sid)) return std::nullopt;
    return sidText(*sid);
}

UserKey openUserKey(std::uint32_t access, const std::u16string* subkey) {
    auto& registry = platform::current().registry();
    std::unique_ptr<platform::RegistryKey> root;
    if (getPlatformId() == platformWindows || !registry.advapiLoads()) {
        root = registry.root(platform::RegistryRoot::CurrentUser);
    } else if (registry.hasOpenCurrentUser()) {
        // A caller that may not create keys gets the hive as asked, and no other road.
        if (registry.openCurrentUser(access | keyAccess::keyCreateSubKey, root) !=
                platform::error::success &&
            registry.openCurrentUser(access, root) != platform::error::success)
            return {};
    } else {
        root = oldSystemHive(access);
    }
    if (!root) return {};
    UserKey result;
    if (!subkey) {
        result.key = std::move(root);
        return result;
    }
    if (root->createSubKey(*subkey, access, result.key, result.disposition) !=
        platform::error::success)
        return {};
    result.root = std::move(root);
    return result;
}
