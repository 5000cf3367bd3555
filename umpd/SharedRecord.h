#pragma once

#include "platform/Kernel.h"
#include "umpd/SystemServices.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

// A named record in shared memory: opened if it exists, else created with the
// shared objects' security, then mapped for reading and writing. Reads go through the
// view's data; writes go through the view, so that another process sees them in order.
struct SharedRecord {
    std::unique_ptr<platform::FileMapping> mapping;
    std::unique_ptr<platform::MappedView> view;
    bool created = false;

    bool mapped() const { return mapping && view; }
    bool map(const std::u16string& name, std::size_t size);
    void unmap();

    // Text into a wide field of the mapped Record, cut to fit and NUL-terminated. Only the
    // units copied and the NUL are written: a longer earlier text keeps its tail behind it.
    template <typename Record, std::size_t N>
    void writeField(char16_t (Record::*field)[N], std::u16string_view text) {
        char16_t units[N];
        auto n = copyField(units, text);
        view->write(offsetOf(field), units, (n + 1) * sizeof(char16_t));
    }
    template <typename Record, typename T>
    void writeMember(T Record::*member, std::type_identity_t<T> value) {
        view->write(offsetOf(member), &value, sizeof value);
    }

private:
    template <typename Record, typename T> std::size_t offsetOf(T Record::*member) {
        auto* record = reinterpret_cast<Record*>(view->data());
        return static_cast<std::size_t>(reinterpret_cast<std::uint8_t*>(&(record->*member)) -
                                        view->data());
    }
};
