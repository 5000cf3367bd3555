#pragma once

#include "core/CompositeObject.h"
#include "core/ObjectStack.h"

class ArrayData : public CompositeData {
public:
    explicit ArrayData(char bracket)
        : CompositeData(ps_array), bracket(bracket),
          items(bracket == '{' ? "Array { Stack" : "Array [ Stack") {}
    void releaseContents() override { items.clear(); }
    // An element of an array read as a record of fixed size, such as a
    // matrix: past the end or an empty slot fails with "No object at given
    // array index".
    PostscriptObject* requiredAt(std::size_t index) const;

    char bracket; // '[' for an array, '{' for a procedure
    ObjectStack items;
};

// A matrix is six numbers of an array. They are read from the last to the
// first, which decides the failure seen first; elements beyond the sixth are
// ignored.
void readMatrix(const ArrayData& array, double m[6]);
// The array becomes exactly six new reals, whatever its length was.
void storeMatrix(ArrayData& array, const double m[6]);

// An array, and a procedure when its body's bracket is "{". A running
// procedure keeps its position in execIndex.
class ArrayObject : public CompositeObject {
public:
    static constexpr uint32_t tag = ps_array;
    ArrayObject(VirtualMemoryObject* memory, char bracket)
        : CompositeObject(tag, false, memory, new ArrayData(bracket)) {}
    explicit ArrayObject(const ArrayObject& other)
        : CompositeObject(other), execIndex(other.execIndex) {}

    ArrayData* arrayData() const { return static_cast<ArrayData*>(data); }
    ObjectStack& items() const { return arrayData()->items; }

    void execute(Interpreter& interpreter) override;
    std::string describe() const override;
    std::string doubleEqualsText() const override;
    PostscriptObject* clone(VirtualMemoryObject*) const override { return new ArrayObject(*this); }

    uint32_t execIndex = 0;
};
