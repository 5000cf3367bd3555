#include "operators/FileOperators.h"

#include "core/ArrayObject.h"
#include "core/FileObject.h"
#include "core/Interpreter.h"
#include "core/Parser.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <algorithm>
#include <array>

namespace {

// What the three reads of the current file pop: the string, then the file,
// each checked under the operator's own name.
struct ReadOperands {
    Popped<StringObject> string;
    Popped<FileObject> file;
};

ReadOperands popReadOperands(Interpreter& interpreter, const char* who) {
    ReadOperands operands;
    operands.string = interpreter.operandStack->pop<StringObject>(who);
    operands.file = interpreter.operandStack->pop<FileObject>(who);
    return operands;
}

// The buffer ran out before the read was done: the operands go back as they
// came, and the operator waits on the execution stack for the next buffer.
void suspendRead(Interpreter& interpreter, NameObject* reader, const ReadOperands& operands) {
    interpreter.operandStack->push(operands.file.get());
    interpreter.operandStack->push(operands.string.get());
    interpreter.executionStack->push(reader);
    interpreter.suspended = true;
}

// A read's result: the collected text, taken over whole, and whether the
// buffer still holds bytes.
void pushRead(Interpreter& interpreter, std::string& text) {
    Popped<StringObject> result(interpreter.makeString(std::string_view()));
    result->text().swap(text);
    text.clear();
    interpreter.operandStack->push(result.get());
    interpreter.operandStack->push(new BooleanObject(interpreter.parser->hasChars()));
}

// A string operand that the program still holds after its pop: some reads
// give it their data too.
bool heldElsewhere(const Popped<StringObject>& string) {
    return string->refCount > 1;
}

// readstring over a filter reads nothing: the base string's text comes whole,
// with the names that say how it is encoded, in the order a reader applies
// them. SubFileDecode, whose only accepted form reads to the end, leaves no
// trace.
void readFilterChain(Interpreter& interpreter, FileObject* file, Popped<StringObject>& operand) {
    Popped<StringObject> result(interpreter.makeString(std::string_view()));
    std::vector<std::string>& filters = result->stringData()->filters;
    PostscriptObject* link = file;
    while (const FileObject* filter = objectAs<FileObject>(link)) {
        const FileData& data = *filter->fileData();
        if (data.filterName != "SubFileDecode") filters.push_back(data.filterName);
        link = data.source.get();
        if (!link) PS_THROW("Expected base object to be string");
    }
    const StringObject* base = objectAs<StringObject>(link);
    if (!base) PS_THROW("Expected base object to be string");
    // The base string's own filters come first, in reverse order.
    for (const std::string& name : base->stringData()->filters)
        filters.insert(filters.begin(), name);
    result->text() = base->text();
    interpreter.operandStack->push(result.get());
    interpreter.operandStack->push(new BooleanObject(true));
    if (heldElsewhere(operand)) operand->text() += result->text();
}

bool isWhiteSpace(unsigned char c) {
    return c == '\t' || c == '\n' || c == '\r' || c == ' ';
}

constexpr std::array<int8_t, 256> makeHexDigits() {
    std::array<int8_t, 256> digits{};
    for (int c = 0; c < 256; ++c)
        digits[c] = -1;
    for (int c = '0'; c <= '9'; ++c)
        digits[c] = static_cast<int8_t>(c - '0');
    for (int c = 'A'; c <= 'F'; ++c)
        digits[c] = static_cast<int8_t>(c - 'A' + 10);
    for (int c = 'a'; c <= 'f'; ++c)
        digits[c] = static_cast<int8_t>(c - 'a' + 10);
    return digits;
}
constexpr std::array<int8_t, 256> hexDigits = makeHexDigits();

void requireCurrentFile(const Popped<FileObject>& file, const char* message) {
    if (file->fileData()->kind != FileData::currentFile) PS_THROW(message);
}

} // namespace

void CurrentfileOperator::execute(Interpreter& interpreter) {
    auto* data = new FileData(interpreter, FileData::currentFile);
    interpreter.operandStack->push(new FileObject(interpreter.memory->currentMemory, data));
}

void ReadOperator::execute(Interpreter& interpreter) {
    Popped<FileObject> file = interpreter.operandStack->pop<FileObject>("read operator");
    const uint32_t byte = file->fileData()->readChar(interpreter);
    if (byte != 0) interpreter.operandStack->push(new IntegerObject(static_cast<int8_t>(byte)));
    interpreter.operandStack->push(new BooleanObject(byte != 0));
}

