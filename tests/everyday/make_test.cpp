// tests/everyday/make_test.cpp - trees written down, and values set by path.
#include "murv/make.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "tests/everyday/everyday_helpers.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/thrown.h"

namespace murv::tests
{

namespace
{
std::string afterSet(const std::string& text, const std::string& path)
{
    CFields tree = load(text);
    const CFields& node = set(tree, path, 7);
    EXPECT_EQ(&node, find(tree, path.back() == '-' ? path.substr(0, path.size() - 1) + "0" : path));
    return textOf(tree);
}

std::string refusal(const std::string& text, const std::string& path)
{
    CFields tree = load(text);
    const std::string message = thrown([&] { set(tree, path, 7); });
    EXPECT_EQ(textOf(tree), textOf(load(text)));
    return message;
}

E_DataType typeOf(CNewValue value)
{
    return value.take().getDT();
}

CFields sample()
{
    return fields({{"a", 1}, {"b", array({1, 2.5, "x"})}, {"c", nullptr}, {"d", fields({{"e", true}})}});
}
}  // namespace

TEST(Make, writesTreesAsTheyLook)
{
    EXPECT_EQ(textOf(sample()), R"({"a"=1,"b"=[1,2.5,"x"],"c"=null,"d"={"e"=true}})");
    EXPECT_EQ(textOf(fields({})), "{}");
    EXPECT_EQ(textOf(array({})), "[]");
    EXPECT_EQ(textOf(array({array({}), array({array({1})}), fields({})})), "[[],[[1]],{}]");
    EXPECT_EQ(textOf(fields({{"a", "b"}})), R"({"a"="b"})");
    EXPECT_EQ(textOf(fields({{"a", "b"}, {"c", "d"}})), R"({"a"="b","c"="d"})");
    EXPECT_EQ(textOf(array({"a", "b"})), R"(["a","b"])");
}

TEST(Make, typesAreThoseOfTheValues)
{
    EXPECT_EQ(typeOf(nullptr), DT_null);
    EXPECT_EQ(typeOf(true), DT_bool);
    EXPECT_EQ(typeOf(1), DT_sint);
    EXPECT_EQ(typeOf(short{1}), DT_sint);
    EXPECT_EQ(typeOf(std::int8_t{-1}), DT_sint);
    EXPECT_EQ(typeOf(1LL), DT_sint);
    EXPECT_EQ(typeOf(1U), DT_uint);
    EXPECT_EQ(typeOf(std::uint8_t{1}), DT_uint);
    EXPECT_EQ(typeOf(std::uint16_t{1}), DT_uint);
    EXPECT_EQ(typeOf(std::size_t{1}), DT_uint);
    EXPECT_EQ(typeOf(1.0F), DT_double);
    EXPECT_EQ(typeOf(1.0), DT_double);
    EXPECT_EQ(typeOf("text"), DT_codelist);
    EXPECT_EQ(typeOf(std::string("text")), DT_codelist);
    EXPECT_EQ(typeOf(std::string_view("text")), DT_codelist);
    EXPECT_EQ(typeOf(CStaticString("text")), DT_codelist);
    EXPECT_EQ(typeOf(DT_fields), DT_fields);
    EXPECT_EQ(typeOf(CFields(DT_array)), DT_array);
    char buffer[] = "text";
    EXPECT_EQ(typeOf(buffer), DT_codelist);
}

TEST(Make, charactersAndPointersAreRefused)
{
    static_assert(!std::is_constructible_v<CNewValue, char>);
    static_assert(!std::is_constructible_v<CNewValue, wchar_t>);
    static_assert(!std::is_constructible_v<CNewValue, int*>);
    static_assert(!std::is_constructible_v<CNewValue, const void*>);
    static_assert(std::is_constructible_v<CNewValue, char*>);
    EXPECT_THROW(CNewValue(static_cast<const char*>(nullptr)), CLogicError);
}

TEST(Make, namesMustBeThereAndDiffer)
{
    EXPECT_EQ(thrown([] {
                  return fields({{"a", 1}, {"a", 2}});
              }),
              "Cannot make the member \"a\": there is one of this name");
    EXPECT_EQ(thrown([] { return fields({{"", 1}}); }), "Cannot make the member \"\": a name has 1 to 255 bytes");
    EXPECT_THROW(static_cast<void>(fields({{std::string(256, 'x'), 1}})), CLogicError);
    EXPECT_EQ(fields({{std::string(255, 'x'), 1}})[0].getNameLen(), 255U);
    EXPECT_EQ(fields({{std::string_view("a\0b", 3), 1}})[0].getNameLen(), 3U);
}

TEST(Make, nodesKeepAllButTheirName)
{
    CFields node = load(R"({ #7 "old" = 5 // c
        })")[0];
    EXPECT_EQ(node.getID(), 7U);
    const CFields made = fields({{"new", node}});
    EXPECT_STREQ(made[0].getName(), "new");
    EXPECT_EQ(made[0].getID(), 7U);
    EXPECT_TRUE(made[0].hasComment(CP_trailing));
    const CFields elements = array({std::move(node)});
    EXPECT_STREQ(elements[0].getName(), "");
    EXPECT_EQ(elements[0].getID(), 7U);
}

