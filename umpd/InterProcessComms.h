#pragma once

#include "umpd/SharedRecord.h"

#include <cstddef>
#include <cstdint>
#include <string>

// One side of the conversation with the launcher: a record in shared memory, a request
// event the launcher waits on, an answer event it signals, and a mutex it holds while
// it lives. Made for one step of a job.
template <typename Record> class InterProcessComms {
public:
    InterProcessComms(std::u16string_view baseWord, std::uint32_t timeout);
    virtual ~InterProcessComms();
    InterProcessComms(const InterProcessComms&) = delete;
    InterProcessComms& operator=(const InterProcessComms&) = delete;

    // Derives the four object names from a final base name.
    void setNames(const std::u16string& base);
    bool mapSharedMemory(const std::u16string& name);
    bool mapSharedMemory() { return mapSharedMemory(sharedMemoryName); }
    // The record, mapped first if it is not; null when it cannot be.
    Record* record();
    // Text into a field of the record, mapped first if it is not; false when it cannot be.
    template <std::size_t N>
    bool writeField(char16_t (Record::*field)[N], std::u16string_view text) {
        if (!record()) return false;
        shared.writeField(field, text);
        return true;
    }
    bool isAlive();
    // Signals the request and waits for the answer; false if it was not delivered.
    bool sendMsg();

    std::u16string endEventName;
    std::u16string mutexName;
    std::u16string sharedMemoryName;
    std::uint32_t timeout;
    bool stopped = false;
    std::u16string eventName;
    bool connected = false;
    SharedRecord shared;

    Record* view() const {
        return shared.view ? reinterpret_cast<Record*>(shared.view->data()) : nullptr;
    }
};