void FilterOperator::execute(Interpreter& interpreter) {
    Popped<NameObject> name = interpreter.operandStack->pop<NameObject>("filter operator");
    if (name->text() == "SubFileDecode") {
        Popped<StringObject> eod =
            interpreter.operandStack->pop<StringObject>("SubFileDecode EODString param");
        Popped<IntegerObject> count =
            interpreter.operandStack->pop<IntegerObject>("SubFileDecode EODCount param");
        if (!eod->text().empty() || count->value != 0)
            PS_THROW("Unsupported SubFileDecode EOD params");
    }
    Popped<> source = interpreter.operandStack->popHeld();
    if (source->type == ps_file || source->type == ps_string) {
        auto* data = new FileData(source.get(), name->text());
        interpreter.operandStack->push(new FileObject(interpreter.memory->currentMemory, data));
        return;
    }
    if (source->type != ps_array) PS_THROW("SubFileDecode expected string or proc param");
    // A procedure makes the source: it runs, and the filter comes again with
    // its name on top of what the procedure left. The name waits under the
    // procedure on the execution stack, as a literal that goes to the operand
    // stack when its turn comes.
    interpreter.executionStack->push(this);
    interpreter.executionStack->push(interpreter.makeName(name->text(), false));
    auto* procedure = static_cast<ArrayObject*>(source.get());
    procedure->executable = true;
    procedure->execIndex = 0;
    interpreter.executionStack->push(procedure);
}

void ReadstringOperator::execute(Interpreter& interpreter) {
    ReadOperands operands = popReadOperands(interpreter, "readstring");
    if (operands.file->fileData()->source) {
        readFilterChain(interpreter, operands.file.get(), operands.string);
        return;
    }
    requireCurrentFile(operands.file, "Only supports readstring from currentfile");
    Parser& parser = *interpreter.parser;
    const std::size_t target = operands.string->text().size();
    // A read that starts empty drops white space wherever it stands in its
    // data; one that resumes with bytes in hand keeps it. The data is text.
    const bool dropWhiteSpace = resumeText.empty();
    if (dropWhiteSpace) resumeText.reserve(target);
    while (resumeText.size() < target) {
        if (!parser.hasChars()) {
            suspendRead(interpreter, this, operands);
            return;
        }
        // The bytes it still lacks, or what the buffer has; runs between white
        // space go over whole.
        const unsigned char* at = parser.cursor;
        const unsigned char* limit =
            at + std::min(target - resumeText.size(), static_cast<std::size_t>(parser.end - at));
        while (at < limit && !(dropWhiteSpace && isWhiteSpace(*at)))
            ++at;
        resumeText.append(reinterpret_cast<const char*>(parser.cursor), at - parser.cursor);
        parser.cursor = at < limit ? at + 1 : at;
    }
    pushRead(interpreter, resumeText);
}

void ReadhexstringOperator::execute(Interpreter& interpreter) {
    ReadOperands operands = popReadOperands(interpreter, "readhexstring");
    requireCurrentFile(operands.file, "Only supports readline from currentfile");
    Parser& parser = *interpreter.parser;
    const std::size_t target = operands.string->text().size();
    // Decoded straight into the text's room, with the scanner's position in
    // a local: image data comes this way by the hundred megabytes.
    std::size_t have = resumeText.size();
    resumeText.resize(std::max(target, have));
    char* out = resumeText.data();
    const unsigned char* cursor = parser.cursor;
    const unsigned char* const end = parser.end;
    int32_t high = pendingDigit;
    while (have < target) {
        if (high < 0 && end - cursor >= 2) {
            const int8_t first = hexDigits[cursor[0]];
            const int8_t second = hexDigits[cursor[1]];
            if ((first | second) >= 0) {
                out[have++] = static_cast<char>(first << 4 | second);
                cursor += 2;
                continue;
            }
        }
        int32_t digit = -1;
        while (cursor < end && (digit = hexDigits[*cursor++]) < 0) {
        }
        if (digit < 0) {
            resumeText.resize(have);
            parser.cursor = cursor;
            pendingDigit = high;
            suspendRead(interpreter, this, operands);
            return;
        }
        if (high < 0) {
            high = digit;
        } else {
            out[have++] = static_cast<char>(high << 4 | digit);
            high = -1;
        }
    }
    parser.cursor = cursor;
    pendingDigit = -1;
    pushRead(interpreter, resumeText);
}

void ReadlineOperator::execute(Interpreter& interpreter) {
    ReadOperands operands = popReadOperands(interpreter, "readline");
    requireCurrentFile(operands.file, "Only supports readline from currentfile");
    std::string line;
    // A line cut by the end of the buffer is left there: the next buffer
    // replaces it, and the read starts again at its beginning.
    if (!operands.file->fileData()->readLine(interpreter, line)) {
        suspendRead(interpreter, this, operands);
        return;
    }
    const bool more = !line.empty() || interpreter.parser->hasChars();
    if (heldElsewhere(operands.string)) operands.string->text() += line;
    Popped<StringObject> result(interpreter.makeString(line));
    interpreter.operandStack->push(result.get());
    interpreter.operandStack->push(new BooleanObject(more));
}
