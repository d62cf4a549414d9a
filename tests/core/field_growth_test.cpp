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

CFields makeNull()
{
    return {};
}

void addDistinct(CFields& set, int count)
{
    for (int i = 0; i < count; ++i)
        set.addChildRef("name" + std::to_string(i)) = i;
}

TEST(Growth, addingADistinctMemberCostsTheSameAmongAMillion)
{
    const auto few = [&] {
        return processorSeconds(s_ciRuns, makeNull, [](CFields& set) { addDistinct(set, 100000); });
    };
    CFields large;
    const auto many = [&] {
        large = CFields();
        return processorSeconds(1, [&] { addDistinct(large, 1000000); });
    };
    EXPECT_TRUE(costsLessThan(s_cdTenfold, few, many));
    EXPECT_EQ(1000000u, large.getChildCount());
    EXPECT_EQ(999999, large["name999999"].asSint32());
    EXPECT_EQ(&large[123456], &large.addChildRef("name123456"));
    EXPECT_EQ(1000000u, large.getChildCount());
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
    const auto few = [&] { return processorSeconds(s_ciRuns, [&] { nest(4000); }); };
    EXPECT_TRUE(costsLessThan(125, few, [&] { return processorSeconds(1, [&] { nest(100000); }); }));
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
    const auto few = [&] { return processorSeconds(s_ciRuns, [&] { nest(4000); }); };
    EXPECT_TRUE(costsLessThan(125, few, [&] { return processorSeconds(1, [&] { nest(100000); }); }));
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
    const auto few = [&] { return processorSeconds(s_ciRuns, [&] { rename(2000); }); };
    EXPECT_TRUE(costsLessThan(s_cdTenfold, few, [&] { return processorSeconds(1, [&] { rename(20000); }); }));
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
    const auto few = [&] { return processorSeconds(s_ciRuns, [&] { rename(2000); }); };
    EXPECT_TRUE(costsLessThan(s_cdTenfold, few, [&] { return processorSeconds(1, [&] { rename(20000); }); }));
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
    const auto few = [&] { return processorSeconds(s_ciRuns, makeNull, [&](CFields& set) { add(set, 10000); }); };
    CFields large;
    const auto many = [&] {
        large = CFields();
        return processorSeconds(1, [&] { add(large, 100000); });
    };
    EXPECT_TRUE(costsLessThan(s_cdTenfold, few, many));
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
    const auto few = [&] { return processorSeconds(s_ciRuns, makeNull, [&](CFields& array) { add(array, 100000); }); };
    CFields large;
    const auto many = [&] {
        large = CFields();
        return processorSeconds(1, [&] { add(large, 1000000); });
    };
    EXPECT_TRUE(costsLessThan(s_cdTenfold, few, many));
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
    const auto few = [&] { return processorSeconds(s_ciRuns, [&] { EXPECT_EQ(10000u, wrap(10000)); }); };
    EXPECT_TRUE(costsLessThan(s_cdTenfold, few,
                              [&] { return processorSeconds(1, [&] { EXPECT_EQ(100000u, wrap(100000)); }); }));
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
