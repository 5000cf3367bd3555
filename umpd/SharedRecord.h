#pragma once

#include "platform/Kernel.h"

#include <memory>
#include <string>

// A named record in shared memory: opened if it exists, else created with the
// shared objects' security, then mapped for reading and writing.
struct SharedRecord {
    std::unique_ptr<platform::FileMapping> mapping;
    std::unique_ptr<platform::MappedView> view;
    bool created = false;

    bool mapped() const { return mapping && view; }
    bool map(const std::u16string& name, std::size_t size);
    void unmap();
};
