#pragma once

#include "core/CompositeObject.h"

// The body of a file; reading state arrives with the file operators.
class FileData : public CompositeData {
public:
    FileData() : CompositeData(ps_file) {}
};

class FileObject : public CompositeObject {
public:
    static constexpr uint32_t tag = ps_file;
    FileObject(VirtualMemoryObject* memory, FileData* data)
        : CompositeObject(tag, true, memory, data) {}
    explicit FileObject(const FileObject& other) : CompositeObject(other) {}

    PostscriptObject* clone(VirtualMemoryObject*) const override { return new FileObject(*this); }
};
