#include "Tables.h"

namespace {

INSTANTIATE_TEST_SUITE_P(PopExchDupClearCount, Eval,
                         ::testing::Values(Case{"1 2 pop ", "1"},
                                           Case{"pop ", "ERROR: pop - expected item on stack"},
                                           Case{"1 2 exch ", "2 1"}, Case{"1 dup ", "1 1"},
                                           Case{"dup ", "ERROR: pop - expected item on stack"},
                                           // The clone of a composite shares its body.
                                           Case{"[1 2] dup 0 9 put ", "[9 2 ]"},
                                           Case{"1 2 clear ", ""}, Case{"clear ", ""},
                                           Case{"count ", "0"}, Case{"1 (a) count ", "1 (a) 2"}),
                         testing_support::RowName());

// dup pushes a clone, shown by the attribute of copy and original: numbers come
// back literal, a literal name's clone is executable, composites keep theirs.
INSTANTIATE_TEST_SUITE_P(CloneAttributes, Eval,
                         ::testing::Values(Case{"5 cvx dup xcheck exch xcheck ", "false true"},
                                           Case{"1.5 cvx dup xcheck exch xcheck ", "false true"},
                                           Case{"/n dup xcheck exch xcheck ", "true false"},
                                           Case{"(s) cvx dup xcheck exch xcheck ", "true true"},
                                           Case{"{ } cvx dup xcheck exch xcheck ", "true true"},
                                           Case{"true dup xcheck exch pop null dup xcheck exch pop "
                                                "mark dup xcheck exch pop ",
                                                "true true true"}),
                         testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Copy, Eval,
    ::testing::Values(
        Case{"1 2 3 2 copy ", "1 2 3 2 3"}, Case{"1 2 3 3 copy ", "1 2 3 1 2 3"},
        Case{"1 2 0 copy ", "1 2"}, Case{"1 2 -1 copy ", "1 2"},
        Case{"1 2147483647 copy ", "ERROR: object not on stack"},
        // The destination takes the source's length, whatever its own was.
        Case{"[1 2 3] [9] copy ", "[1 2 3 ]"}, Case{"[1] [7 8 9] copy ", "[1 ]"},
        // A destination sharing the source's body is emptied before the copy.
        Case{"[1 2] dup copy ", "[]"},
        Case{"1 dict dup /a 1 put 1 dict dup /b 2 put copy {} forall ", "a 1"},
        // A source held only by the destination survives the emptying.
        Case{"[ [1 2] ] dup 0 get exch copy ", "[1 2 ]"},
        Case{"/a 1 array def a 0 a put a currentdict /a undef [5] exch copy ", "[5 ]"},
        Case{"1.5 2.5 copy ", "ERROR: unsupported copy type"},
        Case{"1 dict [1] copy ", "ERROR: expected parms to be the same for copy operator"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    IndexAndRoll, Eval,
    ::testing::Values(Case{"1 2 3 0 index ", "1 2 3 3"}, Case{"1 2 3 2 index ", "1 2 3 1"},
                      Case{"1 2 3 3 index ", "ERROR: Indexed object not on stack"},
                      Case{"1 2 3 -1 index ", "ERROR: Indexed object not on stack"},
                      Case{"0 index ", "ERROR: Indexed object not on stack"},
                      Case{"1 2 1.0 index ", "ERROR: Illegal param type passed to index operator"},
                      Case{"1 2 3 3 1 roll ", "3 1 2"}, Case{"1 2 3 3 -1 roll ", "2 3 1"},
                      Case{"1 2 0 0 roll ", "1 2"}, Case{"1 2 3 3 0 roll ", "1 2 3"},
                      Case{"1 2 3 3 3 roll ", "1 2 3"}, Case{"1 2 3 3 7 roll ", "3 1 2"},
                      Case{"1 2 3 3 -4 roll ", "2 3 1"}, Case{"1 2 3 4 2 1 roll ", "1 2 4 3"},
                      Case{"1 2 3 3 -2147483648 roll ", "3 1 2"},
                      Case{"1 2 3 3 1.0 roll ",
                           "ERROR: Illegal param type passed to roll operator"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Marks, Eval,
    ::testing::Values(Case{"mark ", "-mark-"}, Case{"[ ", "-mark-"}, Case{"[ ] ", "[]"},
                      Case{"[ 1 (a) /n ] ", "[1 (a) n ]"}, Case{"mark 1 2 ] ", "[1 2 ]"},
                      Case{"1 [ 2 [ 3 ] ] ", "1 [2 [3 ] ]"}, Case{"[ 1 mark 2 ] ", "-mark- 1 [2 ]"},
                      Case{"1 mark 2 3 cleartomark ", "1"},
                      Case{"1 [ 2 mark 3 cleartomark ", "1 -mark- 2"},
                      Case{"1 mark 2 3 counttomark ", "1 -mark- 2 3 2"},
                      Case{"mark counttomark ", "-mark- 0"},
                      // Without a mark the count is the whole depth, and no failure.
                      Case{"1 2 3 counttomark ", "1 2 3 3"}, Case{"counttomark ", "0"}),
    testing_support::RowName());

INSTANTIATE_TEST_SUITE_P(
    Stack, Fails,
    ::testing::Values(
        FailCase{"1 2 ] ", "pop - expected item on stack", ""},
        FailCase{"1 2 cleartomark ", "pop - expected item on stack", ""},
        FailCase{"1 2 3 5 1 roll ", "pop - expected item on stack", ""},
        FailCase{"1 2 3 -1 1 roll ", "Illegal count passed to roll operator", "1 2 3"},
        FailCase{"1 2 (a) 1 roll ", "Illegal param type passed to roll operator", "1 2"},
        FailCase{"1 2 3 copy ", "object not on stack", "1 2"},
        FailCase{"1 [1] (b) copy ", "expected parms to be the same for copy operator", "1"},
        FailCase{"1 2 5 index ", "Indexed object not on stack", "1 2"},
        FailCase{"1 2 (a) index ", "Illegal param type passed to index operator", "1 2"},
        // Both roll operands are off the stack before either is checked.
        FailCase{"1 2 3 (x) roll ", "Illegal param type passed to roll operator", "1 2"},
        FailCase{"1 exch ", "pop - expected item on stack", ""},
        FailCase{"1 (a) (b) copy ", "unsupported copy type", "1"}),
    testing_support::RowName());

} // namespace
