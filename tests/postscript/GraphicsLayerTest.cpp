#include "Tables.h"
#include "core/ValueObjects.h"
#include "pdf/GraphicsOperators.h"
#include "pdf/Postscript2Pdf.h"

using testing_support::Session;

namespace {

// int mark-page -   writes the integer's bytes, a NUL and a line feed
KEL_GRAPHICS_OPERATOR(MarkPageOperator);

void MarkPageOperator::execute(Interpreter& interpreter) {
    Popped<IntegerObject> n = interpreter.operandStack->pop<IntegerObject>("mark-page");
    const std::string text = IntegerObject::text(n->value);
    pdf->contentText.append(text);
    pdf->contentText.append("\0\n", 2);
}

void install(Session& s) {
    s.interpreter().registerOperator(
        new MarkPageOperator(s.interpreter().intern("mark-page"), s.pdf));
}

} // namespace

// A graphics operator reaches the translator that made it, not another one,
// and its content keeps NUL bytes and is the current call's alone.
TEST(GraphicsLayer, OperatorWritesToItsOwnTranslatorsContent) {
    Session first, second;
    install(first);
    install(second);
    ASSERT_TRUE(first.run("1 mark-page 23 mark-page ")) << first.error();
    EXPECT_EQ(first.pdf.contentText.view(), std::string_view("1\0\n23\0\n", 7));
    EXPECT_TRUE(second.pdf.contentText.empty());
    ASSERT_TRUE(second.run("4 mark-page "));
    EXPECT_EQ(second.pdf.contentText.view(), std::string_view("4\0\n", 3));
    ASSERT_TRUE(first.run("5 mark-page "));
    EXPECT_EQ(first.pdf.contentText.view(), std::string_view("5\0\n", 3));
}

TEST(GraphicsLayer, TypedPopFailureNamesTheOperator) {
    Session s;
    install(s);
    EXPECT_FALSE(s.run("(x) mark-page "));
    EXPECT_EQ(s.error(), "Expected ps_integer at mark-page");
}

// Room grows geometrically: a page written a byte at a time reallocates a
// few dozen times, not once per byte.
TEST(GraphicsLayer, ContentGrowsGeometrically) {
    ContentWriter content;
    const char* last = content.data();
    int moves = 0;
    for (int i = 0; i < 1 << 20; ++i) {
        content.append("x", 1);
        if (content.data() != last) ++moves, last = content.data();
    }
    EXPECT_EQ(content.size(), 1u << 20);
    EXPECT_LT(moves, 40);
}
