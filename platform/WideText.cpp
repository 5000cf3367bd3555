#include "platform/WideText.h"

namespace platform {

std::string toUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        } else if (c >= 0xD800 && c < 0xE000) {
            c = 0xFFFD;
        }
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::u16string fromUtf8(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        auto lead = static_cast<unsigned char>(text[i]);
        int extra = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
        char32_t c = extra == 0   ? lead
                     : extra == 1 ? lead & 0x1F
                     : extra == 2 ? lead & 0x0F
                                  : lead & 0x07;
        bool valid = extra >= 0 && i + extra < text.size();
        for (int k = 1; valid && k <= extra; ++k) {
            auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80)
                valid = false;
            else
                c = (c << 6) | (next & 0x3F);
        }
        if (!valid || c > 0x10FFFF) {
            out += u'\xFFFD';
            ++i;
            continue;
        }
        i += extra + 1;
        if (c >= 0x10000) {
            c -= 0x10000;
            out += static_cast<char16_t>(0xD800 + (c >> 10));
            out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        } else {
            out += static_cast<char16_t>(c);
        }
    }
    return out;
}

std::u16string fromWchar(const wchar_t* text) {
    std::u16string out;
    if (!text) return out;
    for (; *text; ++text) {
        auto c = static_cast<char32_t>(*text);
        if constexpr (sizeof(wchar_t) == 2) {
            out += static_cast<char16_t>(c);
        } else if (c >= 0x10000 && c <= 0x10FFFF) {
            c -= 0x10000;
            out += static_cast<char16_t>(0xD800 + (c >> 10));
            out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        } else {
            out += c > 0x10FFFF ? u'\xFFFD' : static_cast<char16_t>(c);
        }
    }
    return out;
}

std::wstring toWchar(std::u16string_view text) {
    std::wstring out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (sizeof(wchar_t) > 2 && c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() &&
            text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        }
        out += static_cast<wchar_t>(c);
    }
    return out;
}

std::u16string foldCase(std::u16string_view text) {
    std::u16string out(text);
    for (auto& c : out)
        if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
    return out;
}

bool equalsIgnoreCase(std::u16string_view a, std::u16string_view b) {
    return a.size() == b.size() && foldCase(a) == foldCase(b);
}

} // namespace platform
