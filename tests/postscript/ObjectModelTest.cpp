#include "support/TestSupport.h"

#include "core/ArrayObject.h"
#include "core/DictionarySet.h"
#include "core/FileObject.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <gtest/gtest.h>
#include <memory>

using testing_support::Session;

namespace {

TEST(ObjectTexts, DescribeEqualsAndDoubleEquals) {
    Session s;
    Interpreter& in = s.interpreter();
    VirtualMemoryObject* local = in.memory->localMemory.get();
    auto* array = new ArrayObject(local, '[');
    array->items().push(new IntegerObject(1));
    array->items().push(new RealObject(2.5));
    auto* proc = new ArrayObject(local, '{');
    proc->items().push(in.makeName("add"));
    proc->executable = true;
    proc->execIndex = 1;
    std::string nul("ab\0cd", 5);

    struct Row {
        PostscriptObject* object;
        const char* describe;
        const char* doubleEquals;
        const char* equals;
    };
    Row rows[] = {
        {new IntegerObject(-42), "ps_integer -42", "-42", "-42"},
        {new RealObject(1.5), "ps_real 1.500000", "1.500000", "--nostringval--"},
        {new BooleanObject(true), "ps_boolean true", "true", "true"},
        {new BooleanObject(false), "ps_boolean false", "false", "false"},
        {new NullObject, "ps_null", "null", "--nostringval--"},
        {new MarkObject, "ps_mark", "-mark-", "--nostringval--"},
        {in.makeName("moveto", false), "ps_name moveto", "moveto", "moveto"},
        {in.makeString(std::string_view(nul)), "ps_string ab", "(ab)", "ab"},
        {array, "ps_array, size=2", "[1 2.500000 ]", "--nostringval--"},
        {proc, "ps_array, size=1, exec index=1", "[add ]", "--nostringval--"},
        {new ArrayObject(local, '['), "ps_array, size=0", "[]", "--nostringval--"},
        {in.makeDictionary(), "ps_dictionary 0 entries (ps_save Local Memory)", "-dict-",
         "--nostringval--"},
        {in.dictionaries->userDict.get(), "ps_dictionary User  41 entries (ps_save Local Memory)",
         "-dict-", "--nostringval--"},
        {new FileObject(local, new FileData(in, FileData::currentFile)), "ps_file", "ps_file",
         "--nostringval--"},
        {new VirtualMemoryObject("Save 3"), "ps_save Save 3", "ps_save Save 3", "--nostringval--"},
    };
    for (const Row& row : rows) {
        Popped<> keep(row.object);
        EXPECT_EQ(row.object->describe(), row.describe);
        EXPECT_EQ(row.object->doubleEqualsText(), row.doubleEquals) << row.describe;
        EXPECT_EQ(row.object->equalsText(), row.equals) << row.describe;
    }
}

TEST(ObjectClone, MemoriesTakeTheNameOfACopy) {
    Session s;
    Popped<> memoryCopy(s.interpreter().memory->localMemory->clone(nullptr));
    EXPECT_EQ(memoryCopy->describe(), "ps_save Copy of Local Memory");
    // Copies of copies: the text goes through the formatter and is cut there.
    std::unique_ptr<PostscriptObject> chain(memoryCopy->clone(nullptr));
    for (int i = 0; i < 200; ++i)
        chain.reset(chain->clone(nullptr));
    EXPECT_EQ(chain->describe().size(), 1499u);
    EXPECT_EQ(chain->describe().substr(0, 24), "ps_save Copy of Copy of ");
}

// A popped object has count 0 but lives until released, and may be pushed again.
TEST(ObjectStackRules, HoldersCountAndPopsDoNotDelete) {
    ObjectStack stack("Operand Stack");
    auto* value = new IntegerObject(3);
    stack.push(value);
    stack.push(value);
    EXPECT_EQ(value->refCount, 2);
    EXPECT_EQ(stack.pop(), value);
    EXPECT_EQ(stack.pop(), value);
    EXPECT_EQ(value->refCount, 0);
    stack.push(value);
    auto* other = new IntegerObject(4);
    stack.setAt(1, other);
    stack.setAt(0, other);
    EXPECT_EQ(other->refCount, 2);
    EXPECT_EQ(stack.size(), 2u);
}

TEST(MemoryBodies, CyclesAreBrokenWhenTheInterpreterCloses) {
    long before = CompositeData::liveCount();
    auto s = std::make_unique<Session>();
    Interpreter& in = s->interpreter();
    auto* dict = in.makeDictionary();
    dict->dictionaryData()->putText("self", dict);
    auto* array = new ArrayObject(in.memory->globalMemory.get(), '[');
    array->items().push(array->clone(nullptr));
    in.dictionaries->userData->putText("a", array);
    s.reset();
    EXPECT_EQ(CompositeData::liveCount(), before);
}

TEST(MemoryBodies, DeepNestingIsFreedWithoutRecursion) {
    Session s;
    auto* outer = new ArrayObject(s.interpreter().memory->localMemory.get(), '[');
    ArrayObject* inner = outer;
    for (int i = 0; i < 200000; ++i) {
        auto* next = new ArrayObject(s.interpreter().memory->localMemory.get(), '[');
        inner->items().push(next);
        inner = next;
    }
    std::size_t live = s.interpreter().memory->localMemory->liveBodies();
    releaseIfUnreferenced(outer);
    EXPECT_EQ(s.interpreter().memory->localMemory->liveBodies(), live - 200001);
}

} // namespace
