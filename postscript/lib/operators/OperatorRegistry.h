#pragma once

#include "core/Interpreter.h"
#include "operators/GeneratedOps.h"

#include <string_view>
#include <unordered_map>

// Classes of the hand-written language operators by name. Each family file
// adds its own; registration then installs them in the fixed order.
class OperatorFactories {
public:
    using Factory = NameObject* (*)(const NameAtom*);

    void add(const char* name, Factory factory);
    template <class T> void add(const char* name) {
        add(name, [](const NameAtom* atom) -> NameObject* { return new T(atom); });
    }
    Factory find(std::string_view name) const;

private:
    std::unordered_map<std::string_view, Factory> factories_;
};

// One per operator family file.
void addStackOperators(OperatorFactories& factories);      // StackOperators.cpp
void addControlOperators(OperatorFactories& factories);    // ControlOperators.cpp
void addMathOperators(OperatorFactories& factories);       // MathOperators.cpp
void addComparisonOperators(OperatorFactories& factories); // ComparisonOperators.cpp
void addArrayOperators(OperatorFactories& factories);      // ArrayOperators.cpp
void addDictionaryOperators(OperatorFactories& factories); // DictionaryOperators.cpp
void addStringOperators(OperatorFactories& factories);     // StringOperators.cpp
void addConvertOperators(OperatorFactories& factories);    // ConvertOperators.cpp
void addOutputOperators(OperatorFactories& factories);     // OutputOperators.cpp

// Installs the hand-written language operators in systemdict, in their order.
void registerLanguageOperators(Interpreter& interpreter);

// Makes a new interpreter a machine of the language: the generated layer over
// the given actions, the hand-written layer, then the system values.
void installLanguage(Interpreter& interpreter, GeneratedOps& generated);
