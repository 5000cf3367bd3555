#pragma once

#include "umpd/LauncherStruct.h"
#include "umpd/SharedRecord.h"

#include <string>

// The domain controller's name, looked up by one process of the machine and shared
// with the others through DomainControllerData.
class DomainControllerLookup {
public:
    // Opens or creates the shared record; a failure leaves the look-up empty for good.
    DomainControllerLookup();
    // Empty when there is none, or when the shared record cannot be had.
    std::u16string lookup();

private:
    SharedRecord shared_;
    char16_t result_[260] = {};
};

// The process's one look-up: its record is set up once, by the thread-safe initialisation
// of a static, and kept for the life of the process.
std::u16string lookupDomainController();
