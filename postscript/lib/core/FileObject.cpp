#include "core/FileObject.h"

#include "core/Interpreter.h"
#include "core/Parser.h"
#include "core/PostscriptException.h"

FileData::FileData(Interpreter& interpreter, int32_t kind) : CompositeData(ps_file), kind(kind) {
    if (kind != currentFile) return;
    Parser& parser = *interpreter.parser;
    if (!parser.hasChars()) return;
    switch (*parser.cursor) {
    case '\n':
    case '\r':
    case ' ':
    case '\t':
    case '\f':
    case '\0':
        parser.skipChar();
        break;
    default:
        break;
    }
}

FileData::FileData(PostscriptObject* source, std::string filterName)
    : CompositeData(ps_file), kind(filterFile), filterName(std::move(filterName)) {
    if (!source || (source->type != ps_file && source->type != ps_string))
        PS_THROW("Unsupported FileData source object type");
    this->source.reset(source);
}

uint32_t FileData::readChar(Interpreter& interpreter) {
    if (kind != currentFile) PS_THROW("Read not supported on this file type");
    Parser& parser = *interpreter.parser;
    if (!parser.hasChars())
        PS_THROW("Progam attempting to read char when insufficient current file is loaded");
    return parser.nextChar();
}

bool FileData::readLine(Interpreter& interpreter, std::string& result) {
    if (kind != currentFile) PS_THROW("Read not supported on this file type");
    return interpreter.parser->readLine(result);
}
