// The registry side of a printer's settings.

#include "platform/Platform.h"
#include "umpd/Directories.h"
#include "umpd/PrinterConfig.h"
#include "umpd/SystemServices.h"

#include <cstring>

namespace {
constexpr std::size_t keyPathChars = 260;

// "Software\Foliograph\<name>" with "\" read as ",", as long as 260 characters hold.
std::u16string printerKeyPath(const std::u16string& name) {
    std::u16string path = productKey;
    for (char16_t c : name) {
        if (path.size() >= keyPathChars - 1) break;
        path += c == u'\\' ? u',' : c;
    }
    return path;
}

// RegQueryValueExW into a 32-bit variable: what the value holds overwrites it, up to 4 bytes.
std::uint32_t queryDword(UserKey& key, std::u16string_view name, std::uint32_t& out) {
    platform::RegistryValue value;
    auto rc = key.get()->queryValue(std::u16string(name), value, 4);
    if (rc == platform::error::success)
        std::memcpy(&out, value.data.data(), value.data.size() < 4 ? value.data.size() : 4);
    return rc;
}
} // namespace

UserKey PrinterConfig::openPrinterKey(std::uint32_t access) {
    auto name = currentName();
    auto path = printerKeyPath(name);
    auto key = openUserKey(access, &path);
    // Even a read makes the key of a new printer, and so lays its defaults.
    if (key && key.created() && !name.empty()) initialiseDefaults();
    return key;
}

bool PrinterConfig::loadSettings() {
    auto key = openPrinterKey(keyAccess::keyRead);
    if (!key) return false;
    std::uint32_t count = 0;
    if (key.get()->valueCount(count) != platform::error::success) return false;
    settings.clear();
    for (std::uint32_t i = 0; i < count; ++i) {
        std::u16string name;
        platform::RegistryValue value;
        if (key.get()->enumValue(i, name, value) != platform::error::success || name.empty())
            continue;
        if (auto number = platform::valueDword(value))
            settings.setInt(name, static_cast<std::int32_t>(*number));
        else if (value.type == platform::regtype::string)
            settings.set(name, *platform::valueText(value));
    }
    return true;
}

bool PrinterConfig::setIntSetting(std::u16string_view name, std::int32_t value) {
    auto key = openPrinterKey(keyAccess::keySetValue);
    if (!key) return false;
    if (key.get()->setValue(std::u16string(name), platform::dwordValue(static_cast<std::uint32_t>(
                                                      value))) != platform::error::success)
        return false;
    settings.setInt(name, value);
    return true;
}

bool PrinterConfig::setStringSetting(std::u16string_view name, std::u16string_view value) {
    auto key = openPrinterKey(keyAccess::keySetValue);
    if (!key) return false;
    auto text = std::u16string(value.substr(0, value.find(u'\0')));
    if (key.get()->setValue(std::u16string(name), platform::stringValue(text)) !=
        platform::error::success)
        return false;
    settings.set(name, text);
    return true;
}

bool PrinterConfig::readDwordSetting(std::u16string_view name, std::uint32_t& out,
                                     std::uint32_t fallback) {
    auto key = openPrinterKey(keyAccess::keyRead);
    if (!key) return false;
    out = fallback;
    auto rc = queryDword(key, name, out);
    return rc == platform::error::success || rc == platform::error::fileNotFound;
}

std::uint32_t PrinterConfig::readSessionId(std::uint32_t fallback) {
    const std::u16string product = productKey;
    auto key = openUserKey(keyAccess::keyRead, &product);
    std::uint32_t id = fallback;
    if (key) queryDword(key, u"sessionId", id);
    return id;
}

bool PrinterConfig::readDoPrint(std::uint32_t& doPrint) {
    doPrint = 0;
    auto key = openPrinterKey(keyAccess::keyRead);
    if (!key) return false;
    auto rc = queryDword(key, u"DoPrint", doPrint);
    return (rc == platform::error::success || rc == platform::error::fileNotFound) && doPrint != 0;
}

void PrinterConfig::initialiseDefaults() {
    {
        const std::u16string product = productKey;
        auto key = openUserKey(keyAccess::keyQueryValue | keyAccess::keySetValue, &product);
        if (key)
            key.get()->setValue(u"printerName",
                                platform::stringValue(printerName.value_or(currentName())));
    }
    setIntSetting(u"NextAction", 3);
    setIntSetting(u"SaveFilenameAction", 3);
    auto dataDirectory = getUserDataDirectory();
    setStringSetting(u"DefaultSaveDir", dataDirectory);
    auto documents = platform::current().system().knownFolder(platform::KnownFolder::Documents);
    auto lastDir = documents && !documents->empty() ? *documents : dataDirectory;
    if (!lastDir.empty()) setStringSetting(u"LastDir", lastDir);
    std::u16string driverDirectory;
    if (getDriverDirectory(driverDirectory, keyPathChars)) {
        // The two %s stay for the viewer's caller to fill.
        auto command = driverDirectory + u"kelview.exe" + u" -nav=\"%s\" -docname=\"%s\"";
        if (command.size() < keyPathChars) setStringSetting(u"ExecCmdLine", command);
    }
    setStringSetting(u"DefaultSaveFilename", u"{DOC}.pdf");
    setIntSetting(u"resIndex", 3);
    setIntSetting(u"jpegImageQuality", 90);
    setIntSetting(u"imageDPI", 600);
    setIntSetting(u"TrimNameChar", 45);
    setIntSetting(u"showVelturnButton", 0);
    const std::u16string init = u"init";
    importConfigFile(true, &init);
    const auto name = currentName();
    importConfigFile(true, &name);
}
