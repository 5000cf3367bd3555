#include "support/TestSupport.h"

#include "EvalCase.h"

#include "ArrayObject.h"
#include "DictionaryObject.h"
#include "DictionarySet.h"
#include "FileObject.h"
#include "ObjectCompare.h"
#include "PostscriptException.h"
#include "StringObject.h"
#include "ValueObjects.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>

using testing_support::Session;

namespace {

// Deletes a test-made object at scope end unless something took it.
struct Owned {
    explicit Owned(PostscriptObject* o) : object(o) {}
    ~Owned() { releaseIfUnreferenced(object); }
    PostscriptObject* object;
    PostscriptObject* operator->() const { return object; }
    PostscriptObject* get() const { return object; }
};

TEST(ObjectTexts, DescribeEqualsAndDoubleEquals) {
    Session s;
    Interpreter& in = s.interpreter();
    VirtualMemoryObject* local = in.memory->localMemory;
    auto* array = new ArrayObject(local, '[');
    array->items().push(new IntegerObject(1));
    array->items().push(new RealObject(2.5));
    auto* proc = new ArrayObject(local, '{');
    proc->items().push(in.makeName("add"));
    proc->executable = true;
    proc->execIndex = 1;
    std::string nul("ab\0cd", 5);
    auto* fileData = new FileData;

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
        {in.dictionaries->userDict, "ps_dictionary User  0 entries (ps_save Local Memory)",
         "-dict-", "--nostringval--"},
        {new FileObject(local, fileData), "ps_file", "ps_file", "--nostringval--"},
        {new VirtualMemoryObject("Save 3"), "ps_save Save 3", "ps_save Save 3", "--nostringval--"},
    };
    for (const Row& row : rows) {
        Owned keep(row.object);
        EXPECT_EQ(row.object->describe(), row.describe);
        EXPECT_EQ(row.object->doubleEqualsText(), row.doubleEquals) << row.describe;
        EXPECT_EQ(row.object->equalsText(), row.equals) << row.describe;
    }
}

TEST(ObjectTexts, TypeNamesAndAnswers) {
    EXPECT_STREQ(typeName(ps_boolean), "ps_boolean");
    EXPECT_STREQ(typeName(ps_operator), "ps_operator");
    EXPECT_STREQ(typeName(ps_string), "ps_string");
    EXPECT_STREQ(typeName(15), "unknown");
    EXPECT_STREQ(typeAnswerName(ps_dictionary), "dicttype");
    EXPECT_STREQ(typeAnswerName(ps_packedarray), "packedarraytype");
    EXPECT_STREQ(typeAnswerName(99), "unknown");
}

TEST(ObjectTexts, FormatStringCutsAt1499Bytes) {
    std::string long2000(2000, 'x');
    EXPECT_EQ(formatString("%s", long2000.c_str()).size(), 1499u);
    EXPECT_EQ(formatString("%d-%s", 7, "a"), "7-a");
}

TEST(ObjectClone, ValuesCopyCompositesShareTheirBody) {
    Session s;
    Interpreter& in = s.interpreter();
    Owned literal(in.makeName("n", false));
    Owned nameClone(literal->clone(nullptr));
    EXPECT_TRUE(nameClone->executable) << "a clone of a literal name is executable";
    EXPECT_EQ(nameClone->describe(), "ps_name n");

    auto* string = in.makeString("abc");
    Owned keep(string);
    Owned copy(string->clone(nullptr));
    static_cast<StringObject*>(copy.get())->text()[0] = 'X';
    EXPECT_EQ(string->equalsText(), "Xbc");

    auto* proc = new ArrayObject(in.memory->localMemory, '{');
    Owned keepProc(proc);
    proc->executable = true;
    proc->execIndex = 3;
    Owned procCopy(proc->clone(nullptr));
    auto* procClone = static_cast<ArrayObject*>(procCopy.get());
    EXPECT_TRUE(procClone->executable);
    EXPECT_EQ(procClone->execIndex, 3u);
    EXPECT_EQ(procClone->data, proc->data);

    Owned memoryCopy(in.memory->localMemory->clone(nullptr));
    EXPECT_EQ(memoryCopy->describe(), "ps_save Copy of Local Memory");
    // Copies of copies: the text goes through the formatter and is cut there.
    std::unique_ptr<PostscriptObject> chain(memoryCopy->clone(nullptr));
    for (int i = 0; i < 200; ++i)
        chain.reset(chain->clone(nullptr));
    EXPECT_EQ(chain->describe().size(), 1499u);
    EXPECT_EQ(chain->describe().substr(0, 24), "ps_save Copy of Copy of ");

    Owned integer(new IntegerObject(5));
    Owned integerCopy(integer->clone(nullptr));
    EXPECT_NE(integer.get(), integerCopy.get());
    EXPECT_EQ(integerCopy->describe(), "ps_integer 5");
}

