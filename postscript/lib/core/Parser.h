#pragma once

#include "core/PostscriptObject.h"

#include <cstdint>
#include <string>
#include <string_view>

struct MemoryRecord;
class DictionarySet;
class NameTable;

// The scanner: bytes of the current buffer in, one object per nextObject().
// A buffer may end anywhere, inside a token, a string or an escape; the
// scanner then answers null and goes on with the next buffer where it stopped.
class Parser {
public:
    enum State : uint32_t {
        normal = 0,
        comment = 1,
        literalString = 2,
        angleString = 3,
        ascii85Tail = 4,
        literalName = 5,
    };

    Parser(MemoryRecord* memory, DictionarySet* dictionaries, NameTable* names)
        : memory(memory), dictionaries(dictionaries), names(names) {}

    // A new object with count 0, or, for "//name", the dictionary's own object.
    // Null when the buffer ran out first.
    PostscriptObject* nextObject();

    void setBuffer(const unsigned char* first, const unsigned char* last) {
        cursor = begin = first;
        end = last;
    }
    unsigned char nextChar();
    void skipChar();
    void backChar();
    bool hasChars() const { return cursor < end; }
    // The file operators' line: the token so far and the bytes up to LF, CR or
    // NUL, which stays unread. False when the buffer ends first, with the
    // cursor and the token as they were.
    bool readLine(std::string& result);

    const unsigned char* cursor = nullptr;
    const unsigned char* begin = nullptr;
    const unsigned char* end = nullptr;
    std::string token;
    unsigned char delimiter = 0;
    bool inEscape = false;
    std::string escape;
    MemoryRecord* memory;
    DictionarySet* dictionaries;
    NameTable* names;
    uint32_t state = normal;
    int32_t parenDepth = 0;

private:
    void escapeAction();
    // The token is done: the scanner goes back to the normal state with an
    // empty token, and gives the object made of it.
    PostscriptObject* endToken(PostscriptObject* object);
    PostscriptObject* finishToken(std::string_view text);
    PostscriptObject* makeName(std::string_view text, bool executable);
    PostscriptObject* makeString(std::string_view text, const char* filter);
};
