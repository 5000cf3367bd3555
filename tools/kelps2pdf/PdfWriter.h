// Writes a PDF 1.7 document as a stream: every object is written as soon as
// it is complete, and only the cross-reference offsets and the list of pages
// stay in memory.
#pragma once

#include "Dsc.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct PdfObject;

namespace kelps2pdf {

struct DocumentInfo {
    std::string title;        // raw bytes of %%Title, empty when there was none
    std::string producer;     // this program and its version
    std::string creationDate; // "D:YYYYMMDDHHmmSSZ"
};

// A page's resources: names (without the slash) and the object numbers.
struct PageResources {
    std::vector<std::pair<std::string, int>> xobjects, patterns;
};

class PdfWriter {
public:
    explicit PdfWriter(std::FILE* out);

    // A Flate-compressed content stream; returns its object number.
    int writeContent(std::string_view content);
    // An image XObject or tiling pattern of the library; returns its object number.
    int writeRecord(const PdfObject& record);
    void writePage(const Box& media, const std::vector<int>& contents,
                   const PageResources& resources);
    // The page tree, the catalogue, the Info dictionary, the cross-reference table.
    void finish(const DocumentInfo& info);

    bool failed() const;
    std::uint64_t bytesWritten() const { return offset_; }
    std::size_t pageCount() const { return pages_.size(); }

private:
    int startObject(int number = 0);
    void writeStream(std::string_view dictionary, std::string_view data);
    void write(std::string_view text);

    std::FILE* out_;
    std::uint64_t offset_ = 0;
    bool failed_ = false;
    std::vector<std::uint64_t> offsets_; // by object number; 0 is the free head
    std::vector<int> pages_;
    std::string compressed_;
};

// A PDF text string: (literal) for ASCII and Latin-1 text, <FEFF...> UTF-16
// for text that is valid UTF-8 beyond ASCII.
std::string pdfTextString(std::string_view text);

// A number as PDF writes it: at most two decimals, no trailing zeros.
std::string pdfNumber(double value);

} // namespace kelps2pdf
