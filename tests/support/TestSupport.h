#pragma once

#include "core/Interpreter.h"
#include "kelumpd64/conversion.h"

#include "pdf/Postscript2Pdf.h"
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

// A handle's translator and interpreter, driven through the C++ interface.
class Session {
public:
    Session();

    // Runs one buffer through executeBuffer; false after a failure.
    bool run(std::string_view text);

    Interpreter& interpreter() { return *pdf.interpreter; }
    // The operand stack, bottom first, in the "==" form, joined by blanks.
    std::string stackValues() const;
    // The message of the last failure, without the "Exception:[file:line] " prefix.
    std::string error() const;

    Postscript2Pdf pdf;
};

// A handle of the C interface, opened with the identity matrix and closed at scope end.
struct Handle {
    Handle();
    ~Handle() { PSClose(h); }
    PSHandle h;
};

// A short test name for a table row: its number and the start of what PrintTo
// shows of it, in letters and digits, so that a failing row is easy to find.
std::string rowName(std::size_t index, const std::string& text);
struct RowName {
    template <class T> std::string operator()(const ::testing::TestParamInfo<T>& info) const {
        return rowName(info.index, ::testing::PrintToString(info.param));
    }
};

// A compact, exact picture of one object for scanner tests: strings as
// (bytes) with their filters, names as text or /text, operators as --text--,
// the rest by describe().
std::string render(const PostscriptObject* object);

// Scans text as buffers split at the given offsets (ascending) with a fresh
// interpreter's scanner, and renders every object. A failure adds
// "ERROR: <message>" and the scan goes on from the byte where it struck, with
// the scanner as the failure left it.
std::vector<std::string> scanAll(std::string_view text, const std::vector<std::size_t>& cuts = {});

// The message of the PostscriptException that the action throws; empty when
// it throws none.
std::string failureOf(const std::function<void()>& action);

// Real driver PostScript beside the repository; empty when absent.
std::vector<std::filesystem::path> samplePrograms();
std::string readFile(const std::filesystem::path& path);

} // namespace testing_support
