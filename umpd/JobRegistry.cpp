#include "umpd/JobRegistry.h"

#include "umpd/SystemServices.h"

#include "umpd/UmDriver.h"

#include <mutex>
#include <unordered_set>

namespace {
struct Registry {
    std::mutex lock;
    std::unordered_set<const void*> jobs;
};

// Never destroyed: a job may outlive the statics of the process.
Registry& registry() {
    static auto* kept = new Registry;
    return *kept;
}
} // namespace

void registerJob(UmDriver* job) {
    std::lock_guard guard(registry().lock);
    registry().jobs.insert(job);
}

void forgetJob(UmDriver* job) {
    std::lock_guard guard(registry().lock);
    registry().jobs.erase(job);
}

UmDriver* findJob(const void* pointer) {
    if (!pointer) return nullptr;
    {
        std::lock_guard guard(registry().lock);
        if (!registry().jobs.count(pointer)) return nullptr;
    }
    auto* job = static_cast<UmDriver*>(const_cast<void*>(pointer));
    return job->good() ? job : nullptr;
}

UmDriver* checkedJob(const void* pointer, JobNeed need, const char* failure) {
    auto* job = findJob(pointer);
    if (job && (need == JobNeed::Magic || job->ready())) return job;
    errorBox("%s", failure);
    return nullptr;
}
