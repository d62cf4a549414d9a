// tests/io/ids/id_index_test.cpp - the first node in the document with an ID is found, and only while it is there.
#include "io/ids/id_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

using namespace murv;
using namespace murv::detail;

namespace
{
/// The index with the outermost container in it, and nodes to point to.
struct tSite
{
    std::uint32_t add(std::uint32_t container, std::uint32_t position, bool byPlace = true)
    {
        return m_tIndex.addContainer({container, position}, byPlace);
    }
    CFields* enter(unsigned int id, std::uint32_t container, std::uint32_t position)
    {
        m_vNode.push_back(std::make_unique<CFields>());
        m_tIndex.enter(id, *m_vNode.back(), {container, position});
        return m_vNode.back().get();
    }
    CFields* find(unsigned int id, std::uint32_t opened = 0)
    {
        return m_tIndex.find(id, opened).m_pNode;
    }

    CIdIndex m_tIndex;
    std::uint32_t m_uiRoot = m_tIndex.addContainer({}, true);
    std::vector<std::unique_ptr<CFields>> m_vNode;
};
}  // namespace

TEST(IdIndex, findsWhatWasEntered)
{
    tSite site;
    CFields* const one = site.enter(1, site.m_uiRoot, 0);
    CFields* const two = site.enter(2, site.m_uiRoot, 5);
    EXPECT_EQ(site.find(1), one);
    EXPECT_EQ(site.find(2), two);
    EXPECT_EQ(site.find(3), nullptr);
    EXPECT_EQ(site.m_tIndex.resolve(site.m_tIndex.find(2, 0).m_tPlace).m_uiPosition, 5u);
}

TEST(IdIndex, findsNothingThatIsOlderThanTheContainer)
{
    tSite site;
    site.enter(1, site.m_uiRoot, 0);
    const std::uint32_t opened = site.m_tIndex.now();
    EXPECT_EQ(site.find(1, opened), nullptr);
    CFields* const inside = site.enter(1, site.add(site.m_uiRoot, 1), 0);
    EXPECT_EQ(site.find(1, opened), inside);
}

TEST(IdIndex, ofSeveralTheFirstInTheDocumentIsFound)
{
    tSite site;
    const std::uint32_t second = site.add(site.m_uiRoot, 7);
    const std::uint32_t first = site.add(site.m_uiRoot, 3);
    CFields* const inSecond = site.enter(1, second, 0);
    EXPECT_EQ(site.find(1), inSecond);
    CFields* const inFirst = site.enter(1, first, 9);
    EXPECT_EQ(site.find(1), inFirst);
    CFields* const between = site.enter(1, site.m_uiRoot, 5);
    EXPECT_EQ(site.find(1), inFirst);
    site.m_tIndex.forget({site.m_uiRoot, 3});
    EXPECT_EQ(site.find(1), between);
}

TEST(IdIndex, aContainerComesBeforeWhatItHolds)
{
    tSite site;
    const std::uint32_t container = site.add(site.m_uiRoot, 3);
    const std::uint32_t below = site.add(container, 0);
    site.enter(1, below, 0);
    CFields* const holder = site.enter(1, site.m_uiRoot, 3);
    EXPECT_EQ(site.find(1), holder);
}

TEST(IdIndex, forgetsAllBelowAPlaceButNotThePlace)
{
    tSite site;
    CFields* const holder = site.enter(1, site.m_uiRoot, 3);
    const std::uint32_t container = site.add(site.m_uiRoot, 3);
    const std::uint32_t below = site.add(container, 1, false);
    site.enter(2, container, 0);
    site.enter(3, below, 0);
    CFields* const beside = site.enter(4, site.m_uiRoot, 4);
    site.m_tIndex.forget({site.m_uiRoot, 3});
    EXPECT_EQ(site.find(1), holder);
    EXPECT_EQ(site.find(2), nullptr);
    EXPECT_EQ(site.find(3), nullptr);
    EXPECT_EQ(site.find(4), beside);
}

TEST(IdIndex, whatWasForgottenMayComeAgainAndGoAgain)
{
    tSite site;
    for (int round = 0; round < 3; ++round)
    {
        const std::uint32_t container = site.add(site.m_uiRoot, 3);
        CFields* const node = site.enter(2, container, 0);
        EXPECT_EQ(site.find(2), node);
        site.m_tIndex.forget({site.m_uiRoot, 3});
        EXPECT_EQ(site.find(2), nullptr);
        site.m_tIndex.forget({site.m_uiRoot, 3});
    }
}

TEST(IdIndex, forgettingAContainerThatHoldsForgottenOnesIsRight)
{
    tSite site;
    const std::uint32_t outer = site.add(site.m_uiRoot, 0);
    site.enter(5, site.add(outer, 0), 0);
    site.m_tIndex.forget({outer, 0});
    site.enter(5, site.add(outer, 0), 0);
    CFields* const apart = site.enter(5, site.m_uiRoot, 9);
    site.m_tIndex.forget({site.m_uiRoot, 0});
    EXPECT_EQ(site.find(5), apart);
}

TEST(IdIndex, clearForgetsEverything)
{
    tSite site;
    site.enter(1, site.m_uiRoot, 0);
    site.m_tIndex.clear();
    EXPECT_EQ(site.m_tIndex.addContainer({}, true), 0u);
    EXPECT_EQ(site.find(1), nullptr);
}

// Against the plain way: all places as lists of positions from the root, compared as such.
TEST(IdIndex, orderOfPlacesIsThatOfTheirPaths)
{
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round)
    {
        tSite site;
        std::vector<std::vector<std::uint32_t>> paths{{}};
        std::vector<std::uint32_t> sets{site.m_uiRoot};
        const bool deep = round % 2 == 0;
        for (std::uint32_t i = 0; i < 60; ++i)
        {
            const std::size_t in =
                deep ? paths.size() - 1 - random() % std::min<std::size_t>(paths.size(), 3) : random() % paths.size();
            std::vector<std::uint32_t> path = paths[in];
            path.push_back(i + static_cast<std::uint32_t>(random() % 2) * 1000);
            sets.push_back(site.add(sets[in], path.back()));
            paths.push_back(path);
        }
        std::vector<std::uint32_t> least;
        CFields* first = nullptr;
        for (int i = 0; i < 20; ++i)
        {
            const std::size_t in = random() % paths.size();
            std::vector<std::uint32_t> path = paths[in];
            path.push_back(2000 + static_cast<std::uint32_t>(i));
            CFields* const node = site.enter(1, sets[in], path.back());
            // Not "<": with g++ 12 and C++20 it compares a part only of such vectors on big-endian machines.
            if (first == nullptr || std::lexicographical_compare(path.begin(), path.end(), least.begin(), least.end()))
            {
                least = path;
                first = node;
            }
            ASSERT_EQ(site.find(1), first) << "round " << round;
        }
    }
}
