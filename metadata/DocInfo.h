#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class PrinterConfig;

// A printer's document information settings, as one packet sees them.
struct DocInfo {
    std::uint32_t enabled = 0;
    std::u16string title, author, subject, keywords, creator, producer, creationDate, modDate,
        reserved;
    std::uint32_t fromDoc = 0;
};

// Straight from the registry, one opening of the printer's key per text; what cannot be read
// is empty or 0.
DocInfo readDocInfo(PrinterConfig& config);

// The job's packet: what "pdfaXML" gives. docName is the job's document name.
std::u16string buildPdfaXml(PrinterConfig& config, std::u16string_view docName);
