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

Platform* setCurrent(Platform* platform) {
    return installed.exchange(platform);
}

} // namespace platform
