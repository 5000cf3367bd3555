#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The DEVMODEW a printer is opened with: the public part, 220 bytes.
#pragma pack(push, 2)
struct DevModeRecord {
    char16_t dmDeviceName[32];
    std::uint16_t dmSpecVersion, dmDriverVersion, dmSize, dmDriverExtra;
    std::uint32_t dmFields;
    std::int16_t dmOrientation, dmPaperSize, dmPaperLength, dmPaperWidth, dmScale, dmCopies,
        dmDefaultSource, dmPrintQuality, dmColor, dmDuplex, dmYResolution, dmTTOption, dmCollate;
    char16_t dmFormName[32];
    std::uint16_t dmLogPixels;
    std::uint32_t dmBitsPerPel, dmPelsWidth, dmPelsHeight, dmNup, dmDisplayFrequency, dmICMMethod,
        dmICMIntent, dmMediaType, dmDitherType, dmReserved1, dmReserved2, dmPanningWidth,
        dmPanningHeight;
};
#pragma pack(pop)

static_assert(offsetof(DevModeRecord, dmSpecVersion) == 64);
static_assert(offsetof(DevModeRecord, dmSize) == 68);
static_assert(offsetof(DevModeRecord, dmFields) == 72);
static_assert(offsetof(DevModeRecord, dmOrientation) == 76);
static_assert(offsetof(DevModeRecord, dmPrintQuality) == 90);
static_assert(offsetof(DevModeRecord, dmCollate) == 100);
static_assert(offsetof(DevModeRecord, dmFormName) == 102);
static_assert(offsetof(DevModeRecord, dmLogPixels) == 166);
static_assert(offsetof(DevModeRecord, dmBitsPerPel) == 168);
static_assert(offsetof(DevModeRecord, dmPanningHeight) == 216);
static_assert(sizeof(DevModeRecord) == 220);

// The device mode of this driver for the printer name. dmDriverExtra says 180 bytes
// follow; they are there, zeroed, so that nobody who believes it reads past the end.
std::vector<std::uint8_t> buildDevMode(std::u16string_view printerName);
