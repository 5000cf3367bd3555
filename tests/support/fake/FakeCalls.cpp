#include "support/fake/FakeCalls.h"

namespace platform {

void FakeCalls::fail(Call call, std::uint32_t code, int times, int skip) {
    failures_[call] = Failure{code, times, skip};
}

void FakeCalls::clearFailures() {
    failures_.clear();
}

bool FakeCalls::failing(Call call) {
    ++calls_[static_cast<int>(call)];
    auto it = failures_.find(call);
    if (it == failures_.end() || it->second.times == 0) return false;
    if (it->second.skip > 0) {
        --it->second.skip;
        return false;
    }
    if (it->second.times > 0) --it->second.times;
    lastError = it->second.code;
    return true;
}

} // namespace platform
