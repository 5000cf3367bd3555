#include "umpd/NameMacros.h"

#include "platform/Platform.h"

#include <cstdio>
#include <cstring>
#include <vector>

namespace {
// A runaway environment (values naming further variables, doubling each time) stops here.
constexpr std::size_t expansionLimit = 32768;
constexpr std::size_t timeRoom = 200;

const char16_t* const illegalNameChars = u"<>:\"/\\|?*";

std::u16string ascii(const char* text) {
    return std::u16string(text, text + std::char_traits<char>::length(text));
}

// Every `from` becomes `to`, going on after what was put in; a text at the limit stays.
void replaceAll(std::u16string& text, std::u16string_view from, std::u16string_view to) {
    for (auto at = text.find(from); at != std::u16string::npos;
         at = text.find(from, at + to.size())) {
        if (text.size() - from.size() + to.size() > expansionLimit) return;
        text.replace(at, from.size(), to);
    }
}

// ---- date codes

const char* const dayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                "Thursday", "Friday", "Saturday"};
const char* const monthNames[] = {"January",   "February", "March",    "April",
                                  "May",       "June",     "July",     "August",
                                  "September", "October",  "November", "December"};

bool inRange(const std::tm& t) {
    return t.tm_sec >= 0 && t.tm_sec <= 60 && t.tm_min >= 0 && t.tm_min <= 59 && t.tm_hour >= 0 &&
           t.tm_hour <= 23 && t.tm_mday >= 1 && t.tm_mday <= 31 && t.tm_mon >= 0 &&
           t.tm_mon <= 11 && t.tm_year >= -1900 && t.tm_year <= 8099 && t.tm_wday >= 0 &&
           t.tm_wday <= 6 && t.tm_yday >= 0 && t.tm_yday <= 365;
}

// Codes that print one number, with zeros to their width.
struct NumberCode {
    char code;
    int width;
    int (*value)(const std::tm&);
};
const NumberCode numberCodes[] = {
    {'C', 2, [](const std::tm& t) { return (t.tm_year + 1900) / 100; }},
    {'d', 2, [](const std::tm& t) { return t.tm_mday; }},
    {'H', 2, [](const std::tm& t) { return t.tm_hour; }},
    {'I', 2, [](const std::tm& t) { return t.tm_hour % 12 == 0 ? 12 : t.tm_hour % 12; }},
    {'j', 3, [](const std::tm& t) { return t.tm_yday + 1; }},
    {'m', 2, [](const std::tm& t) { return t.tm_mon + 1; }},
    {'M', 2, [](const std::tm& t) { return t.tm_min; }},
    {'S', 2, [](const std::tm& t) { return t.tm_sec; }},
    {'u', 1, [](const std::tm& t) { return t.tm_wday == 0 ? 7 : t.tm_wday; }},
    {'U', 2, [](const std::tm& t) { return (t.tm_yday + 7 - t.tm_wday) / 7; }},
    {'w', 1, [](const std::tm& t) { return t.tm_wday; }},
    {'W', 2, [](const std::tm& t) { return (t.tm_yday + 7 - (t.tm_wday + 6) % 7) / 7; }},
    {'y', 2, [](const std::tm& t) { return (t.tm_year + 1900) % 100; }},
    {'Y', 4, [](const std::tm& t) { return t.tm_year + 1900; }},
};

// Codes that stand for other codes, or for fixed text.
struct SequenceCode {
    char code;
    const char* codes;
};
const SequenceCode sequenceCodes[] = {
    {'c', "%m/%d/%y %H:%M:%S"},
    {'D', "%m/%d/%y"},
    {'x', "%m/%d/%y"},
    {'F', "%Y-%m-%d"},
    {'r', "%I:%M:%S %p"},
    {'R', "%H:%M"},
    {'T', "%H:%M:%S"},
    {'X', "%H:%M:%S"},
    {'n', "\n"},
    {'t', "\t"},
};

// One code, or false when it is not one of the library's.
bool formatCode(std::string& out, char code, bool noZeros, const std::tm& t, std::int32_t bias) {
    char text[16];
    for (const auto& number : numberCodes) {
        if (number.code != code) continue;
        std::snprintf(text, sizeof text, "%0*d", noZeros ? 1 : number.width, number.value(t));
        out += text;
        return true;
    }
    for (const auto& sequence : sequenceCodes) {
        if (sequence.code != code) continue;
        for (const char* c = sequence.codes; *c; ++c) {
            if (*c == '%')
                formatCode(out, *++c, false, t, bias); // every code here is known
            else
                out += *c;
        }
        return true;
    }
    // Day and month names, whole or in three letters.
    bool day = code == 'a' || code == 'A';
    bool month = code == 'b' || code == 'h' || code == 'B';
    if (day || month) {
        const char* name = day ? dayNames[t.tm_wday] : monthNames[t.tm_mon];
        out.append(name, code == 'A' || code == 'B' ? std::strlen(name) : 3);
        return true;
    }
    switch (code) {
    case 'p':
        out += t.tm_hour < 12 ? "AM" : "PM";
        return true;
    case 'e':
        std::snprintf(text, sizeof text, noZeros ? "%d" : "%2d", t.tm_mday);
        out += text;
        return true;
    case 'z': {
        int east = -bias; // the bias counts from local time to UTC
        int minutes = east < 0 ? -east : east;
        std::snprintf(text, sizeof text, "%c%02d%02d", east < 0 ? '-' : '+', minutes / 60 % 100,
                      minutes % 60);
        out += text;
        return true;
    }
    case '%':
        out += '%';
        return true;
    default:
        return false;
    }
}
} // namespace