// dup takes clone: numbers and booleans come back with the attribute of a new
// object, a literal name's clone is executable, composites keep theirs.
class CloneAttributes : public eval_case::EvalTable {};

TEST_P(CloneAttributes, OfCopyThenOriginal) {
    EXPECT_EQ(testing_support::eval(GetParam().program), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Values, CloneAttributes,
    ::testing::Values(eval_case::Case{"5 cvx dup xcheck exch xcheck ", "false true"},
                      eval_case::Case{"1.5 cvx dup xcheck exch xcheck ", "false true"},
                      eval_case::Case{"/n dup xcheck exch xcheck ", "true false"},
                      eval_case::Case{"(s) cvx dup xcheck exch xcheck ", "true true"},
                      eval_case::Case{"{ } cvx dup xcheck exch xcheck ", "true true"},
                      eval_case::Case{"true dup xcheck exch pop null dup xcheck exch pop "
                                      "mark dup xcheck exch pop ",
                                      "true true true"}));

TEST(ObjectStackRules, FailuresAndCounting) {
    ObjectStack stack("Operand Stack");
    auto expectFailure = [](const std::function<void()>& action, const char* message) {
        try {
            action();
            ADD_FAILURE() << "no failure: " << message;
        } catch (PostscriptException& failure) {
            EXPECT_EQ(failure.message, message);
        }
    };
    expectFailure([&] { stack.pop(); }, "pop - expected item on stack");
    expectFailure([&] { stack.push(nullptr); }, "cannot push null item onto stack");
    expectFailure([&] { stack.popTyped(ps_integer, "popIntegerObject"); },
                  "Expected ps_integer at popIntegerObject");
    stack.push(new RealObject(1));
    expectFailure([&] { stack.popTyped(ps_integer, "roll"); }, "Expected ps_integer at roll");
    EXPECT_TRUE(stack.empty()) << "a wrong object is off the stack";

    // A popped object has count 0 but lives until released, and may be pushed again.
    auto* value = new IntegerObject(3);
    stack.push(value);
    stack.push(value);
    EXPECT_EQ(value->refCount, 2);
    EXPECT_EQ(stack.pop(), value);
    EXPECT_EQ(stack.pop(), value);
    EXPECT_EQ(value->refCount, 0);
    stack.push(value);
    EXPECT_EQ(stack.top(), value);
    EXPECT_EQ(stack.at(1), nullptr);

    auto* other = new IntegerObject(4);
    stack.setAt(1, other);
    EXPECT_EQ(stack.size(), 2u);
    expectFailure([&] { stack.setAt(3, other); }, "Illegal array index");
    stack.setAt(0, other);
    EXPECT_EQ(other->refCount, 2);
}

struct CompareCase {
    const char* program; // pushes two objects
    int sign;            // of compareObjects; 2 means "throws"
    bool equal;          // objectsEqual, when it doesn't throw
};

class Comparison : public ::testing::TestWithParam<CompareCase> {};

TEST_P(Comparison, CompareAndEqual) {
    const CompareCase& c = GetParam();
    Session s;
    ASSERT_TRUE(s.run(c.program)) << s.pdf.errorText;
    // The stack may hold a procedure used to make an array operand: take the top two.
    ObjectStack& stack = *s.interpreter().operandStack;
    ASSERT_GE(stack.size(), 2u);
    PostscriptObject* a = stack.at(stack.size() - 2);
    PostscriptObject* b = stack.at(stack.size() - 1);
    if (c.sign == 2) {
        EXPECT_THROW(compareObjects(a, b), PostscriptException);
        return;
    }
    int32_t result = compareObjects(a, b);
    EXPECT_EQ((result > 0) - (result < 0), c.sign);
    EXPECT_EQ(objectsEqual(a, b), c.equal);
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, Comparison,
    ::testing::Values(CompareCase{"1 2 ", -1, false},
                      CompareCase{"-2147483648 2147483647 ", 1, false}, // the difference wraps
                      CompareCase{"1.0 1 ", 0, true}, CompareCase{"2 1.5 ", 1, false},
                      CompareCase{"(abc) (abd) ", -1, false}, CompareCase{"/b /a ", 1, false},
                      CompareCase{"(abc) 5 ", 2, false}, CompareCase{"(abc) /abc ", 2, false}));

TEST(Comparison, BooleansNullsAndMixedPairs) {
    Owned t(new BooleanObject(true)), f(new BooleanObject(false));
    Owned one(new IntegerObject(1)), five(new IntegerObject(5));
    Owned n1(new NullObject), n2(new NullObject);
    EXPECT_EQ(compareObjects(t.get(), one.get()), 0);
    EXPECT_TRUE(objectsEqual(t.get(), one.get()));
    EXPECT_EQ(compareObjects(t.get(), five.get()), 4) << "not in argument order";
    EXPECT_EQ(compareObjects(five.get(), t.get()), 4);
    EXPECT_EQ(compareObjects(t.get(), f.get()), 1);
    EXPECT_TRUE(objectsEqual(n1.get(), n2.get()));
    EXPECT_FALSE(objectsEqual(n1.get(), one.get()));
    EXPECT_FALSE(objectsEqual(one.get(), n1.get()));
    EXPECT_THROW(objectToNumber(t.get()), PostscriptException);
    EXPECT_DOUBLE_EQ(objectToNumber(five.get()), 5.0);
}

TEST(Comparison, StringsCompareUpToTheirFirstNul) {
    Session s;
    Owned a(s.interpreter().makeString(std::string_view("ab\0x", 4)));
    Owned b(s.interpreter().makeString(std::string_view("ab\0y", 4)));
    EXPECT_TRUE(objectsEqual(a.get(), b.get()));
}

TEST(Comparison, ArraysAndDictionariesCompareByContent) {
    Session s;
    ASSERT_TRUE(s.run("{ 1 (a) } { 1.0 (a) } { 1 (b) } { 1 } "));
    ObjectStack& st = *s.interpreter().operandStack;
    EXPECT_TRUE(objectsEqual(st.at(0), st.at(1)));
    EXPECT_FALSE(objectsEqual(st.at(0), st.at(2)));
    EXPECT_FALSE(objectsEqual(st.at(0), st.at(3)));
    EXPECT_THROW(objectsEqual(st.at(0), s.interpreter().dictionaries->userDict),
                 PostscriptException);

    Interpreter& in = s.interpreter();
    Owned d1(in.makeDictionary()), d2(in.makeDictionary()), d3(in.makeDictionary());
    auto body = [](const Owned& o) {
        return static_cast<DictionaryObject*>(o.get())->dictionaryData();
    };
    body(d1)->putText("k", new IntegerObject(1));
    body(d2)->putText("k", new RealObject(1.0));
    body(d3)->putText("j", new IntegerObject(1));
    EXPECT_TRUE(objectsEqual(d1.get(), d2.get()));
    EXPECT_FALSE(objectsEqual(d1.get(), d3.get()));
}

TEST(Comparison, CyclicArraysFailInsteadOfOverflowing) {
    Session s;
    auto* array = new ArrayObject(s.interpreter().memory->localMemory, '[');
    Owned keep(array);
    array->items().push(array->clone(nullptr));
    EXPECT_THROW(objectsEqual(array, array), PostscriptException);
    EXPECT_THROW(array->doubleEqualsText(), PostscriptException);
}

TEST(MemoryBodies, BodiesFollowTheirLastObject) {
    Session s;
    VirtualMemoryObject* local = s.interpreter().memory->localMemory;
    std::size_t before = local->liveBodies();
    auto* string = s.interpreter().makeString("abc");
    EXPECT_EQ(local->liveBodies(), before + 1);
    PostscriptObject* copy = string->clone(nullptr);
    releaseIfUnreferenced(string);
    EXPECT_EQ(local->liveBodies(), before + 1) << "the clone still shares the body";
    releaseIfUnreferenced(copy);
    EXPECT_EQ(local->liveBodies(), before);
}

TEST(MemoryBodies, CyclesAreBrokenWhenTheInterpreterCloses) {
    long before = CompositeData::liveCount();
    auto s = std::make_unique<Session>();
    Interpreter& in = s->interpreter();
    auto* dict = in.makeDictionary();
    dict->dictionaryData()->putText("self", dict);
    auto* array = new ArrayObject(in.memory->globalMemory, '[');
    array->items().push(array->clone(nullptr));
    in.dictionaries->userData->putText("a", array);
    s.reset();
    EXPECT_EQ(CompositeData::liveCount(), before);
}

TEST(MemoryBodies, DeepNestingIsFreedWithoutRecursion) {
    Session s;
    auto* outer = new ArrayObject(s.interpreter().memory->localMemory, '[');
    ArrayObject* inner = outer;
    for (int i = 0; i < 200000; ++i) {
        auto* next = new ArrayObject(s.interpreter().memory->localMemory, '[');
        inner->items().push(next);
        inner = next;
    }
    std::size_t live = s.interpreter().memory->localMemory->liveBodies();
    releaseIfUnreferenced(outer);
    EXPECT_EQ(s.interpreter().memory->localMemory->liveBodies(), live - 200001);
}

} // namespace
