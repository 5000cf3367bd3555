#include "pdf/StartupTexts.h"

#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "platform/DebugOutput.h"

#include <cstdint>
#include <string>

namespace {

// Each short name is the operator's own object, loaded, not a procedure
// calling it; | and , are defined first and the others spelled out.
const char abbreviations[] =
    "/| /def load def /, /load load | /~ /exch load def /? /ifelse load def /! /pop load def "
    "/` /begin load def /^ /index load def /@ /dup load def /+ /translate load def "
    "/$ /roll load def /U /userdict load def /- /rlineto load def /& /currentdict load def "
    "/: /gsave load def /; /grestore load def /F /false load def /T /true load def "
    "/N /newpath load def /E /end load def /Ac /arc load def /An /arcn load def "
    "/A /ashow load def /D /awidthshow load def /C /closepath load def /O /eofill load def "
    "/I /lineto load def /-C /rcurveto load def /-M /rmoveto load def /+S /scale load def "
    "/Ji /setfont load def /Lc /setlinecap load def /Lj /setlinejoin load def "
    "/Lw /setlinewidth load def /S /show load def /LH /showpage load def /K /stroke load def "
    "/W /widthshow load def /b {bind def} bind def ";

const char helveticaStub[] =
    "/Helvetica 7 dict begin /FontName /Helvetica  def /FontType 1 def /PaintType 0 def "
    "/FontMatrix [0.001 0 0 0.001 0 0] def /Encoding StandardEncoding def "
    "/FontBBox {-174 -285 1028 953} def /UniqueID 15139632 def currentdict end definefont pop ";

// The encodings, from the published tables. Codes 32 to 126 are the same
// printable names in all three but for the few each one changes.
const char* const printable[95] = {
    "space",       "exclam",
    "quotedbl",    "numbersign",
    "dollar",      "percent",
    "ampersand",   "quoteright",
    "parenleft",   "parenright",
    "asterisk",    "plus",
    "comma",       "hyphen",
    "period",      "slash",
    "zero",        "one",
    "two",         "three",
    "four",        "five",
    "six",         "seven",
    "eight",       "nine",
    "colon",       "semicolon",
    "less",        "equal",
    "greater",     "question",
    "at",          "A",
    "B",           "C",
    "D",           "E",
    "F",           "G",
    "H",           "I",
    "J",           "K",
    "L",           "M",
    "N",           "O",
    "P",           "Q",
    "R",           "S",
    "T",           "U",
    "V",           "W",
    "X",           "Y",
    "Z",           "bracketleft",
    "backslash",   "bracketright",
    "asciicircum", "underscore",
    "quoteleft",   "a",
    "b",           "c",
    "d",           "e",
    "f",           "g",
    "h",           "i",
    "j",           "k",
    "l",           "m",
    "n",           "o",
    "p",           "q",
    "r",           "s",
    "t",           "u",
    "v",           "w",
    "x",           "y",
    "z",           "braceleft",
    "bar",         "braceright",
    "asciitilde",
};

// Codes 160 to 255 of ISOLatin1Encoding, which WinAnsiEncoding shares.
const char* const latinUpper[96] = {
    "space",
    "exclamdown",
    "cent",
    "sterling",
    "currency",
    "yen",
    "brokenbar",
    "section",
    "dieresis",
    "copyright",
    "ordfeminine",
    "guillemotleft",
    "logicalnot",
    "hyphen",
    "registered",
    "macron",
    "degree",
    "plusminus",
    "twosuperior",
    "threesuperior",
    "acute",
    "mu",
    "paragraph",
    "periodcentered",
    "cedilla",
    "onesuperior",
    "ordmasculine",
    "guillemotright",
    "onequarter",
    "onehalf",
    "threequarters",
    "questiondown",
    "Agrave",
    "Aacute",
    "Acircumflex",
    "Atilde",
    "Adieresis",
    "Aring",
    "AE",
    "Ccedilla",
    "Egrave",
    "Eacute",
    "Ecircumflex",
    "Edieresis",
    "Igrave",
    "Iacute",
    "Icircumflex",
    "Idieresis",
    "Eth",
    "Ntilde",
    "Ograve",
    "Oacute",
    "Ocircumflex",
    "Otilde",
    "Odieresis",
    "multiply",
    "Oslash",
    "Ugrave",
    "Uacute",
    "Ucircumflex",
    "Udieresis",
    "Yacute",
    "Thorn",
    "germandbls",
    "agrave",
    "aacute",
    "acircumflex",
    "atilde",
    "adieresis",
    "aring",
    "ae",
    "ccedilla",
    "egrave",
    "eacute",
    "ecircumflex",
    "edieresis",
    "igrave",
    "iacute",
    "icircumflex",
    "idieresis",
    "eth",
    "ntilde",
    "ograve",
    "oacute",
    "ocircumflex",
    "otilde",
    "odieresis",
    "divide",
    "oslash",
    "ugrave",
    "uacute",
    "ucircumflex",
    "udieresis",
    "yacute",
    "thorn",
    "ydieresis",
};

struct Code {
    uint8_t code;
    const char* name;
};

const Code standardUpper[] = {
    {161, "exclamdown"},
    {162, "cent"},
    {163, "sterling"},
    {164, "fraction"},
    {165, "yen"},
    {166, "florin"},
    {167, "section"},
    {168, "currency"},
    {169, "quotesingle"},
    {170, "quotedblleft"},
    {171, "guillemotleft"},
    {172, "guilsinglleft"},
    {173, "guilsinglright"},
    {174, "fi"},
    {175, "fl"},
    {177, "endash"},
    {178, "dagger"},
    {179, "daggerdbl"},
    {180, "periodcentered"},
    {182, "paragraph"},
    {183, "bullet"},
    {184, "quotesinglbase"},
    {185, "quotedblbase"},
    {186, "quotedblright"},
    {187, "guillemotright"},
    {188, "ellipsis"},
    {189, "perthousand"},
    {191, "questiondown"},
    {193, "grave"},
    {194, "acute"},
    {195, "circumflex"},
    {196, "tilde"},
    {197, "macron"},
    {198, "breve"},
    {199, "dotaccent"},
    {200, "dieresis"},
    {202, "ring"},
    {203, "cedilla"},
    {205, "hungarumlaut"},
    {206, "ogonek"},
    {207, "caron"},
    {208, "emdash"},
    {225, "AE"},
    {227, "ordfeminine"},
    {232, "Lslash"},
    {233, "Oslash"},
    {234, "OE"},
    {235, "ordmasculine"},
    {241, "ae"},
    {245, "dotlessi"},
    {248, "lslash"},
    {249, "oslash"},
    {250, "oe"},
    {251, "germandbls"},
};

const Code isoLatin1Changes[] = {
    {45, "minus"},         {144, "dotlessi"}, {145, "grave"},  {146, "acute"},
    {147, "circumflex"},   {148, "tilde"},    {149, "macron"}, {150, "breve"},
    {151, "dotaccent"},    {152, "dieresis"}, {154, "ring"},   {155, "cedilla"},
    {157, "hungarumlaut"}, {158, "ogonek"},   {159, "caron"},
};

// The codes the PDF table leaves empty between 127 and 160 are bullets.
const Code winAnsiChanges[] = {
    {39, "quotesingle"},  {96, "grave"},           {127, "bullet"},         {128, "Euro"},
    {129, "bullet"},      {130, "quotesinglbase"}, {131, "florin"},         {132, "quotedblbase"},
    {133, "ellipsis"},    {134, "dagger"},         {135, "daggerdbl"},      {136, "circumflex"},
    {137, "perthousand"}, {138, "Scaron"},         {139, "guilsinglleft"},  {140, "OE"},
    {141, "bullet"},      {142, "Zcaron"},         {143, "bullet"},         {144, "bullet"},
    {145, "quoteleft"},   {146, "quoteright"},     {147, "quotedblleft"},   {148, "quotedblright"},
    {149, "bullet"},      {150, "endash"},         {151, "emdash"},         {152, "tilde"},
    {153, "trademark"},   {154, "scaron"},         {155, "guilsinglright"}, {156, "oe"},
    {157, "bullet"},      {158, "zcaron"},         {159, "Ydieresis"},
};

template <std::size_t N> void apply(const char* (&names)[256], const Code (&changes)[N]) {
    for (const Code& change : changes)
        names[change.code] = change.name;
}

// "/Name /n0 /n1 ... /n255 256 array astore def "
std::string encodingText(const char* name, const char* const* names) {
    std::string text = "/";
    text += name;
    for (int code = 0; code < 256; ++code) {
        text += " /";
        text += names[code];
    }
    text += " 256 array astore def ";
    return text;
}

struct Encodings {
    Encodings() {
        const char* standard[256];
        const char* isoLatin1[256];
        const char* winAnsi[256];
        for (int code = 0; code < 256; ++code) {
            const char* name = code >= 32 && code <= 126 ? printable[code - 32] : ".notdef";
            standard[code] = isoLatin1[code] = winAnsi[code] = name;
            if (code >= 160) isoLatin1[code] = winAnsi[code] = latinUpper[code - 160];
        }
        apply(standard, standardUpper);
        apply(isoLatin1, isoLatin1Changes);
        apply(winAnsi, winAnsiChanges);
        winAnsiText = encodingText("WinAnsiEncoding", winAnsi);
        isoLatin1Text = encodingText("ISOLatin1Encoding", isoLatin1);
        standardText = encodingText("StandardEncoding", standard);
        texts = {abbreviations, winAnsiText, isoLatin1Text, standardText, helveticaStub};
    }
    std::string winAnsiText;
    std::string isoLatin1Text;
    std::string standardText;
    std::array<std::string_view, 5> texts;
};

} // namespace

const std::array<std::string_view, 5>& startupTexts() {
    static const Encodings encodings;
    return encodings.texts;
}

void runStartupTexts(Interpreter& interpreter) {
    for (std::string_view text : startupTexts()) {
        try {
            interpreter.run(reinterpret_cast<const unsigned char*>(text.data()), text.size());
        } catch (PostscriptException& failure) {
            platform::outputDebugString("Exception in Procset:" + failure.formattedText());
            return;
        }
    }
}
