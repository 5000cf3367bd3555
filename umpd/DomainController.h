#pragma once

#include "umpd/LauncherStruct.h"
#include "umpd/SharedRecord.h"

#include <string>

// The domain controller's name, looked up by one process of the machine and shared
// with the others through DomainControllerData.
class DomainControllerLookup {
public:
    // Empty when there is none, or when the shared record cannot be had.
    std::u16string lookup();

private:
    bool ready();
    SharedRecord shared_;
    bool tried_ = false;
    std::u16string result_;
};

// The process's one look-up, kept for the life of the process.
std::u16string lookupDomainController();
