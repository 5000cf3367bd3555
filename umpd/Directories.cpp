#include "umpd/Directories.h"

#include "platform/Platform.h"
#include "umpd/DirectoryPath.h"
#include "umpd/SystemServices.h"

#include <optional>

namespace {
constexpr std::size_t pathChars = 260;

// Kept for the life of the process, as the driver directory does not move; no lock, as every
// caller is under the job lock.
std::optional<std::u16string>& cachedDriverDirectory() {
    static std::optional<std::u16string> text;
    return text;
}
} // namespace

std::u16string computeDriverDirectory() {
    auto directory = platform::current().spooler().driverDirectory();
    if (!directory) return {};
    if (isNt4()) return *directory + u"\\2\\";
    if (getOsMajorVersion() >= 5) return *directory + u"\\3\\";
    return *directory + u"\\";
}

void forgetDriverDirectory() {
    cachedDriverDirectory().reset();
}

bool getDriverDirectory(std::u16string& out, std::size_t size) {
    auto& cached = cachedDriverDirectory();
    if (!cached) {
        auto text = computeDriverDirectory();
        if (text.empty()) return false;
        cached = text;
    }
    if (cached->size() >= size) return false;
    out = *cached;
    return true;
}

bool getDriverFilePath(std::u16string& out, std::size_t size, std::u16string_view fileName) {
    std::u16string directory;
    if (!getDriverDirectory(directory, size)) return false;
    if (directory.size() + fileName.size() >= size) return false;
    out = directory + std::u16string(fileName);
    return true;
}

std::u16string getUserDataDirectory() {
    auto& system = platform::current().system();
    auto base = system.knownFolder(platform::KnownFolder::LocalAppData);
    if (!base || base->empty()) base = system.knownFolder(platform::KnownFolder::RoamingAppData);
    if (!base || base->empty()) return u"c:\\";
    auto directory = *base + u"\\Foliograph";
    if (directory.size() >= pathChars) return {};
    if (!platform::current().files().attributes(directory)) createDirectoryPath(directory);
    return directory;
}
