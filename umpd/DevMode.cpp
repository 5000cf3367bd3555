#include "umpd/DevMode.h"

#include "umpd/SystemServices.h"

#include <cstring>

std::vector<std::uint8_t> buildDevMode(std::u16string_view printerName) {
    DevModeRecord dm{};
    auto slash = printerName.rfind(u'\\');
    std::u16string_view device = printerName;
    if (slash != std::u16string_view::npos)
        device = slash + 1 == printerName.size() ? printerName.substr(slash)
                                                 : printerName.substr(slash + 1);
    copyField(dm.dmDeviceName, device);
    dm.dmSpecVersion = 0x401;
    dm.dmDriverVersion = 0x400;
    dm.dmSize = 220;
    dm.dmDriverExtra = 180;
    dm.dmFields = 0x14F13;
    dm.dmOrientation = 1;
    dm.dmPaperSize = 1; // letter, with the form name A4: so it has always been
    dm.dmScale = 100;
    dm.dmCopies = 1;
    dm.dmDefaultSource = 15;
    dm.dmPrintQuality = 300;
    dm.dmColor = 2;
    dm.dmDuplex = 1;
    dm.dmTTOption = 3;
    copyField(dm.dmFormName, u"A4");
    std::vector<std::uint8_t> bytes(sizeof dm + dm.dmDriverExtra, 0);
    std::memcpy(bytes.data(), &dm, sizeof dm);
    return bytes;
}
