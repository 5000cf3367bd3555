#pragma once

#include "platform/Platform.h"

namespace platform::win32 {

// The real Windows API behind the platform interfaces. The system holds all the state,
// so each interface is one object for the process, made in the file named after it.
class Win32Platform : public Platform {
public:
    Registry& registry() override;
    Spooler& spooler() override;
    Kernel& kernel() override;
    Processes& processes() override;
    Security& security() override;
    System& system() override;
    Reporter& reporter() override;
    FileSystem& files() override;
};

// The security descriptor behind security this backend built.
void* nativeDescriptor(const ObjectSecurity& security);

} // namespace platform::win32
