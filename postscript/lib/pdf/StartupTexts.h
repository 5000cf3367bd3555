#pragma once

#include <array>
#include <string_view>

class Interpreter;

// The five texts every interpreter of a translator runs before its first job,
// in their order: the driver's abbreviations, WinAnsiEncoding,
// ISOLatin1Encoding, StandardEncoding and the Helvetica stub, which refers to
// StandardEncoding. Their definitions go to the dictionary on top at start.
const std::array<std::string_view, 5>& startupTexts();

// Runs the texts in order. A failure stops the rest and goes to the debug
// output only: the translator works on without what was skipped.
void runStartupTexts(Interpreter& interpreter);
