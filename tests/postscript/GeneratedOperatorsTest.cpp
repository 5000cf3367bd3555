#include "Tables.h"

#include "core/DictionarySet.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"
#include "operators/GeneratedOps.h"
#include "operators/LanguageOperators.h"
#include "pdf/Postscript2PdfObject.h"

#include <algorithm>
#include <set>
#include <sstream>

using testing_support::Session;

namespace {

std::vector<std::string> words(const char* text) {
    std::istringstream in(text);
    std::vector<std::string> out;
    for (std::string word; in >> word;)
        out.push_back(word);
    return out;
}

std::set<std::string> setOf(const std::vector<std::string>& list) {
    return std::set<std::string>(list.begin(), list.end());
}

// A row over several generated operators: the stack they are given, over a
// 7 that none may reach, the operators, each run on it in turn, and what each
// one leaves; for a row with stackAfter, its failure and the stack after it.
struct Stub {
    const char* before;
    const char* operators;
    const char* expected;
    const char* stackAfter = nullptr;
};

void PrintTo(const Stub& row, std::ostream* os) {
    *os << '"' << row.before << "\" " << row.operators;
}

class Generated : public ::testing::TestWithParam<Stub> {};

TEST_P(Generated, EachOperatorGives) {
    for (const std::string& op : words(GetParam().operators)) {
        const std::string program = std::string(GetParam().before) + " " + op + " ";
        if (!GetParam().stackAfter) {
            expectGives(Case{program.c_str(), GetParam().expected});
            continue;
        }
        Session s;
        expectFailure(s, FailCase{program.c_str(), GetParam().expected, GetParam().stackAfter});
    }
}

// Stubs pop their operands unchecked or by the typed helpers, push new
// defaults, every boolean true, and do nothing else.
INSTANTIATE_TEST_SUITE_P(
    Stubs, Generated,
    ::testing::Values(
        Stub{"7",
             "quit start executeonly noaccess flush pstack executive prompt clipsave "
             "cliprestore grestoreall initgraphics currentcolor currentscreen "
             "currentcolorscreen initmatrix flattenpath reversepath strokepath ucache "
             "erasepage copypage nulldevice undefinefont makefont rootfont selectfont "
             "xshow xyshow yshow glyphshow",
             "7"},
        Stub{"7",
             "rand rrand countexecstack currentobjectformat realtime usertime revision "
             "serialnumber currentlinecap currentlinejoin",
             "7 0"},
        Stub{"7", "btrue bfalse rcheck wcheck", "7 true"},
        Stub{"7",
             "UserObjects currentcolorspace currentblackgeneration "
             "currentundercolorremoval ISOLatinEncoding",
             "7 []"},
        Stub{"7", "gstate currentmiterlimit currentsmoothness", "7 0.000000"},
        Stub{"7", "currentcolorrendering currentpagedevice currentsystemparams currentuserparams",
             "7 -dict-"},
        Stub{"7", "currentdash", "7 [] 0.000000"},
        Stub{"7", "pathbbox", "7 0.000000 0.000000 0.000000 0.000000"},
        Stub{"7", "currentcacheparams", "7 -mark- 0 0 0"},
        Stub{"7", "ucachestatus", "7 -mark- 0.000000 0.000000 0.000000 0.000000 0.000000"},
        Stub{"7", "cachestatus",
             "7 0.000000 0.000000 0.000000 0.000000 0.000000 0.000000 0.000000"},
        Stub{"7 1",
             "srand setobjectformat execuserobject undefineuserobject vmreclaim "
             "setvmthreshold setcachelimit",
             "7"},
        Stub{"7 (s)",
             "closefile flushfile resetfile setgstate setcolor setsmoothness "
             "ustrokepath uappend ustroke ufill ueofill execform run deletefile",
             "7"},
        Stub{"7 btrue", "echo", "7"}, Stub{"7 [1]", "setblackgeneration setundercolorremoval", "7"},
        Stub{"7 1 dict", "setcolorrendering shfill setpagedevice setsystemparams setuserparams",
             "7"},
        Stub{"7 (s)", "truncate ln log cvlit fileposition currentgstate", "7 0.000000"},
        Stub{"7 [1]", "dictstack execstack", "7 []"}, Stub{"7 (s)", "bytesavailable", "7 0"},
        Stub{"7 (s)", "status gcheck", "7 true"}, Stub{"7 btrue", "upath", "7 0.000000"},
        Stub{"7 (s)", "findencoding", "7 []"}, Stub{"7 (s)", "currentdevparams", "7 -dict-"},
        // The pushed name has empty text.
        Stub{"7 (s)", "findcolorrendering", "7  true"},
        Stub{"7 (s)", "token", "7 0.000000 0.000000 true"}, Stub{"7 (f) 1", "write", "7"},
        Stub{"7 1 (s)", "writehexstring writestring printobject", "7"},
        Stub{"7 (a) (b)", "renamefile", "7"},
        Stub{"7 1 2", "setfileposition undefineresource setcharwidth", "7"},
        Stub{"7 1 (x)", "defineuserobject", "7"}, Stub{"7 (s) btrue", "charpath", "7"},
        Stub{"7 [1] (s)", "cshow kshow", "7"}, Stub{"7 (s) 1 dict", "setdevparams", "7"},
        Stub{"7 mark 1", "setucacheparams", "7"}, Stub{"7 1 2", "exp findresource", "7 0.000000"},
        Stub{"7 1 2", "bitshift", "7 0"}, Stub{"7 (f) 1", "file", "7 0.000000"},
        Stub{"7 btrue 1", "startjob", "7 true"}, Stub{"7 [1] [2]", "invertmatrix", "7 []"},
        Stub{"7 1 2", "infill ineofill instroke", "7 true"},
        Stub{"7 (a) (b)", "search", "7 0.000000 0.000000 0.000000 true"},
        Stub{"7 (t) [1] 1", "filenameforall", "7"}, Stub{"7 1 2 (s)", "writeobject ashow", "7"},
        Stub{"7 1 2 (s)", "cvrs", "7 ()"}, Stub{"7 1 2 3", "defineresource", "7 0.000000"},
        Stub{"7 1 2 3", "inufill inueofill inustroke", "7 true"},
        Stub{"7 (s) [1] 1 2", "resourceforall", "7"}, Stub{"7 1 2 3 4", "setbbox pathforall", "7"},
        Stub{"7 1 2 (a) (b)", "widthshow", "7"}, Stub{"7 mark 1 2 3", "setcacheparams", "7"},
        Stub{"7 1 2 (a) 3 4 (b)", "awidthshow", "7"}, Stub{"7 1 2 3 4 5 6", "setcachedevice", "7"}),
    testing_support::RowName());

// A typed pop names its helper; what was popped before it stays popped.
INSTANTIATE_TEST_SUITE_P(
    TypedPops, Generated,
    ::testing::Values(
        Stub{"7 (s)",
             "srand setobjectformat execuserobject undefineuserobject vmreclaim "
             "setvmthreshold setcachelimit",
             "Expected ps_integer at popIntegerObject", "7"},
        Stub{"", "srand", "Expected ps_integer at popIntegerObject", ""},
        Stub{"7 1", "run deletefile currentdevparams token",
             "Expected ps_string at popStringObject", "7"},
        Stub{"7 1", "echo upath", "Expected ps_boolean at popBooleanObject", "7"},
        Stub{"7 1", "setblackgeneration setundercolorremoval dictstack execstack",
             "Expected ps_array at popArrayObject", "7"},
        Stub{"7 1", "setcolorrendering shfill setpagedevice setsystemparams setuserparams",
             "Expected ps_dictionary at popDictionaryObject", "7"},
        Stub{"7 1 (f)", "write", "Expected ps_integer at popIntegerObject", "7 1"},
        Stub{"7 (s) 1", "writehexstring writestring printobject",
             "Expected ps_string at popStringObject", "7 (s)"},
        Stub{"7 (a) 1", "renamefile", "Expected ps_string at popStringObject", "7 (a)"},
        Stub{"7 1 (b)", "renamefile search", "Expected ps_string at popStringObject", "7"},
        Stub{"7 (s) (x)", "defineuserobject", "Expected ps_integer at popIntegerObject", "7"},
        Stub{"7 (s) 1", "charpath", "Expected ps_boolean at popBooleanObject", "7 (s)"},
        Stub{"7 1 btrue", "charpath", "Expected ps_string at popStringObject", "7"},
        Stub{"7 1 (s)", "cshow kshow", "Expected ps_array at popArrayObject", "7"},
        Stub{"7 1 1 dict", "setdevparams", "Expected ps_string at popStringObject", "7"},
        Stub{"7 1 1", "setucacheparams", "Expected ps_mark at popMarkObject", "7"},
        Stub{"7 (s) 2", "bitshift", "Expected ps_integer at popIntegerObject", "7"},
        Stub{"7 1 1", "file", "Expected ps_string at popStringObject", "7"},
        Stub{"7 1 (p)", "startjob", "Expected ps_boolean at popBooleanObject", "7"},
        Stub{"7 1 [2]", "invertmatrix", "Expected ps_array at popArrayObject", "7"},
        Stub{"7 (t) 1 1", "filenameforall", "Expected ps_array at popArrayObject", "7 (t)"},
        Stub{"7 1 [1] 1", "filenameforall", "Expected ps_string at popStringObject", "7"},
        Stub{"7 1 2 3", "writeobject ashow cvrs", "Expected ps_string at popStringObject", "7 1 2"},
        Stub{"7 (s) 1 1 2", "resourceforall", "Expected ps_array at popArrayObject", "7 (s)"},
        Stub{"7 1 [1] 1 2", "resourceforall", "Expected ps_string at popStringObject", "7"},
        Stub{"7 1 2 3 (b)", "widthshow", "Expected ps_string at popStringObject", "7 1 2"},
        Stub{"7 1 1 2 3", "setcacheparams", "Expected ps_mark at popMarkObject", "7"},
        Stub{"7 mark 1 (s) 3", "setcacheparams", "Expected ps_integer at popIntegerObject",
             "7 -mark- 1"},
        Stub{"7 1 2 3 3 4 (b)", "awidthshow", "Expected ps_string at popStringObject", "7 1 2"}),
    testing_support::RowName());

// The virtual of a stub gets its operands deepest first, then the results
// already pushed.
TEST(GeneratedLayer, VirtualSeesOperandsDeepestFirstThenResults) {
    struct Recorder : ImplementedGenOps {
        using ImplementedGenOps::ImplementedGenOps;
        void record(Objects operands, Objects results) {
            for (PostscriptObject* object : operands)
                seen.append(object->doubleEqualsText()).append(" ");
            seen += "->";
            for (PostscriptObject* object : results)
                seen.append(" ").append(object->doubleEqualsText());
            seen += ";";
        }
        void awidthshow(Objects operands, Objects results) override { record(operands, results); }
        void search(Objects operands, Objects results) override { record(operands, results); }
        std::string seen;
    };
    Interpreter machine;
    Recorder seen(&machine);
    installLanguage(machine, seen);
    const std::string_view program = "1 2 (a) 3 4 (b) awidthshow (x) (y) search ";
    machine.run(reinterpret_cast<const unsigned char*>(program.data()), program.size());
    EXPECT_EQ(seen.seen, "1 2 (a) 3 4 (b) ->;(x) (y) -> 0.000000 0.000000 0.000000 true;");
}

// The cvs override can't be reached through the dictionaries: call it.
TEST(GeneratedLayer, CvsOverrideStoresTheEqualsText) {
    Session s;
    Popped<> operand(new RealObject(1.5));
    Popped<StringObject> result(s.interpreter().makeString("old"));
    PostscriptObject* operands[] = {operand.get()};
    PostscriptObject* results[] = {result.get()};
    s.pdf.generatedOps->cvs(operands, results);
    EXPECT_EQ(result->text(), "--nostringval--");
}

// The layers as the design lists them.
const char* const generatedLayer =
    "add div idiv mod mul sub abs neg ceiling floor round truncate sqrt atan cos sin exp ln log "
    "rand srand rrand array length astore aload forall packedarray setpacking currentpacking "
    "dict maxlength begin end def load store undef known currentdict errordict userdict "
    "globaldict statusdict countdictstack dictstack cleardictstack string get getinterval "
    "putinterval anchorsearch search token eq ne ge gt le lt and not or xor btrue bfalse "
    "bitshift exec repeat loop exit stop stopped countexecstack execstack quit start type cvlit "
    "cvx xcheck executeonly noaccess readonly rcheck wcheck cvi cvn cvr cvrs cvs file filter "
    "closefile read write readhexstring writehexstring readstring writestring readline "
    "bytesavailable flush flushfile resetfile status run currentfile deletefile renamefile "
    "filenameforall setfileposition fileposition print stack pstack printobject writeobject "
    "setobjectformat currentobjectformat defineresource undefineresource findresource "
    "findcolorrendering resourcestatus resourceforall save restore setglobal currentglobal "
    "gcheck startjob defineuserobject execuserobject undefineuserobject UserObjects bind null "
    "version realtime usertime languagelevel product revision serialnumber executive echo "
    "prompt gsave grestore clipsave cliprestore grestoreall initgraphics gstate setgstate "
    "currentgstate setlinewidth currentlinewidth setlinecap currentlinecap setlinejoin "
    "currentlinejoin setmiterlimit currentmiterlimit setstrokeadjust currentstrokeadjust "
    "setdash currentdash setcolorspace currentcolorspace setcolor currentcolor setgray "
    "currentgray sethsbcolor currenthsbcolor setrgbcolor setcmykcolor currentcmykcolor "
    "sethalftone currenthalftone setscreen currentscreen setcolorscreen currentcolorscreen "
    "settransfer currenttransfer setcolortransfer currentcolortransfer setblackgeneration "
    "currentblackgeneration setundercolorremoval currentundercolorremoval setcolorrendering "
    "currentcolorrendering setflat currentflat setoverprint currentoverprint setsmoothness "
    "currentsmoothness matrix initmatrix identmatrix defaultmatrix currentmatrix setmatrix "
    "translate scale rotate concat concatmatrix transform dtransform itransform idtransform "
    "invertmatrix newpath currentpoint moveto rmoveto lineto rlineto arc arcn arct arcto "
    "curveto rcurveto closepath flattenpath reversepath strokepath ustrokepath charpath uappend "
    "clippath setbbox pathbbox pathforall upath initclip clip eoclip rectclip ucache erasepage "
    "stroke fill eofill rectstroke rectfill ustroke ufill ueofill shfill image colorimage "
    "imagemask infill ineofill inufill inueofill instroke inustroke makepattern setpattern "
    "execform showpage copypage setpagedevice currentpagedevice nulldevice definefont "
    "undefinefont findfont scalefont makefont setfont rootfont currentfont selectfont show "
    "ashow widthshow awidthshow xshow xyshow yshow glyphshow stringwidth cshow kshow "
    "FontDirectory GlobalFontDirectory ISOLatinEncoding findencoding setcachedevice "
    "setcharwidth setsystemparams currentsystemparams setuserparams currentuserparams "
    "setdevparams currentdevparams vmreclaim setvmthreshold vmstatus cachestatus setcachelimit "
    "setcacheparams currentcacheparams setucacheparams ucachestatus";

const char* const languageLayer =
    "{ } [ ] mark cleartomark counttomark where known ifelse if true false null not and or xor "
    "pop ge gt eq ne lt le dup put get store dict undef currentdict begin def for forall loop "
    "repeat exit end sub add mul div idiv cos sin atan sqrt neg abs mod bind matrix identmatrix "
    "concatmatrix clear count cleardictstack exch roll index load currentfile read readline "
    "readhexstring currentglobal setglobal filter string readstring stopped stop exec cvx "
    "xcheck array packedarray setpacking currentpacking floor ceiling round copy readonly aload "
    "astore type cvr cvi cvn cvs length maxlength putinterval getinterval stack = == vmstatus "
    "statusdict definefont resourcestatus anchorsearch getdoubles";

// What the start-up texts define.
const char* const startupNames =
    "| , ~ ? ! ` ^ @ + $ U - & : ; F T N E Ac An A D C O I -C -M +S Ji Lc Lj Lw S LH K W b "
    "WinAnsiEncoding ISOLatin1Encoding StandardEncoding";

// The graphics layer, in order of registration.
const char* const graphicsLayer =
    "setscreen setcolorscreen sethalftone currenthalftone gsave initclip eoclip clip clippath "
    "rectclip rectfill rectstroke setrgbcolor sethsbcolor setcmykcolor setgray currentrgbcolor "
    "currenthsbcolor currentcmykcolor currentgray stroke newpath fill eofill moveto rmoveto lineto "
    "rlineto curveto rcurveto arc arcn arct arcto currentpoint closepath translate transform "
    "itransform idtransform dtransform rotate concat currentmatrix scale grestore findfont "
    "scalefont "
    "setfont FontDirectory GlobalFontDirectory show stringwidth setlinewidth setlinecap "
    "setlinejoin "
    "setmiterlimit setdash currentlinewidth setstrokeadjust currentstrokeadjust setmatrix "
    "defaultmatrix showpage imagemask settransfer currenttransfer setcolortransfer "
    "currentcolortransfer setflat currentflat colorimage image setoverprint currentoverprint save "
    "restore makepattern setpattern currentfont print setcolorspace ";

// Which layer answers each name after start-up, and how many each one wins.
TEST(OperatorLayers, CountsAndWinners) {
    Session s;
    DictionarySet& set = *s.interpreter().dictionaries;
    const std::vector<std::string> generated = words(generatedLayer);
    const std::vector<std::string> language = words(languageLayer);
    const std::vector<std::string> graphics = words(graphicsLayer);
    const std::set<std::string> generatedSet = setOf(generated);
    const std::set<std::string> values = {"errordict", "userdict", "globaldict", "languagelevel",
                                          "version"};
    ASSERT_EQ(generated.size(), 315u);
    ASSERT_EQ(language.size(), 106u);
    ASSERT_EQ(graphics.size(), 82u);
    const std::set<std::string> graphicsSet = setOf(graphics);

    EXPECT_EQ(set.generatedNames, generated);
    // A layer replaces what a layer below it defined, in its own order.
    std::vector<std::string> replaced;
    std::set<std::string> defined = generatedSet;
    for (const std::string& name : language)
        if (!defined.insert(name).second) replaced.push_back(name);
    for (const std::string& name : graphics)
        if (!defined.insert(name).second) replaced.push_back(name);
    EXPECT_EQ(set.replacedNames, replaced);

    std::size_t generatedWins = 0, languageWins = 0, graphicsWins = 0, valueWins = 0;
    std::set<std::string> names(generated.begin(), generated.end());
    names.insert(language.begin(), language.end());
    names.insert(graphics.begin(), graphics.end());
    for (const std::string& name : names) {
        PostscriptObject* value = set.systemData->find(name);
        ASSERT_NE(value, nullptr) << name;
        auto* op = dynamic_cast<NameObject*>(value);
        if (values.count(name)) {
            EXPECT_EQ(op, nullptr) << name;
            ++valueWins;
            continue;
        }
        ASSERT_NE(op, nullptr) << name;
        EXPECT_EQ(op->text(), name);
        const bool byGraphics = graphicsSet.count(name) > 0;
        const bool byLanguage = !byGraphics && std::count(language.begin(), language.end(), name);
        EXPECT_EQ(dynamic_cast<Postscript2PdfObject*>(value) != nullptr, byGraphics) << name;
        EXPECT_EQ(dynamic_cast<GeneratedOperator*>(value) == nullptr, byLanguage || byGraphics)
            << name;
        ++(byGraphics ? graphicsWins : byLanguage ? languageWins : generatedWins);
    }
    EXPECT_EQ(graphicsWins, 82u);
    EXPECT_EQ(languageWins, 106u);
    EXPECT_EQ(generatedWins, 148u);
    EXPECT_EQ(valueWins, 5u);
    // The operators, the five values and systemdict itself: nothing else.
    EXPECT_EQ(set.systemData->entries.size(), 77u + 106u + 153u + 5u + 1u);
    EXPECT_EQ(set.systemData->findText("systemdict"), set.systemDict.get());
    EXPECT_EQ(set.systemData->findText("userdict"), set.userDict.get());
    EXPECT_EQ(set.systemData->findText("globaldict"), set.globalDict.get());
    EXPECT_EQ(set.systemData->findText("errordict"), set.errorDict.get());
    // The start-up texts define the driver's abbreviations and the encodings
    // in userdict, and nothing else.
    std::vector<std::string> userNames;
    for (const auto& entry : set.userData->entries)
        userNames.push_back(entry.first);
    EXPECT_EQ(setOf(userNames), setOf(words(startupNames)));
    EXPECT_TRUE(set.globalData->entries.empty());
    EXPECT_TRUE(set.errorData->entries.empty());
}

// The values that replace generated forms, seen from a program.
INSTANTIATE_TEST_SUITE_P(
    SystemdictValues, Eval,
    ::testing::Values(Case{"version length /version load type ", "2 stringtype"},
                      Case{"/languagelevel load type ", "integertype"},
                      Case{"userdict /x 5 put x ", "5"}, Case{"globaldict /x 5 put x ", "5"},
                      Case{"systemdict /x 5 put x ", "5"},
                      // errordict is not on the dictionary stack.
                      Case{"errordict /x 5 put x ", "(x)"},
                      // product makes a new string each time.
                      Case{"product dup 0 (X) putinterval product ",
                           "(Xoliograph ps interpreter) (foliograph ps interpreter)"}),
    testing_support::RowName());

} // namespace
