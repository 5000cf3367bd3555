// The translator's state and its writers: graphics states, page start, and
// the exact bytes of points, curves and matrices.
#include "Tables.h"

#include "core/ArrayObject.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"
#include "pdf/Postscript2Pdf.h"

#include <cstring>
#include <limits>
#include <string>
#include <vector>

using testing_support::failureOf;
using testing_support::Session;

namespace {

const double identity[6] = {1, 0, 0, 1, 0, 0};
const double pageMatrix[6] = {0.5, 0, 0, -0.5, 10, 800};

void expectMatrix(const double actual[6], const double expected[6]) {
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(actual[i], expected[i]) << "element " << i;
}

void expectDefaults(const GraphicsState& state, const double matrix[6]) {
    EXPECT_EQ(state.currentX, 0);
    EXPECT_EQ(state.currentY, 0);
    EXPECT_EQ(state.lineWidth, 0);
    expectMatrix(state.matrix, matrix);
    EXPECT_EQ(state.colorSpace, 0);
    EXPECT_EQ(state.fontName, "Helvetica");
    EXPECT_EQ(state.fontSize, 12);
    EXPECT_FALSE(state.pathStarted);
    EXPECT_EQ(state.colorKind, 3);
    for (double component : state.color)
        EXPECT_EQ(component, 0);
}

// Makes the current state differ from a default one in every field.
void dirty(GraphicsState& state) {
    state.currentX = 3;
    state.currentY = 4;
    state.lineWidth = 2;
    state.matrix[4] = 99;
    state.colorSpace = 1;
    state.fontName = "Courier";
    state.fontSize = 9;
    state.pathStarted = true;
    state.colorKind = 0;
    state.color[0] = 1;
}

TEST(Translator, OpensWithOneDefaultStateUnderItsMatrix) {
    Postscript2Pdf pdf(pageMatrix);
    ASSERT_EQ(pdf.graphicsStates.size(), 1u);
    expectDefaults(pdf.currentState(), pageMatrix);
    expectMatrix(pdf.defaultMatrix, pageMatrix);
    EXPECT_EQ(pdf.inlineImageLimit, 4000u);
    EXPECT_FALSE(pdf.pendingMoveto);
    EXPECT_FALSE(pdf.insidePattern);
    EXPECT_EQ(pdf.pdfObjects, &PdfObjectList::process());
    EXPECT_TRUE(pdf.contentText.empty());
    EXPECT_TRUE(pdf.errorText.empty());
}

// Popping the last state leaves a fresh one under the default matrix of now,
// not a copy of what was popped.
TEST(Translator, PopStateNeverLeavesTheStackEmpty) {
    Postscript2Pdf pdf(identity);
    dirty(pdf.currentState());
    pdf.pushDefaultState();
    pdf.currentState().lineWidth = 7;
    pdf.popState();
    ASSERT_EQ(pdf.graphicsStates.size(), 1u);
    EXPECT_EQ(pdf.currentState().lineWidth, 2) << "the state under it is current again";
    std::memcpy(pdf.defaultMatrix, pageMatrix, sizeof pageMatrix);
    pdf.popState();
    ASSERT_EQ(pdf.graphicsStates.size(), 1u);
    expectDefaults(pdf.currentState(), pageMatrix);

    pdf.graphicsStates.clear();
    EXPECT_EQ(failureOf([&] { pdf.popState(); }), "No graphics states to pop");
}

// A page start keeps the language state and the content; only the graphics
// states and the two flags start over, under the new matrix.
TEST(Translator, StartPageLeavesOneStateAndTheLanguageAlone) {
    Session s;
    ASSERT_TRUE(s.run("/kept 5 def 1 2 "));
    s.pdf.appendContent("x", 1);
    dirty(s.pdf.currentState());
    s.pdf.pushDefaultState();
    s.pdf.pushDefaultState();
    dirty(s.pdf.currentState());
    s.pdf.pendingMoveto = true;
    s.pdf.insidePattern = true;

    s.pdf.startPage(pageMatrix);
    ASSERT_EQ(s.pdf.graphicsStates.size(), 1u);
    expectDefaults(s.pdf.currentState(), pageMatrix);
    expectMatrix(s.pdf.defaultMatrix, pageMatrix);
    EXPECT_FALSE(s.pdf.pendingMoveto);
    EXPECT_FALSE(s.pdf.insidePattern);
    EXPECT_EQ(s.pdf.contentText.view(), "x") << "no Q for the states dropped";
    EXPECT_EQ(s.stackValues(), "1 2");
    ASSERT_TRUE(s.run("kept "));
    EXPECT_EQ(s.stackValues(), "1 2 5");

    s.pdf.graphicsStates.clear();
    s.pdf.startPage(identity);
    ASSERT_EQ(s.pdf.graphicsStates.size(), 1u);
    expectDefaults(s.pdf.currentState(), identity);
}

TEST(Translator, StartPageExportWidensTheFloats) {
    testing_support::Handle h;
    const float matrix[6] = {0.1f, 0, 0, -0.1f, 10, 800};
    PSStartPage(h.h, matrix);
    const auto& pdf = *reinterpret_cast<Postscript2Pdf*>(h.h);
    const double widened[6] = {double(0.1f), 0, 0, double(-0.1f), 10, 800};
    expectMatrix(pdf.defaultMatrix, widened);
    expectMatrix(pdf.graphicsStates.back()->matrix, widened);
}

struct PointCase {
    double x, y;
    const char* op;
    const char* bytes;
    bool started;
};

TEST(Translator, WritePointWritesTheCurrentPointAndMarksOnlyAnM) {
    const PointCase rows[] = {
        {72, 72, "m", "72 72 m\n", true},
        {144.5, -0.000001, "l", "144.5 0 l\n", false},
        {0.123456, 12345.6, "m", "0.12346 12346 m\n", true},
        {-3, 1e-7, "l", "-3 0 l\n", false},
    };
    for (const PointCase& row : rows) {
        Postscript2Pdf pdf(identity);
        pdf.currentState().currentX = row.x;
        pdf.currentState().currentY = row.y;
        pdf.writePoint(row.op);
        EXPECT_EQ(pdf.contentText.view(), row.bytes);
        EXPECT_EQ(pdf.currentState().pathStarted, row.started) << row.bytes;
    }
}

TEST(Translator, WriteCurveWritesSixNumbersAndKeepsThePoint) {
    Postscript2Pdf pdf(identity);
    pdf.currentState().currentX = 5;
    pdf.writeCurve(1, 2, 3.5, -4, 1000.25, 0.000004);
    EXPECT_EQ(pdf.contentText.view(), "1 2 3.5 -4 1000.2 0 c\n");
    EXPECT_EQ(pdf.currentState().currentX, 5);
    EXPECT_EQ(pdf.currentState().currentY, 0);
}

struct MatrixCase {
    double m[6];
    const char* bytes;
};

TEST(Translator, WriteMatrixSkipsAVanishingLinearPart) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const MatrixCase rows[] = {
        {{1, 0, 0, 1, 10, 20}, "1 0 0 1 10 20 cm\n"},
        {{0, 0, 0, 0, 5, 5}, ""},
        {{0.00009, -0.00009, 0.00009, -0.00009, 5, 5}, ""},
        // Each of a b c d alone is enough to write the matrix.
        {{0.0001, 0, 0, 0, 0, 0}, "0.0001 0 0 0 0 0 cm\n"},
        {{0, -0.0001, 0, 0, 0, 0}, "0 -0.0001 0 0 0 0 cm\n"},
        {{0, 0, 0.5, 0, 0, 0}, "0 0 0.5 0 0 0 cm\n"},
        {{0, 0, 0, -2, 0, 0}, "0 0 0 -2 0 0 cm\n"},
        {{nan, 0, 0, 0, 0, 0}, "nan 0 0 0 0 0 cm\n"},
        {{0.5, 0.8660254, -0.8660254, 0.5, 12345.6, -0.000001},
         "0.5 0.86603 -0.86603 0.5 12346 0 cm\n"},
    };
    for (const MatrixCase& row : rows) {
        Postscript2Pdf pdf(identity);
        pdf.writeMatrix(row.m, "cm");
        EXPECT_EQ(pdf.contentText.view(), row.bytes);
    }
}

