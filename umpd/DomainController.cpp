#include "umpd/DomainController.h"

#include "platform/Platform.h"
#include "umpd/SystemServices.h"

namespace {
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
        data->state = stateLookingUp;
        if (auto netApi = system.loadNetApi()) {
            record->domainController[0] = u'\0';
            std::u16string name;
            if (netApi->getDcName(name) == platform::error::success)
                copyField(record->domainController, name);
            data->state = stateReady; // a failure is remembered as an empty name
        } else {
            data->state = 0;
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
