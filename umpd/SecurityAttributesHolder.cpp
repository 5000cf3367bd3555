#include "umpd/SecurityAttributesHolder.h"

#include "platform/Platform.h"
#include "umpd/SystemServices.h"

namespace {
using Failure = platform::SharedSecurityFailure;

// How each failure reaches the user: a box after a failure that leaves no security, debug
// text after a failed label. No memory at all goes unreported.
struct FailureReport {
    Failure failure;
    const char16_t* boxCaption;
    const char* debugText;
};

constexpr FailureReport failureReports[] = {
    {Failure::Initialise, u"InitializeSecurityDescriptor failed", nullptr},
    {Failure::OpenToAll, u"SetSecurityDescriptorDacl failed", nullptr},
    {Failure::LabelParse, nullptr, "ConvertStringSecurityDescriptorToSecurityDescriptor failed\n"},
    {Failure::LabelRead, nullptr, "GetSecurityDescriptorSacl failed\n"},
    {Failure::LabelApply, nullptr, "SetSecurityDescriptorSacl failed\n"},
};
} // namespace

platform::SecurityAttributes* makeSecurityAttributes(SecurityAttributesHolder& holder) {
    if (getPlatformId() == platformWindows) return nullptr;
    auto& os = platform::current();
    auto shared = os.security().sharedObjectSecurity(getOsMajorVersion() > 5);
    for (const auto& report : failureReports) {
        if (report.failure != shared.failure) continue;
        if (report.boxCaption)
            failureBox(report.boxCaption, platform::mbServiceNotification);
        else
            os.reporter().debugOutput(report.debugText);
    }
    holder.security = std::move(shared.security);
    if (!holder.security) return &holder.record; // unset: the system's default security
    // length is 8, not the record's size; the system has always taken it so.
    holder.record = {8, holder.security.get(), false};
    return &holder.record;
}
