#pragma once

#include "core/CompositeObject.h"

#include <string>
#include <string_view>
#include <vector>

class StringData : public CompositeData {
public:
    explicit StringData(std::string_view text) : CompositeData(ps_string), text(text) {}

    std::string text;
    // Filter names in order of application; hexadecimal and ASCII85 strings
    // stay encoded and say so here.
    std::vector<std::string> filters;
};

class StringObject : public CompositeObject {
public:
    static constexpr uint32_t tag = ps_string;
    StringObject(VirtualMemoryObject* memory, std::string_view text)
        : CompositeObject(tag, false, memory, new StringData(text)) {}
    explicit StringObject(const StringObject& other) : CompositeObject(other) {}

    StringData* stringData() const { return static_cast<StringData*>(data); }
    std::string& text() const { return stringData()->text; }
    // The text up to its first NUL, as names, keys and printing see it.
    std::string_view cText() const;

    std::string describe() const override;
    std::string doubleEqualsText() const override;
    std::string equalsText() const override { return std::string(cText()); }
    PostscriptObject* clone(VirtualMemoryObject*) const override { return new StringObject(*this); }
};
