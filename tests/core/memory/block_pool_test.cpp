// tests/core/memory/block_pool_test.cpp - blocks out of pieces, and trees whose containers lie in them.
#include "core/memory/block_pool.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "murv/loader.h"
#include "tests/support/failing_malloc.h"

using namespace murv;
using namespace murv::detail;
using namespace murv::tests;

namespace
{
constexpr std::size_t s_cnSize = 136;  // of a container with two members

/// Takes blocks until one comes from a piece; how many the heap was to be asked for.
int takeFirst(CBlockPool& pool, char*& block)
{
    int refused = 0;
    while ((block = pool.take(s_cnSize)) == nullptr)
        ++refused;
    return refused;
}
CBlockPool::tPiece* piece4(const CBlockPool& pool, char* block)
{
    return reinterpret_cast<CBlockPool::tPiece*>(block - pool.distance(block));
}

/// A document with many small containers, one of them with others inside.
std::string document(int count)
{
    std::string text = "[";
    for (int i = 0; i < count; ++i)
        text += "{\"x\"=[" + std::to_string(i) + ",[1,2]],\"y\"={\"a name that has a block of its own\"=\"z\"}},";
    return text + "0]";
}
CFields load(const std::string& text)
{
    CLoader4SER loader;
    CFields tree;
    EXPECT_TRUE(loader.loading(text, tree)) << loader.getLastErrMsg();
    return tree;
}
}  // namespace

TEST(BlockPool, asksTheHeapAtFirst)
{
    CBlockPool pool;
    char* block = nullptr;
    EXPECT_EQ(takeFirst(pool, block), 1);
    CBlockPool::release(piece4(pool, block), 1);
}

TEST(BlockPool, piecesGrowUpToALimit)
{
    CBlockPool pool;
    char* block = nullptr;
    takeFirst(pool, block);
    std::map<CBlockPool::tPiece*, unsigned int> counts;
    std::vector<CBlockPool::tPiece*> order;
    for (int i = 0; i < 1000; ++i)
    {
        ASSERT_NE(block, nullptr);
        if (++counts[piece4(pool, block)] == 1)
            order.push_back(piece4(pool, block));
        block = pool.take(s_cnSize);
    }
    ++counts[piece4(pool, block)];
    pool.close();
    EXPECT_LE(counts[order[0]], 2u);
    EXPECT_LE(counts[order[1]], 4u);
    const unsigned int most = counts[order[order.size() - 2]];
    EXPECT_LE(most, 4096 / s_cnSize);
    EXPECT_GE(most, 4096 / (s_cnSize + s_cnRedZone) - 1);
    for (const auto& [piece, count] : counts)
        CBlockPool::release(piece, count);
}

TEST(BlockPool, aPieceIsFreedWithTheLastOfItsBlocks)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    const long before = CFailingMalloc::liveBlocks();
    {
        CBlockPool pool;
        char* block = nullptr;
        takeFirst(pool, block);
        CBlockPool::tPiece* const piece = piece4(pool, block);
        EXPECT_EQ(CFailingMalloc::liveBlocks(), before + 1);
        CBlockPool::release(piece, 1);
        EXPECT_EQ(CFailingMalloc::liveBlocks(), before + 1);  // others may be taken from it
        pool.close();
        EXPECT_EQ(CFailingMalloc::liveBlocks(), before);
        takeFirst(pool, block);
        CBlockPool::tPiece* const second = piece4(pool, block);
        pool.close();
        EXPECT_EQ(CFailingMalloc::liveBlocks(), before + 1);
        CBlockPool::release(second, 1);
    }
    EXPECT_EQ(CFailingMalloc::liveBlocks(), before);
}

TEST(BlockPool, withoutMemoryForAPieceTheHeapIsAsked)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    CBlockPool pool;
    EXPECT_EQ(pool.take(s_cnSize), nullptr);
    {
        const CFailingMalloc fail(1);
        EXPECT_EQ(pool.take(s_cnSize), nullptr);
        EXPECT_TRUE(fail.hasFailed());
    }
    char* const block = pool.take(s_cnSize);
    ASSERT_NE(block, nullptr);
    CBlockPool::release(piece4(pool, block), 1);
}

