#include "platform/Platform.h"
#include "platform/fake/FakePlatform.h"

namespace platform {

// No native backend here yet: the job face runs over the in-memory system.
Platform& systemPlatform() {
    static FakePlatform instance;
    return instance;
}

} // namespace platform
