#include "pdf/GraphicsOperators.h"

#include "core/PostscriptException.h"
#include "core/ValueObjects.h"
#include "pdf/ColorConversion.h"
#include "pdf/NumberFormat.h"
#include "pdf/Postscript2Pdf.h"

#include <cstring>
#include <string_view>

namespace {

enum ColorKind : int32_t { rgbKind = 0, hsbKind = 1, cmykKind = 2, grayKind = 3 };

// Pops the top n operands, each read as a number as it comes off; values[0]
// gets the deepest. A failure leaves what was popped off the stack and the
// state untouched.
void popNumbers(Interpreter& interpreter, double* values, int n) {
    for (int i = n - 1; i >= 0; --i)
        values[i] = interpreter.operandStack->popNumber();
}

// "n ... stroke n ... fill": the group is formatted once and the whole text
// goes out in one append; this runs for every colour change of a job. Both
// operators carry their trailing blank.
void writeColor(Postscript2Pdf& pdf, const double* values, int n, std::string_view stroke,
                std::string_view fill) {
    char text[2 * 4 * numberTextSize + 8];
    char* p = text;
    for (int i = 0; i < n; ++i) {
        p += formatNumber(values[i], p);
        *p++ = ' ';
    }
    const std::size_t group = static_cast<std::size_t>(p - text);
    std::memcpy(p, stroke.data(), stroke.size());
    p += stroke.size();
    std::memcpy(p, text, group);
    p += group;
    std::memcpy(p, fill.data(), fill.size());
    p += fill.size();
    pdf.appendContent(text, static_cast<std::size_t>(p - text));
}

// Pops the n components, writes them (HSB as RGB) and remembers them as given.
// Everything is read before anything is written, so a failure leaves the
// content and the colour of before.
void setColor(Interpreter& interpreter, Postscript2Pdf& pdf, int32_t kind, int n,
              std::string_view stroke, std::string_view fill) {
    double given[4];
    popNumbers(interpreter, given, n);
    double rgb[3];
    const double* written = given;
    if (kind == hsbKind) {
        const Rgb converted = hsbToRgb(given[0], given[1], given[2]);
        rgb[0] = converted.r, rgb[1] = converted.g, rgb[2] = converted.b;
        written = rgb;
    }
    writeColor(pdf, written, n, stroke, fill);
    GraphicsState& state = pdf.currentState();
    state.colorKind = kind;
    for (int i = 0; i < n; ++i)
        state.color[i] = given[i];
}

// The query operators answer only in the model the colour was set in.
void pushColor(Interpreter& interpreter, Postscript2Pdf& pdf, int32_t kind, int n) {
    const GraphicsState& state = pdf.currentState();
    if (state.colorKind != kind) PS_THROW("Current color conversions not supported");
    for (int i = 0; i < n; ++i)
        interpreter.operandStack->push(new RealObject(state.color[i]));
}

double grayOf(const Rgb& rgb) {
    return 0.299 * rgb.r + 0.587 * rgb.g + 0.114 * rgb.b;
}

} // namespace

// r g b setrgbcolor -
void SetrgbcolorOperator::execute(Interpreter& interpreter) {
    setColor(interpreter, *pdf, rgbKind, 3, "RG ", "rg ");
}

// h s b sethsbcolor -   written as RGB, remembered as given
void SethsbcolorOperator::execute(Interpreter& interpreter) {
    setColor(interpreter, *pdf, hsbKind, 3, "RG ", "rg ");
}

// c m y k setcmykcolor -
void SetcmykcolorOperator::execute(Interpreter& interpreter) {
    setColor(interpreter, *pdf, cmykKind, 4, "K ", "k ");
}

// g setgray -
void SetgrayOperator::execute(Interpreter& interpreter) {
    setColor(interpreter, *pdf, grayKind, 1, "G ", "g ");
}

// - currentrgbcolor r g b
void CurrentrgbcolorOperator::execute(Interpreter& interpreter) {
    pushColor(interpreter, *pdf, rgbKind, 3);
}

// - currenthsbcolor h s b
void CurrenthsbcolorOperator::execute(Interpreter& interpreter) {
    pushColor(interpreter, *pdf, hsbKind, 3);
}

// - currentcmykcolor c m y k
void CurrentcmykcolorOperator::execute(Interpreter& interpreter) {
    pushColor(interpreter, *pdf, cmykKind, 4);
}

// - currentgray g   converted from whatever model the colour was set in
void CurrentgrayOperator::execute(Interpreter& interpreter) {
    const double* c = pdf->currentState().color;
    double gray;
    switch (pdf->currentState().colorKind) {
    case grayKind:
        gray = c[0];
        break;
    case rgbKind:
        gray = grayOf({c[0], c[1], c[2]});
        break;
    case hsbKind:
        gray = grayOf(hsbToRgb(c[0], c[1], c[2]));
        break;
    case cmykKind:
        gray = (1 - 0.299 * c[0] - 0.587 * c[1] - 0.114 * c[2]) * (1 - c[3]);
        break;
    default:
        PS_THROW("color conversion not supported");
    }
    interpreter.operandStack->push(new RealObject(gray));
}

// any setcolorspace -   a device name sets colorSpace; nothing reads it
void SetcolorspaceOperator::execute(Interpreter& interpreter) {
    Popped<> space = interpreter.operandStack->popHeld();
    const NameObject* name = objectAs<NameObject>(space.get());
    if (!name) return;
    const std::string& text = name->text();
    int32_t& colorSpace = pdf->currentState().colorSpace;
    if (text == "DeviceRGB")
        colorSpace = rgbKind;
    else if (text == "DeviceGray")
        colorSpace = grayKind;
    else if (text == "DeviceCMYK")
        colorSpace = cmykKind;
}
