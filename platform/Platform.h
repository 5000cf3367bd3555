#pragma once

#include "platform/Errors.h"
#include "platform/Files.h"
#include "platform/Kernel.h"
#include "platform/Processes.h"
#include "platform/Registry.h"
#include "platform/Reporter.h"
#include "platform/Security.h"
#include "platform/Spooler.h"
#include "platform/System.h"

namespace platform {

// Everything the job face asks of the operating system.
class Platform {
public:
    virtual ~Platform() = default;
    virtual Registry& registry() = 0;
    virtual Spooler& spooler() = 0;
    virtual Kernel& kernel() = 0;
    virtual Processes& processes() = 0;
    virtual Security& security() = 0;
    virtual System& system() = 0;
    virtual Reporter& reporter() = 0;
    virtual FileSystem& files() = 0;
};

// The platform in use: the system's own unless a test has put another in place.
Platform& current();
// Tests install a fake; null puts the system's own back. Gives what was installed before.
Platform* setCurrent(Platform* platform);

// The backend the build chose: win32 on Windows; elsewhere none yet, so a platform must
// be installed before the job face runs.
Platform& systemPlatform();

} // namespace platform
