#include "core/PostscriptObject.h"

#include "core/ArrayObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"

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
} // namespace

const char* typeName(uint32_t tag) {
    return tag < tagCount ? typeNames[tag] : "unknown";
}

const char* typeAnswerName(uint32_t tag) {
    return tag < tagCount ? typeAnswers[tag] : "unknown";
}

void destroyObject(PostscriptObject* object) noexcept {
    switch (object->type) {
    case ps_boolean:
    case ps_integer:
    case ps_real:
    case ps_null:
    case ps_mark:
        // A value lets go of nothing when it goes: no work list needed.
        delete object;
        return;
    default:
        objectpool::destroy(object);
    }
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

std::atomic<int>& NestingGuard::depth() {
    static std::atomic<int> current{0};
    return current;
}

NestingGuard::NestingGuard(const char* message) {
    if (depth() >= limit) PS_THROW(message);
    ++depth();
}
