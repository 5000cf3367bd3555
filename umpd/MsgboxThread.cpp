#include "umpd/MsgboxThread.h"

#include "platform/Platform.h"
#include "platform/WideText.h"

#include <mutex>
#include <vector>

namespace {
// Every box's object, reachable for the life of the process: a box may still be up when
// the process ends, so nothing here is ever destroyed.
struct Boxes {
    std::mutex lock;
    std::vector<MsgboxThread*> all;
};

Boxes& boxes() {
    static auto* kept = new Boxes;
    return *kept;
}
} // namespace

void MsgboxThread::show(std::u16string_view text, std::u16string_view caption,
                        std::uint32_t flags) {
    auto* box = new MsgboxThread(text, caption, flags);
    {
        std::lock_guard guard(boxes().lock);
        boxes().all.push_back(box);
    }
    auto thread = platform::current().processes().startThread([box] { box->run(); });
    if (!thread) {
        // Without a thread the words still reach a debugger.
        platform::current().reporter().debugOutput(
            platform::toUtf8(box->caption + u": " + box->text + u"\n"));
        return;
    }
    box->threadId = thread->id();
    box->thread = std::move(thread);
}

std::uint32_t MsgboxThread::run() {
    platform::current().reporter().messageBox(text, caption, flags);
    return 0;
}
