#include "Converter.h"

#include "kelumpd64/conversion.h"
#include "kelumpd64/limits.h"

#include <cstring>

namespace kelps2pdf {

namespace {

// PDF user space is PostScript's default space: the identity.
constexpr float identity[6] = {1, 0, 0, 1, 0, 0};
// A page's content goes out in streams of about this size, so that a huge
// page takes no more memory than this and one call's content.
constexpr std::size_t contentPart = std::size_t(4) << 20;

constexpr int patternKind = 1; // a record of kind 3 is an image

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool isDelimiter(char c) {
    return std::strchr(" \t\r\n\f/[]()<>{}%", c) != nullptr || c == 0;
}

// Comments after which a call ends: a failure in a block then drops nothing
// of what follows it.
constexpr std::string_view blockEnds[] = {"EndResource",  "EndProlog",   "EndSetup",
                                          "EndPageSetup", "EndComments", "EndDocument"};

} // namespace

Converter::Converter(const Options& options, PdfWriter* writer)
    : options_(options), writer_(writer), handle_(PSOpen(identity)) {
    if (handle_) {
        PSSetStepLimit(handle_, options.maxSteps);
        // The list is the process's: what other conversions made is not ours to write.
        PSGetPdfObjects(handle_, &recordsSeen_);
    }
    pending_.reserve(std::min<std::size_t>(options.chunkSize, std::size_t(64) << 20));
}

Converter::~Converter() {
    PSClose(handle_);
}

Summary Converter::run(LineReader& reader, const FailureReport& report,
                       const ProgressReport& progress) {
    report_ = &report;
    progress_ = &progress;
    reader_ = &reader;
    Line line;
    bool begun = false;
    while (reader.next(line)) {
        std::string_view text = line.text;
        bool cutAfter = false;
        if (line.startsLine) {
            text = stripJobControl(text);
            if (text.empty()) continue;
            if (!begun) {
                if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) continue;
                if (!startsWith(text, "%!")) {
                    summary_.notPostScript = true;
                    return summary_;
                }
                begun = true;
            }
            classify(text, cutAfter);
        } else if (!begun) {
            summary_.notPostScript = true; // a first line longer than a call
            return summary_;
        }
        if (!pending_.empty() && pending_.size() + text.size() > options_.chunkSize) flush();
        pending_.append(text);
        const bool lineEnds = text.back() == '\n' || text.back() == '\r';
        if (cutAfter || pending_.size() >= options_.chunkSize || (lineByLine_ && lineEnds)) flush();
    }
    if (!begun) {
        summary_.empty = true;
        return summary_;
    }
    // The last token of a job without a final line end must not wait for more.
    if (!pending_.empty() && pending_.back() != '\n' && pending_.back() != '\r')
        pending_.push_back('\n');
    flush();
    if (dscPages_ && !sawEof_ && !reader.failed()) {
        ++summary_.failures;
        (*report_)(
            Failure{page_, "the job ends before its %%EOF: the page may be cut short", 0, false});
    }
    endPage();
    return summary_;
}

void Converter::classify(std::string_view line, bool& cutAfter) {
    if (runnerNext_) {
        // The line after a feature block runs it: "}featurecleanup" and the like.
        runnerNext_ = false;
        cutAfter = true;
        if (startsWith(line, "}")) callFeature_ = true;
    }
    if (!startsWith(line, "%%")) {
        if (documentDepth_ == 0 && line.find("/PageSize") != std::string_view::npos) {
            if (auto size = findPageSize(line)) (page_ == 0 ? setupPageSize_ : pageSize_) = size;
        }
        return;
    }
    if (commentValue(line, "BeginDocument")) ++documentDepth_;
    if (commentValue(line, "EndDocument") && documentDepth_ > 0) --documentDepth_;
    for (std::string_view end : blockEnds)
        if (startsWith(line.substr(2), end)) cutAfter = true;
    if (documentDepth_ > 0) return;

    if (commentValue(line, "Page")) {
        dscPages_ = true;
        flush();
        startPage();
    } else if (startsWith(line, "%%BeginFeature")) {
        callFeature_ = true;
    } else if (startsWith(line, "%%EndFeature")) {
        cutAfter = true;
        runnerNext_ = true;
    } else if (auto value = commentValue(line, "PageBoundingBox")) {
        if (auto box = parseBoundingBox(*value)) (page_ == 0 ? documentPageBox_ : pageBox_) = box;
    } else if (page_ > 0) {
        if (commentValue(line, "EOF")) sawEof_ = true;
    } else if (auto value = commentValue(line, "BoundingBox")) {
        if (auto box = parseBoundingBox(*value)) boundingBox_ = box;
    } else if (auto value = commentValue(line, "DocumentMedia")) {
        if (!documentMedia_) documentMedia_ = parseDocumentMedia(*value);
    } else if (auto value = commentValue(line, "Title")) {
        if (!titleSeen_) summary_.title = dscText(*value);
        titleSeen_ = true;
    } else if (commentValue(line, "EOF")) {
        sawEof_ = true;
    }
}

