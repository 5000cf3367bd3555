#include "LauncherPeer.h"

#include "platform/WideText.h"
#include "umpd/SecurityAttributesHolder.h"
#include "umpd/SystemServices.h"

#include <cstdio>
#include <cstring>

LauncherPeer::LauncherPeer(std::u16string base) : base_(std::move(base)) {}

bool LauncherPeer::start() {
    auto& kernel = platform::current().kernel();
    SecurityAttributesHolder holder;
    auto* attributes = makeSecurityAttributes(holder);
    request_ = kernel.createEvent(attributes, false, false, base_ + u"_event");
    if (!request_ || !record_.map(base_ + u"_sm", sizeof(LauncherStruct))) return false;
    // The mutex last: senders take it as the sign that everything else is there.
    alive_ = kernel.createMutex(attributes, true, base_ + u"_mutex");
    return alive_ != nullptr;
}

bool LauncherPeer::next(LauncherStruct& message, std::uint32_t timeout) {
    if (request_->wait(timeout) != platform::WaitResult::Signalled) return false;
    std::memcpy(&message, &record(), sizeof message);
    return true;
}

bool LauncherPeer::answer() {
    auto event =
        platform::current().kernel().openEvent(platform::eventAllAccess, base_ + u"_event_end");
    return event && event->set();
}

// One line of fields, then the bytes this side's senders may write (offsets 4 to 2084) in hex.
std::string LauncherPeer::describe(const LauncherStruct& m) {
    std::string out = "command=" + platform::toUtf8(fieldText(m.command)) +
                      "|printerName=" + platform::toUtf8(fieldText(m.printerName)) +
                      "|filename=" + platform::toUtf8(fieldText(m.filename)) +
                      "|docName=" + platform::toUtf8(fieldText(m.docName)) + "\n";
    auto* bytes = reinterpret_cast<const std::uint8_t*>(&m);
    char hex[3];
    for (std::size_t i = offsetof(LauncherStruct, command);
         i < offsetof(LauncherStruct, launcherOwned); ++i) {
        std::snprintf(hex, sizeof hex, "%02x", bytes[i]);
        out += hex;
    }
    return out + "\n";
}
