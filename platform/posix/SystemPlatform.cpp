#include "platform/Platform.h"

#include <cstdio>
#include <cstdlib>

namespace platform {

// No POSIX backend yet: here the job face runs only over a platform that is installed
// first, and the native library does not carry it.
Platform& systemPlatform() {
    std::fputs("kelumpd64: no platform backend for this system yet\n", stderr);
    std::abort();
}

} // namespace platform
