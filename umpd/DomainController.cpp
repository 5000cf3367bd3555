#include "umpd/DomainController.h"

#include "platform/Platform.h"
#include "umpd/SystemServices.h"

namespace {
constexpr std::uint8_t stateNotLookedUp = 0;
constexpr std::uint8_t stateLookingUp = 'w';
constexpr std::uint8_t stateReady = 'r';
constexpr std::uint32_t pollInterval = 876;
constexpr std::uint32_t pollLimit = 60000;
} // namespace

DomainControllerLookup::DomainControllerLookup() {
    shared_.map(isNt5OrLater() ? u"Local\\DomainControllerData" : u"DomainControllerData",
                sizeof(DomainControllerData));
}

std::u16string DomainControllerLookup::lookup() {
    if (!shared_.mapped()) return {};
    auto& system = platform::current().system();
    auto* data = reinterpret_cast<volatile DomainControllerData*>(shared_.view->data());
    auto* record = reinterpret_cast<DomainControllerData*>(shared_.view->data());
    if (data->state == stateLookingUp) {
        // Another process is at it; a dead one leaves 'w' behind, hence the limit.
        auto start = system.tickCount();
        while (data->state == stateLookingUp && system.tickCount() - start < pollLimit)
            system.sleep(pollInterval);
    } else if (data->state != stateReady) {
        shared_.writeMember(&DomainControllerData::state, stateLookingUp);
        if (auto netApi = system.loadNetApi()) {
            shared_.writeField(&DomainControllerData::domainController, u"");
            std::u16string name;
            if (netApi->getDcName(name) == platform::error::success)
                shared_.writeField(&DomainControllerData::domainController, name);
            // After the name, so that a reader that sees it ready sees the whole name; a
            // failure is remembered as an empty name.
            shared_.writeMember(&DomainControllerData::state, stateReady);
        } else {
            shared_.writeMember(&DomainControllerData::state, stateNotLookedUp);
        }
    }
    if (data->state != stateReady) return {};
    copyField(result_, fieldText(record->domainController));
    return result_;
}

std::u16string lookupDomainController() {
    static DomainControllerLookup process;
    return process.lookup();
}
