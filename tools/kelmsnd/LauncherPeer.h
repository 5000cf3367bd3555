#pragma once

#include "platform/Platform.h"
#include "umpd/LauncherStruct.h"
#include "umpd/SharedRecord.h"

#include <memory>
#include <string>

// The launcher's side: it owns the request event, the alive mutex and the record, and
// answers each request on the answer event.
class LauncherPeer {
public:
    // base is the final base name, e.g. "Local\kelsend_anna".
    explicit LauncherPeer(std::u16string base);
    // False when the objects cannot be created (another launcher holds them).
    bool start();
    // Waits for the next request and copies the record; false when the wait fails.
    bool next(LauncherStruct& message, std::uint32_t timeout);
    // Signals the sender's answer event.
    bool answer();
    // The shared record as it stands; valid after a successful start.
    LauncherStruct& record() { return *reinterpret_cast<LauncherStruct*>(record_.view->data()); }

    static std::string describe(const LauncherStruct& message);

private:
    std::u16string base_;
    std::unique_ptr<platform::Event> request_;
    std::unique_ptr<platform::Mutex> alive_;
    SharedRecord record_;
};
