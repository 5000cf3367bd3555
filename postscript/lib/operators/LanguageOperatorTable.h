#pragma once

// The one table of the hand-written language operators, in their order of
// registration, each under its stack effect.
//
// X(name, Class, Declare): Declare(Class) declares the class. Most are
// KEL_OPERATOR, a class that is its execute; the arithmetic and comparison
// operators share the execute of their family's base; KEL_OWN_DECLARATION
// marks a class with state of its own, declared in its family's header. Each
// execute is defined in its family's file (StackOperators.cpp, ...).
#define KEL_LANGUAGE_OPERATORS(X)                                                                  \
    /* - { -   opens a procedure under construction */                                             \
    X("{", LeftCurlyBraceOperator, KEL_OPERATOR)                                                   \
    /* - } proc   closes the innermost procedure under construction */                             \
    X("}", RightCurlyBraceOperator, KEL_OPERATOR)                                                  \
    /* - [ mark   the same action as mark */                                                       \
    X("[", LeftSquareBracketOperator, KEL_OWN_DECLARATION)                                         \
    /* mark any0 ... anyn-1 ] array */                                                             \
    X("]", RightSquareBracketOperator, KEL_OPERATOR)                                               \
    /* - mark mark */                                                                              \
    X("mark", MarkOperator, KEL_OPERATOR)                                                          \
    /* mark any1 ... anyn cleartomark - */                                                         \
    X("cleartomark", CleartomarkOperator, KEL_OPERATOR)                                            \
    /* mark any1 ... anyn counttomark mark any1 ... anyn n   the whole depth without a mark */     \
    X("counttomark", CounttomarkOperator, KEL_OPERATOR)                                            \
    /* key where dict true | false */                                                              \
    X("where", WhereOperator, KEL_OPERATOR)                                                        \
    /* dict key known bool */                                                                      \
    X("known", KnownOperator, KEL_OPERATOR)                                                        \
    /* bool proc1 proc2 ifelse - */                                                                \
    X("ifelse", IfElseOperator, KEL_OPERATOR)                                                      \
    /* bool proc if -   the procedure's type is not checked: whatever it is runs */                \
    X("if", IfOperator, KEL_OPERATOR)                                                              \
    /* - true true      by way of the execution stack */                                           \
    X("true", TrueOperator, KEL_OPERATOR)                                                          \
    /* - false false    by way of the execution stack */                                           \
    X("false", FalseOperator, KEL_OPERATOR)                                                        \
    /* - null null      by way of the execution stack */                                           \
    X("null", NullOperator, KEL_OPERATOR)                                                          \
    /* bool|int not bool|int      an integer is negated, not complemented */                       \
    X("not", NotOperator, KEL_OPERATOR)                                                            \
    /* bool1|int1 bool2|int2 and bool|int */                                                       \
    X("and", AndOperator, KEL_OPERATOR)                                                            \
    /* bool1|int1 bool2|int2 or bool|int */                                                        \
    X("or", OrOperator, KEL_OPERATOR)                                                              \
    /* bool1|int1 bool2|int2 xor bool|int */                                                       \
    X("xor", XOrOperator, KEL_OPERATOR)                                                            \
    /* any pop - */                                                                                \
    X("pop", PopOperator, KEL_OPERATOR)                                                            \
    /* any1 any2 ge bool */                                                                        \
    X("ge", GeOperator, KEL_COMPARISON_OPERATOR)                                                   \
    /* any1 any2 gt bool */                                                                        \
    X("gt", GtOperator, KEL_COMPARISON_OPERATOR)                                                   \
    /* any1 any2 eq bool    deep for arrays and dictionaries */                                    \
    X("eq", EqOperator, KEL_COMPARISON_OPERATOR)                                                   \
    /* any1 any2 ne bool */                                                                        \
    X("ne", NeOperator, KEL_COMPARISON_OPERATOR)                                                   \
    /* any1 any2 lt bool */                                                                        \
    X("lt", LtOperator, KEL_COMPARISON_OPERATOR)                                                   \
    /* any1 any2 le bool */                                                                        \
    X("le", LeOperator, KEL_COMPARISON_OPERATOR)                                                   \
    /* any dup any any'   the second is a clone: composites share the body */                      \
    X("dup", DupOperator, KEL_OPERATOR)                                                            \
    /* dict name any put - | array int any put - | string int int put - */                         \
    /* An array grows by one at its length; a string stores the index, not the value. */           \
    X("put", PutOperator, KEL_OPERATOR)                                                            \
    /* dict name get any | array int get any | string int get int */                               \
    /* A dictionary takes only a name here; a string byte comes out signed. */                     \
    X("get", GetOperator, KEL_OPERATOR)                                                            \
    /* key value store - */                                                                        \
    X("store", StoreOperator, KEL_OPERATOR)                                                        \
    /* any dict dict   the operand is no capacity and is forgotten */                              \
    X("dict", DictOperator, KEL_OPERATOR)                                                          \
    /* dict key undef -   a non-dictionary operand is no failure */                                \
    X("undef", UndefOperator, KEL_OPERATOR)                                                        \
    /* - currentdict dict */                                                                       \
    X("currentdict", CurrentdictOperator, KEL_OPERATOR)                                            \
    /* dict begin - */                                                                             \
    X("begin", BeginOperator, KEL_OPERATOR)                                                        \
    /* key value def - */                                                                          \
    X("def", DefOperator, KEL_OPERATOR)                                                            \
    /* initial increment limit proc for -   the limit itself is never reached */                   \
    X("for", ForOperator, KEL_OWN_DECLARATION)                                                     \
    /* array|string|dict proc forall - */                                                          \
    X("forall", ForallOperator, KEL_OWN_DECLARATION)                                               \
    /* proc loop -   ends by exit, stop or a failure only */                                       \
    X("loop", LoopOperator, KEL_OWN_DECLARATION)                                                   \
    /* int proc repeat - */                                                                        \
    X("repeat", RepeatOperator, KEL_OWN_DECLARATION)                                               \
    /* - exit -   leaves the innermost looping context */                                          \
    X("exit", ExitOperator, KEL_OPERATOR)                                                          \
    /* - end -   also pops the permanent dictionaries */                                           \
    X("end", EndOperator, KEL_OPERATOR)                                                            \
    /* num1 num2 sub difference   integers wrap at 32 bits */                                      \
    X("sub", SubOperator, KEL_MATH_OPERATOR)                                                       \
    /* num1 num2 add sum          integers wrap at 32 bits */                                      \
    X("add", AddOperator, KEL_MATH_OPERATOR)                                                       \
    /* num1 num2 mul product      integers wrap at 32 bits */                                      \
    X("mul", MulOperator, KEL_MATH_OPERATOR)                                                       \
    /* num1 num2 div quotient     always a real */                                                 \
    X("div", DivOperator, KEL_MATH_OPERATOR)                                                       \
    /* num1 num2 idiv quotient    always an integer, reals accepted */                             \
    X("idiv", IdivOperator, KEL_MATH_OPERATOR)                                                     \
    /* angle cos real */                                                                           \
    X("cos", CosOperator, KEL_TRIG_OPERATOR)                                                       \
    /* angle sin real */                                                                           \
    X("sin", SinOperator, KEL_TRIG_OPERATOR)                                                       \
    /* num den atan angle         between -180 and 180 */                                          \
    X("atan", AtanOperator, KEL_OPERATOR)                                                          \
    /* num sqrt real */                                                                            \
    X("sqrt", SqrtOperator, KEL_OPERATOR)                                                          \
    /* num neg num                the lowest integer stays */                                      \
    X("neg", NegOperator, KEL_OPERATOR)                                                            \
    /* num abs num                the lowest integer stays */                                      \
    X("abs", AbsOperator, KEL_OPERATOR)                                                            \
    /* int1 int2 mod remainder    the absolute value of the truncating remainder */                \
    X("mod", ModOperator, KEL_OPERATOR)                                                            \
    /* proc bind proc            does nothing; names are looked up at each run */                  \
    X("bind", BindOperator, KEL_OPERATOR)                                                          \
    /* - matrix matrix   a new identity: six reals */                                              \
    X("matrix", MatrixOperator, KEL_OPERATOR)                                                      \
    /* array identmatrix array   positions 0 to 5 replaced or appended */                          \
    X("identmatrix", IdentmatrixOperator, KEL_OPERATOR)                                            \
    /* matrix1 matrix2 matrix3 concatmatrix matrix3   computed in floats */                        \
    X("concatmatrix", ConcatmatrixOperator, KEL_OPERATOR)                                          \
    /* any1 ... anyn clear - */                                                                    \
    X("clear", ClearOperator, KEL_OPERATOR)                                                        \
    /* any1 ... anyn count any1 ... anyn n */                                                      \
    X("count", CountOperator, KEL_OPERATOR)                                                        \
    /* - cleardictstack -   down to the topmost of systemdict, globaldict, userdict */             \
    X("cleardictstack", CleardictstackOperator, KEL_OPERATOR)                                      \
    /* any1 any2 exch any2 any1 */                                                                 \
    X("exch", ExchOperator, KEL_OPERATOR)                                                          \
    /* anyn-1 ... any0 n j roll any(j-1) mod n ... any0 anyn-1 ... anyj mod n */                   \
    X("roll", RollOperator, KEL_OPERATOR)                                                          \
    /* anyn ... any0 n index anyn ... any0 anyn' */                                                \
    X("index", IndexOperator, KEL_OPERATOR)                                                        \
    /* key load value */                                                                           \
    X("load", LoadOperator, KEL_OPERATOR)                                                          \
    /* - currentfile file   a new file at the scanner's cursor each time */                        \
    X("currentfile", CurrentfileOperator, KEL_OPERATOR)                                            \
    /* file read int true | false   fails at the end of the buffer; a NUL is the end */            \
    X("read", ReadOperator, KEL_OPERATOR)                                                          \
    /* file string readline line bool   waits for a buffer that holds a whole line */              \
    X("readline", ReadlineOperator, KEL_OPERATOR)                                                  \
    /* file string readhexstring substring bool   waits for the digits it lacks */                 \
    X("readhexstring", ReadhexstringOperator, KEL_OWN_DECLARATION)                                 \
    /* - currentglobal bool   true when the global memory is current */                            \
    X("currentglobal", CurrentglobalOperator, KEL_OPERATOR)                                        \
    /* bool setglobal bool   makes the global memory current; the operand stays, unread */         \
    X("setglobal", SetglobalOperator, KEL_OPERATOR)                                                \
    /* src [count string] name filter file   decodes nothing; src may be a procedure */            \
    X("filter", FilterOperator, KEL_OPERATOR)                                                      \
    /* int string string   n bytes of 0 */                                                         \
    X("string", StringOperator, KEL_OPERATOR)                                                      \
    /* file string readstring substring bool   waits for the bytes it lacks */                     \
    X("readstring", ReadstringOperator, KEL_OWN_DECLARATION)                                       \
    /* any stopped bool   true when a stop ended it, false when it ran to its end; */              \
    /* failures pass through */                                                                    \
    X("stopped", StoppedOperator, KEL_OWN_DECLARATION)                                             \
    /* - stop -   leaves the innermost stopped context, which answers true */                      \
    X("stop", StopOperator, KEL_OPERATOR)                                                          \
    /* any exec -   a literal object goes back to the operand stack */                             \
    X("exec", ExecOperator, KEL_OPERATOR)                                                          \
    /* any cvx any               sets executable on the object itself */                           \
    X("cvx", CvxOperator, KEL_OPERATOR)                                                            \
    /* any xcheck bool */                                                                          \
    X("xcheck", XcheckOperator, KEL_OPERATOR)                                                      \
    /* int array array   n nulls; none for n at or below 0 */                                      \
    X("array", ArrayOperator, KEL_OPERATOR)                                                        \
    /* any0 ... anyn-1 int packedarray array   a plain array: there is no packed type */           \
    X("packedarray", PackedarrayOperator, KEL_OPERATOR)                                            \
    /* bool setpacking -   drops its operand */                                                    \
    X("setpacking", SetpackingOperator, KEL_OPERATOR)                                              \
    /* - currentpacking true */                                                                    \
    X("currentpacking", CurrentpackingOperator, KEL_OPERATOR)                                      \
    /* num floor num */                                                                            \
    X("floor", FloorOperator, KEL_OPERATOR)                                                        \
    /* num ceiling num */                                                                          \
    X("ceiling", CeilingOperator, KEL_OPERATOR)                                                    \
    /* num round num              halves away from zero */                                         \
    X("round", RoundOperator, KEL_OPERATOR)                                                        \
    /* any1 ... anyn n copy any1 ... anyn any1' ... anyn' */                                       \
    /* array1 array2 copy array2   dict1 dict2 copy dict2 */                                       \
    X("copy", CopyOperator, KEL_OPERATOR)                                                          \
    /* any readonly any          there are no access attributes: does nothing */                   \
    X("readonly", ReadonlyOperator, KEL_OPERATOR)                                                  \
    /* array aload any0 ... anyn-1 array */                                                        \
    X("aload", AloadOperator, KEL_OPERATOR)                                                        \
    /* any0 ... anyn-1 array astore array */                                                       \
    X("astore", AstoreOperator, KEL_OPERATOR)                                                      \
    /* any type name             an executable name such as integertype */                         \
    X("type", TypeOperator, KEL_OPERATOR)                                                          \
    /* num|string cvr real */                                                                      \
    X("cvr", CvrOperator, KEL_OPERATOR)                                                            \
    /* num|string cvi int */                                                                       \
    X("cvi", CviOperator, KEL_OPERATOR)                                                            \
    /* string cvn name */                                                                          \
    X("cvn", CvnOperator, KEL_OPERATOR)                                                            \
    /* any string cvs string     a new string of the object's = text */                            \
    X("cvs", CvsOperator, KEL_OPERATOR)                                                            \
    /* string|name|array|dict length int   bytes, bytes, elements or entries */                    \
    X("length", LengthOperator, KEL_OPERATOR)                                                      \
    /* dict maxlength int   the entry count plus 10 */                                             \
    X("maxlength", MaxlengthOperator, KEL_OPERATOR)                                                \
    /* array1 index array2 putinterval - | string1 index string2 putinterval - */                  \
    /* A string target grows as needed. */                                                         \
    X("putinterval", PutintervalOperator, KEL_OPERATOR)                                            \
    /* array index count getinterval subarray | string index count getinterval substring */        \
    /* The result is a copy, pushed before it is filled. */                                        \
    X("getinterval", GetintervalOperator, KEL_OPERATOR)                                            \
    /* any1 ... anyn stack any1 ... anyn    writes every operand, top first, in "==" form */       \
    X("stack", StackOperator, KEL_OPERATOR)                                                        \
    /* any = -     writes the object's "=" text and a line feed to standard output */              \
    X("=", EqualsOperator, KEL_OPERATOR)                                                           \
    /* any == -    writes the object's "==" text and a line feed */                                \
    X("==", DoubleEqualsOperator, KEL_OPERATOR)                                                    \
    /* - vmstatus level used max   the save level and two constants */                             \
    X("vmstatus", VmstatusOperator, KEL_OPERATOR)                                                  \
    /* - statusdict dict   a new dictionary of two entries at every call */                        \
    X("statusdict", StatusdictOperator, KEL_OPERATOR)                                              \
    /* key font definefont font   into FontDirectory, with no FID */                               \
    X("definefont", DefinefontOperator, KEL_OPERATOR)                                              \
    /* key category resourcestatus 0 0 true   whatever was asked */                                \
    X("resourcestatus", ResourcestatusOperator, KEL_OPERATOR)                                      \
    /* string seek anchorsearch post match true | string false */                                  \
    /* A match shortens the string's own body, seen by everything sharing it. */                   \
    X("anchorsearch", AnchorsearchOperator, KEL_OPERATOR)                                          \
    /* - getdoubles -   the operand stack's numbers, top first, for the host */                    \
    X("getdoubles", GetDoublesOperator, KEL_OPERATOR)
