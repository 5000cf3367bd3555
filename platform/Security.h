#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// A block holding a security descriptor; freed with its owner.
class SecurityDescriptor {
public:
    virtual ~SecurityDescriptor() = default; // LocalFree
    virtual void* get() = 0;
};

// A security identifier, through the SID accessors.
struct Sid {
    std::uint8_t revision = 0;
    std::array<std::uint8_t, 6> authority{};
    std::vector<std::uint32_t> subAuthorities;
};

class Security {
public:
    virtual ~Security() = default;
    // LocalAlloc(LPTR, size); null on failure.
    virtual std::unique_ptr<SecurityDescriptor> allocDescriptor(std::size_t size) = 0;
    virtual bool initializeDescriptor(SecurityDescriptor& descriptor) = 0;
    // SetSecurityDescriptorDacl(descriptor, TRUE, NULL, FALSE).
    virtual bool setNullDacl(SecurityDescriptor& descriptor) = 0;
    // ConvertStringSecurityDescriptorToSecurityDescriptorA from "Advapi32.dll", revision 1.
    virtual std::unique_ptr<SecurityDescriptor> descriptorFromString(const std::string& sddl) = 0;
    // GetSecurityDescriptorSacl: false if it fails or there is none; acl may stay null.
    virtual bool getSacl(SecurityDescriptor& descriptor, void*& acl) = 0;
    // SetSecurityDescriptorSacl(descriptor, TRUE, acl, FALSE).
    virtual bool setSacl(SecurityDescriptor& descriptor, void* acl) = 0;
    // LookupAccountNameW on systemName (empty: this machine), once for the sizes and once
    // for the SID, which must pass IsValidSid; nullopt otherwise, with lastError() set.
    virtual std::optional<Sid> lookupAccountSid(const std::u16string& systemName,
                                                const std::u16string& account) = 0;
};

} // namespace platform
