// Output file naming on arbitrary names and templates: decoding, the template language and
// the document name part, over an in-memory system. Each result must stay within its bounds.
#include "platform/Platform.h"
#include "support/fake/FakePlatform.h"
#include "umpd/NameMacros.h"
#include "umpd/SetFilename.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {
// Input: one byte of options, then three texts in 16-bit units, split at the unit 0xFFFF.
std::u16string nextText(const uint8_t*& data, const uint8_t* end) {
    std::u16string text;
    for (; data + 1 < end; data += 2) {
        char16_t c = static_cast<char16_t>(data[0] | data[1] << 8);
        if (c == 0xFFFF) {
            data += 2;
            break;
        }
        text += c;
    }
    return text;
}

platform::FakePlatform& system() {
    static platform::FakePlatform* fake = [] {
        auto* f = new platform::FakePlatform;
        f->system().env[u"A"] = u"{B}{B}";
        f->system().env[u"B"] = u"{C}{C}%Y";
        f->system().env[u"C"] = u"<x>:{DOC}";
        f->system().envFirst = {u"=C:=C:\\work", u"=::=::\\"};
        platform::setCurrent(f);
        return f;
    }();
    return *fake;
}

void check(bool holds) {
    if (!holds) __builtin_trap();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    system();
    if (size < 2) return 0;
    const uint8_t options = data[0];
    const uint8_t roomByte = data[1];
    const uint8_t* at = data + 2;
    const uint8_t* end = data + size;
    auto docName = nextText(at, end);
    auto templateText = nextText(at, end);
    auto extension = nextText(at, end).substr(0, 39);

    auto decoded = urlDecode(docName);
    check(decoded.size() <= docName.size());

    auto expanded = expandMacros(templateText, docName, options * 1000003 - 7, options & 1);
    if (options & 1)
        for (char16_t c : expanded)
            check(!isIllegalNameChar(c));

    SetFilename naming(nullptr, 3);
    naming.trimChar = static_cast<char16_t>(options >> 1);
    if (!extension.empty()) naming.defaultExtension = extension;
    std::u16string out(roomByte * 3u, u'd');
    const std::size_t outSize = 780;
    auto name = docName.substr(0, 259);
    naming.appendDocName(name, out, outSize - out.size());
    check(out.size() < outSize);
    check(name.size() < SetFilename::docNameChars);
    for (char16_t c : name)
        check(!isIllegalNameChar(c));

    auto repaired = repairLongPath(decoded + expanded);
    check(repaired.size() < SetFilename::pathChars);
    return 0;
}
