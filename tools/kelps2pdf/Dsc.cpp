#include "Dsc.h"

#include <cctype>
#include <cstdlib>
#include <string>

namespace kelps2pdf {

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string_view trim(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

// Reads a decimal number (PostScript integer or real, no radix) at the start
// of text after blanks, and consumes it.
std::optional<double> takeNumber(std::string_view& text) {
    text = trim(text);
    std::size_t end = 0;
    while (end < text.size() && !isSpace(text[end]) && text[end] != ']' && text[end] != '[')
        ++end;
    if (end == 0 || end > 40) return std::nullopt;
    const std::string word(text.substr(0, end));
    char* stop = nullptr;
    const double value = std::strtod(word.c_str(), &stop);
    if (stop != word.c_str() + word.size() || !(value == value) || value > 1e7 || value < -1e7)
        return std::nullopt;
    text.remove_prefix(end);
    return value;
}

bool usable(const Box& box) {
    // Below a point or beyond 200 inches no reader shows a page (PDF's own limits).
    const double width = box.urx - box.llx, height = box.ury - box.lly;
    return width >= 1 && height >= 1 && width <= 14400 && height <= 14400;
}

} // namespace

std::optional<std::string_view> commentValue(std::string_view line, std::string_view key) {
    if (line.size() < key.size() + 2 || line[0] != '%' || line[1] != '%') return std::nullopt;
    line.remove_prefix(2);
    if (line.substr(0, key.size()) != key) return std::nullopt;
    line.remove_prefix(key.size());
    if (line.empty() || isSpace(line.front())) return trim(line);
    if (line.front() != ':') return std::nullopt;
    return trim(line.substr(1));
}

std::optional<Box> parseBoundingBox(std::string_view value) {
    Box box;
    double* fields[] = {&box.llx, &box.lly, &box.urx, &box.ury};
    for (double* field : fields) {
        const auto number = takeNumber(value);
        if (!number) return std::nullopt;
        *field = *number;
    }
    if (!trim(value).empty() || !usable(box)) return std::nullopt;
    return box;
}

std::optional<Box> parseDocumentMedia(std::string_view value) {
    value = trim(value);
    const std::size_t nameEnd = value.find_first_of(" \t");
    if (nameEnd == std::string_view::npos) return std::nullopt;
    value.remove_prefix(nameEnd);
    const auto width = takeNumber(value);
    const auto height = width ? takeNumber(value) : std::nullopt;
    if (!height) return std::nullopt;
    const Box box{0, 0, *width, *height};
    return usable(box) ? std::optional<Box>(box) : std::nullopt;
}

std::optional<Box> findPageSize(std::string_view line) {
    const std::string_view key = "/PageSize";
    const std::size_t at = line.find(key);
    if (at == std::string_view::npos) return std::nullopt;
    std::string_view rest = trim(line.substr(at + key.size()));
    if (rest.empty() || rest.front() != '[') return std::nullopt;
    rest.remove_prefix(1);
    const auto width = takeNumber(rest);
    const auto height = width ? takeNumber(rest) : std::nullopt;
    rest = trim(rest);
    if (!height || rest.empty() || rest.front() != ']') return std::nullopt;
    const Box box{0, 0, *width, *height};
    return usable(box) ? std::optional<Box>(box) : std::nullopt;
}

std::optional<Box> paperByName(std::string_view name) {
    struct Paper {
        const char* name;
        double width, height;
    };
    static const Paper papers[] = {
        {"a3", 841.89, 1190.55}, {"a4", 595.28, 841.89}, {"a5", 419.53, 595.28},
        {"b5", 498.9, 708.66},   {"letter", 612, 792},   {"legal", 612, 1008},
        {"tabloid", 792, 1224},
    };
    std::string lower(name);
    for (char& c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const Paper& paper : papers)
        if (lower == paper.name) return Box{0, 0, paper.width, paper.height};
    const std::size_t by = lower.find('x');
    if (by == std::string::npos) return std::nullopt;
    std::string_view width = std::string_view(lower).substr(0, by);
    std::string_view height = std::string_view(lower).substr(by + 1);
    const auto w = takeNumber(width);
    const auto h = takeNumber(height);
    if (!w || !h || !trim(width).empty() || !trim(height).empty()) return std::nullopt;
    const Box box{0, 0, *w, *h};
    return usable(box) ? std::optional<Box>(box) : std::nullopt;
}

std::string dscText(std::string_view value) {
    value = trim(value);
    if (value.size() < 2 || value.front() != '(' || value.back() != ')') return std::string(value);
    std::string text;
    for (std::size_t i = 1; i + 1 < value.size(); ++i) {
        char c = value[i];
        if (c == '\\' && i + 2 < value.size()) {
            c = value[++i];
            if (c >= '0' && c <= '7') {
                int code = 0;
                for (int digits = 0;
                     digits < 3 && value[i] >= '0' && value[i] <= '7' && i + 1 < value.size();
                     ++digits)
                    code = code * 8 + (value[i++] - '0');
                --i;
                c = static_cast<char>(code);
            } else if (c == 'n') {
                c = '\n';
            } else if (c == 't') {
                c = '\t';
            }
        }
        text.push_back(c);
    }
    return text;
}

std::string_view stripJobControl(std::string_view line) {
    static constexpr std::string_view uel = "\x1b%-12345X";
    for (;;) {
        if (!line.empty() && line.front() == '\x04') {
            line.remove_prefix(1);
        } else if (line.substr(0, uel.size()) == uel) {
            line.remove_prefix(uel.size());
        } else {
            break;
        }
    }
    if (line.substr(0, 4) == "@PJL") return {};
    return line;
}

} // namespace kelps2pdf
