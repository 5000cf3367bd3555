// Whole pages through the C interface, as a host converts them: the content
// of each call, pieces joined by the host, failures in the middle of a page.
#include "Tables.h"

#include <cstring>
#include <string>
#include <string_view>

using namespace std::string_literals;
using testing_support::Handle;

namespace {

const char* const pageProgram =
    "0.5 setgray 2 setlinewidth 72 72 moveto 144 72 lineto 144 144 lineto closepath fill "
    "gsave 1 0 0 setrgbcolor 10 10 50 50 rectfill grestore 100 200 translate 0 0 moveto "
    "10 0 rlineto stroke\n";

const char* const pageContent = "0.5 G 0.5 g 2 w 72 72 m\n"
                                "144 72 l\n"
                                "144 144 l\n"
                                "h f\n"
                                "q 1 0 0 RG 1 0 0 rg q 10 10 50 50 re f Q\n"
                                "Q 1 0 0 1 100 200 cm\n"
                                "0 0 m\n"
                                "10 0 l\n"
                                "S ";

// The content of one call, or "<null>" when the call failed.
std::string convert(PSHandle h, std::string_view text) {
    uint32_t length = static_cast<uint32_t>(text.size());
    const char* out =
        PSConvertToPdf(h, reinterpret_cast<const unsigned char*>(text.data()), &length);
    return out ? std::string(out, length) : "<null>";
}

} // namespace

TEST(Page, ComesOutByteForByte) {
    Handle h;
    EXPECT_EQ(convert(h.h, pageProgram), pageContent);
}

// A host feeding the page in pieces of any size joins the pieces to the same
// page: no piece repeats or loses what another wrote, and the deferred moveto
// waits across calls.
TEST(Page, PiecesOfEverySizeJoinToTheSamePage) {
    const std::string_view program = pageProgram;
    for (std::size_t piece = 1; piece <= 64; piece = piece * 2 + 1) {
        Handle h;
        std::string joined;
        for (std::size_t at = 0; at < program.size(); at += piece)
            joined += convert(h.h, program.substr(at, piece));
        EXPECT_EQ(joined, pageContent) << "pieces of " << piece;
    }
}

TEST(Page, WithNoPaintingIsAnEmptySuccess) {
    Handle h;
    const char* program = "1 2 add pop ";
    uint32_t length = static_cast<uint32_t>(std::strlen(program));
    const char* text =
        PSConvertToPdf(h.h, reinterpret_cast<const unsigned char*>(program), &length);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(length, 0u);
}

// A failure hands out nothing, and what the failing call appended is not
// handed out by the next call either: lineto flushed the pending moveto
// before its operand failed, so that "m" is lost with the call. The state
// goes on from there.
TEST(Page, AfterAFailureTheNextCallGoesOnFromTheState) {
    Handle h;
    EXPECT_EQ(convert(h.h, "1 0 0 setrgbcolor 5 6 moveto (x) lineto "), "<null>");
    EXPECT_EQ(std::string(PSGetErrorStr(h.h)).find("Unsupported number type") != std::string::npos,
              true)
        << PSGetErrorStr(h.h);
    EXPECT_EQ(convert(h.h, "7 8 lineto "), "7 8 l\n");
}

// A new page drops the unbalanced states of the former one without a "Q",
// and its matrix is what grestore falls back to.
TEST(Page, StartPageDropsUnbalancedStatesSilently) {
    Handle h;
    auto matrixNow = [&] {
        const char* text = PSExecuteReturnStdOut(h.h, "[0 0 0 0 0 0] currentmatrix == ", 31);
        return std::string(text ? text : "<null>");
    };
    EXPECT_EQ(convert(h.h, "gsave gsave 3 3 scale 1 1 moveto "), "q q 3 0 0 3 0 0 cm\n");
    const float matrix[6] = {2, 0, 0, 2, 0, 5};
    PSStartPage(h.h, matrix);
    EXPECT_EQ(matrixNow(), "[2.000000 0.000000 0.000000 2.000000 0.000000 5.000000 ]\n");
    EXPECT_EQ(convert(h.h, "2 2 lineto "), "2 2 l\n") << "the former page's moveto is forgotten";
    EXPECT_EQ(convert(h.h, "4 4 scale grestore "), "4 0 0 4 0 0 cm\nQ ");
    EXPECT_EQ(matrixNow(), "[2.000000 0.000000 0.000000 2.000000 0.000000 5.000000 ]\n");
}
