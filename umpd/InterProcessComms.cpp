#include "umpd/InterProcessComms.h"

#include "platform/Platform.h"
#include "umpd/LauncherNames.h"
#include "umpd/LauncherStruct.h"
#include "umpd/SecurityAttributesHolder.h"
#include "umpd/SystemServices.h"

template <typename Record>
InterProcessComms<Record>::InterProcessComms(std::u16string_view baseWord, std::uint32_t timeout)
    : timeout(timeout) {
    setNames(plainLauncherBase(baseWord));
    connected = true;
}

template <typename Record> InterProcessComms<Record>::~InterProcessComms() {
    if (!stopped) {
        // Wake a listener of this object; this side always has stopped set.
        stopped = true;
        if (auto event =
                platform::current().kernel().openEvent(platform::eventAllAccess, eventName))
            event->set();
    }
}

template <typename Record> void InterProcessComms<Record>::setNames(const std::u16string& base) {
    endEventName = base + u"_event_end";
    mutexName = base + u"_mutex";
    sharedMemoryName = base + u"_sm";
    eventName = base + u"_event";
    stopped = true;
}

template <typename Record>
bool InterProcessComms<Record>::mapSharedMemory(const std::u16string& name) {
    return shared.map(name, sizeof(Record));
}

template <typename Record> Record* InterProcessComms<Record>::record() {
    if (!shared.mapped() && !mapSharedMemory()) return nullptr;
    return view();
}

template <typename Record> bool InterProcessComms<Record>::isAlive() {
    return platform::current().kernel().openMutex(platform::mutexOpenAccess, mutexName) != nullptr;
}

template <typename Record> bool InterProcessComms<Record>::sendMsg() {
    if (!shared.mapped() || !isAlive()) return false;
    auto& kernel = platform::current().kernel();
    SecurityAttributesHolder holder;
    auto answer = kernel.createEvent(makeSecurityAttributes(holder), false, false, endEventName);
    if (!answer) {
        failureBox(u"IPC sendMsg create event failed", 0);
        return false;
    }
    trace(u"KelEvent %s handle %d \n", endEventName, answer.get());
    trace(u"Created event %s\n", endEventName);
    auto request = kernel.openEvent(platform::eventAllAccess, eventName);
    if (!request) trace(u"Open KelEvent [%s] failed.\n", eventName);
    if (!request || !request->set()) {
        failureBox(u"IPC sendMsg setting event failed", 0);
        return false;
    }
    return answer->wait(timeout) != platform::WaitResult::Timeout;
}

template class InterProcessComms<LauncherStruct>;
