#include "PdfWriter.h"

#include "Deflate.h"
#include "kelumpd64/conversion.h"

#include <cinttypes>
#include <cmath>

namespace kelps2pdf {

namespace {
constexpr int catalogObject = 1;
constexpr int pagesObject = 2;
} // namespace

PdfWriter::PdfWriter(std::FILE* out) : out_(out), offsets_(3, 0) {
    // The comment of high bytes tells transfer programs that the file is binary.
    write("%PDF-1.7\n%\xe2\xe3\xcf\xd3\n");
}

void PdfWriter::write(std::string_view text) {
    if (text.empty()) return;
    if (std::fwrite(text.data(), 1, text.size(), out_) != text.size()) failed_ = true;
    offset_ += text.size();
}

int PdfWriter::startObject(int number) {
    if (number == 0) {
        number = static_cast<int>(offsets_.size());
        offsets_.push_back(0);
    }
    offsets_[number] = offset_;
    write(std::to_string(number) + " 0 obj\n");
    return number;
}

void PdfWriter::writeStream(std::string_view dictionary, std::string_view data) {
    std::string head = "<<";
    if (!dictionary.empty()) {
        head += ' ';
        head += dictionary;
    }
    head += " /Length " + std::to_string(data.size()) + " >>\nstream\n";
    write(head);
    write(data);
    write("\nendstream\nendobj\n");
}

int PdfWriter::writeContent(std::string_view content) {
    const int number = startObject();
    deflateInto(reinterpret_cast<const unsigned char*>(content.data()), content.size(),
                compressed_);
    writeStream("/Filter /FlateDecode", compressed_);
    return number;
}

int PdfWriter::writeRecord(const PdfObject& record) {
    const int number = startObject();
    std::string dictionary = record.dictionaryText ? record.dictionaryText : "";
    const unsigned char* data = record.data;
    const std::size_t size = data ? static_cast<std::size_t>(record.dataLength) : 0;
    if (record.uncompressed) {
        deflateInto(data, size, compressed_);
        dictionary += " /Filter /FlateDecode";
        writeStream(dictionary, compressed_);
    } else {
        writeStream(dictionary, std::string_view(reinterpret_cast<const char*>(data), size));
    }
    return number;
}

void PdfWriter::writePage(const Box& media, const std::vector<int>& contents,
                          const PageResources& resources) {
    const int number = startObject();
    pages_.push_back(number);
    std::string page = "<< /Type /Page /Parent 2 0 R /MediaBox [" + pdfNumber(media.llx) + ' ' +
                       pdfNumber(media.lly) + ' ' + pdfNumber(media.urx) + ' ' +
                       pdfNumber(media.ury) + "]\n/Resources << /ProcSet [/PDF /ImageB /ImageC]";
    auto names = [&page](const char* kind, const std::vector<std::pair<std::string, int>>& list) {
        if (list.empty()) return;
        page += std::string(" /") + kind + " <<";
        for (const auto& [name, object] : list)
            page += " /" + name + ' ' + std::to_string(object) + " 0 R";
        page += " >>";
    };
    names("XObject", resources.xobjects);
    names("Pattern", resources.patterns);
    page += " >>";
    if (contents.size() == 1) {
        page += "\n/Contents " + std::to_string(contents[0]) + " 0 R";
    } else if (!contents.empty()) {
        page += "\n/Contents [";
        for (int content : contents)
            page += ' ' + std::to_string(content) + " 0 R";
        page += " ]";
    }
    page += " >>\nendobj\n";
    write(page);
}

void PdfWriter::finish(const DocumentInfo& info) {
    startObject(pagesObject);
    write("<< /Type /Pages /Count " + std::to_string(pages_.size()) + "\n/Kids [");
    std::string kids;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        kids.append(i % 10 == 0 ? "\n" : " ").append(std::to_string(pages_[i])).append(" 0 R");
        if (kids.size() > 4096) {
            write(kids);
            kids.clear();
        }
    }
    write(kids + " ]\n>>\nendobj\n");
    startObject(catalogObject);
    write("<< /Type /Catalog /Pages 2 0 R >>\nendobj\n");
    const int infoObject = startObject();
    std::string dictionary = "<<";
    auto add = [&dictionary](std::string_view key, const std::string& value) {
        if (value.empty()) return;
        dictionary.append(" /").append(key).append(" ").append(pdfTextString(value));
    };
    add("Title", info.title);
    add("Producer", info.producer);
    add("CreationDate", info.creationDate);
    write(dictionary + " >>\nendobj\n");

    const std::uint64_t xref = offset_;
    write("xref\n0 " + std::to_string(offsets_.size()) + "\n0000000000 65535 f \n");
    char entry[32];
    std::string table;
    for (std::size_t number = 1; number < offsets_.size(); ++number) {
        std::snprintf(entry, sizeof entry, "%010" PRIu64 " 00000 n \n", offsets_[number]);
        table += entry;
        if (table.size() > 65536) {
            write(table);
            table.clear();
        }
    }
    write(table);
    write("trailer\n<< /Size " + std::to_string(offsets_.size()) + " /Root 1 0 R /Info " +
          std::to_string(infoObject) + " 0 R >>\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n");
    if (std::fflush(out_) != 0) failed_ = true;
}

bool PdfWriter::failed() const {
    return failed_ || std::ferror(out_);
}

namespace {

// The code points of valid UTF-8, or false for anything else.
bool decodeUtf8(std::string_view text, std::u32string& out) {
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        int extra = lead < 0x80         ? 0
                    : (lead >> 5) == 6  ? 1
                    : (lead >> 4) == 14 ? 2
                    : (lead >> 3) == 30 ? 3
                                        : -1;
        if (extra < 0 || (extra > 0 && i + extra >= text.size())) return false;
        char32_t code = extra == 0 ? lead : lead & (0x3f >> extra);
        for (int k = 1; k <= extra; ++k) {
            const unsigned char next = static_cast<unsigned char>(text[i + k]);
            if ((next >> 6) != 2) return false;
            code = (code << 6) | (next & 0x3f);
        }
        static const char32_t least[] = {0, 0x80, 0x800, 0x10000};
        if (code < least[extra] || code > 0x10ffff || (code >= 0xd800 && code < 0xe000))
            return false;
        out.push_back(code);
        i += extra + 1;
    }
    return true;
}

} // namespace

std::string pdfTextString(std::string_view text) {
    std::u32string codes;
    bool ascii = true;
    for (char c : text)
        ascii = ascii && static_cast<unsigned char>(c) < 0x80;
    char hex[8];
    if (!ascii && decodeUtf8(text, codes)) {
        std::string out = "<FEFF";
        auto unit = [&](unsigned value) {
            std::snprintf(hex, sizeof hex, "%04X", value);
            out += hex;
        };
        for (char32_t code : codes) {
            if (code >= 0x10000) {
                unit(0xd800 + ((code - 0x10000) >> 10));
                unit(0xdc00 + ((code - 0x10000) & 0x3ff));
            } else {
                unit(code);
            }
        }
        return out + ">";
    }
    std::string out = "(";
    for (char c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (c == '(' || c == ')' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < 0x20 || byte == 0x7f) {
            std::snprintf(hex, sizeof hex, "\\%03o", byte);
            out += hex;
        } else {
            out += c;
        }
    }
    return out + ")";
}

std::string pdfNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", std::round(value * 100) / 100);
    std::string out = text;
    while (out.back() == '0')
        out.pop_back();
    if (out.back() == '.') out.pop_back();
    return out == "-0" ? "0" : out;
}

} // namespace kelps2pdf
