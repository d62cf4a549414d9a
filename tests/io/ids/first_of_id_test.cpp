// tests/io/ids/first_of_id_test.cpp - of the living nodes with one ID the first in the document is found.
//
// Random documents are compared with a plain scan. Containers are opened inside each other as a load would open them,
// also at places that were opened before, and few IDs go to many nodes. The model keeps each node's path from the root
// and looks at all nodes.
#include "io/ids/first_of_id.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>
#include <vector>

#include "io/ids/id_index.h"

using namespace murv;
using namespace murv::detail;

namespace
{
using tPath = std::vector<std::uint32_t>;

class CSite
{
public:
    CSite(unsigned int seed, unsigned int ids, std::size_t depth, std::size_t most)
        : m_tRandom(seed), m_uiIds(ids), m_nDepth(depth), m_nMost(most)
    {
        m_vOpen.push_back({m_tIndex.addContainer({}, false), 0, 0});
    }
    /// Fills a document; false when index and model differ.
    bool isAlike()
    {
        while (m_bAlike && m_dNode.size() < m_nMost)
            step();
        return m_bAlike;
    }
    std::size_t asked() const
    {
        return m_nAsked;
    }

private:
    struct tNode
    {
        CFields m_tField;
        tPath m_vPath;
        unsigned int m_uiId;
        tNodePlace m_tByEntry;
        bool m_bLiving = true;
    };
    struct tOpen
    {
        std::uint32_t m_uiContainer;
        std::uint32_t m_uiOpened;
        std::uint32_t m_uiCount;  // of members
    };

    unsigned int random(std::size_t below)
    {
        return static_cast<unsigned int>(m_tRandom() % below);
    }
    /// As "<" does, which with g++ 12 and C++20 compares a part only of such vectors on big-endian machines.
    static bool isBefore(const tPath& a, const tPath& b)
    {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
    }
    static bool isBelow(const tPath& path, const tPath& above)
    {
        return path.size() > above.size() && std::equal(above.begin(), above.end(), path.begin());
    }
    void step()
    {
        const unsigned int choice = random(100);
        if (choice < 40 && m_vOpen.size() < m_nDepth)
            open(m_vOpen.back().m_uiCount != 0 && random(2) == 0);
        else if (choice < 60 && m_vOpen.size() > 1)
        {
            m_vOpen.pop_back();
            m_vPath.pop_back();
        }
        else
            ask(1 + random(m_uiIds));
    }
    void open(bool again)
    {
        tOpen& outer = m_vOpen.back();
        const std::uint32_t position = again ? random(outer.m_uiCount) : outer.m_uiCount++;
        const tNodePlace place{outer.m_uiContainer, position};
        m_vPath.push_back(position);
        if (again)
        {
            tNodePlace at = place;
            for (tNode& node : m_dNode)
            {
                if (node.m_bLiving && node.m_vPath == m_vPath && random(2) == 0)
                    at = node.m_tByEntry;
                node.m_bLiving = node.m_bLiving && !isBelow(node.m_vPath, m_vPath);
            }
            m_tIndex.forget(at);
            m_vOpen.push_back({m_tIndex.addContainer(at, true), m_tIndex.now(), 0});
        }
        else
            m_vOpen.push_back({m_tIndex.addContainer(place, true), m_tIndex.now(), 0});
    }
    void ask(unsigned int id)
    {
        tOpen& open = m_vOpen.back();
        const CFields* const found = m_tIndex.find(id, open.m_uiOpened).m_pNode;
        const tNode* first = nullptr;
        for (const tNode& node : m_dNode)
        {
            if (node.m_bLiving && node.m_uiId == id && isBelow(node.m_vPath, m_vPath) &&
                (first == nullptr || isBefore(node.m_vPath, first->m_vPath)))
                first = &node;
        }
        ++m_nAsked;
        m_bAlike = found == (first == nullptr ? nullptr : &first->m_tField);
        if (first != nullptr && random(4) != 0)
            return;
        tNode& node = m_dNode.emplace_back();
        node.m_vPath = m_vPath;
        node.m_vPath.push_back(open.m_uiCount);
        node.m_uiId = id;
        node.m_tByEntry = m_tIndex.enter(id, node.m_tField, {open.m_uiContainer, open.m_uiCount++});
    }

    std::mt19937 m_tRandom;
    unsigned int m_uiIds;
    std::size_t m_nDepth;
    std::size_t m_nMost;
    CIdIndex m_tIndex;
    std::deque<tNode> m_dNode;
    std::vector<tOpen> m_vOpen;
    tPath m_vPath;
    std::size_t m_nAsked = 0;
    bool m_bAlike = true;
};
}  // namespace

TEST(FirstOfId, isNoneOfNone)
{
    CIdEntries entries;
    CFirstOfId first;
    EXPECT_EQ(first.find(entries, 0), CIdEntries::s_cuiNone);
}

TEST(FirstOfId, isTheNextOneInTheDocumentWhenTheFirstDies)
{
    constexpr std::uint32_t count = 100;
    CIdEntries entries;
    CFirstOfId first;
    CFields node;
    const std::uint32_t root = entries.containers().add({});
    for (std::uint32_t i = 0; i < count; ++i)  // made in another order than they lie in
        first.add(entries, entries.add(node, {entries.containers().add({root, i * 37 % count}), 0}));
    for (std::uint32_t position = 0; position < count; ++position)
    {
        const std::uint32_t found = first.find(entries, 0);
        ASSERT_EQ(found * 37 % count, position);
        ASSERT_EQ(first.find(entries, 0), found);
        entries.containers().empty(entries[found].m_tPlace.m_uiContainer, entries.count());
    }
    EXPECT_EQ(first.find(entries, 0), CIdEntries::s_cuiNone);
}

TEST(FirstOfId, whatAnInnerContainerHoldsIsFoundByTheOnesAroundIt)
{
    CIdEntries entries;
    CFirstOfId first;
    CFields node;
    const std::uint32_t outer = entries.containers().add({});
    const std::uint32_t inner = entries.containers().add({outer, 5});
    first.add(entries, entries.add(node, {outer, 7}));
    const std::uint32_t opened = entries.count();
    EXPECT_EQ(first.find(entries, opened), CIdEntries::s_cuiNone);
    first.add(entries, entries.add(node, {inner, 1}));
    first.add(entries, entries.add(node, {inner, 0}));
    EXPECT_EQ(first.find(entries, opened), 2u);
    EXPECT_EQ(first.find(entries, 0), 2u);
    entries.containers().empty(inner, entries.count());
    EXPECT_EQ(first.find(entries, 0), 0u);
}

TEST(FirstOfId, isThatOfAPlainScanInRandomDocuments)
{
    for (unsigned int seed = 1; seed <= 60; ++seed)
    {
        CSite site(seed, 1 + seed % 3, 2 + seed % 9, 400);
        ASSERT_TRUE(site.isAlike()) << "seed " << seed;
        ASSERT_GT(site.asked(), 200u);
    }
}

TEST(FirstOfId, isThatOfAPlainScanAmongThousands)
{
    for (unsigned int seed = 1; seed <= 3; ++seed)
    {
        CSite site(seed, 1, 3 + seed * 2, 4000);
        ASSERT_TRUE(site.isAlike()) << "seed " << seed;
    }
}
