#pragma once

#include "platform/Kernel.h"
#include "platform/Security.h"

#include <memory>

// The security of every shared object: open to all, so that anyone may open it, and from
// major version 6 with a low-integrity label, so that sandboxed processes may too. Lives
// on the stack of whoever creates the object.
struct SecurityAttributesHolder {
    platform::SecurityAttributes record;
    std::unique_ptr<platform::ObjectSecurity> security;
};

// The holder's record, or null on platform id 1, which has no security.
platform::SecurityAttributes* makeSecurityAttributes(SecurityAttributesHolder& holder);
