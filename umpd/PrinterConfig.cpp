#include "umpd/PrinterConfig.h"

#include "platform/Platform.h"
#include "umpd/DevMode.h"
#include "umpd/PrinterEnumeration.h"
#include "umpd/SystemServices.h"

namespace {
constexpr std::size_t defaultNameBytes = 520;
} // namespace

void PrinterConfig::loadDefaultPrinterName() {
    settings.clear();
    printerName = defaultPrinterName;
    // The user's hive, not HKEY_CURRENT_USER: under the print service that is the service's.
    const std::u16string product = productKey;
    auto key = openUserKey(keyAccess::keyRead, &product);
    if (!key) return;
    platform::RegistryValue value;
    if (key.get()->queryValue(u"printerName", value, defaultNameBytes) != platform::error::success)
        return;
    if (auto text = platform::valueText(value); text && !text->empty()) printerName = *text;
}

void PrinterConfig::setPrinterName(const char16_t* name) {
    if (!name || !*name) {
        portName.clear();
        loadDefaultPrinterName();
        return;
    }
    if (name[0] != u',' && name[0] != u'\\') {
        portName.clear();
        printerName = name;
        return;
    }
    char16_t buffer[260];
    copyField(buffer, name);
    portName = fieldText(buffer);
    std::u16string result;
    FindPort finder(result, portName);
    enumeratePrinters(finder);
    printerName = result; // empty when no printer of ours uses the port
}

bool PrinterConfig::openPrinter(std::uint32_t access) {
    if (printerHandle) return true;
    auto name = printerName.value_or(u"");
    platform::PrinterDefaults defaults;
    defaults.datatype = u"RAW";
    defaults.desiredAccess = access;
    defaults.devMode = buildDevMode(name);
    printerHandle = platform::current().spooler().openPrinter(name, &defaults);
    return printerHandle != nullptr;
}

std::u16string PrinterConfig::currentName() const {
    if (!portName.empty()) return portName;
    return printerName.value_or(defaultPrinterName);
}
