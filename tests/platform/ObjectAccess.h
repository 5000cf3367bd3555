#pragma once

// Who may open a shared object, as each system under test tells it.

#include <optional>
#include <ostream>

#ifdef _WIN32
#include "platform/win32/Windows.h"
#include <vector>
#endif

namespace testing_support {

struct ObjectAccess {
    bool openToAll = false;    // no access list: everyone may open it
    bool lowIntegrity = false; // labelled so that low-integrity processes may open it too
    bool operator==(const ObjectAccess&) const = default;
};

inline void PrintTo(const ObjectAccess& access, std::ostream* out) {
    *out << (access.openToAll ? "open to all" : "not open to all")
         << (access.lowIntegrity ? ", low integrity" : "");
}

#ifdef _WIN32
// The access of the object behind a handle opened with READ_CONTROL; closes the handle.
inline std::optional<ObjectAccess> systemObjectAccess(HANDLE h) {
    if (!h) return std::nullopt;
    DWORD needed = 0;
    SECURITY_INFORMATION what = DACL_SECURITY_INFORMATION | LABEL_SECURITY_INFORMATION;
    GetKernelObjectSecurity(h, what, nullptr, 0, &needed);
    std::vector<BYTE> buffer(needed + 1);
    bool read = GetKernelObjectSecurity(h, what, buffer.data(), needed, &needed);
    CloseHandle(h);
    BOOL present = FALSE, defaulted = FALSE;
    PACL dacl = nullptr, sacl = nullptr;
    if (!read || !GetSecurityDescriptorDacl(buffer.data(), &present, &dacl, &defaulted))
        return std::nullopt;
    ObjectAccess access;
    access.openToAll = present && !dacl;
    ACE_HEADER* ace = nullptr;
    if (GetSecurityDescriptorSacl(buffer.data(), &present, &sacl, &defaulted) && present && sacl &&
        GetAce(sacl, 0, reinterpret_cast<void**>(&ace)) &&
        ace->AceType == SYSTEM_MANDATORY_LABEL_ACE_TYPE) {
        auto* label = reinterpret_cast<SYSTEM_MANDATORY_LABEL_ACE*>(ace);
        auto* sid = reinterpret_cast<PSID>(&label->SidStart);
        access.lowIntegrity = label->Mask == SYSTEM_MANDATORY_LABEL_NO_WRITE_UP &&
                              *GetSidSubAuthority(sid, 0) == SECURITY_MANDATORY_LOW_RID;
    }
    return access;
}
#endif

} // namespace testing_support
