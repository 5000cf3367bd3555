#pragma once

#include <cstddef>
#include <string>

// The printer driver directory, ending in "\": computed once per process. False when the
// system cannot say, or when it does not fit in size characters with its terminator.
bool getDriverDirectory(std::u16string& out, std::size_t size);
// The driver directory and fileName; false when the two do not fit in size characters.
bool getDriverFilePath(std::u16string& out, std::size_t size, std::u16string_view fileName);
// The text getDriverDirectory keeps, worked out afresh; empty when the system cannot say.
std::u16string computeDriverDirectory();
// Tests start from a fresh process's state.
void forgetDriverDirectory();

// The per-user data folder "<local app data>\Foliograph", made if missing; "c:\" when the
// system knows no such folders, empty when the path does not fit in 260 characters.
std::u16string getUserDataDirectory();
