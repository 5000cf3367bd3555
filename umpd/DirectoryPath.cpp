#include "umpd/DirectoryPath.h"

#include "platform/Platform.h"
#include "umpd/NameMacros.h"

#include <vector>

namespace {
constexpr std::size_t pathChars = 260;

std::vector<std::u16string> splitAtSeparators(std::u16string_view path) {
    std::vector<std::u16string> parts;
    std::u16string part;
    for (char16_t c : path) {
        if (c == u'/' || c == u'\\') {
            if (!part.empty()) parts.push_back(std::move(part));
            part.clear();
        } else {
            part += c;
        }
    }
    if (!part.empty()) parts.push_back(std::move(part));
    return parts;
}
} // namespace

bool createDirectoryPath(const std::u16string& path) {
    auto& files = platform::current().files();
    auto text = untilNul(path);
    if (files.attributes(std::u16string(text))) return true;
    // The parts come from a copy of 260 characters.
    auto parts = splitAtSeparators(text.substr(0, cutLength(text, pathChars - 1)));
    if (parts.empty()) return false;
    std::u16string current = parts[0];
    for (std::size_t i = 1;; ++i) {
        auto attributes = files.attributes(current);
        if (!attributes)
            files.createDirectory(current); // a failure shows when the file is created
        else if (!(*attributes & platform::fileAttributeDirectory))
            return false;
        if (i == parts.size()) return true;
        current += u"/" + parts[i];
    }
}
