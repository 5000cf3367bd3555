#include "umpd/PrinterEnumeration.h"

#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/PrinterConfig.h"
#include "umpd/SystemServices.h"

void enumeratePrinters(PrinterIteratorCallback& callback) {
    std::vector<platform::PrinterInfo2> printers;
    if (!platform::current().spooler().enumPrinters(
            platform::printerEnumLocal | platform::printerEnumConnections, printers))
        return;
    for (const auto& info : printers)
        if (callback.found(&info)) return;
}

namespace {
// A copy in a buffer of 260 characters with every "\" as ",".
std::u16string commaForm(const std::u16string& text) {
    char16_t buffer[260];
    copyField(buffer, text);
    std::u16string out = fieldText(buffer);
    for (auto& c : out)
        if (c == u'\\') c = u',';
    return out;
}
} // namespace

bool FindPort::found(const platform::PrinterInfo2* info) {
    using platform::equalsIgnoreCase;
    if (!info->driverName || !equalsIgnoreCase(*info->driverName, defaultPrinterName)) return false;
    if (!info->portName) return false;
    std::u16string printer = info->printerName.value_or(u"");
    trace(u" in FindPort comparing installed portName = %s, installed printerName %s, with our "
          u"portName = %s\n",
          *info->portName, printer, portName);
    bool match = equalsIgnoreCase(portName, *info->portName) ||
                 equalsIgnoreCase(portName, commaForm(*info->portName)) ||
                 (info->printerName && (equalsIgnoreCase(portName, printer) ||
                                        equalsIgnoreCase(portName, commaForm(printer))));
    if (!match) return false;
    char16_t buffer[260];
    copyField(buffer, printer);
    resultName = fieldText(buffer);
    return true;
}