// The array that a program leaves on top, read as a matrix: its six numbers
// or the failure.
std::string readTop(Session& s, const char* program) {
    if (!s.run(program)) return "ERROR: " + s.error();
    Popped<ArrayObject> array = s.interpreter().operandStack->pop<ArrayObject>("test");
    double m[6];
    const std::string failure =
        failureOf([&] { Postscript2Pdf::readMatrix(*array->arrayData(), m); });
    if (!failure.empty()) return "ERROR: " + failure;
    std::string text;
    for (double value : m)
        text += RealObject::text(value) + ' ';
    return text;
}

TEST(Translator, ReadMatrixTakesSixNumbersFromTheLast) {
    const Case rows[] = {
        {"[1 2 3 4 5 6]", "1.000000 2.000000 3.000000 4.000000 5.000000 6.000000 "},
        {"[1.5 -2 3 4 5 6 (seventh)]", "1.500000 -2.000000 3.000000 4.000000 5.000000 6.000000 "},
        {"[1 2 3 4 5]", "ERROR: No object at given array index"},
        {"[]", "ERROR: No object at given array index"},
        // The sixth element is read first.
        {"[(x) 2 3 4 5]", "ERROR: No object at given array index"},
        {"[1 2 3 4 5 (x)]", "ERROR: Unsupported number type"},
        {"[1 2 3 4 5 null]", "ERROR: Unsupported number type"},
    };
    for (const Case& row : rows) {
        Session s;
        EXPECT_EQ(readTop(s, row.program), row.result) << row.program;
    }
}

// An empty slot fails as a short array does, from the array's own reader.
TEST(Translator, ReadMatrixRefusesAnEmptySlot) {
    Session s;
    ASSERT_TRUE(s.run("[1 2 3 4 5 6]"));
    auto* array = static_cast<ArrayObject*>(s.interpreter().operandStack->top());
    std::vector<PostscriptObject*>& slots = array->items().items;
    PostscriptObject* third = slots[2];
    slots[2] = nullptr;
    double m[6];
    try {
        Postscript2Pdf::readMatrix(*array->arrayData(), m);
        ADD_FAILURE() << "an empty slot was read";
    } catch (PostscriptException& failure) {
        EXPECT_EQ(failure.message, "No object at given array index");
        EXPECT_EQ(failure.formattedText().rfind("[ArrayObject.cpp:", 0), 0u) << failure.text;
    }
    slots[2] = third;
}

TEST(Translator, StoreMatrixMakesSixRealsOfAnyArray) {
    const double m[6] = {1, 0.5, -2, 0, 10, 20};
    for (const char* program : {"[]", "[1 2]", "[1 2 3 4 5 6 7 8]", "[(a) /b {c}]"}) {
        Session s;
        ASSERT_TRUE(s.run(program));
        auto* array = static_cast<ArrayObject*>(s.interpreter().operandStack->top());
        Postscript2Pdf::storeMatrix(*array->arrayData(), m);
        EXPECT_EQ(s.stackValues(), "[1.000000 0.500000 -2.000000 0.000000 10.000000 20.000000 ]")
            << program;
    }
}

} // namespace
