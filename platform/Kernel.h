#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace platform {

// A SECURITY_ATTRIBUTES record: descriptor is a block of Security::allocDescriptor.
struct SecurityAttributes {
    std::uint32_t length = 0;
    void* descriptor = nullptr;
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
    virtual std::uint8_t* data() = 0;
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