TEST(Make, setReplacesWhatIsThere)
{
    EXPECT_EQ(afterSet(R"({"a"=1})", "a"), R"({"a"=7})");
    EXPECT_EQ(afterSet(R"({"a"={"b"=[1,2]}})", "a.b[-1]"), R"({"a"={"b"=[1,7]}})");
    EXPECT_EQ(afterSet(R"({"a"={"b"=[1,2]}})", "/a/b/0"), R"({"a"={"b"=[7,2]}})");
    EXPECT_EQ(afterSet(R"({"a"={"b"=[1,2]}})", "a"), R"({"a"=7})");
    EXPECT_EQ(afterSet(R"({"a"=1})", "."), "7");
}

TEST(Make, setKeepsNameIdAndComments)
{
    CFields tree = load("{ // before\n #7 \"a\" = 1 }");
    set(tree, "#7", "text");
    EXPECT_EQ(textOf(tree), "{#7\"a\"=\"text\"}");
    EXPECT_EQ(tree["a"].getCommentCopy(CP_before), "// before");
    set(tree, "a", load("5"));
    EXPECT_EQ(tree["a"], CFields(5));
    EXPECT_STREQ(tree[0].getName(), "a");
    EXPECT_EQ(tree[0].getID(), 7U);
}

TEST(Make, setMakesWhatIsMissing)
{
    EXPECT_EQ(afterSet("{}", "a"), R"({"a"=7})");
    EXPECT_EQ(afterSet("null", "a.b.c"), R"({"a"={"b"={"c"=7}}})");
    EXPECT_EQ(afterSet("null", "[0]"), "[7]");
    EXPECT_EQ(afterSet("null", "a[0][0].b"), R"({"a"=[[{"b"=7}]]})");
    EXPECT_EQ(afterSet(R"({"a"=null})", "a.b"), R"({"a"={"b"=7}})");
    EXPECT_EQ(afterSet(R"({"a"=[1]})", "a[1]"), R"({"a"=[1,7]})");
    EXPECT_EQ(afterSet(R"({"a"=1})", "\"b.c\""), R"({"a"=1,"b.c"=7})");
    EXPECT_EQ(afterSet(R"({#7"a"={}})", "#7.b"), R"({#7"a"={"b"=7}})");
}

TEST(Make, setMakesByPointers)
{
    EXPECT_EQ(afterSet("null", "/a/0/b"), R"({"a"=[{"b"=7}]})");
    EXPECT_EQ(afterSet("null", "/a/-"), R"({"a"=[7]})");
    EXPECT_EQ(afterSet("{}", "/0"), R"({"0"=7})");
    EXPECT_EQ(afterSet("null", "/1"), R"({"1"=7})");
    CFields tree = load("[1]");
    set(tree, "/-", 2);
    set(tree, "/2", 3);
    EXPECT_EQ(textOf(tree), "[1,2,3]");
}

