#pragma once

#include "platform/Spooler.h"
#include "umpd/StringMap.h"
#include "umpd/UserKey.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

inline constexpr const char16_t* defaultPrinterName = u"Tamarisk Foliograph";
inline constexpr const char16_t* productKey = u"Software\\Foliograph\\";

// One printer's name, handle and settings.
class PrinterConfig {
public:
    // Sets the name; a name beginning with "," or "\" is a port form, resolved to the
    // printer of this driver on that port.
    void setPrinterName(const char16_t* name);
    // Clears the settings and takes the default name.
    void loadDefaultPrinterName();
    // True when the config has an open printer handle.
    bool openPrinter(std::uint32_t access);
    // Removes the completed jobs of this printer, opened if need be.
    void deleteCompletedJobs();
    // portName if set, else printerName, else the product's name: the name of keys and sections.
    std::u16string currentName() const;

    // The printer's key in the user's hive; a key made new by this gets the first-use defaults.
    UserKey openPrinterKey(std::uint32_t access);
    // The printer's values into the map, which is emptied first; false when the key cannot
    // be read, and the map is left as it was.
    bool loadSettings();
    // Registry first; the map only when the registry took it.
    bool setIntSetting(std::u16string_view name, std::int32_t value);
    bool setStringSetting(std::u16string_view name, std::u16string_view value);
    // One 32-bit value straight from the registry; a missing value gives true and the default.
    bool readDwordSetting(std::u16string_view name, std::uint32_t& out, std::uint32_t fallback);
    // The user's session as the product key has it, or the fallback when there is none.
    std::uint32_t readSessionId(std::uint32_t fallback);
    // DoPrint from the registry: true when it is set and not 0.
    bool readDoPrint(std::uint32_t& doPrint);
    // A first use: the defaults, then the site's kelconf.ini over them.
    void initialiseDefaults();

    // A section of kelconf.ini (null: this printer's) into the map and, with writeToRegistry,
    // the registry. False without the file or the section.
    bool importConfigFile(bool writeToRegistry, const std::u16string* section);
    // At each job start: kelconf.ini over the registry when its overrideUserSettings says so.
    void applyOverrideFile();
    // kelcfg.1 in the system directory for the old driver: the settings it reads, as
    // "name=value&" pairs in UTF-16 without a byte order mark.
    bool copyNameValuesToPrinterDriverConfigFile();

    std::optional<std::u16string> printerName;
    std::unique_ptr<platform::Printer> printerHandle;
    StringMap settings;
    std::u16string portName; // at most 259 characters
};