void Converter::flush() {
    if (pending_.empty()) return;
    uint32_t length = static_cast<uint32_t>(pending_.size());
    const char* content =
        PSConvertToPdf(handle_, reinterpret_cast<const unsigned char*>(pending_.data()), &length);
    if (content) {
        take(content, length);
    } else {
        std::string text = PSGetErrorStr(handle_);
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
            text.pop_back();
        if (text.empty()) text = "the conversion failed without a reason";
        ++(callFeature_ ? summary_.featureFailures : summary_.failures);
        lineByLine_ = true;
        summary_.failedBytes += pending_.size();
        (*report_)(Failure{page_, text, pending_.size(), callFeature_});
    }
    pending_.clear();
    callFeature_ = false;
    (*progress_)(summary_.pages, reader_->consumed());
}

void Converter::take(const char* content, std::size_t length) {
    if (!writer_ || length == 0) return;
    const std::string_view text(content, length);
    // The names of the image XObjects ("/PSI3 Do") and patterns ("/PA7 scn") it uses.
    for (std::size_t at = text.find("/P"); at != std::string_view::npos;
         at = text.find("/P", at + 2)) {
        const std::string_view rest = text.substr(at + 1);
        const std::size_t prefix = startsWith(rest, "PSI") ? 3 : startsWith(rest, "PA") ? 2 : 0;
        if (prefix == 0) continue;
        std::size_t end = prefix;
        while (end < rest.size() && !isDelimiter(rest[end]))
            ++end;
        if (end > prefix) names_.emplace(rest.substr(0, end));
    }
    content_.append(text);
    if (content_.size() >= contentPart) {
        contentParts_.push_back(writer_->writeContent(content_));
        content_.clear();
    }
}

void Converter::startPage() {
    if (page_ > 0) endPage();
    // The first page keeps what the prolog and setup drew.
    ++page_;
    lineByLine_ = false;
    PSStartPage(handle_, identity);
}

Box Converter::mediaBox() const {
    // The paper first (what the page asks of the device, then the document's
    // media), then the bounding boxes, which are what the marks cover.
    for (const auto* box : {&options_.paper, &pageSize_, &setupPageSize_, &documentMedia_,
                            &pageBox_, &documentPageBox_, &boundingBox_})
        if (*box) return **box;
    return a4Paper;
}

void Converter::endPage() {
    ++summary_.pages;
    if (writer_) {
        if (!content_.empty() || contentParts_.empty())
            contentParts_.push_back(writer_->writeContent(content_));
        // The object list is the process's: only what is new since the last page.
        uint64_t count = 0;
        PdfObject** records = PSGetPdfObjects(handle_, &count);
        for (; recordsSeen_ < count; ++recordsSeen_) {
            const PdfObject* record = records[recordsSeen_];
            if (!record || !record->name || record->name[0] != '/') continue;
            const int object = writer_->writeRecord(*record);
            resources_[record->name + 1] = Resource{object, record->kind};
        }
        PageResources resources;
        for (const std::string& name : names_) {
            auto found = resources_.find(name);
            if (found == resources_.end()) {
                // An image the list found among the records of an earlier
                // conversion in this process: written here once as well.
                for (uint64_t i = 0; i < count && found == resources_.end(); ++i) {
                    const PdfObject* record = records[i];
                    if (record && record->name && record->name[0] == '/' &&
                        name == record->name + 1)
                        found = resources_
                                    .emplace(name,
                                             Resource{writer_->writeRecord(*record), record->kind})
                                    .first;
                }
                if (found == resources_.end()) continue;
            }
            auto& list =
                found->second.kind == patternKind ? resources.patterns : resources.xobjects;
            list.emplace_back(name, found->second.object);
        }
        writer_->writePage(mediaBox(), contentParts_, resources);
    }
    content_.clear();
    contentParts_.clear();
    names_.clear();
    pageBox_.reset();
    pageSize_.reset();
    (*progress_)(summary_.pages, reader_->consumed());
}

} // namespace kelps2pdf