TEST(Make, setRefusesWithNothingChanged)
{
    EXPECT_EQ(refusal(R"({"a"=1})", "a.b"), "Cannot set the value, step 2 of the path: a name adds to field sets only");
    EXPECT_EQ(refusal("[]", "a"), "Cannot set the value, step 1 of the path: a name adds to field sets only");
    EXPECT_EQ(refusal("{}", "[0]"), "Cannot set the value, step 1 of the path: an index adds to arrays only");
    EXPECT_EQ(refusal("[1]", "[2]"), "Cannot set the value, step 1 of the path: elements before it are missing");
    EXPECT_EQ(refusal("{}", "a.b[1]"), "Cannot set the value, step 3 of the path: elements before it are missing");
    EXPECT_EQ(refusal("{}", "a.#3"), "Cannot set the value, step 2 of the path: there is no node with this ID");
    EXPECT_EQ(refusal("[1]", "[-2]"), "Cannot set the value, step 1 of the path: there is no such element");
    EXPECT_EQ(refusal("{}", "a.\"\""), "Cannot set the value, step 2 of the path: a name has 1 to 255 bytes");
    EXPECT_EQ(refusal("{}", std::string(256, 'x')),
              "Cannot set the value, step 1 of the path: a name has 1 to 255 bytes");
    EXPECT_EQ(refusal("{}", "a["), "Malformed path \"a[\", byte 2: an index is needed");
}

TEST(Make, aNodeMayBeSetBelowItself)
{
    CFields tree = sample();
    set(tree, "d.e", tree);
    EXPECT_EQ(tree["d"]["e"], sample());
    set(tree, "d", tree["d"]["e"]["b"]);
    EXPECT_EQ(textOf(tree["d"][2]), "\"x\"");
}

TEST(Make, appendAddsElements)
{
    CFields tree;
    const CFields& first = append(tree, 1);
    EXPECT_EQ(&first, &tree[0]);
    append(tree, "two");
    append(tree, tree);
    append(tree, nullptr);
    EXPECT_EQ(textOf(tree), R"([1,"two",[1,"two"],null])");
    CFields named = load("{ \"x\" = 3 }");
    append(tree, named["x"]);
    EXPECT_STREQ(tree[4].getName(), "");
    EXPECT_EQ(thrown([&] { append(named, 1); }), "Cannot append an element to a node of type field set");
    CFields bare;
    bare.removeAll(DT_array);
    append(bare, 1);
    EXPECT_EQ(bare.getChildCount(), 1U);
}

TEST(Make, largeFieldSetsFindWhatIsSet)
{
    CFields tree;
    for (int i = 0; i < 1000; ++i)
        set(tree, "n" + std::to_string(i), i);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(get<int>(tree, "n" + std::to_string(i)), i);
    EXPECT_EQ(tree.getChildCount(), 1000U);
}

TEST(Make, hostilePathsMakeDeepTreesInLinearTime)
{
    std::string path = "a";
    for (unsigned int i = 0; i < 100000; ++i)
        path += "[0]";
    CFields tree;
    EXPECT_EQ(set(tree, path, 1), CFields(1));
    EXPECT_EQ(tree.getMemberCount(), 100001U);
}

TEST(Make, withoutMemoryNothingChanges)
{
    if (!CFailingMalloc::isMallocReached() || !CFailingMalloc::isNewReached())
        GTEST_SKIP();
    CFields tree = sample();
    const std::string longName(100, 'n');
    bool isDone = false;
    for (long failAt = 1; !isDone; ++failAt)
    {
        CFailingMalloc failing(failAt);
        try
        {
            set(tree, "d.f." + longName + "[0].x", std::string(1000, 'x'));
            isDone = true;
        }
        catch (const std::bad_alloc&)
        {
        }
        catch (const CLogicError&)
        {
        }
        const CNoFailure guard;
        if (!isDone)
        {
            ASSERT_EQ(tree, sample()) << failAt;
        }
    }
    EXPECT_EQ(tree["d"]["f"][0][0]["x"].getRawBytes(), 1000U);
}

TEST(Make, setTakesNoPathsToSeveralNodes)
{
    CFields tree = load("[1, 2]");
    const tNodePath path = parsePath("[*]", PO_several);
    EXPECT_EQ(thrown([&] { set(tree, path, 3); }), "Malformed path, byte 3: a range leads to several nodes");
    EXPECT_EQ(textOf(tree), "[1,2]");
}

}  // namespace murv::tests
