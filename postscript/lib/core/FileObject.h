#pragma once

#include "core/CompositeObject.h"

#include <cstdint>
#include <string>

class Interpreter;

// The body of a file. There is no file system: a file is either the current
// file, whose position is the scanner's cursor, or a filter over a string or
// another file that decodes nothing and only carries its name, so that the
// encoded bytes reach the PDF with the filter that the reader applies.
class FileData : public CompositeData {
public:
    enum Kind : int32_t { noFile = 0, currentFile = 1, filterFile = 2 };

    // The current file. It eats the one white-space byte or NUL that the
    // scanner left unread behind the token before it, so that the data
    // following "currentfile" starts clean.
    FileData(Interpreter& interpreter, int32_t kind);
    // A filter over a string or a file, which it holds.
    FileData(PostscriptObject* source, std::string filterName);

    // One byte of the current file; nothing else can be read a byte at a time.
    uint32_t readChar(Interpreter& interpreter);
    // The current file's next line, up to LF, CR or NUL, which stays unread;
    // false, with nothing consumed, when the buffer ends first.
    bool readLine(Interpreter& interpreter, std::string& result);

    int32_t kind;
    Counted<> source;
    std::string filterName;
};

class FileObject : public CompositeObject {
public:
    static constexpr uint32_t tag = ps_file;
    FileObject(VirtualMemoryObject* memory, FileData* data)
        : CompositeObject(tag, true, memory, data) {}
    explicit FileObject(const FileObject& other) : CompositeObject(other) {}

    FileData* fileData() const { return static_cast<FileData*>(data); }

    PostscriptObject* clone(VirtualMemoryObject*) const override { return new FileObject(*this); }
};
