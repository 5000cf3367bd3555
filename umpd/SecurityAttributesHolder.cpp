#include "umpd/SecurityAttributesHolder.h"

#include "platform/Platform.h"
#include "umpd/SystemServices.h"

platform::SecurityAttributes* makeSecurityAttributes(SecurityAttributesHolder& holder) {
    if (getPlatformId() == platformWindows) return nullptr;
    auto& os = platform::current();
    auto& security = os.security();
    holder.descriptor = security.allocDescriptor(40);
    if (!holder.descriptor) return &holder.record;
    if (!security.initializeDescriptor(*holder.descriptor)) {
        failureBox(u"InitializeSecurityDescriptor failed", platform::mbServiceNotification);
        holder.descriptor.reset();
        return &holder.record;
    }
    if (!security.setNullDacl(*holder.descriptor)) {
        failureBox(u"SetSecurityDescriptorDacl failed", platform::mbServiceNotification);
        return &holder.record;
    }
    if (getOsMajorVersion() > 5) {
        auto& report = os.reporter();
        void* sacl = nullptr;
        holder.labelDescriptor = security.descriptorFromString(lowIntegrityLabel);
        if (!holder.labelDescriptor)
            report.debugOutput("ConvertStringSecurityDescriptorToSecurityDescriptor failed\n");
        else if (!security.getSacl(*holder.labelDescriptor, sacl))
            report.debugOutput("GetSecurityDescriptorSacl failed\n");
        else if (!security.setSacl(*holder.descriptor, sacl))
            report.debugOutput("SetSecurityDescriptorSacl failed\n");
    }
    // nLength is 8, not the record's size; the system has always taken it so.
    holder.record.length = 8;
    holder.record.descriptor = holder.descriptor->get();
    holder.record.inheritHandle = false;
    return &holder.record;
}