bool isIllegalNameChar(char16_t c) {
    if (c < 32) return true;
    for (const char16_t* p = illegalNameChars; *p; ++p)
        if (*p == c) return true;
    return false;
}

std::size_t cutLength(std::u16string_view text, std::size_t n) {
    if (n >= text.size()) return text.size();
    if (n > 0 && text[n - 1] >= 0xD800 && text[n - 1] < 0xDC00 && text[n] >= 0xDC00 &&
        text[n] < 0xE000)
        return n - 1;
    return n;
}

std::u16string_view untilNul(std::u16string_view text) {
    return text.substr(0, text.find(u'\0'));
}

std::optional<std::u16string> formatTime(std::u16string_view format, const std::tm& time,
                                         std::int32_t biasMinutes, std::size_t capacity) {
    if (!inRange(time)) return std::nullopt;
    std::u16string out;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != u'%') {
            out += format[i];
        } else {
            bool noZeros = i + 1 < format.size() && format[i + 1] == u'#';
            if (noZeros) ++i;
            if (i + 1 >= format.size() || format[i + 1] > 0x7F) return std::nullopt;
            std::string code;
            if (!formatCode(code, static_cast<char>(format[++i]), noZeros, time, biasMinutes))
                return std::nullopt;
            out += ascii(code.c_str());
        }
        if (out.size() >= capacity) return std::nullopt;
    }
    return out;
}

std::u16string expandMacros(std::u16string_view templateText, std::u16string_view docName,
                            std::int32_t number, bool sanitise) {
    auto& system = platform::current().system();
    std::u16string text(untilNul(templateText));
    docName = untilNul(docName);

    auto percent = text.find(u'%');
    if (percent != std::u16string::npos && percent + 1 < text.size()) {
        if (auto now = system.localTime()) {
            auto dated = formatTime(text, *now, system.timeZoneBias(), text.size() + timeRoom);
            if (dated && !dated->empty()) text = *dated;
        }
    }

    if (text.find(u'{') != std::u16string::npos) {
        for (const auto& entry : system.environmentBlock()) {
            auto eq = entry.find(u'=');
            if (eq == std::u16string::npos) continue;
            auto name = std::u16string_view(entry).substr(0, eq);
            auto value = untilNul(std::u16string_view(entry).substr(eq + 1));
            std::u16string key;
            key.reserve(name.size() + 2);
            key.append(1, u'{').append(name).append(1, u'}');
            replaceAll(text, key, value);
        }
    }

    if (text.find(u"{AUTONUM") != std::u16string::npos) {
        const char* forms[] = {"%d", "%02d", "%03d", "%04d", "%05d"};
        const char16_t* keys[] = {u"{AUTONUM}", u"{AUTONUM2}", u"{AUTONUM3}", u"{AUTONUM4}",
                                  u"{AUTONUM5}"};
        for (int i = 0; i < 5; ++i) {
            char printed[16];
            std::snprintf(printed, sizeof printed, forms[i], number);
            replaceAll(text, keys[i], ascii(printed));
        }
    }

    if (text.find(u"{DOC}") != std::u16string::npos && !docName.empty()) {
        // The application's name ends at the first "-", whatever the trim character is.
        std::size_t start = 0;
        auto dash = docName.find(u'-');
        if (dash != std::u16string_view::npos) {
            start = dash + 1;
            while (start < docName.size() && docName[start] == u' ')
                ++start;
            if (start >= docName.size()) start = 0;
        }
        std::size_t end = docName.size();
        for (std::size_t i = docName.size() - 1; i > start; --i) {
            if (docName[i] == u'.') {
                if (docName.size() - i - 1 <= 4) end = i;
                break;
            }
        }
        replaceAll(text, u"{DOC}", docName.substr(start, end - start));
    }

    if (text.find(u"{DOC_NOSUFFIX}") != std::u16string::npos && !docName.empty()) {
        std::size_t end = docName.size();
        for (std::size_t i = docName.size() - 1; i >= 1; --i) {
            if (docName[i] == u'.') {
                if (docName.size() - i - 1 <= 4) end = i;
                break;
            }
        }
        replaceAll(text, u"{DOC_NOSUFFIX}", docName.substr(0, end));
    }

    if (text.find(u"{DOC_FULL}") != std::u16string::npos) replaceAll(text, u"{DOC_FULL}", docName);

    if (sanitise && !text.empty())
        for (auto& c : text)
            if (isIllegalNameChar(c)) c = u'-';
    return text;
}

namespace {
int hexDigit(char16_t c) {
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    return -1;
}

bool isBlank(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

// wcstol(text, NULL, 16) over at most two characters: blanks, a sign, then hexadecimal
// digits; anything else reads as 0. ("0x" needs a digit after it, which two cannot hold.)
long readHex(std::u16string_view text) {
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i]))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) negative = text[i++] == u'-';
    long value = 0;
    for (; i < text.size() && hexDigit(text[i]) >= 0; ++i)
        value = value * 16 + hexDigit(text[i]);
    return negative ? -value : value;
}
} // namespace

std::u16string urlDecode(std::u16string_view input) {
    auto text = untilNul(input);
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char16_t c = text[i];
        if (c == u'+') {
            out += u' ';
        } else if (c != u'%') {
            out += c;
        } else if (i + 1 >= text.size() || text[i + 1] == u'%') {
            out += u'%';
        } else {
            // Two characters, or one before the end: reading stops at the terminator.
            auto digits = text.substr(i + 1, 2);
            auto decoded = static_cast<char16_t>(readHex(digits));
            out += isIllegalNameChar(decoded) ? u'_' : decoded;
            i += digits.size();
        }
    }
    return out;
}
