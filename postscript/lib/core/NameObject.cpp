#include "core/NameObject.h"

#include "core/DictionarySet.h"
#include "core/Interpreter.h"
#include "core/StringObject.h"

#include <algorithm>

const NameAtom* NameTable::intern(std::string_view text) {
    auto found = atoms_.find(text);
    if (found != atoms_.end()) return found->second.get();
    if (atoms_.size() >= sweepAt_) sweep();
    auto atom = std::make_unique<NameAtom>(text);
    const NameAtom* result = atom.get();
    atoms_.emplace(std::string(text), std::move(atom));
    return result;
}

void NameTable::sweep() {
    std::erase_if(atoms_, [](const auto& entry) { return entry.second->users == 0; });
    sweepAt_ = std::max(smallestSweep, 2 * atoms_.size());
}

void NameTable::keyChanged(std::string_view text) {
    auto found = atoms_.find(text);
    if (found != atoms_.end()) found->second->cacheStamp = 0;
}

std::string NameObject::describe() const {
    return std::string(typeName(type)) + " " + atom->text;
}

void NameObject::execute(Interpreter& interpreter) {
    if (PostscriptObject* found = interpreter.executeName(this))
        interpreter.executionStack->push(found);
}
