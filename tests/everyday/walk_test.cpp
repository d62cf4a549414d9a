// tests/everyday/walk_test.cpp - walks over trees, and visits by type.
#include "murv/walk.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/everyday/everyday_helpers.h"
#include "tests/support/random_tree.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpText = R"({ "a" = 1, "b" = { "c" = [2, 3], "d" = {} }, "e.f" = "x" })";

std::string kindOf(const CFields& node)
{
    return visit(
        node, [](std::nullptr_t) { return std::string("null"); },
        [](bool value) { return std::string(value ? "yes" : "no"); },
        [](long long value) { return "s" + std::to_string(value); },
        [](unsigned long long value) { return "u" + std::to_string(value); },
        [](double value) { return "d" + std::to_string(static_cast<int>(value)); },
        [](std::string_view text) { return "t" + std::string(text); },
        [](const CFields& container) { return "c" + std::to_string(container.getChildCount()); });
}
}  // namespace

TEST(Walk, comesToContainersBeforeTheirMembers)
{
    const CFields tree = load(s_cpText);
    std::string seen;
    EXPECT_TRUE(walk(tree, [&](const CFields& node, const CWalkPlace& place) {
        seen += std::to_string(place.depth()) + place.path() + (node.isField() ? "{} " : " ");
    }));
    EXPECT_EQ(seen, "0.{} 1a 1b{} 2b.c 3b.c[0] 3b.c[1] 2b.d{} 1\"e.f\" ");
}

TEST(Walk, callbacksMayTakeTheDepthOrNothing)
{
    const CFields tree = load(s_cpText);
    std::size_t depths = 0;
    walk(tree, [&](const CFields&, std::size_t depth) { depths += depth; });
    EXPECT_EQ(depths, 13U);
    unsigned int count = 0;
    walk(tree, [&](const CFields&) { ++count; });
    EXPECT_EQ(count, 8U);
}

TEST(Walk, placesKnowParentAndIndex)
{
    const CFields tree = load(s_cpText);
    walk(tree, [&](const CFields& node, const CWalkPlace& place) {
        if (place.depth() == 0)
        {
            EXPECT_EQ(place.parent(), nullptr);
            EXPECT_EQ(place.index(), 0U);
        }
        else
        {
            EXPECT_EQ(&(*place.parent())[place.index()], &node);
        }
    });
}

TEST(Walk, mayLeaveOutMembersAndStop)
{
    const CFields tree = load(s_cpText);
    std::string seen;
    EXPECT_TRUE(walk(tree, [&](const CFields& node, const CWalkPlace& place) {
        seen += place.path() + " ";
        return std::string_view(node.getName()) == "c" ? WN_skip : WN_members;
    }));
    EXPECT_EQ(seen, ". a b b.c b.d \"e.f\" ");
    seen.clear();
    EXPECT_FALSE(walk(tree, [&](const CFields&, const CWalkPlace& place) {
        seen += place.path() + " ";
        return place.path() == "b.c[0]" ? WN_stop : WN_members;
    }));
    EXPECT_EQ(seen, ". a b b.c b.c[0] ");
}

TEST(Walk, mayChangeNodesAndTheirMembers)
{
    CFields tree = load("{ \"a\" = 1, \"b\" = [1, 2] }");
    unsigned int count = 0;
    walk(tree, [&](CFields& node) {
        ++count;
        if (node == CFields(1))
            node = 10;
        if (node.isArray())
            node.addArrayAt(1);
    });
    EXPECT_EQ(textOf(tree), R"({"a"=10,"b"=[10,2,10]})");
    EXPECT_EQ(count, 6U);
}

TEST(Walk, seesEveryNodeOfRandomTreesOnce)
{
    for (unsigned int seed = 0; seed < 40; ++seed)
    {
        const CFields tree = CRandomTree(seed).tree();
        unsigned int count = 0;
        walk(tree, [&](const CFields& node, const CWalkPlace& place) {
            ++count;
            EXPECT_EQ(find(tree, place.path()), &node);
        });
        EXPECT_EQ(count, tree.getMemberCount() + 1);
    }
}

TEST(Walk, goesToAnyDepth)
{
    const CFields tree = deepTree(1000000);
    std::size_t deepest = 0;
    walk(tree, [&](const CFields&, std::size_t depth) { deepest = depth; });
    EXPECT_EQ(deepest, 999999U);
}

TEST(Walk, passesExceptionsOn)
{
    const CFields tree = load(s_cpText);
    EXPECT_THROW(walk(tree, [](const CFields&) { throw std::runtime_error("enough"); }), std::runtime_error);
}

TEST(Visit, callsTheFunctionOfTheType)
{
    EXPECT_EQ(kindOf(CFields()), "null");
    EXPECT_EQ(kindOf(CFields(true)), "yes");
    EXPECT_EQ(kindOf(CFields(-1)), "s-1");
    EXPECT_EQ(kindOf(CFields(1U)), "u1");
    EXPECT_EQ(kindOf(CFields(2.0)), "d2");
    EXPECT_EQ(kindOf(CFields("abc")), "tabc");
    EXPECT_EQ(kindOf(CFields(DT_array)), "c0");
    EXPECT_EQ(kindOf(load("{\"a\"=1}")), "c1");
}

TEST(Visit, takesWhatIsLeftByAuto)
{
    const auto isText = [](const CFields& node) {
        return visit(
            node, [](std::string_view) { return true; }, [](auto&&) { return false; });
    };
    EXPECT_TRUE(isText(CFields("x")));
    for (const E_DataType type : {DT_null, DT_bool, DT_sint, DT_uint, DT_double, DT_array, DT_fields})
        EXPECT_FALSE(isText(CFields(type)));
}

TEST(Visit, givesMutableContainers)
{
    CFields tree = load("[1]");
    visit(
        tree, [](CFields& node) { node.addArrayAt(2); }, [](auto&&) { FAIL(); });
    EXPECT_EQ(textOf(tree), "[1,2]");
}

}  // namespace murv::tests
