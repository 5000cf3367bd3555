// Drives the conversion face over a job: splits it into calls and pages by
// its DSC comments, collects each page's content and objects, and hands them
// to the PDF writer page by page.
#pragma once

#include "Dsc.h"
#include "LineReader.h"
#include "Options.h"
#include "PdfWriter.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

typedef struct KelPsHandle* PSHandle;

namespace kelps2pdf {

struct Failure {
    int page;            // 0: before the first page
    std::string text;    // the converter's error text, one line
    std::uint64_t bytes; // the bytes of the failed call: at most this much input was dropped
    bool feature;        // inside the job's feature code, which the job runs under stopped
};

struct Summary {
    int pages = 0;
    int failures = 0; // those that count: not feature code
    int featureFailures = 0;
    std::uint64_t failedBytes = 0; // the bytes of every failed call, feature code too
    bool empty = false;            // nothing but printer control, or nothing at all
    bool notPostScript = false;    // does not begin with %!
    std::string title;             // %%Title, raw
};

class Converter {
public:
    using FailureReport = std::function<void(const Failure&)>;
    using ProgressReport = std::function<void(int pagesDone, std::uint64_t bytesRead)>;

    // writer null: convert without writing (a dry run).
    Converter(const Options& options, PdfWriter* writer);
    ~Converter();
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool opened() const { return handle_ != nullptr; }
    Summary run(LineReader& reader, const FailureReport& report, const ProgressReport& progress);

private:
    void classify(std::string_view line, bool& cutAfter);
    void flush();
    void take(const char* content, std::size_t length);
    void startPage();
    void endPage();
    Box mediaBox() const;

    const Options& options_;
    PdfWriter* writer_;
    PSHandle handle_ = nullptr;
    const FailureReport* report_ = nullptr;
    const ProgressReport* progress_ = nullptr;
    LineReader* reader_ = nullptr;
    Summary summary_;

    std::string pending_;      // the bytes of the next call
    bool callFeature_ = false; // the next call holds feature code
    bool runnerNext_ = false;  // the next line runs a feature block
    // A call a line: in the prolog and setup, where one lost definition makes
    // later code fail too, and on a page after a failure.
    bool lineByLine_ = true;
    int documentDepth_ = 0; // inside %%BeginDocument
    bool dscPages_ = false, sawEof_ = false, titleSeen_ = false;

    int page_ = 0;
    std::string content_;           // the page's content not yet written
    std::vector<int> contentParts_; // its content streams written so far
    std::set<std::string> names_;   // resource names its content uses
    std::optional<Box> pageBox_, pageSize_;
    std::optional<Box> documentPageBox_, documentMedia_, setupPageSize_, boundingBox_;

    struct Resource {
        int object;
        int kind;
    };
    std::unordered_map<std::string, Resource> resources_;
    std::uint64_t recordsSeen_ = 0;
};

} // namespace kelps2pdf
