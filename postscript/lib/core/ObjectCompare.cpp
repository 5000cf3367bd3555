#include "core/ObjectCompare.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/NameObject.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <cstring>
#include <string_view>

namespace {
int threeWay(double a, double b) {
    return (a > b) - (a < b);
}

// The 32-bit difference, wrapping as the machine does: 2147483647 - -1 is negative.
int32_t wrappingDifference(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// The text of a string or name up to its first NUL.
std::string_view cTextOf(const PostscriptObject* o) {
    if (o->type == ps_string) return static_cast<const StringObject*>(o)->cText();
    std::string_view text = static_cast<const NameObject*>(o)->text();
    return text.substr(0, text.find('\0'));
}
} // namespace

int32_t compareObjects(const PostscriptObject* a, const PostscriptObject* b) {
    const uint32_t ta = a->type, tb = b->type;
    if (ta == ps_integer && tb == ps_integer)
        return wrappingDifference(static_cast<const IntegerObject*>(a)->value,
                                  static_cast<const IntegerObject*>(b)->value);
    if (isNumber(a) && isNumber(b)) return threeWay(objectToNumber(a), objectToNumber(b));
    // Integer against boolean: the integer minus the boolean, whichever came first.
    if ((ta == ps_integer && tb == ps_boolean) || (ta == ps_boolean && tb == ps_integer)) {
        const auto* integer = static_cast<const IntegerObject*>(ta == ps_integer ? a : b);
        const auto* boolean = static_cast<const BooleanObject*>(ta == ps_boolean ? a : b);
        return wrappingDifference(integer->value, boolean->value ? 1 : 0);
    }
    if (ta == ps_boolean && tb == ps_boolean)
        return int{static_cast<const BooleanObject*>(a)->value} -
               int{static_cast<const BooleanObject*>(b)->value};
    if ((ta == ps_string && tb == ps_string) || (ta == ps_name && tb == ps_name)) {
        int order = cTextOf(a).compare(cTextOf(b));
        return (order > 0) - (order < 0);
    }
    PS_THROW("Unsupported type comparison");
}

bool objectsEqual(const PostscriptObject* a, const PostscriptObject* b) {
    NestingGuard guard("Objects nested too deeply to compare");
    if (a->type == ps_null) return b->type == ps_null;
    if (b->type == ps_null) return false;
    // One body is equal to itself. Deep comparison would say so too, but
    // would never end on a body that holds itself, as userdict does by U.
    if ((a->type == ps_dictionary || a->type == ps_array) && a->type == b->type &&
        static_cast<const CompositeObject*>(a)->data ==
            static_cast<const CompositeObject*>(b)->data)
        return true;
    if (a->type == ps_dictionary && b->type == ps_dictionary) {
        const auto& left = static_cast<const DictionaryObject*>(a)->dictionaryData()->entries;
        const DictionaryData* right = static_cast<const DictionaryObject*>(b)->dictionaryData();
        if (left.size() != right->size()) return false;
        for (const auto& [key, value] : left) {
            const PostscriptObject* other = right->find(key);
            // A key missing on the right can't be equal.
            if (!other || !objectsEqual(value, other)) return false;
        }
        return true;
    }
    if (a->type == ps_array && b->type == ps_array) {
        const ObjectStack& left = static_cast<const ArrayObject*>(a)->items();
        const ObjectStack& right = static_cast<const ArrayObject*>(b)->items();
        if (left.size() != right.size()) return false;
        for (std::size_t i = 0; i < left.size(); ++i)
            if (!objectsEqual(left.at(i), right.at(i))) return false;
        return true;
    }
    return compareObjects(a, b) == 0;
}
