#pragma once

#include "platform/Security.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace platform {

// The attributes a shared object is created with: its security (null: the system's
// default) and whether child processes inherit the handle. The stated length goes to the
// system as the job face states it.
struct SecurityAttributes {
    std::uint32_t length = 0;
    const ObjectSecurity* security = nullptr;
    bool inheritHandle = false;
};

inline constexpr std::uint32_t infinite = 0xFFFFFFFF;
inline constexpr std::uint32_t fileMapAllAccess = 0xF001F;
inline constexpr std::uint32_t fileMapReadWrite = 6;
inline constexpr std::uint32_t eventAllAccess = 0x1F0003;
// The job face opens mutexes with the event's all-access mask, as it always has.
inline constexpr std::uint32_t mutexOpenAccess = 0x1F0003;

enum class WaitResult { Signalled, Abandoned, Timeout, Failed };

class MappedView {
public:
    virtual ~MappedView() = default; // unmaps
    // For reading; writes that another process reads go through write.
    virtual std::uint8_t* data() = 0;
    // Copies bytes into the view at offset. Another process sees the writes in the order
    // they were made, so a field written last can tell that the others are complete.
    virtual void write(std::size_t offset, const void* bytes, std::size_t size) = 0;
};

class FileMapping {
public:
    virtual ~FileMapping() = default; // closes the handle
    // Null on failure.
    virtual std::unique_ptr<MappedView> mapView(std::uint32_t access) = 0;
};

class Waitable {
public:
    virtual ~Waitable() = default; // closes the handle
    virtual WaitResult wait(std::uint32_t milliseconds) = 0;
};

class Event : public Waitable {
public:
    virtual bool set() = 0;
};

class Mutex : public Waitable {
public:
    virtual bool release() = 0;
};

// Named kernel objects; every call gives null on failure, with lastError() set.
class Kernel {
public:
    virtual ~Kernel() = default;
    virtual std::unique_ptr<FileMapping> openFileMapping(std::uint32_t access,
                                                         const std::u16string& name) = 0;
    // A page-file backed read-write mapping.
    virtual std::unique_ptr<FileMapping> createFileMapping(const SecurityAttributes* attributes,
                                                           std::size_t size,
                                                           const std::u16string& name) = 0;
    virtual std::unique_ptr<Event> createEvent(const SecurityAttributes* attributes,
                                               bool manualReset, bool initialState,
                                               const std::u16string& name) = 0;
    virtual std::unique_ptr<Event> openEvent(std::uint32_t access, const std::u16string& name) = 0;
    virtual std::unique_ptr<Mutex> createMutex(const SecurityAttributes* attributes,
                                               bool initialOwner, const std::u16string& name) = 0;
    virtual std::unique_ptr<Mutex> openMutex(std::uint32_t access, const std::u16string& name) = 0;
};

} // namespace platform