TEST(BlockPool, copyOfManySmallContainersMayFailAnywhere)
{
    if (!CFailingMalloc::isMallocReached() || !CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    const CFields tree = load(document(100));
    bool failed = true;
    for (long failAt = 1; failed; ++failAt)
    {
        const long before = CFailingMalloc::liveBlocks();
        {
            CFields copy;
            try
            {
                const CFailingMalloc fail(failAt);
                copy = tree;
                failed = fail.hasFailed();
            }
            catch (const std::exception&)
            {
                failed = true;
            }
            EXPECT_TRUE(copy.isNull() || copy == tree) << failAt;
        }
        ASSERT_EQ(CFailingMalloc::liveBlocks(), before) << failAt;
    }
}

TEST(BlockPool, aLoadThatIsTooDeepGivesBackAllPieces)
{
    const std::string deep = "{\"a\"=[" + document(50) + "," + std::string(1001, '[');
    CLoader4SER loader;
    const long before = CFailingMalloc::liveBlocks();
    {
        CFields tree;
        EXPECT_THROW(loader.loading(deep, tree), CLogicError);
        EXPECT_TRUE(loader.loading(document(50), tree));
        EXPECT_EQ(tree, load(document(50)));
    }
    loader = CLoader4SER();
    EXPECT_LE(CFailingMalloc::liveBlocks(), before + 3);  // what the loader keeps for the next load
}

TEST(BlockPool, aMemberOutlivesItsTree)
{
    CFields kept;
    {
        CFields tree = load(document(200));
        kept = std::move(tree[100]);
    }
    EXPECT_EQ(kept, load(document(200))[100]);
    kept["x"][0] = "changed";
    kept["x"].addArrayAt(5);
    EXPECT_EQ(kept["x"].getChildCount(), 3u);
}

TEST(BlockPool, containersOfALoadedTreeGrowAndShrink)
{
    CFields tree = load(document(300));
    for (unsigned int i = 0; i < 300; i += 3)
    {
        CFields& member = tree[i];
        CFields& first = member["x"];
        for (int n = 0; n < 70; ++n)
            member.addChildRef("n" + std::to_string(n)) = n;
        EXPECT_EQ(&member["x"], &first);  // nothing moved
        EXPECT_EQ(member["n69"].asSint32(), 69);
        tree[i + 1].removeChildAll();
        EXPECT_TRUE(tree[i + 2].removeChildAt("x"));
        tree[i + 2].addChildRef("z") = "new";
    }
    EXPECT_EQ(tree[0].getChildCount(), 72u);
    EXPECT_EQ(tree[1].getChildCount(), 0u);
    EXPECT_EQ(tree[2]["z"].asString(), "new");
}

TEST(BlockPool, nothingIsLeftWhenATreeAndItsCopyAreGone)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    const std::string text = document(500);
    const long before = CFailingMalloc::liveBlocks();
    {
        CLoader4SER loader;
        CFields tree;
        ASSERT_TRUE(loader.loading(text, tree));
        const CFields copy(tree);
        tree.removeAll(DT_null);
        EXPECT_EQ(copy.getChildCount(), 501u);
    }
    EXPECT_EQ(CFailingMalloc::liveBlocks(), before);
}

TEST(BlockPool, halvesOfATreeMayBeDestroyedByTwoThreads)
{
    for (int round = 0; round < 20; ++round)
    {
        CFields tree = load(document(400));
        CFields even(DT_array);
        CFields odd(DT_array);
        for (unsigned int i = 0; i < 400; ++i)
        {
            CFields& to = i % 2 == 0 ? even : odd;
            to.addArrayAt(std::move(tree[i]));
        }
        std::thread other([&] { even.removeAll(DT_null); });
        odd.removeAll(DT_null);
        other.join();
        EXPECT_EQ(tree.getChildCount(), 401u);
    }
}
