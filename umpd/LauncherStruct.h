#pragma once

#include <cstddef>
#include <cstdint>

// The record shared with the launcher, kelmsnd.exe: a wire format, so every offset is fixed.
struct LauncherStruct {
    std::uint8_t reserved[4]; // never written by this side
    char16_t command[260];    // the message
    char16_t printerName[260];
    char16_t filename[260];           // full path of the output file
    char16_t docName[260];            // decoded document name
    std::uint8_t launcherOwned[6068]; // the record's other users own this
};

static_assert(offsetof(LauncherStruct, reserved) == 0);
static_assert(offsetof(LauncherStruct, command) == 4);
static_assert(offsetof(LauncherStruct, printerName) == 524);
static_assert(offsetof(LauncherStruct, filename) == 1044);
static_assert(offsetof(LauncherStruct, docName) == 1564);
static_assert(offsetof(LauncherStruct, launcherOwned) == 2084);
static_assert(sizeof(LauncherStruct) == 8152);
static_assert(sizeof(char16_t) == 2);

// The messages.
inline constexpr const char16_t* startPrintCommand = u"startprint";
inline constexpr const char16_t* stopPrintCommand = u"stopprint";
inline constexpr const char16_t* printerCleanupCommand = u"printercleanup";

// The base word of all the launcher's object names.
inline constexpr const char16_t* launcherBaseWord = u"kelsend";

// The domain controller's name, looked up once per machine and shared.
struct DomainControllerData {
    std::uint8_t state; // 0 not looked up, 'w' look-up in progress, 'r' ready
    std::uint8_t reserved;
    char16_t domainController[260];
};

static_assert(offsetof(DomainControllerData, state) == 0);
static_assert(offsetof(DomainControllerData, domainController) == 2);
static_assert(sizeof(DomainControllerData) == 522);
