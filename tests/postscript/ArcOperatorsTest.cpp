#include "Tables.h"

#include "pdf/NumberFormat.h"

#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

namespace {

// The output depends on these digits: a quarter turn is not exactly one.
constexpr double pi = 3.1415926535;

double radians(double degrees) {
    return degrees * pi / 180;
}

std::string number(double value) {
    char text[numberTextSize];
    formatNumber(value, text);
    return text;
}

struct Circle {
    double x, y, r;
};

// The standard cubic for a circular arc, written here independently of the
// translator: control points on the tangents at both ends, 4/3 tan(sweep / 4)
// radii away from them. A negative radius mirrors every point through the centre.
std::string curve(const Circle& c, double from, double to) {
    const double s = radians(from);
    const double e = radians(to);
    const double k = 4.0 / 3.0 * std::tan((e - s) / 4) * c.r;
    const double x0 = c.x + c.r * std::cos(s), y0 = c.y + c.r * std::sin(s);
    const double x3 = c.x + c.r * std::cos(e), y3 = c.y + c.r * std::sin(e);
    std::string text;
    for (double value : {x0 - k * std::sin(s), y0 + k * std::cos(s), x3 + k * std::sin(e),
                         y3 - k * std::cos(e), x3, y3})
        text += number(value) + ' ';
    return text + "c\n";
}

// An arc as the content shows it: a move, or a line from the open path, to
// the point at the first angle, then one curve from each angle to the next.
std::string arc(const Circle& c, const char* join, const std::vector<double>& angles) {
    const double s = radians(angles.front());
    std::string text =
        number(c.x + c.r * std::cos(s)) + ' ' + number(c.y + c.r * std::sin(s)) + ' ' + join + '\n';
    for (std::size_t i = 1; i < angles.size(); ++i)
        text += curve(c, angles[i - 1], angles[i]);
    return text;
}

// The arc of a tangent arc, found by plain geometry: the circle touching both
// legs lies on the corner's bisector, r / sin(half the corner's angle) away,
// and touches the legs r / tan(half the angle) from the corner. A negative
// radius puts the touching points behind the corner.
struct Tangents {
    double t1x, t1y, t2x, t2y;
    Circle circle;
    double from, to;
};

Tangents tangentArc(double sx, double sy, double cx, double cy, double ex, double ey, double r) {
    const double l1 = std::hypot(sx - cx, sy - cy), l2 = std::hypot(ex - cx, ey - cy);
    const double e1x = (sx - cx) / l1, e1y = (sy - cy) / l1;
    const double e2x = (ex - cx) / l2, e2y = (ey - cy) / l2;
    const double half = std::acos(e1x * e2x + e1y * e2y) / 2;
    const double along = r / std::tan(half);
    const double bx = e1x + e2x, by = e1y + e2y, bl = std::hypot(bx, by);
    const double away = std::fabs(r) / std::sin(half);
    Tangents t{cx + along * e1x,
               cy + along * e1y,
               cx + along * e2x,
               cy + along * e2y,
               Circle{cx + away * bx / bl, cy + away * by / bl, r},
               0,
               0};
    t.from = std::atan2(t.t1y - t.circle.y, t.t1x - t.circle.x) * 180 / pi;
    t.to = std::atan2(t.t2y - t.circle.y, t.t2x - t.circle.x) * 180 / pi;
    return t;
}

// The walk of a tangent arc: from tangent 1 over the given quarters to
// tangent 2, a full turn added to its angle where the walk goes round.
std::string arcOf(const Tangents& t, const char* join, std::vector<double> quarters,
                  double turn = 0) {
    quarters.insert(quarters.begin(), t.from);
    quarters.push_back(t.to + turn);
    return arc(t.circle, join, quarters);
}

std::string reals(std::initializer_list<double> values) {
    std::string text;
    for (double value : values) {
        char one[64];
        std::snprintf(one, sizeof one, "%f", value);
        if (!text.empty()) text += ' ';
        text += one;
    }
    return text;
}

struct ArcRow {
    const char* program;
    std::string content;
    std::string stack = "";
};

void PrintTo(const ArcRow& row, std::ostream* os) {
    *os << '"' << row.program << '"';
}

class Arcs : public ::testing::TestWithParam<ArcRow> {};

TEST_P(Arcs, WriteTheCurvesComputedHere) {
    const ArcRow& row = GetParam();
    expectContent(ContentCase{row.program, row.content, row.stack.c_str()});
}

const Circle unit{0, 0, 100};

INSTANTIATE_TEST_SUITE_P(
    Counterclockwise, Arcs,
    ::testing::Values(ArcRow{"0 0 100 0 90 arc ", arc(unit, "m", {0, 90})},
                      ArcRow{"5 5 moveto 0 0 100 0 90 arc ", "5 5 m\n" + arc(unit, "l", {0, 90})},
                      ArcRow{"0 0 100 0 360 arc ", arc(unit, "m", {0, 90, 180, 270, 360})},
                      ArcRow{"0 0 100 0 720 arc ",
                             arc(unit, "m", {0, 90, 180, 270, 360, 450, 540, 630, 720})},
                      ArcRow{"0 0 100 45 405 arc ", arc(unit, "m", {45, 90, 180, 270, 360, 405})},
                      ArcRow{"10 20 50 30 200 arc ", arc({10, 20, 50}, "m", {30, 90, 180, 200})},
                      ArcRow{"0 0 100 0 180 arc ", arc(unit, "m", {0, 90, 180})},
                      ArcRow{"0 0 10 0.5 89.5 arc ", arc({0, 0, 10}, "m", {0.5, 89.5})},
                      // A start above the end goes round once.
                      ArcRow{"0 0 100 300 30 arc ", arc(unit, "m", {300, 360, 390})},
                      ArcRow{"0 0 100 -45 45 arc ", arc(unit, "m", {-45, 0, 45})},
                      ArcRow{"0 0 100 -200 -100 arc ", arc(unit, "m", {-200, -180, -100})},
                      ArcRow{"0 0 100 400 500 arc ", arc(unit, "m", {400, 450, 500})},
                      ArcRow{"1 2 -30 10 100 arc ", arc({1, 2, -30}, "m", {10, 90, 100})},
                      // At this radius the cut digits of pi show: the end is not at x 0.
                      ArcRow{"0 0 1000000000 0 90 arc ", arc({0, 0, 1e9}, "m", {0, 90})},
                      ArcRow{"0 0 100 0 90 arc currentpoint ", arc(unit, "m", {0, 90}),
                             reals({std::cos(radians(90)) * 100, 100})}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Clockwise, Arcs,
    ::testing::Values(ArcRow{"0 0 100 90 0 arcn ", arc(unit, "m", {90, 0})},
                      ArcRow{"0 0 100 0 90 arcn ", arc(unit, "m", {0, -90, -180, -270})},
                      ArcRow{"0 0 100 360 0 arcn ", arc(unit, "m", {360, 270, 180, 90, 0})},
                      ArcRow{"0 0 50 -30 -200 arcn ", arc({0, 0, 50}, "m", {-30, -90, -180, -200})},
                      ArcRow{"0 0 100 450 380 arcn ", arc(unit, "m", {450, 380})},
                      ArcRow{"0 0 100 10 350 arcn ", arc(unit, "m", {10, 0, -10})},
                      ArcRow{"3 4 -20 200 100 arcn ", arc({3, 4, -20}, "m", {200, 180, 100})},
                      ArcRow{"7 7 moveto 0 0 100 90 0 arcn ", "7 7 m\n" + arc(unit, "l", {90, 0})}),
    testing_support::RowName());

// Only the first piece of an arc joins the path, by a line when a subpath is
// open, by a move when none is.
INSTANTIATE_TEST_SUITE_P(
    Joining, Arcs,
    ::testing::Values(
        ArcRow{"0 0 moveto 10 0 lineto 0 0 100 0 90 arc ",
               "0 0 m\n10 0 l\n" + arc(unit, "l", {0, 90})},
        ArcRow{"0 0 100 0 90 arc 0 0 50 90 180 arc ",
               arc(unit, "m", {0, 90}) + arc({0, 0, 50}, "l", {90, 180})},
        ArcRow{"0 0 100 0 90 arc fill 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "f\n" + arc(unit, "m", {0, 90})},
        ArcRow{"0 0 100 0 90 arc eofill 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "f*\n" + arc(unit, "m", {0, 90})},
        ArcRow{"0 0 100 0 90 arc stroke 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "S " + arc(unit, "m", {0, 90})},
        ArcRow{"0 0 100 0 90 arc closepath 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "h " + arc(unit, "m", {0, 90})},
        ArcRow{"0 0 100 0 90 arc clip 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "W n " + arc(unit, "m", {0, 90})},
        ArcRow{"0 0 100 0 90 arc eoclip 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "W* n " + arc(unit, "m", {0, 90})},
        ArcRow{"0 0 100 0 90 arc clippath 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "W n " + arc(unit, "m", {0, 90})},
        ArcRow{"0 0 100 0 90 arc 1 2 3 4 rectclip 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "1 2 3 4 re W n\n" + arc(unit, "m", {0, 90})},
        // Painted rectangles and newpath leave the subpath open.
        ArcRow{"0 0 100 0 90 arc 1 2 3 4 rectfill [1 2 3 4] rectstroke newpath 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "q 1 2 3 4 re f Q\nq 1 1 1 1 re S Q\n" +
                   arc(unit, "l", {0, 90})},
        // A moveto writes its "m" and the arc still joins it with a line.
        ArcRow{"0 0 100 0 90 arc fill 5 5 moveto 0 0 100 0 90 arc ",
               arc(unit, "m", {0, 90}) + "f\n5 5 m\n" + arc(unit, "l", {0, 90})}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    NoSweep, Content,
    ::testing::Values(
        // Equal angles write nothing, not even the start; a waiting moveto is
        // flushed all the same.
        ContentCase{"0 0 100 45 45 arc 0 0 100 45 45 arcn ", ""},
        ContentCase{"1 2 moveto 0 0 100 45 45 arc currentpoint ", "1 2 m\n", "1.000000 2.000000"},
        ContentCase{"1 2 moveto 0 0 100 -90 -90 arcn 3 4 lineto ", "1 2 m\n3 4 l\n"},
        // NaN angles fail every comparison of the walk.
        ContentCase{"0 0 100 0 0 0 div arc 0 0 100 0 0 div 0 arcn ", ""},
        // An angle past 32 bits has no integer part to start the walk from:
        // nothing is written rather than walking on without end.
        ContentCase{"0 0 100 1e20 0 arc 0 0 100 0 -1e20 arc 0 0 100 -3e9 0 arcn ", ""}),
    testing_support::RowName());

const Tangents right = tangentArc(0, 0, 30, 40, 150, -10, 10);
const Tangents left = tangentArc(0, 0, 30, 40, -90, 90, 10);
const Tangents behind = tangentArc(0, 0, 30, 40, 150, -10, -10);

INSTANTIATE_TEST_SUITE_P(
    Tangent, Arcs,
    ::testing::Values(
        // A right turn walks clockwise, a left turn counterclockwise; the line
        // to tangent 1 is the first piece's join.
        ArcRow{"0 0 moveto 30 40 150 -10 10 arct ", "0 0 m\n" + arcOf(right, "l", {90})},
        ArcRow{"0 0 moveto 30 40 -90 90 10 arct ", "0 0 m\n" + arcOf(left, "l", {0})},
        // Behind the corner the walk goes the long way round.
        ArcRow{"0 0 moveto 30 40 150 -10 -10 arct ",
               "0 0 m\n" + arcOf(behind, "l", {0, -90, -180}, -360)},
        // With no path open the arc starts one.
        ArcRow{"30 40 150 -10 10 arct ", arcOf(right, "m", {90})},
        ArcRow{"0 0 moveto 30 40 150 -10 10 arcto ", "0 0 m\n" + arcOf(right, "l", {90}),
               reals({right.t1x, right.t1y, right.t2x, right.t2y})},
        ArcRow{"0 0 moveto 30 40 -90 90 10 arcto currentpoint ", "0 0 m\n" + arcOf(left, "l", {0}),
               reals({left.t1x, left.t1y, left.t2x, left.t2y, left.t2x, left.t2y})},
        // Collinear: the arc is a line to the corner, and arcto answers with
        // the tangents of its own last arc.
        ArcRow{"0 0 moveto 30 40 150 -10 10 arcto pop pop pop pop 10 0 moveto 20 0 0 0 5 arcto ",
               "0 0 m\n" + arcOf(right, "l", {90}) + "10 0 m\n20 0 l\n",
               reals({right.t1x, right.t1y, right.t2x, right.t2y})},
        ArcRow{"0 0 moveto 30 40 150 -10 10 arct 10 0 moveto 20 0 0 0 5 arcto ",
               "0 0 m\n" + arcOf(right, "l", {90}) + "10 0 m\n20 0 l\n", reals({0, 0, 0, 0})}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    TangentLines, Content,
    ::testing::Values(ContentCase{"10 0 moveto 20 0 0 0 5 arct currentpoint ", "10 0 m\n20 0 l\n",
                                  "20.000000 0.000000"},
                      // A leg of length 0.
                      ContentCase{"20 0 moveto 20 0 50 50 5 arct ", "20 0 m\n20 0 l\n"},
                      ContentCase{"20 0 moveto 0 0 0 0 5 arcto ", "20 0 m\n0 0 l\n",
                                  "0.000000 0.000000 0.000000 0.000000"},
                      // Straight on through the corner both tangents are the corner and the
                      // arc sweeps nothing: only the flush is written, and the point stays.
                      ContentCase{"10 0 moveto 20 0 30 0 5 arcto currentpoint ", "10 0 m\n",
                                  "20.000000 0.000000 20.000000 0.000000 10.000000 0.000000"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Arcs, Fails,
    ::testing::Values(FailCase{"9 1 2 3 4 (5) arc ", "Unsupported number type", "9 1 2 3 4"},
                      FailCase{"9 (x) 2 3 4 5 arcn ", "Unsupported number type", "9"},
                      FailCase{"3 4 5 arc ", "pop - expected item on stack", ""},
                      FailCase{"9 1 2 3 4 (r) arct ", "Unsupported number type", "9 1 2 3 4"},
                      FailCase{"9 1 2 3 4 5 /r arcto ", "Unsupported number type", "9 1 2 3 4 5"},
                      FailCase{"9 1 true 3 4 5 arcto ", "Unsupported number type", "9 1"},
                      FailCase{"1 2 3 arcto ", "pop - expected item on stack", ""}),
    testing_support::RowName());

} // namespace
