#pragma once

#include "platform/Platform.h"
#include "support/fake/FakeCalls.h"
#include "support/fake/FakeFiles.h"
#include "support/fake/FakeKernel.h"
#include "support/fake/FakeProcesses.h"
#include "support/fake/FakeRegistry.h"
#include "support/fake/FakeReporter.h"
#include "support/fake/FakeSecurity.h"
#include "support/fake/FakeSpooler.h"
#include "support/fake/FakeSystem.h"

namespace platform {

// An operating system in memory for tests, one fake per interface, reached with the
// interface's own accessor. Any call listed in Call can be made to fail with a chosen
// error. Not thread-safe, except for the records of boxes and debug output.
class FakePlatform : public Platform, public FakeCalls {
public:
    FakePlatform();
    FakeRegistry& registry() override { return registry_; }
    FakeSpooler& spooler() override { return spooler_; }
    FakeKernel& kernel() override { return kernel_; }
    FakeProcesses& processes() override { return processes_; }
    FakeSecurity& security() override { return security_; }
    FakeSystem& system() override { return system_; }
    FakeReporter& reporter() override { return reporter_; }
    FakeFiles& files() override { return files_; }

private:
    FakeSystem system_;
    FakeRegistry registry_;
    FakeSpooler spooler_;
    FakeKernel kernel_;
    FakeProcesses processes_;
    FakeSecurity security_;
    FakeReporter reporter_;
    FakeFiles files_;
};

} // namespace platform
