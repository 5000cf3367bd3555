#include "operators/OperatorRegistry.h"

#include <unordered_map>

namespace {

// The hand-written language operators in their order of registration.
const char* const languageOrder[] = {
    "{",
    "}",
    "[",
    "]",
    "mark",
    "cleartomark",
    "counttomark",
    "where",
    "known",
    "ifelse",
    "if",
    "true",
    "false",
    "null",
    "not",
    "and",
    "or",
    "xor",
    "pop",
    "ge",
    "gt",
    "eq",
    "ne",
    "lt",
    "le",
    "dup",
    "put",
    "get",
    "store",
    "dict",
    "undef",
    "currentdict",
    "begin",
    "def",
    "for",
    "forall",
    "loop",
    "repeat",
    "exit",
    "end",
    "sub",
    "add",
    "mul",
    "div",
    "idiv",
    "cos",
    "sin",
    "atan",
    "sqrt",
    "neg",
    "abs",
    "mod",
    "bind",
    "matrix",
    "identmatrix",
    "concatmatrix",
    "clear",
    "count",
    "cleardictstack",
    "exch",
    "roll",
    "index",
    "load",
    "currentfile",
    "read",
    "readline",
    "readhexstring",
    "currentglobal",
    "setglobal",
    "filter",
    "string",
    "readstring",
    "stopped",
    "stop",
    "exec",
    "cvx",
    "xcheck",
    "array",
    "packedarray",
    "setpacking",
    "currentpacking",
    "floor",
    "ceiling",
    "round",
    "copy",
    "readonly",
    "aload",
    "astore",
    "type",
    "cvr",
    "cvi",
    "cvn",
    "cvs",
    "length",
    "maxlength",
    "putinterval",
    "getinterval",
    "stack",
    "=",
    "==",
    "vmstatus",
    "statusdict",
    "definefont",
    "resourcestatus",
    "anchorsearch",
    "getdoubles",
};

} // namespace

void OperatorFactories::add(const char* name, Factory factory) {
    factories_[name] = factory;
}

OperatorFactories::Factory OperatorFactories::find(std::string_view name) const {
    auto found = factories_.find(name);
    return found == factories_.end() ? nullptr : found->second;
}

void registerLanguageOperators(Interpreter& interpreter) {
    OperatorFactories factories;
    addStackOperators(factories);
    addControlOperators(factories);
    addMathOperators(factories);
    addComparisonOperators(factories);
    addArrayOperators(factories);
    addDictionaryOperators(factories);
    addStringOperators(factories);
    addConvertOperators(factories);
    addOutputOperators(factories);
    for (const char* name : languageOrder)
        if (OperatorFactories::Factory make = factories.find(name))
            interpreter.registerOperator(make(interpreter.intern(name)));
}

void installLanguage(Interpreter& interpreter, GeneratedOps& generated) {
    registerGenerated(interpreter, generated);
    registerLanguageOperators(interpreter);
    interpreter.defineSystemValues();
}
