// The command line of kelps2pdf.
#pragma once

#include "Dsc.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kelps2pdf {

// Exit statuses, as --help documents them.
enum ExitStatus { exitClean = 0, exitNothingWritten = 1, exitPageFailures = 2 };

inline constexpr std::size_t defaultChunkSize = std::size_t(4) << 20;
// Far above what a real page takes in one call (the samples stay under a few
// million), low enough that a runaway ends within seconds.
inline constexpr std::uint64_t defaultMaxSteps = 400'000'000;

struct Options {
    std::string input;  // "-" for standard input
    std::string output; // "-" for standard output
    std::optional<Box> paper;
    std::size_t chunkSize = defaultChunkSize;
    std::uint64_t maxSteps = defaultMaxSteps;
    bool quiet = false;
    bool strict = false;
    bool dryRun = false;
};

enum class Parsed { run, done, bad };

// Parses argv into options. done: --help or --version was printed to
// standard output; bad: message holds the reason.
Parsed parseOptions(int argc, const char* const* argv, Options& options, std::string& message);

// INPUT with its extension replaced by .pdf ("-" stays "-").
std::string defaultOutput(const std::string& input);

std::string helpText();

} // namespace kelps2pdf
