#include "core/PostscriptObject.h"

#include "core/ArrayObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/SpinLock.h"

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
    SpinLock lock;
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
    // Process-wide like the pool (no thread_local, see ObjectPool.cpp). A
    // call made while another is draining only queues its object.
    static Destroyer destroyer;
    bool queued = false, outermost = false;
    {
        SpinLock::Guard guard(destroyer.lock);
        if (!destroyer.draining) {
            destroyer.draining = outermost = true;
        } else {
            try {
                destroyer.pending.push_back(object);
                queued = true;
            } catch (...) {
                // No room to queue: delete it right here, recursively.
            }
        }
    }
    if (queued) return;
    delete object;
    if (!outermost) return;
    for (;;) {
        PostscriptObject* next;
        {
            SpinLock::Guard guard(destroyer.lock);
            if (destroyer.pending.empty()) {
                destroyer.draining = false;
                return;
            }
            next = destroyer.pending.back();
            destroyer.pending.pop_back();
        }
        delete next;
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
