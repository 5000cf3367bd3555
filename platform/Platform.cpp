#include "platform/Platform.h"

#include <atomic>

namespace platform {

namespace {
std::atomic<Platform*> installed{nullptr};
} // namespace

Platform& current() {
    Platform* p = installed.load();
    return p ? *p : systemPlatform();
}

void setCurrent(Platform* platform) {
    installed.store(platform);
}

} // namespace platform
