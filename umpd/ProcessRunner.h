#pragma once

#include <cstdint>
#include <optional>
#include <string>

inline constexpr std::uint16_t showWindowHide = 11; // the caller's word for SW_HIDE

// Starts a detached program; with wait, waits for it for ever and gives its exit code.
// True if the process was created.
bool runProcess(const std::u16string& commandLine,
                const std::optional<std::u16string>& workingDirectory, bool wait,
                std::uint32_t* exitCodeOut, std::uint16_t showWindow);

// Repairs the launcher's autostart entry when it points to an older driver: runs
// kelsetup.exe from the driver directory (which ends in "\") for this printer.
void checkAutostart(std::u16string_view printerName, std::u16string_view driverDirectory);
