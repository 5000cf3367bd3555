#pragma once

// The one table of the graphics operators, in their order of registration,
// each under its stack effect.
//
// X(name, Class, Declare): Declare(Class) declares the class. Most are
// KEL_GRAPHICS_OPERATOR, a class that is its execute; the others take a base
// from their family's header (an arc's values, a point transformation, an
// execute shared with an operator above them). Every class is made with the
// translator: Class(atom, pdf). Each execute is defined in its family's file
// (PathOperators.cpp, ...).
#define KEL_GRAPHICS_OPERATORS(X)                                                                  \
    /* frequency angle proc setscreen -   all three dropped */                                     \
    X("setscreen", SetscreenOperator, KEL_GRAPHICS_OPERATOR)                                       \
    /* twelve operands setcolorscreen -   all dropped */                                           \
    X("setcolorscreen", SetcolorscreenOperator, KEL_GRAPHICS_OPERATOR)                             \
    /* any sethalftone -   dropped */                                                              \
    X("sethalftone", SethalftoneOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* - currenthalftone dict   a new type 1 halftone */                                           \
    X("currenthalftone", CurrenthalftoneOperator, KEL_GRAPHICS_OPERATOR)                           \
    /* - gsave -   "q ", a copy of the current state */                                            \
    X("gsave", GsaveOperator, KEL_GRAPHICS_OPERATOR)                                               \
    /* - initclip -   nothing at all */                                                            \
    X("initclip", InitclipOperator, KEL_GRAPHICS_OPERATOR)                                         \
    /* - eoclip -   "W* n ", placed in front of a trailing "q" */                                  \
    X("eoclip", EoclipOperator, KEL_GRAPHICS_OPERATOR)                                             \
    /* - clip -   "W n ", placed in front of a trailing "q" */                                     \
    X("clip", ClipOperator, KEL_GRAPHICS_OPERATOR)                                                 \
    /* - clippath -   the execute of clip */                                                       \
    X("clippath", ClippathOperator, KEL_LIKE_CLIP)                                                 \
    /* x y w h rectclip - | array rectclip -   "x y w h re W n\\n" each */                         \
    X("rectclip", RectclipOperator, KEL_GRAPHICS_OPERATOR)                                         \
    /* x y w h rectfill - | array rectfill -   "q x y w h re f Q\\n" each */                       \
    X("rectfill", RectfillOperator, KEL_GRAPHICS_OPERATOR)                                         \
    /* x y w h rectstroke - | array rectstroke -   "q x y w h re S Q\\n" each */                   \
    X("rectstroke", RectstrokeOperator, KEL_GRAPHICS_OPERATOR)                                     \
    /* r g b setrgbcolor -   "r g b RG r g b rg " */                                               \
    X("setrgbcolor", SetrgbcolorOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* h s b sethsbcolor -   as RGB */                                                             \
    X("sethsbcolor", SethsbcolorOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* c m y k setcmykcolor -   "c m y k K c m y k k " */                                          \
    X("setcmykcolor", SetcmykcolorOperator, KEL_GRAPHICS_OPERATOR)                                 \
    /* g setgray -   "g G g g " */                                                                 \
    X("setgray", SetgrayOperator, KEL_GRAPHICS_OPERATOR)                                           \
    /* - currentrgbcolor r g b   only after setrgbcolor */                                         \
    X("currentrgbcolor", CurrentrgbcolorOperator, KEL_GRAPHICS_OPERATOR)                           \
    /* - currenthsbcolor h s b   only after sethsbcolor */                                         \
    X("currenthsbcolor", CurrenthsbcolorOperator, KEL_GRAPHICS_OPERATOR)                           \
    /* - currentcmykcolor c m y k   only after setcmykcolor */                                     \
    X("currentcmykcolor", CurrentcmykcolorOperator, KEL_GRAPHICS_OPERATOR)                         \
    /* - currentgray g   converted from any model */                                               \
    X("currentgray", CurrentgrayOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* - stroke -   "S " */                                                                        \
    X("stroke", StrokeOperator, KEL_GRAPHICS_OPERATOR)                                             \
    /* - newpath -   nothing at all */                                                             \
    X("newpath", NewpathOperator, KEL_GRAPHICS_OPERATOR)                                           \
    /* - fill -   "f\\n" */                                                                        \
    X("fill", FillOperator, KEL_GRAPHICS_OPERATOR)                                                 \
    /* - eofill -   "f*\\n" */                                                                     \
    X("eofill", EofillOperator, KEL_GRAPHICS_OPERATOR)                                             \
    /* x y moveto -   deferred: the "m" waits for a drawing operator */                            \
    X("moveto", MovetoOperator, KEL_GRAPHICS_OPERATOR)                                             \
    /* dx dy rmoveto -   deferred */                                                               \
    X("rmoveto", RmovetoOperator, KEL_GRAPHICS_OPERATOR)                                           \
    /* x y lineto -   "x y l\\n" */                                                                \
    X("lineto", LinetoOperator, KEL_GRAPHICS_OPERATOR)                                             \
    /* dx dy rlineto -   the sum, "x y l\\n" */                                                    \
    X("rlineto", RlinetoOperator, KEL_GRAPHICS_OPERATOR)                                           \
    /* x1 y1 x2 y2 x3 y3 curveto -   "... c\\n" */                                                 \
    X("curveto", CurvetoOperator, KEL_GRAPHICS_OPERATOR)                                           \
    /* dx1 dy1 dx2 dy2 dx3 dy3 rcurveto -   the sums, "... c\\n" */                                \
    X("rcurveto", RcurvetoOperator, KEL_GRAPHICS_OPERATOR)                                         \
    /* x y r angle1 angle2 arc -   counterclockwise, one curve per quadrant */                     \
    X("arc", ArcOperator, KEL_ARCER_OPERATOR)                                                      \
    /* x y r angle1 angle2 arcn -   clockwise */                                                   \
    X("arcn", ArcnOperator, KEL_ARCER_OPERATOR)                                                    \
    /* x1 y1 x2 y2 r arct - */                                                                     \
    X("arct", ArctOperator, KEL_ARCTER_OPERATOR)                                                   \
    /* x1 y1 x2 y2 r arcto xt1 yt1 xt2 yt2 */                                                      \
    X("arcto", ArctoOperator, KEL_ARCTER_OPERATOR)                                                 \
    /* - currentpoint x y   in user space, as written */                                           \
    X("currentpoint", CurrentpointOperator, KEL_GRAPHICS_OPERATOR)                                 \
    /* - closepath -   "h " */                                                                     \
    X("closepath", ClosepathOperator, KEL_GRAPHICS_OPERATOR)                                       \
    /* tx ty translate - | tx ty matrix translate matrix */                                        \
    X("translate", TranslateOperator, KEL_GRAPHICS_OPERATOR)                                       \
    /* x y transform x' y' | x y matrix transform x' y' */                                         \
    X("transform", TransformOperator, KEL_TRANSFORMER_OPERATOR)                                    \
    /* x y itransform x' y' | x y matrix itransform x' y' */                                       \
    X("itransform", ItransformOperator, KEL_TRANSFORMER_OPERATOR)                                  \
    /* dx dy idtransform dx' dy' | dx dy matrix idtransform dx' dy' */                             \
    X("idtransform", IdtransformOperator, KEL_TRANSFORMER_OPERATOR)                                \
    /* dx dy dtransform dx' dy' | dx dy matrix dtransform x' y'   translated */                    \
    X("dtransform", DtransformOperator, KEL_GRAPHICS_OPERATOR)                                     \
    /* angle rotate - | angle matrix rotate matrix */                                              \
    X("rotate", RotateOperator, KEL_GRAPHICS_OPERATOR)                                             \
    /* matrix concat - */                                                                          \
    X("concat", ConcatOperator, KEL_GRAPHICS_OPERATOR)                                             \
    /* matrix currentmatrix matrix */                                                              \
    X("currentmatrix", CurrentmatrixOperator, KEL_GRAPHICS_OPERATOR)                               \
    /* sx sy scale - | sx sy matrix scale matrix */                                                \
    X("scale", ScaleOperator, KEL_GRAPHICS_OPERATOR)                                               \
    /* - grestore -   "Q "; the last state becomes a default one */                                \
    X("grestore", GrestoreOperator, KEL_GRAPHICS_OPERATOR)                                         \
    /* key findfont font   Helvetica when absent */                                                \
    X("findfont", FindfontOperator, KEL_GRAPHICS_OPERATOR)                                         \
    /* font scale scalefont font   the same font, its FontMatrix scaled in place */                \
    X("scalefont", ScalefontOperator, KEL_GRAPHICS_OPERATOR)                                       \
    /* font setfont - */                                                                           \
    X("setfont", SetfontOperator, KEL_GRAPHICS_OPERATOR)                                           \
    /* - FontDirectory dict */                                                                     \
    X("FontDirectory", FontDirectoryOperator, KEL_GRAPHICS_OPERATOR)                               \
    /* - GlobalFontDirectory dict   the same dictionary */                                         \
    X("GlobalFontDirectory", GlobalFontDirectoryOperator, KEL_LIKE_FONT_DIRECTORY)                 \
    /* string show -   paints nothing */                                                           \
    X("show", ShowOperator, KEL_GRAPHICS_OPERATOR)                                                 \
    /* any stringwidth 10 100 */                                                                   \
    X("stringwidth", StringwidthOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* num setlinewidth -   "num w " */                                                            \
    X("setlinewidth", SetlinewidthOperator, KEL_GRAPHICS_OPERATOR)                                 \
    /* int setlinecap -   "int J " */                                                              \
    X("setlinecap", SetlinecapOperator, KEL_GRAPHICS_OPERATOR)                                     \
    /* int setlinejoin -   "int j " */                                                             \
    X("setlinejoin", SetlinejoinOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* num setmiterlimit -   "num M " */                                                           \
    X("setmiterlimit", SetmiterlimitOperator, KEL_GRAPHICS_OPERATOR)                               \
    /* array offset setdash -   "[a b ] offset d\\n" */                                            \
    X("setdash", SetdashOperator, KEL_GRAPHICS_OPERATOR)                                           \
    /* - currentlinewidth num */                                                                   \
    X("currentlinewidth", CurrentlinewidthOperator, KEL_GRAPHICS_OPERATOR)                         \
    /* bool setstrokeadjust -   dropped */                                                         \
    X("setstrokeadjust", SetstrokeadjustOperator, KEL_GRAPHICS_OPERATOR)                           \
    /* - currentstrokeadjust true */                                                               \
    X("currentstrokeadjust", CurrentstrokeadjustOperator, KEL_GRAPHICS_OPERATOR)                   \
    /* matrix setmatrix -   the change from the tracked matrix as "cm" */                          \
    X("setmatrix", SetmatrixOperator, KEL_GRAPHICS_OPERATOR)                                       \
    /* matrix defaultmatrix matrix */                                                              \
    X("defaultmatrix", DefaultmatrixOperator, KEL_GRAPHICS_OPERATOR)                               \
    /* - showpage -   nothing: the host ends pages */                                              \
    X("showpage", ShowpageOperator, KEL_GRAPHICS_OPERATOR)                                         \
    /* w h polarity matrix source imagemask -   "BI ... EI\\n", inline */                          \
    X("imagemask", ImagemaskOperator, KEL_GRAPHICS_OPERATOR)                                       \
    /* proc settransfer -   dropped */                                                             \
    X("settransfer", SettransferOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* - currenttransfer array   empty, literal */                                                 \
    X("currenttransfer", CurrenttransferOperator, KEL_GRAPHICS_OPERATOR)                           \
    /* red green blue gray setcolortransfer -   dropped */                                         \
    X("setcolortransfer", SetcolortransferOperator, KEL_GRAPHICS_OPERATOR)                         \
    /* - currentcolortransfer array array array array */                                           \
    X("currentcolortransfer", CurrentcolortransferOperator, KEL_GRAPHICS_OPERATOR)                 \
    /* any setflat -   dropped */                                                                  \
    X("setflat", SetflatOperator, KEL_LIKE_SETHALFTONE)                                            \
    /* - currentflat 0.2 */                                                                        \
    X("currentflat", CurrentflatOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* w h bits matrix sources multi ncomp colorimage - */                                         \
    X("colorimage", ColorimageOperator, KEL_IMAGER_OPERATOR)                                       \
    /* w h bits matrix source image - | dict image -   inline or "/PSIn Do\\n" */                  \
    X("image", ImageOperator, KEL_IMAGER_OPERATOR)                                                 \
    /* any setoverprint -   dropped */                                                             \
    X("setoverprint", SetoverprintOperator, KEL_LIKE_SETHALFTONE)                                  \
    /* - currentoverprint false */                                                                 \
    X("currentoverprint", CurrentoverprintOperator, KEL_GRAPHICS_OPERATOR)                         \
    /* - save save   "q\\n" */                                                                     \
    X("save", SaveOperator, KEL_GRAPHICS_OPERATOR)                                                 \
    /* any restore -   "Q\\n"; the operand is not looked at */                                     \
    X("restore", RestoreOperator, KEL_GRAPHICS_OPERATOR)                                           \
    /* dict matrix makepattern dict   the cell goes to a record */                                 \
    X("makepattern", MakepatternOperator, KEL_MAKEPATTERN_OPERATOR)                                \
    /* dict setpattern -   "/Pattern cs\\n/PAn scn\\n" */                                          \
    X("setpattern", SetpatternOperator, KEL_GRAPHICS_OPERATOR)                                     \
    /* - currentfont font   made and stored when absent */                                         \
    X("currentfont", CurrentfontOperator, KEL_GRAPHICS_OPERATOR)                                   \
    /* string print -   to the text of PSExecuteReturnStdOut */                                    \
    X("print", PrintOperator, KEL_GRAPHICS_OPERATOR)                                               \
    /* any setcolorspace -   a device name sets colorSpace */                                      \
    X("setcolorspace", SetcolorspaceOperator, KEL_GRAPHICS_OPERATOR)
