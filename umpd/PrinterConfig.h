#pragma once

#include "platform/Spooler.h"
#include "umpd/StringMap.h"

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
    // portName if set, else printerName, else the product's name: the name of keys and sections.
    std::u16string currentName() const;

    std::optional<std::u16string> printerName;
    std::unique_ptr<platform::Printer> printerHandle;
    StringMap settings;
    std::u16string portName; // at most 259 characters
};
