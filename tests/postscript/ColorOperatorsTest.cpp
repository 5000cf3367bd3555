#include "Tables.h"

#include <string>

using testing_support::Session;

namespace {

// Every colour goes out twice, stroking first; the numbers in the one format.
INSTANTIATE_TEST_SUITE_P(
    ColorTemplates, Content,
    ::testing::Values(
        ContentCase{"0.5 setgray ", "0.5 G 0.5 g "},
        ContentCase{"1 0 0 setrgbcolor ", "1 0 0 RG 1 0 0 rg "},
        ContentCase{"0 0 0 1 setcmykcolor ", "0 0 0 1 K 0 0 0 1 k "},
        ContentCase{"0.1 0.2 0.3 0.4 setcmykcolor ", "0.1 0.2 0.3 0.4 K 0.1 0.2 0.3 0.4 k "},
        // Out of range is no failure, and nothing is clamped.
        ContentCase{"2 setgray -1 setgray ", "2 G 2 g -1 G -1 g "},
        ContentCase{"0.1234567 12345.6 -0.000001 setrgbcolor ",
                    "0.12346 12346 0 RG 0.12346 12346 0 rg "},
        ContentCase{"1 2 3 setrgbcolor 4 5 6 7 setcmykcolor 8 setgray 9 ",
                    "1 2 3 RG 1 2 3 rg 4 5 6 7 K 4 5 6 7 k 8 G 8 g ", "9"},
        // setcolorspace writes nothing; setcolor is a stub of one operand.
        ContentCase{"/DeviceCMYK setcolorspace [/Pattern] setcolorspace ", ""},
        ContentCase{"/DeviceRGB setcolorspace 1 0 0 setcolor ", "", "1 0"},
        ContentCase{"1 0 0 setrgbcolor currentgray ", "1 0 0 RG 1 0 0 rg ", "0.299000"}),
    testing_support::RowName());

// HSB as RGB. With s 0.5 and v 0.8 the three helpers are p 0.4, and at a
// quarter into a sector q 0.7 and t 0.5, so each sector has its own order.
INSTANTIATE_TEST_SUITE_P(
    HsbSectors, Content,
    ::testing::Values(
        ContentCase{"0.041666667 0.5 0.8 sethsbcolor ", "0.8 0.5 0.4 RG 0.8 0.5 0.4 rg "},
        ContentCase{"0.208333333 0.5 0.8 sethsbcolor ", "0.7 0.8 0.4 RG 0.7 0.8 0.4 rg "},
        ContentCase{"0.375 0.5 0.8 sethsbcolor ", "0.4 0.8 0.5 RG 0.4 0.8 0.5 rg "},
        ContentCase{"0.541666667 0.5 0.8 sethsbcolor ", "0.4 0.7 0.8 RG 0.4 0.7 0.8 rg "},
        ContentCase{"0.708333333 0.5 0.8 sethsbcolor ", "0.5 0.4 0.8 RG 0.5 0.4 0.8 rg "},
        ContentCase{"0.875 0.5 0.8 sethsbcolor ", "0.8 0.4 0.7 RG 0.8 0.4 0.7 rg "},
        // Sector starts: f is 0, so t equals p.
        ContentCase{"0 1 1 sethsbcolor ", "1 0 0 RG 1 0 0 rg "},
        ContentCase{"0.5 1 1 sethsbcolor ", "0 1 1 RG 0 1 1 rg "},
        // Whole turns go, either way.
        ContentCase{"1 1 1 sethsbcolor ", "1 0 0 RG 1 0 0 rg "},
        ContentCase{"1.375 0.5 0.8 sethsbcolor ", "0.4 0.8 0.5 RG 0.4 0.8 0.5 rg "},
        ContentCase{"-0.625 0.5 0.8 sethsbcolor ", "0.4 0.8 0.5 RG 0.4 0.8 0.5 rg "},
        ContentCase{"3.875 0.5 0.8 sethsbcolor ", "0.8 0.4 0.7 RG 0.8 0.4 0.7 rg "},
        // A hue just under 0 comes to a whole turn: the colour of hue 0.
        ContentCase{"-1 1e20 div 0.5 0.8 sethsbcolor ", "0.8 0.4 0.4 RG 0.8 0.4 0.4 rg "},
        // Too large to step through by ones, and still a colour.
        ContentCase{"1e20 0.5 0.8 sethsbcolor ", "0.8 0.4 0.4 RG 0.8 0.4 0.4 rg "},
        // No saturation: grey of the brightness, whatever the hue.
        ContentCase{"0.3 0 0.6 sethsbcolor ", "0.6 0.6 0.6 RG 0.6 0.6 0.6 rg "},
        ContentCase{"1e20 0 0.6 sethsbcolor ", "0.6 0.6 0.6 RG 0.6 0.6 0.6 rg "}),
    testing_support::RowName());

// The queries push reals of the components as given; currentgray converts.
INSTANTIATE_TEST_SUITE_P(
    ColorQueries, Eval,
    ::testing::Values(Case{"currentgray ", "0.000000"}, Case{"1 setgray currentgray ", "1.000000"},
                      Case{"0.5 setgray 1 0 0 setrgbcolor 0.25 setgray currentgray ", "0.250000"},
                      Case{"1 0.5 0 setrgbcolor currentrgbcolor ", "1.000000 0.500000 0.000000"},
                      Case{"1 1 1 sethsbcolor currenthsbcolor ", "1.000000 1.000000 1.000000"},
                      Case{"0.1 0.2 0.3 0.4 setcmykcolor currentcmykcolor ",
                           "0.100000 0.200000 0.300000 0.400000"},
                      Case{"1 1 1 sethsbcolor currentrgbcolor ",
                           "ERROR: Current color conversions not supported"},
                      // 0.299 r + 0.587 g + 0.114 b
                      Case{"0.2 0.4 0.6 setrgbcolor currentgray ", "0.363000"},
                      Case{"0 1 0 setrgbcolor currentgray 0 0 1 setrgbcolor currentgray ",
                           "0.587000 0.114000"},
                      // (1 - 0.299 c - 0.587 m - 0.114 y) (1 - k)
                      Case{"0.2 0.4 0.6 0.8 setcmykcolor currentgray ", "0.127400"},
                      Case{"0.1 0.2 0.3 0.5 setcmykcolor currentgray ", "0.409250"},
                      Case{"0 0 0 0 setcmykcolor currentgray ", "1.000000"},
                      // Through RGB: 0.4 0.8 0.5, and 0.8 0.4 0.7.
                      Case{"0.375 0.5 0.8 sethsbcolor currentgray ", "0.646200"},
                      Case{"0.875 0.5 0.8 sethsbcolor currentgray ", "0.553800"},
                      Case{"1.875 0.5 0.8 sethsbcolor currentgray ", "0.553800"},
                      Case{"0.7 0 0.25 sethsbcolor currentgray ", "0.250000"},
                      // The space is not the colour: colorKind stays with the last operator.
                      Case{"0.3 setgray /DeviceRGB setcolorspace currentgray ", "0.300000"},
                      Case{"1 2 setcolorspace 1 (DeviceRGB) setcolorspace ", "1 1"}),
    testing_support::RowName());

// What a failing colour operator popped stays popped, and it leaves the
// colour of before: the next call reads it.
INSTANTIATE_TEST_SUITE_P(
    ColorFailures, Fails,
    ::testing::Values(
        FailCase{"currentrgbcolor ", "Current color conversions not supported", ""},
        FailCase{"1 0 0 setrgbcolor currenthsbcolor ", "Current color conversions not supported",
                 "", "currentrgbcolor ", "1.000000 0.000000 0.000000"},
        FailCase{"0.1 0.2 0.3 0.4 setcmykcolor currentrgbcolor ",
                 "Current color conversions not supported", "", "currentcmykcolor ",
                 "0.100000 0.200000 0.300000 0.400000"},
        FailCase{"0.5 setgray currentcmykcolor ", "Current color conversions not supported", ""},
        FailCase{"0.1 0.2 0.3 setrgbcolor 1 2 (x) setgray ", "Unsupported number type", "1 2",
                 "currentrgbcolor ", "1 2 0.100000 0.200000 0.300000"},
        FailCase{"0.5 setgray 7 (x) 0 0 setrgbcolor ", "Unsupported number type", "7",
                 "currentgray ", "7 0.500000"},
        FailCase{"0.5 setgray /a 0 1 1 setcmykcolor ", "Unsupported number type", "",
                 "currentgray ", "0.500000"},
        FailCase{"0.5 setgray [1] 1 1 sethsbcolor ", "Unsupported number type", "", "currentgray ",
                 "0.500000"},
        FailCase{"0 0 setrgbcolor ", "pop - expected item on stack", ""},
        FailCase{"0.2 0.3 0.4 setcmykcolor ", "pop - expected item on stack", ""},
        FailCase{"0 0 sethsbcolor ", "pop - expected item on stack", ""},
        FailCase{"setgray ", "pop - expected item on stack", "", "0.5 setgray currentgray ",
                 "0.500000"},
        FailCase{"setcolorspace ", "pop - expected item on stack", ""}),
    testing_support::RowName());

TEST(ColorOperators, FailingOperatorWritesNothing) {
    Session s;
    ASSERT_TRUE(s.run("0.5 setgray "));
    for (const char* program : {"(x) 0 0 setrgbcolor ", "clear 0 (x) 0 0 setcmykcolor ",
                                "clear (x) 1 1 sethsbcolor ", "clear 0 0 setrgbcolor "}) {
        EXPECT_FALSE(s.run(program)) << program;
        EXPECT_EQ(s.pdf.contentText.view(), "") << program;
        EXPECT_EQ(s.pdf.currentState().colorKind, 3) << program;
        EXPECT_EQ(s.pdf.currentState().color[0], 0.5) << program;
    }
}

// A kind that no operator sets has no gray; the state still serves the next call.
TEST(ColorOperators, CurrentgrayOfAnUnknownKindFails) {
    Session s;
    s.pdf.currentState().colorKind = 4;
    EXPECT_FALSE(s.run("currentgray "));
    EXPECT_EQ(s.error(), "color conversion not supported");
    EXPECT_EQ(s.stackValues(), "");
    ASSERT_TRUE(s.run("0.5 setgray currentgray ")) << s.error();
    EXPECT_EQ(s.stackValues(), "0.500000");
}

// The colour belongs to the current state: a restored state has its own.
TEST(ColorOperators, ColorIsPartOfTheCurrentState) {
    Session s;
    s.pdf.graphicsStates.push_back(std::make_unique<GraphicsState>(s.pdf.currentState()));
    ASSERT_TRUE(s.run("1 0 0 setrgbcolor "));
    s.pdf.popState();
    ASSERT_TRUE(s.run("currentgray ")) << s.error();
    EXPECT_EQ(s.stackValues(), "0.000000");
}

struct SpaceCase {
    const char* program;
    int32_t colorSpace;
};

void PrintTo(const SpaceCase& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

class ColorSpace : public ::testing::TestWithParam<SpaceCase> {};

// Only the three device names set the space; all else is popped and dropped.
TEST_P(ColorSpace, SetsTheSpaceOfADeviceName) {
    Session s;
    ASSERT_TRUE(s.run(GetParam().program)) << s.error();
    EXPECT_EQ(s.pdf.currentState().colorSpace, GetParam().colorSpace);
    EXPECT_EQ(s.pdf.currentState().colorKind, 3);
    EXPECT_EQ(s.stackValues(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Names, ColorSpace,
    ::testing::Values(SpaceCase{"/DeviceGray setcolorspace ", 3},
                      SpaceCase{"/DeviceCMYK setcolorspace ", 2},
                      SpaceCase{"/DeviceGray setcolorspace /DeviceRGB setcolorspace ", 0},
                      SpaceCase{"/DeviceCMYK setcolorspace /Indexed setcolorspace ", 2},
                      SpaceCase{"/DeviceCMYK setcolorspace (DeviceRGB) setcolorspace ", 2},
                      SpaceCase{"/DeviceCMYK setcolorspace [/DeviceRGB] setcolorspace ", 2},
                      SpaceCase{"/DeviceCMYK setcolorspace /devicergb setcolorspace ", 2}),
    testing_support::RowName());

} // namespace
