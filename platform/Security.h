#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// The security an object is created with, as the backend builds it; the job face only
// holds it and hands it to the kernel's create calls.
class ObjectSecurity {
public:
    virtual ~ObjectSecurity() = default;
};

// Where building the security of a shared object stopped. The first three leave no
// security, so the object gets the system's default; a failed label leaves the object
// open to all, without the label.
enum class SharedSecurityFailure {
    None,
    NoMemory,   // no room for the security at all
    Initialise, // it could not be set up
    OpenToAll,  // the access list that lets everyone in could not be set
    LabelParse, // the low-integrity label could not be made
    LabelRead,  // nor read out of what was made
    LabelApply, // nor applied
};

struct SharedSecurity {
    std::unique_ptr<ObjectSecurity> security; // null after the first three failures
    SharedSecurityFailure failure = SharedSecurityFailure::None;
};

// A security identifier, as its parts.
struct Sid {
    std::uint8_t revision = 0;
    std::array<std::uint8_t, 6> authority{};
    std::vector<std::uint32_t> subAuthorities;
};

class Security {
public:
    virtual ~Security() = default;
    // Security for an object that the processes of every user and session share: everyone
    // may open it, and with lowIntegrity sandboxed (low-integrity) processes may too. When
    // it gives no security, lastError() tells why.
    virtual SharedSecurity sharedObjectSecurity(bool lowIntegrity) = 0;
    // The SID of an account on systemName (empty: this machine); nullopt when there is
    // none, with lastError() set.
    virtual std::optional<Sid> lookupAccountSid(const std::u16string& systemName,
                                                const std::u16string& account) = 0;
};

} // namespace platform
