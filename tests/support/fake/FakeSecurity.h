#pragma once

#include "platform/Security.h"
#include "support/fake/FakeCalls.h"

#include <map>
#include <vector>

namespace platform {

// Shared-object security as the fake builds it: open to all, and maybe to low integrity.
class FakeSharedSecurity : public ObjectSecurity {
public:
    explicit FakeSharedSecurity(bool lowIntegrity) : lowIntegrity(lowIntegrity) {}
    const bool lowIntegrity;
};

// Security as a record of what was asked, with accounts by name.
class FakeSecurity : public Security {
public:
    explicit FakeSecurity(FakeCalls& calls);

    // Where every build of shared-object security stops; a failure that leaves no security
    // sets the last error to failureCode.
    SharedSecurityFailure failure = SharedSecurityFailure::None;
    std::uint32_t failureCode = error::accessDenied;
    std::map<std::u16string, Sid> accounts;           // by account name, compared without case
    std::vector<std::u16string> accountLookupSystems; // the system name of each look-up

    SharedSecurity sharedObjectSecurity(bool lowIntegrity) override;
    std::optional<Sid> lookupAccountSid(const std::u16string& systemName,
                                        const std::u16string& account) override;

private:
    FakeCalls& calls_;
};

} // namespace platform
