#include "Kelps2pdf.h"

#include "Converter.h"
#include "LineReader.h"
#include "Options.h"
#include "OutputFile.h"
#include "PdfWriter.h"
#include "Progress.h"

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#ifndef KELPS2PDF_VERSION
#define KELPS2PDF_VERSION "0"
#endif

namespace kelps2pdf {

namespace {

void complain(const std::string& text) {
    std::fprintf(stderr, "kelps2pdf: %s\n", text.c_str());
}

std::string inputName(const Options& options) {
    return options.input == "-" ? "standard input" : options.input;
}

// "D:YYYYMMDDHHmmSSZ", now or at SOURCE_DATE_EPOCH (for reproducible output).
std::string creationDate() {
    std::time_t now = std::time(nullptr);
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) {
        char* end = nullptr;
        const long long seconds = std::strtoll(epoch, &end, 10);
        if (end && *end == 0 && end != epoch && seconds >= 0)
            now = static_cast<std::time_t>(seconds);
    }
    std::tm utc{};
#ifdef _WIN32
    gmtime_s(&utc, &now);
#else
    gmtime_r(&now, &utc);
#endif
    char text[32];
    std::strftime(text, sizeof text, "D:%Y%m%d%H%M%SZ", &utc);
    return text;
}

struct InputFile {
    std::FILE* file = nullptr;
    bool owned = false;
    ~InputFile() {
        if (owned) std::fclose(file);
    }
};

// Whether two names are one file (OUTPUT would overwrite INPUT).
bool sameFile(const std::string& a, const std::string& b) {
    std::error_code code;
    return a != "-" && b != "-" && std::filesystem::equivalent(a, b, code) && !code;
}

void reportFailure(const Failure& failure, bool quiet) {
    if (failure.feature && quiet) return;
    const std::string where =
        failure.page > 0 ? "page " + std::to_string(failure.page) : std::string("setup");
    std::fprintf(stderr, "%s: %s%s\n", where.c_str(), failure.feature ? "(feature code) " : "",
                 failure.text.c_str());
}

} // namespace

int runKelps2pdf(int argc, const char* const* argv) {
    useBinaryStandardStreams();
    Options options;
    std::string message;
    switch (parseOptions(argc, argv, options, message)) {
    case Parsed::done:
        return exitClean;
    case Parsed::bad:
        complain(message + "\nTry 'kelps2pdf --help'.");
        return exitNothingWritten;
    case Parsed::run:
        break;
    }

    InputFile input;
    std::uint64_t total = 0;
    if (options.input == "-") {
        input.file = stdin;
    } else {
        std::error_code code;
        if (std::filesystem::is_directory(options.input, code)) {
            complain("cannot read " + options.input + ": it is a folder");
            return exitNothingWritten;
        }
        input.file = std::fopen(options.input.c_str(), "rb");
        if (!input.file) {
            complain("cannot read " + options.input + ": " + lastErrorText());
            return exitNothingWritten;
        }
        input.owned = true;
        total = std::filesystem::file_size(options.input, code);
        if (code) total = 0;
    }
    if (!options.dryRun && sameFile(options.input, options.output)) {
        complain("the output " + options.output + " is the input file");
        return exitNothingWritten;
    }

    OutputFile output;
    std::optional<PdfWriter> writer;
    if (!options.dryRun) {
        if (!output.open(options.output, message)) {
            complain("cannot write " + options.output + ": " + message);
            return exitNothingWritten;
        }
        writer.emplace(output.stream());
    }
    Converter converter(options, writer ? &*writer : nullptr);
    if (!converter.opened()) {
        complain("the converter could not be started");
        return exitNothingWritten;
    }
    LineReader reader(input.file, options.chunkSize);
    Progress progress(!options.quiet && standardErrorIsTerminal(), total);
    const Summary summary = converter.run(
        reader,
        [&](const Failure& failure) {
            progress.finish();
            reportFailure(failure, options.quiet);
        },
        [&](int pages, std::uint64_t bytes) { progress.update(pages, bytes); });
    progress.finish();

    if (reader.failed()) {
        complain("cannot read " + inputName(options) + ": " + lastErrorText());
        return exitNothingWritten;
    }
    if (summary.empty) {
        complain(inputName(options) + " holds no PostScript (it is empty)");
        return exitNothingWritten;
    }
    if (summary.notPostScript) {
        complain(inputName(options) + " is not PostScript (it does not begin with %!)");
        return exitNothingWritten;
    }
    if (options.strict && summary.failures > 0) {
        complain(std::to_string(summary.failures) + " failure(s) and --strict: no PDF written");
        return exitNothingWritten;
    }
    if (writer) {
        writer->finish(DocumentInfo{summary.title, "kelps2pdf " KELPS2PDF_VERSION, creationDate()});
        if (writer->failed() || !output.commit(message)) {
            if (message.empty()) message = lastErrorText();
            complain("cannot write " + options.output + ": " + message);
            return exitNothingWritten;
        }
    }
    if (!options.quiet && summary.failures + summary.featureFailures > 0)
        complain(std::to_string(summary.pages) + " pages, " + std::to_string(summary.failures) +
                 " failure(s), " + std::to_string(summary.featureFailures) +
                 " in feature code; the failed calls held " + std::to_string(summary.failedBytes) +
                 " bytes of input");
    return summary.failures > 0 ? exitPageFailures : exitClean;
}

} // namespace kelps2pdf
