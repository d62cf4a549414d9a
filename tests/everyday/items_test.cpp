// tests/everyday/items_test.cpp - loops over members with names and indexes.
#include "murv/items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <type_traits>

#include "tests/everyday/everyday_helpers.h"

namespace murv::tests
{

TEST(Items, giveNamesAndValuesInOrder)
{
    const CFields tree = load(R"({ "a" = 1, "" = 2, "b" = 3, "a" = 4 })");
    std::string seen;
    for (auto [name, value] : items(tree))
        seen += std::string(name) + ":" + value.asString() + " ";
    EXPECT_EQ(seen, "a:1 :2 b:3 a:4 ");
}

TEST(Items, valuesMayBeChangedInPlace)
{
    CFields tree = load(R"({ "a" = 1, "b" = 2 })");
    for (auto&& [name, value] : items(tree))
        value = name == "b" ? 20 : 10;
    EXPECT_EQ(textOf(tree), R"({"a"=10,"b"=20})");
    const CFields& constant = tree;
    static_assert(std::is_same_v<decltype((*items(constant).begin()).value), const CFields&>);
    static_assert(std::is_same_v<decltype((*items(tree).begin()).value), CFields&>);
    EXPECT_EQ(&(*items(constant).begin()).value, &tree[0]);
}

TEST(Items, loopsByConstantReferenceCompile)
{
    CFields tree = load(R"({ "a" = 1 })");
    for (const auto& [name, value] : items(tree))
    {
        EXPECT_EQ(name, "a");
        value = 5;
    }
    EXPECT_EQ(tree["a"], CFields(5));
}

TEST(Items, ofArraysHaveNoNames)
{
    const CFields tree = load("[1, 2]");
    unsigned int count = 0;
    for (const auto& [name, value] : items(tree))
    {
        EXPECT_EQ(name, "");
        EXPECT_EQ(value, CFields(static_cast<int>(++count)));
    }
    EXPECT_EQ(count, 2U);
}

TEST(Items, ofScalarsAndEmptyContainersAreNone)
{
    for (const E_DataType type : {DT_null, DT_sint, DT_codelist, DT_array, DT_fields})
    {
        const CFields node(type);
        EXPECT_TRUE(items(node).empty());
        EXPECT_TRUE(items(node).begin() == items(node).end());
    }
}

TEST(Items, namesMayHoldAnyBytes)
{
    CFields tree;
    const std::string name("a\0b", 3);
    tree.addChildRef(name);
    EXPECT_EQ((*items(tree).begin()).name, name);
}

TEST(Items, enumerateCounts)
{
    CFields tree = load("[5, 6, 7]");
    for (auto [index, value] : enumerate(tree))
        value = static_cast<int>(index) * 10;
    EXPECT_EQ(textOf(tree), "[0,10,20]");
    std::size_t sum = 0;
    const CFields& constant = tree;
    for (const auto& [index, value] : enumerate(constant))
        sum += index;
    EXPECT_EQ(sum, 3U);
    EXPECT_EQ(enumerate(constant).size(), 3U);
}

TEST(Items, goThroughLargeContainers)
{
    CFields tree;
    for (int i = 0; i < 5000; ++i)
        tree.addChildRef("n" + std::to_string(i)) = i;
    int expected = 0;
    for (const auto& [name, value] : items(tree))
    {
        ASSERT_EQ(name, "n" + std::to_string(expected));
        ASSERT_EQ(value, CFields(expected++));
    }
    EXPECT_EQ(expected, 5000);
}

TEST(Items, workWithAlgorithms)
{
    const CFields tree = load(R"({ "a" = 1, "b" = 2 })");
    const auto range = items(tree);
    EXPECT_EQ(std::count_if(range.begin(), range.end(), [](const auto& item) { return item.name == "b"; }), 1);
}

TEST(Items, ofATreeThatGoesDoNotCompile)
{
    const auto itemsOf = [](auto&& node) -> decltype(items(std::forward<decltype(node)>(node))) {
        return items(std::forward<decltype(node)>(node));
    };
    static_assert(std::is_invocable_v<decltype(itemsOf), CFields&>);
    static_assert(!std::is_invocable_v<decltype(itemsOf), CFields>);
}

}  // namespace murv::tests
