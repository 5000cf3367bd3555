#include "support/fake/FakeSecurity.h"

#include "platform/WideText.h"

namespace platform {

FakeSecurity::FakeSecurity(FakeCalls& calls) : calls_(calls) {
    accounts[u"anna"] = Sid{1, {0, 0, 0, 0, 0, 5}, {21, 1004336348, 1177238915, 682003330, 1001}};
}

SharedSecurity FakeSecurity::sharedObjectSecurity(bool lowIntegrity) {
    using Failure = SharedSecurityFailure;
    switch (failure) {
    case Failure::NoMemory:
    case Failure::Initialise:
    case Failure::OpenToAll:
        calls_.lastError = failureCode;
        return {nullptr, failure};
    default:
        break;
    }
    // A planned failure of the label counts only where a label is asked for.
    auto labelFailure = lowIntegrity ? failure : Failure::None;
    return {std::make_unique<FakeSharedSecurity>(lowIntegrity && labelFailure == Failure::None),
            labelFailure};
}

std::optional<Sid> FakeSecurity::lookupAccountSid(const std::u16string& systemName,
                                                  const std::u16string& account) {
    accountLookupSystems.push_back(systemName);
    if (calls_.failing(Call::LookupAccountName)) return std::nullopt;
    for (const auto& [name, sid] : accounts)
        if (equalsIgnoreCase(name, account)) return sid;
    calls_.lastError = 1332; // ERROR_NONE_MAPPED
    return std::nullopt;
}

} // namespace platform
