#include "core/Parser.h"

#include "core/DictionarySet.h"
#include "core/Interpreter.h"
#include "core/NameObject.h"
#include "core/NumberUtils.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <array>
#include <cstdint>

namespace {

using StopSet = std::array<bool, 256>;

// NUL stops in every state: the stop test has strchr's semantics.
constexpr StopSet makeStopSet(std::string_view stops) {
    StopSet set{};
    set[0] = true;
    for (char c : stops)
        set[static_cast<unsigned char>(c)] = true;
    return set;
}

constexpr std::string_view normalStops = "\n\r \t\f()<>[]{}%/";
constexpr StopSet stopSets[6] = {
    makeStopSet(normalStops), // normal
    makeStopSet("\n\f\r"),    // comment
    makeStopSet("\\()"),      // literalString
    makeStopSet(">"),         // angleString
    makeStopSet("~"),         // ascii85Tail
    makeStopSet(normalStops), // literalName
};

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

} // namespace

unsigned char Parser::nextChar() {
    if (cursor >= end) PS_THROW("Cannot get next char when none left");
    return *cursor++;
}

void Parser::skipChar() {
    if (cursor >= end) PS_THROW("Cannot skip when no chars left");
    ++cursor;
}

void Parser::backChar() {
    if (!begin || cursor <= begin) PS_THROW("Cannot go back");
    --cursor;
}

bool Parser::readLine(std::string& result) {
    const unsigned char* start = cursor;
    while (cursor < end && *cursor != '\n' && *cursor != '\r' && *cursor != '\0')
        ++cursor;
    if (cursor >= end) {
        cursor = start;
        return false;
    }
    token.append(reinterpret_cast<const char*>(start), cursor - start);
    result = std::move(token);
    token.clear();
    return true;
}

PostscriptObject* Parser::makeName(std::string_view text, bool executable) {
    return NameObject::makePlain(names->intern(text), executable);
}

PostscriptObject* Parser::makeString(std::string_view text, const char* filter) {
    auto* string = new StringObject(memory->currentMemory, text);
    if (filter) string->stringData()->filters.emplace_back(filter);
    return string;
}

PostscriptObject* Parser::nextObject() {
    for (;;) {
        if (inEscape) {
            if (cursor >= end) return nullptr;
            escape += static_cast<char>(*cursor++);
            escapeAction();
            continue;
        }
        if (cursor >= end) return nullptr;
        const StopSet& stops = stopSets[state];
        const unsigned char* start = cursor;
        while (cursor < end && !stops[*cursor])
            ++cursor;
        if (token.empty() && cursor != start && cursor < end &&
            (state == normal || state == literalName)) {
            // The whole token lies in this buffer: read it where it stands.
            // ("/" stops it, so a literal name here is a plain one.)
            delimiter = *cursor;
            const std::string_view text(reinterpret_cast<const char*>(start), cursor - start);
            if (state == normal) return finishToken(text);
            state = normal;
            return makeName(text, false);
        }
        // A comment's text is dropped at its end anyway; don't keep it.
        if (state != comment) token.append(reinterpret_cast<const char*>(start), cursor - start);
        if (cursor >= end) return nullptr;
        delimiter = *cursor;

        switch (state) {
        case normal:
            if (!token.empty()) {
                PostscriptObject* object = finishToken(token);
                token.clear();
                return object;
            }
            skipChar();
            switch (delimiter) {
            case '/':
                state = literalName;
                break;
            case '%':
                state = comment;
                break;
            case '(':
                state = literalString;
                parenDepth = 0;
                break;
            case '<':
                state = angleString;
                break;
            case '[':
            case ']':
            case '{':
            case '}': {
                char text = static_cast<char>(delimiter);
                return makeName(std::string_view(&text, 1), true);
            }
            default:
                break; // white space, a stray ")" or ">", a NUL
            }
            break;

        case comment:
            token.clear();
            skipChar();
            state = normal;
            break;

        case literalName:
            if (token.empty() && delimiter != '/') return endToken(makeName({}, false));
            if (token.empty()) {
                // The second slash of an immediately evaluated name.
                token += static_cast<char>(nextChar());
                break;
            }
            if (token.size() > 1 && token[0] == '/') {
                PostscriptObject* value =
                    dictionaries->lookupText(std::string_view(token).substr(1));
                if (!value) PS_THROW("Undefined Immediately Evaluated Name");
                return endToken(value);
            }
            return endToken(makeName(token, false));

        case literalString:
            skipChar();
            if (delimiter == ')' && parenDepth < 1) return endToken(makeString(token, nullptr));
            if (delimiter == ')') {
                --parenDepth;
                token += ')';
            } else if (delimiter == '(') {
                // The count is 32 bits: only a hostile input gets this far.
                if (parenDepth == INT32_MAX)
                    PS_THROW("Too many open parentheses in literal string");
                ++parenDepth;
                token += '(';
            } else if (delimiter == '\\') {
                escape.clear();
                inEscape = true;
            } else {
                PS_THROW("Unexpected separator when parsing for end of literal string");
            }
            break;

        case angleString:
        case ascii85Tail: {
            const bool ascii85 = !token.empty() && token.front() == '~';
            // A ">" inside ASCII85 data, not after its "~", is data: read on to the "~".
            const bool inData = state == angleString && ascii85 && token.back() != '~';
            token += static_cast<char>(nextChar());
            if (inData) {
                state = ascii85Tail;
                break;
            }
            if (ascii85)
                return endToken(makeString(std::string_view(token).substr(1), "ASCII85Decode"));
            return endToken(makeString(token, "ASCIIHexDecode"));
        }

        default:
            PS_THROWF("Scanner in unknown state %u", state);
        }
    }
}

