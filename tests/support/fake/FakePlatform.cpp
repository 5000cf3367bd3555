#include "support/fake/FakePlatform.h"

namespace platform {

FakePlatform::FakePlatform()
    : system_(*this), registry_(*this), spooler_(*this), kernel_(*this, system_), processes_(*this),
      security_(*this), files_(*this) {}

} // namespace platform
