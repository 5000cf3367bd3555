#pragma once

#include <memory>
#include <string>

namespace platform {

// A block holding a security descriptor; freed with its owner.
class SecurityDescriptor {
public:
    virtual ~SecurityDescriptor() = default; // LocalFree
    virtual void* get() = 0;
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
};

} // namespace platform
