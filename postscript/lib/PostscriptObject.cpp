#include "PostscriptObject.h"

#include "ArrayObject.h"
#include "Interpreter.h"
#include "PostscriptException.h"

#include <vector>

namespace {
const char* const typeNames[] = {
    "ps_boolean", "ps_fontID",   "ps_integer",     "ps_mark",  "ps_name",
    "ps_null",    "ps_operator", "ps_real",        "ps_array", "ps_dictionary",
    "ps_file",    "ps_gstate",   "ps_packedarray", "ps_save",  "ps_string",
};
const char* const typeAnswers[] = {
    "booleantype", "fonttype",     "integertype",     "marktype",  "nametype",
    "nulltype",    "operatortype", "realtype",        "arraytype", "dicttype",
    "filetype",    "gstatetype",   "packedarraytype", "savetype",  "stringtype",
};
constexpr uint32_t tagCount = sizeof typeNames / sizeof typeNames[0];

struct Destroyer {
    bool draining = false;
    std::vector<PostscriptObject*> pending;
};
} // namespace

const char* typeName(uint32_t tag) {
    return tag < tagCount ? typeNames[tag] : "unknown";
}

const char* typeAnswerName(uint32_t tag) {
    return tag < tagCount ? typeAnswers[tag] : "unknown";
}

void destroyObject(PostscriptObject* object) noexcept {
    thread_local Destroyer destroyer;
    if (destroyer.draining) {
        // Called from a destructor further up: queue, the outer call deletes.
        try {
            destroyer.pending.push_back(object);
        } catch (...) {
            delete object; // no room to queue: fall back to recursion
        }
        return;
    }
    destroyer.draining = true;
    delete object;
    while (!destroyer.pending.empty()) {
        PostscriptObject* next = destroyer.pending.back();
        destroyer.pending.pop_back();
        delete next;
    }
    destroyer.draining = false;
}

void PostscriptObject::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(this);
}

std::string PostscriptObject::describe() const {
    return typeName(type);
}

std::string PostscriptObject::doubleEqualsText() const {
    return describe();
}

std::string PostscriptObject::equalsText() const {
    return "--nostringval--";
}

bool isProcedure(const PostscriptObject* object) {
    return object && object->type == ps_array &&
           static_cast<const ArrayObject*>(object)->arrayData()->bracket == '{';
}

void armProcedure(PostscriptObject* object) {
    if (!isProcedure(object)) return;
    auto* array = static_cast<ArrayObject*>(object);
    array->executable = true;
    array->execIndex = 0;
}

void disarmProcedure(PostscriptObject* object) {
    if (!isProcedure(object)) return;
    auto* array = static_cast<ArrayObject*>(object);
    array->executable = false;
    array->execIndex = 0;
}

int& NestingGuard::depth() {
    thread_local int current = 0;
    return current;
}

NestingGuard::NestingGuard(const char* message) {
    if (depth() >= limit) PS_THROW(message);
    ++depth();
}
