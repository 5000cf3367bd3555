#include "Tables.h"

namespace {

INSTANTIATE_TEST_SUITE_P(
    Strings, Eval,
    ::testing::Values(
        Case{"3 string length 0 string length ", "3 0"}, Case{"3 string {} forall ", "0 0 0"},
        Case{"16777216 string length ", "16777216"}, Case{"(abc) length (a\\000b) length ", "3 3"},
        // The one operator that counts a name, operators included.
        Case{"/name length /add load length ", "4 3"},
        Case{"length ", "ERROR: pop - expected item on stack"}, Case{"(abc) 1 get ", "98"},
        // Bytes come out signed.
        Case{"(\\310) 0 get (\\377) 0 get ", "-56 -1"},
        Case{"(abc) -1 get ", "ERROR: String index out of bounds"},
        Case{"(abc) /x get ", "ERROR: Unsupported parameter types to get"},
        // put stores the low byte of the index; the value is checked, then ignored.
        Case{"/s (abc) def s 1 65 put s 1 get s 0 get ", "1 97"},
        Case{"(abc) dup 2 65 put 2 get ", "2"},
        Case{"/s 300 string def s 200 7 put s 256 7 put s 200 get s 256 get ", "-56 0"},
        Case{"(abc) 3 65 put ", "ERROR: Illegal string index passed to put"},
        Case{"(abc) -1 65 put ", "ERROR: Illegal string index passed to put"},
        Case{"(abc) /k 1 put ", "ERROR: Unsupported parameter types to put"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    StringIntervals, Eval,
    ::testing::Values(
        Case{"(abcdef) 1 3 getinterval ", "(bcd)"}, Case{"(abc) 1 5 getinterval ", "(bc)"},
        Case{"(abc) 1 -1 getinterval ", "(bc)"}, Case{"(abc) 3 2 getinterval ", "()"},
        Case{"(abc) -1 1 getinterval ", "ERROR: invalid string position"},
        Case{"(abc) dup 0 2 getinterval dup 0 (zz) putinterval ", "(abc) (zz)"},
        // A string target grows as needed, for every object sharing it; no range failure.
        Case{"/s (ab) def s 1 (xyz) putinterval s ", "(axyz)"},
        Case{"(ab) dup 1 (xyz) putinterval ", "(axyz)"},
        Case{"/s (abcdef) def s 1 (xy) putinterval s ", "(axydef)"},
        Case{"/s (ab) def s 5 (xy) putinterval s ", "(abxy)"},
        Case{"/s (abc) def s 0 () putinterval s ", "(abc)"},
        Case{"/s (abcd) def s -1 (xy) putinterval s ", "(xybcd)"},
        Case{"/s (abc) def s 1 s putinterval s ", "(aabc)"},
        Case{"(ab) 0 5 putinterval ", "ERROR: putinterval expected array or string"},
        Case{"(abc) (ab) anchorsearch ", "(c) (ab) true"},
        Case{"(abc) (bc) anchorsearch ", "(abc) false"},
        Case{"(ab) (abc) anchorsearch ", "(ab) false"},
        Case{"(abc) () anchorsearch ", "(abc) () true"},
        Case{"(abc) (abc) anchorsearch ", "() (abc) true"},
        Case{"(a\\000bc) (a\\000b) anchorsearch ", "(c) (a) true"},
        Case{"(a\\000b) (a\\000c) anchorsearch ", "(a) false"},
        // The string object's own body is shortened.
        Case{"/s (abc) def s (ab) anchorsearch s ", "(c) (ab) true (c)"},
        Case{"(abc) dup (ab) anchorsearch ", "(c) (c) (ab) true"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Strings, Fails,
    ::testing::Values(
        FailCase{"7 (x) string ", "Expected ps_integer at length of string", "7"},
        FailCase{"7 -1 string ", "Illegal length passed to string", "7"},
        // A count that no program means is refused rather than exhausting the machine.
        FailCase{"7 16777217 string length ", "Illegal length passed to string", "7"},
        FailCase{"7 2147483647 string ", "Illegal length passed to string", "7"},
        FailCase{"7 5 length ", "Unsupported param to length", "7"},
        FailCase{"7 1.5 length ", "Unsupported param to length", "7"},
        FailCase{"7 (abc) 3 get ", "String index out of bounds", "7"},
        FailCase{"7 (abc) 5 65 put ", "Illegal string index passed to put", "7"},
        FailCase{"7 (abc) 1 (A) put ", "Unsupported parameter types to put", "7"},
        FailCase{"7 (abc) 1 1.0 put ", "Unsupported parameter types to put", "7"},
        // The empty result is pushed before the index is checked.
        FailCase{"7 (abc) 4 0 getinterval ", "invalid string position", "7 ()"},
        FailCase{"7 { 1 } 0 (x) putinterval ", "putinterval- only expecting ps_string", "7"},
        FailCase{"7 (abc) 1 anchorsearch ", "Expected ps_string at popStringObject", "7 (abc)"},
        FailCase{"7 1 (a) anchorsearch ", "Expected ps_string at popStringObject", "7"}),
    testing_support::RowName());

// Bytes go over, the filters of the source don't.
TEST(StringOperators, GetintervalCopiesBytesNotFilters) {
    testing_support::Session s;
    ASSERT_TRUE(s.run("<414243> 0 2 getinterval <414243> 5 2 getinterval "));
    const ObjectStack& st = *s.interpreter().operandStack;
    EXPECT_EQ(testing_support::render(st.at(0)), "(41)");
    EXPECT_EQ(testing_support::render(st.at(1)), "(3>)");
}

} // namespace
