// tests/core/field_growth_test.cpp - the cost of a member does not grow with the number of members before it.
//
// Times are compared with each other, with room for noise: what must fail is a cost that grows with the size.
#include <gtest/gtest.h>
#include <ctime>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "core/tree_walk.h"
#include "murv/fields.h"

namespace
{

using namespace murv;

template <typename tAction>
double seconds(tAction&& action)
{
    const auto before = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
}

/// Ten times the members may cost ten times as much; twelve times that would be far from linear.
constexpr double s_cdGenerous = 12.0;

void addDistinct(CFields& set, int from, int to)
{
    for (int i = from; i < to; ++i)
        set.addChildRef("name" + std::to_string(i)) = i;
}

TEST(Growth, addingADistinctMemberCostsTheSameAmongAMillion)
{
    CFields small;
    const double few = seconds([&] { addDistinct(small, 0, 100000); });
    CFields large;
    const double many = seconds([&] { addDistinct(large, 0, 1000000); });
    EXPECT_EQ(1000000u, large.getChildCount());
    EXPECT_LT(many / 10, few * s_cdGenerous);
    EXPECT_EQ(999999, large["name999999"].asSint32());
    EXPECT_EQ(&large[123456], &large.addChildRef("name123456"));
    EXPECT_EQ(1000000u, large.getChildCount());
}

/// Processor seconds; at least the step of the clock.
template <typename tAction>
double processorSeconds(tAction&& action)
{
    const std::clock_t begin = std::clock();
    action();
    return std::max(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 0.001);
}

TEST(Growth, movingATreeIntoPlaceCostsTheSameWhateverItHolds)
{
    if (detail::s_cbMovesAreChecked)
        GTEST_SKIP() << "this build walks over a tree that is moved into a member";
    const auto nest = [](unsigned int levels) {
        CFields tree(1);
        for (unsigned int level = 0; level < levels; ++level)
        {
            CFields outer(DT_fields);
            outer.addChildRef("x") = std::move(tree);
            tree = std::move(outer);
        }
        EXPECT_EQ(levels, tree.getMemberCount());
    };
    const double few = processorSeconds([&] { nest(4000); });
    EXPECT_LT(processorSeconds([&] { nest(100000); }), few * 125);
}

TEST(Growth, movingATreeIntoAnElementOfItsOwnCostsTheSameInEveryBuild)
{
    const auto nest = [](unsigned int levels) {
        CFields tree(1);
        for (unsigned int level = 0; level < levels; ++level)
        {
            CFields outer(DT_array);
            outer.addArrayAt(std::move(tree));
            tree = std::move(outer);
        }
        EXPECT_EQ(levels, tree.getMemberCount());
    };
    const double few = processorSeconds([&] { nest(4000); });
    EXPECT_LT(processorSeconds([&] { nest(100000); }), few * 125);
}

TEST(Growth, equalNamesMayBeRenamedFromTheFront)
{
    const auto rename = [](int count) {
        CFields set;
        for (int i = 0; i < count; ++i)
            set.addChildRef("same", 0, true) = i;
        for (int i = 0; i < count; ++i)
        {
            CFields& first = set["same"];
            ASSERT_EQ(i, first.asSint32());
            first.setName("n" + std::to_string(i));
        }
        EXPECT_EQ(nullptr, set.findChildAt("same", 4));
    };
    const double few = processorSeconds([&] { rename(2000); });
    EXPECT_LT(processorSeconds([&] { rename(20000); }), few * 50);
}

TEST(Growth, namesThatAreSharedFarApartMayBeRenamedInAnyOrder)
{
    const auto rename = [](int count) {
        CFields set;
        for (int i = 0; i < count; ++i)
            set.addChildRef("n" + std::to_string(i % (count / 2)), 0, true) = i;
        for (int round = 0; round < 2; ++round)
        {
            for (int i = 0; i < count / 2; ++i)
            {
                CFields& member = set[i * 17 % (count / 2)];
                const std::string name(member.getName());
                member.setName("other");
                ASSERT_LE(count / 2, set[name].asSint32());
                member.setName(name);
                ASSERT_GT(count / 2, set[name].asSint32());
            }
        }
    };
    const double few = processorSeconds([&] { rename(2000); });
    EXPECT_LT(processorSeconds([&] { rename(20000); }), few * 50);
}

TEST(Growth, findingAMemberCostsTheSameAmongMany)
{
    CFields small;
    addDistinct(small, 0, 1000);
    CFields large;
    addDistinct(large, 0, 200000);
    long long sum = 0;
    const auto find = [&sum](CFields& set, int count) {
        for (int i = 0; i < 100000; ++i)
            sum += set["name" + std::to_string(i * 7919LL % count)].asSint64();
    };
    const double few = seconds([&] { find(small, 1000); });
    const double many = seconds([&] { find(large, 200000); });
    EXPECT_GT(sum, 0);
    EXPECT_LT(many, few * s_cdGenerous * 2) << "caches count, too";
}

TEST(Growth, equalNamesMayBeAddedByTheHundredThousand)
{
    const auto add = [](CFields& set, int count) {
        for (int i = 0; i < count; ++i)
            set.addChildRef("same", 0, true) = i;
    };
    CFields small;
    const double few = seconds([&] { add(small, 10000); });
    CFields large;
    const double many = seconds([&] { add(large, 100000); });
    EXPECT_LT(many / 10, few * s_cdGenerous);
    EXPECT_EQ(100000u, large.getChildCount());
    EXPECT_EQ(&large[0], &large["same"]);
    EXPECT_EQ(0, large.getChildIdx4Name("same"));
    EXPECT_EQ(&large[0], &large.addChildRef("same"));
}

TEST(Growth, appendingToAnArrayCostsTheSameAmongAMillion)
{
    const auto add = [](CFields& array, int count) {
        for (int i = 0; i < count; ++i)
            array.addArrayAt(i);
    };
    CFields small;
    const double few = seconds([&] { add(small, 100000); });
    CFields large;
    const double many = seconds([&] { add(large, 1000000); });
    EXPECT_LT(many / 10, few * s_cdGenerous);
    EXPECT_EQ(999999, large[999999].asSint32());
}

TEST(Growth, aTreeIsBuiltFromItsLeavesAtTheSameCostPerLevel)
{
    const auto wrap = [](int levels) {
        CFields inner(1);
        for (int i = 0; i < levels; ++i)
        {
            CFields outer(DT_array);
            outer.addArrayAt(std::move(inner));
            if (i % 2 == 0)
                inner.swapValue(outer, false);
            else
                inner.swapField(outer, true);
        }
        return inner.getMemberCount();
    };
    double few = seconds([&] { EXPECT_EQ(10000u, wrap(10000)); });
    few = std::max(few, 0.0005);
    const double many = seconds([&] { EXPECT_EQ(100000u, wrap(100000)); });
    EXPECT_LT(many / 10, few * s_cdGenerous);
}

TEST(Growth, aLookUpIsNotMadeSlowByMissing)
{
    CFields set;
    addDistinct(set, 0, 200000);
    const CFields& constant = set;
    const double time = seconds([&] {
        for (int i = 0; i < 200000; ++i)
            ASSERT_EQ(&CFields::nullRef, &constant["missing" + std::to_string(i)]);
    });
    EXPECT_LT(time, 20.0) << "a scan for each would take hours";
}

TEST(Growth, aLargeSetIsEmptiedFromTheBackAtTheSameCostPerMember)
{
    const auto seconds = [](unsigned int count) {
        CFields tree(DT_fields);
        for (unsigned int i = 0; i < count; ++i)
            tree.addChildRef("n" + std::to_string(i)) = 1;
        const std::clock_t begin = std::clock();
        while (tree.getChildCount() != 0)
            tree.removeChildAt(tree.getChildCount() - 1);
        return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    };
    EXPECT_LT(seconds(64000), std::max(seconds(4000), 0.001) * 80);
}

}  // namespace