void Parser::escapeAction() {
    auto convert = [this] {
        int32_t value = 0;
        std::size_t used = numbers::parseLong(escape, 8, value);
        inEscape = false;
        if (used == escape.size()) token += static_cast<char>(value & 0xFF);
    };
    switch (escape.size()) {
    case 1: {
        char c = escape[0];
        switch (c) {
        case 'n':
            token += '\n';
            break;
        case 'r':
            token += '\r';
            break;
        case 't':
            token += '\t';
            break;
        case 'b':
            token += '\b';
            break;
        case 'f':
            token += '\f';
            break;
        case '\\':
        case '(':
        case ')':
            token += c;
            break;
        case '\n':
        case '\r':
            return; // a line end may pair with the next byte
        default:
            if (isOctal(c)) return;
            PS_THROW("Unsupported character escape in string");
        }
        inEscape = false;
        return;
    }
    case 2:
        if (!isOctal(escape[0])) {
            // LF CR is one line end; otherwise the second byte is string text.
            if (escape[1] != '\r') backChar();
            inEscape = false;
        } else if (!isOctal(escape[1])) {
            backChar();
            convert();
        }
        return;
    default:
        if (!isOctal(escape[2])) backChar();
        convert();
        return;
    }
}

PostscriptObject* Parser::endToken(PostscriptObject* object) {
    token.clear();
    state = normal;
    return object;
}

PostscriptObject* Parser::finishToken(std::string_view text) {
    // Up to a NUL, by hand: memchr is a call, and tokens are short.
    std::size_t length = 0;
    while (length < text.size() && text[length] != '\0')
        ++length;
    text = text.substr(0, length);
    int32_t value = 0;
    double real = 0;
    switch (numbers::quickNumber(text, value, real)) {
    case numbers::QuickNumber::integer:
        return new IntegerObject(value);
    case numbers::QuickNumber::real:
        return new RealObject(real);
    case numbers::QuickNumber::unknown:
        break;
    }
    if (numbers::parseIntegerToken(text, value)) return new IntegerObject(value);
    if (numbers::isRealToken(text) && numbers::parseReal(text, real)) return new RealObject(real);
    return makeName(text, true);
}
