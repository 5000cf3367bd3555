#include "umpd/LauncherNames.h"

#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/SystemServices.h"

std::u16string launcherUserName() {
    auto& system = platform::current().system();
    if (auto name = system.userName(260)) return *name;
    return system.environment(u"USERNAME").value_or(u"");
}

namespace {
std::u16string base(std::u16string_view prefix, std::u16string_view baseWord) {
    return std::u16string(prefix) + std::u16string(baseWord) + u"_" + launcherUserName();
}
} // namespace

std::u16string plainLauncherBase(std::u16string_view baseWord) {
    return base(isNt5OrLater() ? u"Local\\" : u"", baseWord);
}

std::u16string sessionLauncherBase(std::u16string_view baseWord, std::uint32_t sessionId) {
    return base(u"Session\\" + platform::fromUtf8(std::to_string(sessionId)) + u"\\", baseWord);
}

std::u16string oldVersionLauncherBase(std::u16string_view baseWord) {
    return base(isNt5OrLater() ? u"Global\\" : u"", baseWord);
}
