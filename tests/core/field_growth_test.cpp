// tests/core/field_growth_test.cpp - the cost of a member does not grow with the number of members before it.
//
// Times are compared with each other, with room for noise: what must fail is a cost that grows with the size.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "core/tree_walk.h"
#include "murv/fields.h"
#include "tests/support/processor_seconds.h"

namespace
{

using namespace murv;
using murv::tests::costsLessThan;
using murv::tests::processorSeconds;

// The small side is the best of three runs. Ten times the members cost ten times as much, and twice or three times that
// when they no longer fit the caches. A cost that grows with the square is a hundred times as much.
constexpr int s_ciRuns = 3;
constexpr double s_cdTenfold = 50.0;

/// Passes when `action(large)` costs less than `bound` times as much as `action(small)`.
template <typename tAction>
testing::AssertionResult growsBelow(double bound, int small, int large, tAction&& action)
{
    return costsLessThan(
        bound, [&] { return processorSeconds(s_ciRuns, [&] { action(small); }); },
        [&] { return processorSeconds(1, [&] { action(large); }); });
}

/// The same for filling a null with ten times as many members, which `filled` then has.
template <typename tFill>
testing::AssertionResult fillsInProportion(int small, CFields& filled, tFill&& fill)
{
    const auto few = [&] {
        return processorSeconds(
            s_ciRuns, [] { return CFields(); }, [&](CFields& node) { fill(node, small); });
    };
    const auto many = [&] {
        filled = CFields();
        return processorSeconds(1, [&] { fill(filled, 10 * small); });
    };
    return costsLessThan(s_cdTenfold, few, many);
}

void addDistinct(CFields& set, int count)
{
    for (int i = 0; i < count; ++i)
        set.addChildRef("name" + std::to_string(i)) = i;
}

TEST(Growth, addingADistinctMemberCostsTheSameAmongAMillion)
{
    CFields large;
    EXPECT_TRUE(fillsInProportion(100000, large, addDistinct));
    EXPECT_EQ(1000000u, large.getChildCount());
    EXPECT_EQ(999999, large["name999999"].asSint32());
    EXPECT_EQ(&large[123456], &large.addChildRef("name123456"));
    EXPECT_EQ(1000000u, large.getChildCount());
}

TEST(Growth, movingATreeIntoPlaceCostsTheSameWhateverItHolds)
{
    if (detail::s_cbMovesAreChecked)
        GTEST_SKIP() << "this build walks over a tree that is moved into a member";
    const auto nest = [](int levels) {
        CFields tree(1);
        for (int level = 0; level < levels; ++level)
        {
            CFields outer(DT_fields);
            outer.addChildRef("x") = std::move(tree);
            tree = std::move(outer);
        }
        EXPECT_EQ(levels, static_cast<int>(tree.getMemberCount()));
    };
    EXPECT_TRUE(growsBelow(125, 4000, 100000, nest));
}

TEST(Growth, movingATreeIntoAnElementOfItsOwnCostsTheSameInEveryBuild)
{
    const auto nest = [](int levels) {
        CFields tree(1);
        for (int level = 0; level < levels; ++level)
        {
            CFields outer(DT_array);
            outer.addArrayAt(std::move(tree));
            tree = std::move(outer);
        }
        EXPECT_EQ(levels, static_cast<int>(tree.getMemberCount()));
    };
    EXPECT_TRUE(growsBelow(125, 4000, 100000, nest));
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
    EXPECT_TRUE(growsBelow(s_cdTenfold, 2000, 20000, rename));
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
    EXPECT_TRUE(growsBelow(s_cdTenfold, 2000, 20000, rename));
}

TEST(Growth, findingAMemberCostsTheSameAmongMany)
{
    CFields small;
    addDistinct(small, 1000);
    CFields large;
    addDistinct(large, 200000);
    long long sum = 0;
    const auto find = [&sum](CFields& set, int count) {
        for (int i = 0; i < 100000; ++i)
            sum += set["name" + std::to_string(i * 7919LL % count)].asSint64();
    };
    const auto few = [&] { return processorSeconds(s_ciRuns, [&] { find(small, 1000); }); };
    EXPECT_TRUE(costsLessThan(24, few, [&] { return processorSeconds(s_ciRuns, [&] { find(large, 200000); }); }))
        << "caches count, too";
    EXPECT_GT(sum, 0);
}

TEST(Growth, equalNamesMayBeAddedByTheHundredThousand)
{
    const auto add = [](CFields& set, int count) {
        for (int i = 0; i < count; ++i)
            set.addChildRef("same", 0, true) = i;
    };
    CFields large;
    EXPECT_TRUE(fillsInProportion(10000, large, add));
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
    CFields large;
    EXPECT_TRUE(fillsInProportion(100000, large, add));
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
        EXPECT_EQ(levels, static_cast<int>(inner.getMemberCount()));
    };
    EXPECT_TRUE(growsBelow(s_cdTenfold, 10000, 100000, wrap));
}

TEST(Growth, aLookUpIsNotMadeSlowByMissing)
{
    CFields set;
    addDistinct(set, 200000);
    const CFields& constant = set;
    const double time = processorSeconds(1, [&] {
        for (int i = 0; i < 200000; ++i)
            ASSERT_EQ(&CFields::nullRef, &constant["missing" + std::to_string(i)]);
    });
    EXPECT_LT(time, 20.0) << "a scan for each would take hours";
}

TEST(Growth, aLargeSetIsEmptiedFromTheBackAtTheSameCostPerMember)
{
    const auto seconds = [](int runs, int count) {
        const auto prepare = [count] {
            CFields set;
            addDistinct(set, count);
            return set;
        };
        return processorSeconds(runs, prepare, [](CFields& set) {
            while (set.getChildCount() != 0)
                set.removeChildAt(set.getChildCount() - 1);
        });
    };
    const auto few = [&] { return seconds(s_ciRuns, 4000); };
    EXPECT_TRUE(costsLessThan(80, few, [&] { return seconds(s_ciRuns, 64000); }));
}

}  // namespace
