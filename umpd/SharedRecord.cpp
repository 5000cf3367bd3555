#include "umpd/SharedRecord.h"

#include "platform/Platform.h"
#include "umpd/SecurityAttributesHolder.h"

bool SharedRecord::map(const std::u16string& name, std::size_t size) {
    auto& kernel = platform::current().kernel();
    created = false;
    mapping = kernel.openFileMapping(platform::fileMapAllAccess, name);
    if (!mapping) {
        SecurityAttributesHolder holder;
        mapping = kernel.createFileMapping(makeSecurityAttributes(holder), size, name);
        if (!mapping) return false;
        created = true;
    }
    view = mapping->mapView(platform::fileMapReadWrite);
    if (!view) {
        unmap();
        return false;
    }
    return true;
}

void SharedRecord::unmap() {
    view.reset();
    mapping.reset();
    created = false;
}
