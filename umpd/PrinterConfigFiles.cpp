// The files around a printer's settings: the site's kelconf.ini, read, and the old driver's
// kelcfg.1, written.

#include "platform/Platform.h"
#include "umpd/Directories.h"
#include "umpd/PrinterConfig.h"

#include <limits>

namespace {
constexpr std::size_t pathChars = 260;
constexpr std::size_t sectionChars = 50000; // a buffer of 100000 bytes
const char16_t* const configFileName = u"kelconf.ini";

// The driver directory's kelconf.ini, if its path stays below 260 characters.
bool configFilePath(std::u16string& path) {
    std::u16string directory;
    if (!getDriverDirectory(directory, pathChars)) return false;
    if (directory.size() + 11 >= pathChars) return false;
    path = directory + configFileName;
    return true;
}

bool allDigits(std::u16string_view text) {
    for (char16_t c : text)
        if (c < u'0' || c > u'9') return false;
    return !text.empty();
}

// A row of digits as a 32-bit value; more than it holds is its largest.
std::uint32_t digitsValue(std::u16string_view digits) {
    std::uint64_t value = 0;
    for (char16_t c : digits) {
        value = value * 10 + (c - u'0');
        if (value > std::numeric_limits<std::uint32_t>::max())
            return std::numeric_limits<std::uint32_t>::max();
    }
    return static_cast<std::uint32_t>(value);
}
} // namespace

bool PrinterConfig::importConfigFile(bool writeToRegistry, const std::u16string* section) {
    std::u16string path;
    if (!configFilePath(path)) return false;
    std::u16string name = section ? *section : currentName();
    if (name.empty()) return false;
    for (auto& c : name)
        if (c == u'\\') c = u',';
    auto lines = platform::current().files().profileSection(path, name, sectionChars);
    if (lines.empty()) return false;
    for (const auto& line : lines) {
        auto eq = line.find(u'=');
        if (eq == std::u16string::npos || eq + 1 == line.size()) continue;
        auto key = line.substr(0, eq);
        auto value = line.substr(eq + 1);
        if (!settings.set(key, value))
            platform::current().reporter().debugOutputW(u"Help!! too many parms \n");
        if (!writeToRegistry) continue;
        auto printerKey = openPrinterKey(keyAccess::keySetValue);
        if (!printerKey) continue;
        printerKey.get()->setValue(key, allDigits(value) ? platform::dwordValue(digitsValue(value))
                                                         : platform::stringValue(value));
    }
    return true;
}

void PrinterConfig::applyOverrideFile() {
    std::u16string path;
    if (!configFilePath(path)) return;
    if (platform::current().files().profileInt(path, u"init", u"overrideUserSettings", 0) == 0)
        return;
    const std::u16string init = u"init";
    importConfigFile(true, &init);
    // The map is loaded after this, so the file reaches it through the registry.
    importConfigFile(true, nullptr);
}

bool PrinterConfig::copyNameValuesToPrinterDriverConfigFile() {
    static const char16_t* const driverSettings[] = {
        u"resolution",       u"PrinterData4",      u"pdfTemplate", u"pdfTemplateOnTop", u"imageDPI",
        u"jpegImageQuality", u"watermarkFontName", u"watermark",   u"watermarkFontSize"};
    std::u16string text;
    for (const auto& [key, value] : settings.entries()) {
        if (key.empty() || value.empty()) continue;
        for (const auto* wanted : driverSettings) {
            if (key == wanted) {
                text += key + u"=" + value + u"&";
                break;
            }
        }
    }
    auto& os = platform::current();
    auto directory = os.system().systemDirectory();
    if (!directory) return false;
    auto file = os.files().createFile(*directory + u"\\kelcfg.1");
    if (!file) return false;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() * 2);
    for (char16_t c : text) {
        bytes.push_back(static_cast<std::uint8_t>(c & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(c >> 8));
    }
    std::uint32_t written = 0;
    return file->write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), written) &&
           written == bytes.size();
}
