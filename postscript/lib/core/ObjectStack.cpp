#include "core/ObjectStack.h"

#include "core/PostscriptException.h"
#include "core/ValueObjects.h"

void ObjectStack::failNullPush() {
    PS_THROW("cannot push null item onto stack");
}

void ObjectStack::failPush(PostscriptObject* object) const {
    if (!object) failNullPush();
    releaseIfUnreferenced(object);
    PS_THROW_RUNAWAY("%s limit of %llu objects reached", name,
                     static_cast<unsigned long long>(limit));
}

void ObjectStack::failEmptyPop() {
    PS_THROW("pop - expected item on stack");
}

void ObjectStack::wrongType(PostscriptObject* object, uint32_t tag, const char* who) {
    releaseIfUnreferenced(object);
    PS_THROWF("Expected %s at %s", typeName(tag), who);
}

double ObjectStack::popNumber() {
    Popped<> operand(pop());
    return objectToNumber(operand.get());
}

void ObjectStack::clear() noexcept {
    std::vector<PostscriptObject*> old;
    old.swap(items);
    for (PostscriptObject* object : old)
        releaseReference(object);
}

void ObjectStack::setAt(std::size_t index, PostscriptObject* object) {
    if (index > items.size()) PS_THROW("Illegal array index");
    if (!object) failNullPush();
    ++object->refCount;
    if (index == items.size()) {
        items.push_back(object);
        return;
    }
    PostscriptObject* old = items[index];
    items[index] = object;
    releaseReference(old);
}
