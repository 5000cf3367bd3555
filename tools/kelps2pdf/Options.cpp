#include "Options.h"

#include "Deflate.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#ifndef KELPS2PDF_VERSION
#define KELPS2PDF_VERSION "0"
#endif

namespace kelps2pdf {

namespace {

// A count with an optional K, M or G suffix (powers of 1024).
std::optional<std::uint64_t> parseCount(std::string_view text, bool suffixes) {
    if (text.empty() || text.size() > 20) return std::nullopt;
    std::uint64_t unit = 1;
    const char last = text.back();
    if (suffixes &&
        (last == 'K' || last == 'k' || last == 'M' || last == 'm' || last == 'G' || last == 'g')) {
        unit = last == 'K' || last == 'k' ? 1024 : last == 'M' || last == 'm' ? 1 << 20 : 1 << 30;
        text.remove_suffix(1);
    }
    if (text.empty()) return std::nullopt;
    std::uint64_t value = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        if (value > (UINT64_MAX - 9) / 10) return std::nullopt;
        value = value * 10 + static_cast<unsigned>(c - '0');
    }
    if (value > UINT64_MAX / unit) return std::nullopt;
    return value * unit;
}

} // namespace

std::string helpText() {
    return R"(Usage: kelps2pdf [options] INPUT [OUTPUT]
Converts a PostScript print job, as printer drivers write it, to a PDF document.

INPUT is a PostScript file, or - for standard input. OUTPUT is the PDF to write:
by default INPUT with the extension .pdf (standard output when INPUT is -);
- writes to standard output. The PDF is written beside OUTPUT under a temporary
name and takes OUTPUT's place only when it is complete.

Options:
  -q, --quiet          no progress line and no notes; failures are still reported
      --paper SIZE     the size of every page: a3 a4 a5 b5 letter legal tabloid,
                       or WIDTHxHEIGHT in points (612x792); by default from the
                       job's comments or page device requests, else A4
      --chunk-size N   feed a page to the converter in calls of at most N bytes,
                       cut at line ends (suffix K or M; default 4M, at least 64);
                       the prolog and setup, and a page after a failure, go a
                       line a call, since a failure drops the rest of its call
      --max-steps N    end a call that runs more than N objects (a page that
                       loops forever), keep what the page drew and go on; 0 for
                       no limit (default 400000000)
      --strict         write nothing if any page fails (exit status 1)
  -n, --dry-run        convert and report failures, write no PDF
  -h, --help           this text
      --version        the version

Failures are reported on standard error as "page N: " and the converter's
error text ("setup: " before the first page); the page keeps what was converted
before the failure and the conversion goes on. Failures in the job's feature
code (%%BeginFeature ... %%EndFeature), which the job itself runs under stopped
so that a device may refuse a feature, are reported as notes and do not count.

Exit status:
  0  the PDF was written and every page converted cleanly
  2  the PDF was written, but a page failed
  1  nothing was written: a bad option, an unreadable or empty input, input that
     is not PostScript, an unwritable output, or --strict and a page failed

Examples:
  kelps2pdf job.ps                     writes job.pdf
  kelps2pdf --paper letter job.prn out.pdf
  kelps2pdf -q - - < job.ps > job.pdf
  kelps2pdf -n --max-steps 1000000 suspect.ps
)";
}

std::string defaultOutput(const std::string& input) {
    if (input == "-") return "-";
    const std::size_t slash = input.find_last_of("/\\");
    const std::size_t dot = input.find_last_of('.');
    const bool hasExtension =
        dot != std::string::npos && dot > (slash == std::string::npos ? 0 : slash + 1);
    return (hasExtension ? input.substr(0, dot) : input) + ".pdf";
}

Parsed parseOptions(int argc, const char* const* argv, Options& options, std::string& message) {
    std::string positional[2];
    int positionals = 0;
    bool optionsEnd = false;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        auto value = [&](std::string_view& out) {
            const std::size_t equals = arg.find('=');
            if (arg.substr(0, 2) == "--" && equals != std::string_view::npos) {
                out = arg.substr(equals + 1);
                return true;
            }
            if (i + 1 >= argc) {
                message = std::string(arg) + " needs a value";
                return false;
            }
            out = argv[++i];
            return true;
        };
        auto is = [&](std::string_view name) {
            return arg == name || (arg.substr(0, name.size()) == name && arg.size() > name.size() &&
                                   arg[name.size()] == '=' && name.substr(0, 2) == "--");
        };
        std::string_view text;
        if (optionsEnd || arg == "-" || arg.empty() || arg[0] != '-') {
            if (positionals == 2) {
                message = "too many arguments: " + std::string(arg);
                return Parsed::bad;
            }
            positional[positionals++] = std::string(arg);
        } else if (arg == "--") {
            optionsEnd = true;
        } else if (arg == "-h" || arg == "--help") {
            std::fputs(helpText().c_str(), stdout);
            return Parsed::done;
        } else if (arg == "--version") {
            std::printf("kelps2pdf %s (kelumpd64; %s)\n", KELPS2PDF_VERSION, deflateLibrary());
            return Parsed::done;
        } else if (arg == "-q" || arg == "--quiet") {
            options.quiet = true;
        } else if (arg == "--strict") {
            options.strict = true;
        } else if (arg == "-n" || arg == "--dry-run") {
            options.dryRun = true;
        } else if (is("--paper")) {
            if (!value(text)) return Parsed::bad;
            options.paper = paperByName(text);
            if (!options.paper) {
                message = "unknown paper size: " + std::string(text);
                return Parsed::bad;
            }
        } else if (is("--chunk-size")) {
            if (!value(text)) return Parsed::bad;
            const auto size = parseCount(text, true);
            if (!size || *size < 64 || *size > (std::uint64_t(1) << 30)) {
                message = "--chunk-size takes 64 to 1G bytes, not " + std::string(text);
                return Parsed::bad;
            }
            options.chunkSize = static_cast<std::size_t>(*size);
        } else if (is("--max-steps")) {
            if (!value(text)) return Parsed::bad;
            const auto steps = parseCount(text, false);
            if (!steps) {
                message = "--max-steps takes a number, not " + std::string(text);
                return Parsed::bad;
            }
            options.maxSteps = *steps;
        } else {
            message = "unknown option " + std::string(arg);
            return Parsed::bad;
        }
    }
    if (positionals == 0) {
        message = "no input file";
        return Parsed::bad;
    }
    options.input = positional[0];
    options.output = positionals > 1 ? positional[1] : defaultOutput(options.input);
    return Parsed::run;
}

} // namespace kelps2pdf
