#include "support/TestSupport.h"

#include "core/DictionarySet.h"
#include "core/Parser.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"

#include <gtest/gtest.h>

#include <cstdint>

using testing_support::failureOf;
using testing_support::scanAll;

namespace {

using namespace std::string_literals;

struct ScanCase {
    std::string input; // may hold NUL bytes
    std::vector<std::string> objects;
};

void PrintTo(const ScanCase& c, std::ostream* os) {
    *os << ::testing::PrintToString(c.input);
}

class Scanner : public ::testing::TestWithParam<ScanCase> {};

TEST_P(Scanner, Objects) {
    const ScanCase& c = GetParam();
    EXPECT_EQ(scanAll(c.input), c.objects);
}

// A fraction whose value lies below the normal range of a double: an underflow.
const std::string subnormal = "." + std::string(310, '0') + "1 ";
const std::string tinyButNormal = "." + std::string(300, '0') + "1 ";

// Numbers: radix, saturation and the odd real forms are the scanner's own rules.
INSTANTIATE_TEST_SUITE_P(
    Numbers, Scanner,
    ::testing::Values(
        ScanCase{"16#FF ", {"ps_integer 255"}}, ScanCase{"8#777 ", {"ps_integer 511"}},
        ScanCase{"2#102 ", {"2#102"}},
        ScanCase{"36#zz 36#ZZ ", {"ps_integer 1295", "ps_integer 1295"}},
        ScanCase{"10#-5 16#+a ", {"ps_integer -5", "ps_integer 10"}},
        ScanCase{"0#0x1F 0#017 0#09 0#9 00#0x10 ",
                 {"ps_integer 31", "ps_integer 15", "0#09", "ps_integer 9", "ps_integer 16"}},
        // Leading white space that is no stop is skipped, as by strtol.
        ScanCase{"8#\v7 ", {"ps_integer 7"}}, ScanCase{"1#1 37#1 16# ", {"1#1", "37#1", "16#"}},
        ScanCase{"16#7FFFFFFFFF 16#-FFFFFFFFF ",
                 {"ps_integer 2147483647", "ps_integer -2147483648"}},
        ScanCase{"2147483647 2147483648 -2147483649 ",
                 {"ps_integer 2147483647", "ps_integer 2147483647", "ps_integer -2147483648"}},
        ScanCase{"+ - +7 -0 ", {"ps_integer 0", "ps_integer 0", "ps_integer 7", "ps_integer 0"}},
        ScanCase{"1e5 1E2 .5 -.5 5. 1.e5 1e5. ",
                 {"ps_real 100000.000000", "ps_real 100.000000", "ps_real 0.500000",
                  "ps_real -0.500000", "ps_real 5.000000", "ps_real 100000.000000",
                  "ps_real 100000.000000"}},
        ScanCase{"e E . .e +e 2e +. -. -e .5e ",
                 {"ps_real 0.000000", "ps_real 0.000000", "ps_real 0.000000", "ps_real 0.000000",
                  "ps_real 0.000000", "ps_real 2.000000", "ps_real 0.000000", "ps_real 0.000000",
                  "ps_real 0.000000", "ps_real 0.500000"}},
        ScanCase{"1e-5 1.5.2 1e5e 1e+5 5- -+1 ", {"1e-5", "1.5.2", "1e5e", "1e+5", "5-", "-+1"}},
        ScanCase{"1e999 ", {"1e999"}}, ScanCase{"1.5 ", {"ps_real 1.500000"}},
        ScanCase{subnormal, {subnormal.substr(0, subnormal.size() - 1)}},
        ScanCase{tinyButNormal, {"ps_real 0.000000"}}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Names, Scanner,
    ::testing::Values(ScanCase{"abc /abc ", {"abc", "/abc"}}, ScanCase{"/ x ", {"/", "x"}},
                      ScanCase{"// x ", {"//", "x"}}, ScanCase{"///abc ", {"//", "/abc"}},
                      ScanCase{"/a/b{c}", {"/a", "/b", "{", "c", "}"}},
                      ScanCase{"[]{}", {"[", "]", "{", "}"}}, ScanCase{"a)b>c ", {"a", "b", "c"}},
                      ScanCase{"%comment\n5 %% more\r6 %x\f7", {"ps_integer 5", "ps_integer 6"}},
                      // The dictionary's own object: an operator stays the operator.
                      ScanCase{"//languagelevel //version //add ",
                               {"ps_integer 2", "(49)", "--add--"}},
                      ScanCase{"//nothing ", {"ERROR: Undefined Immediately Evaluated Name"}}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    LiteralStrings, Scanner,
    ::testing::Values(ScanCase{"(abc)", {"(abc)"}}, ScanCase{"(a(b)c)", {"(a(b)c)"}},
                      ScanCase{"(a\\)b)", {"(a)b)"}},
                      ScanCase{"(\\n\\r\\t\\b\\f\\\\\\(\\))",
                               {"(\\x0A\\x0D\\x09\\x08\\x0C\\x5C())"}},
                      ScanCase{"(\\101\\060\\0611)", {"(A011)"}}, ScanCase{"(\\777)", {"(\\xFF)"}},
                      ScanCase{"(\\400\\1234)", {"(\\x00S4)"}},
                      // One or two digits and another byte: the digits are lost.
                      ScanCase{"(\\1x\\12y\\1)", {"(xy)"}}, ScanCase{"(\\08)", {"(8)"}},
                      // LF CR is one line end, CR LF is not; CR CR is dropped whole.
                      ScanCase{"(a\\\nb)", {"(ab)"}}, ScanCase{"(a\\\n\rb)", {"(ab)"}},
                      ScanCase{"(a\\\r\nb)", {"(a\\x0Ab)"}}, ScanCase{"(a\\\n\nb)", {"(a\\x0Ab)"}},
                      ScanCase{"(a\\\r\rb)", {"(ab)"}}, ScanCase{"(a\\\rb)", {"(ab)"}},
                      ScanCase{"(line\none)", {"(line\\x0Aone)"}},
                      // After a failure the string goes on, the escape too.
                      ScanCase{"(\\q)", {"ERROR: Unsupported character escape in string", "()"}}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(EncodedStrings, Scanner,
                         ::testing::Values(ScanCase{"<414243>", {"(414243>) /ASCIIHexDecode"}},
                                           ScanCase{"<>", {"(>) /ASCIIHexDecode"}},
                                           ScanCase{"<~abc~>", {"(abc~>) /ASCII85Decode"}},
                                           ScanCase{"<~a>b~>", {"(a>b~) /ASCII85Decode"}},
                                           ScanCase{"<~~>", {"(~>) /ASCII85Decode"}},
                                           ScanCase{"<~>", {"(>) /ASCII85Decode"}},
                                           ScanCase{"<< /a 1 >>", {"(< /a 1 >) /ASCIIHexDecode"}}),
                         testing_support::RowName());

// A NUL stops a stretch in every state, though no stop set names it. Before a
// digit it is written "\000".
INSTANTIATE_TEST_SUITE_P(
    NulBytes, Scanner,
    ::testing::Values(
        ScanCase{"%abc\0005 "s, {"ps_integer 5"}},
        ScanCase{"1\0002 "s, {"ps_integer 1", "ps_integer 2"}},
        ScanCase{"/ab\0c /\0d //languagelevel\0"s, {"/ab", "c", "/", "d", "ps_integer 2"}},
        ScanCase{"(a\0b)"s,
                 {"ERROR: Unexpected separator when parsing for end of literal string", "(ab)"}},
        ScanCase{"(a\\1\0)"s,
                 {"ERROR: Unexpected separator when parsing for end of literal string", "(a)"}},
        ScanCase{"(\\\0)"s, {"ERROR: Unsupported character escape in string", "()"}},
        ScanCase{"<41\0"s, {"(41\\x00) /ASCIIHexDecode"}},
        ScanCase{"<~ab~\0"s, {"(ab~\\x00) /ASCII85Decode"}},
        ScanCase{"<~a>b\0c~> "s, {"(a>b\\x00) /ASCII85Decode", "c~"}}),
    testing_support::RowName());

TEST(ScannerBuffers, UndefinedImmediateNameKeepsItsToken) {
    testing_support::Session s;
    Parser& parser = *s.interpreter().parser;
    const auto* text = reinterpret_cast<const unsigned char*>("//later ");
    parser.setBuffer(text, text + 8);
    EXPECT_EQ(failureOf([&] { parser.nextObject(); }), "Undefined Immediately Evaluated Name");
    EXPECT_EQ(parser.token, "/later");
    EXPECT_EQ(parser.state, Parser::literalName);

    // Once defined, the same token resolves to the dictionary's own object.
    auto* value = new IntegerObject(7);
    s.interpreter().dictionaries->userData->putText("later", value);
    parser.setBuffer(text + 7, text + 8);
    EXPECT_EQ(parser.nextObject(), value);
    EXPECT_EQ(value->refCount, 1);
}

TEST(ScannerPrimitives, FailuresAtTheEdges) {
    testing_support::Session s;
    Parser& parser = *s.interpreter().parser;
    const auto* none = reinterpret_cast<const unsigned char*>("");
    parser.setBuffer(none, none);
    EXPECT_EQ(failureOf([&] { parser.backChar(); }), "Cannot go back");
    EXPECT_EQ(failureOf([&] { parser.nextChar(); }), "Cannot get next char when none left");
    EXPECT_EQ(failureOf([&] { parser.skipChar(); }), "Cannot skip when no chars left");
    const auto* open = reinterpret_cast<const unsigned char*>("(");
    parser.setBuffer(open, open + 1);
    parser.state = Parser::literalString;
    parser.parenDepth = INT32_MAX;
    EXPECT_EQ(failureOf([&] { parser.nextObject(); }),
              "Too many open parentheses in literal string");
}

} // namespace
