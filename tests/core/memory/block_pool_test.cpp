// tests/core/memory/block_pool_test.cpp - blocks out of pieces, and trees whose containers lie in them.
#include "core/memory/block_pool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "murv/loader.h"
#include "murv/saver.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/large_pages.h"

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

/// A forecast that is always the same.
struct tFixedForecast final : IPoolForecast
{
    explicit tFixedForecast(double done) : m_dDone(done)
    {
    }
    double partDone() const noexcept override
    {
        return m_dDone;
    }
    const double m_dDone;
};

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

// What a member keeps when its tree goes is little beside the tree.
TEST(BlockPool, aPieceIsAPageOrAnEighthOfAllBeforeIt)
{
    CBlockPool pool;
    char* block = nullptr;
    takeFirst(pool, block);
    std::map<CBlockPool::tPiece*, std::size_t> counts;
    std::size_t longest = 0;
    for (std::size_t taken = 1; taken < 20000; ++taken)
    {
        ASSERT_NE(block, nullptr);
        const std::size_t bytes = ++counts[piece4(pool, block)] * (s_cnSize + s_cnRedZone);
        EXPECT_LE(bytes, std::max(std::size_t{4096}, taken * (s_cnSize + s_cnRedZone) / 7)) << taken;
        longest = std::max(longest, bytes);
        block = pool.take(s_cnSize);
    }
    ++counts[piece4(pool, block)];
    pool.close();
    EXPECT_LE(longest, 65536u);
    EXPECT_GE(longest, 60000u);
    for (const auto& [piece, count] : counts)
        CBlockPool::release(piece, static_cast<std::uint32_t>(count));
}

TEST(BlockPool, aLargeTreeGetsLargePages)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: there are no large pages here";
    const tFixedForecast begun(0.001);
    CBlockPool pool;
    pool.begin(&begun);
    std::map<CBlockPool::tPiece*, std::uint32_t> counts;
    bool isLarge = false;
    for (int i = 0; i < 100000; ++i)
    {
        if (char* const block = pool.take(s_cnSize))
        {
            ++counts[piece4(pool, block)];
            isLarge = isLarge || piece4(pool, block)->m_uiChunks != 0;
        }
    }
    pool.close();
    ASSERT_TRUE(isLarge);
    EXPECT_LT(counts.size(), 80u);
    for (const auto& [piece, count] : counts)
    {
        EXPECT_TRUE(piece->m_uiChunks == 0 || reinterpret_cast<std::uintptr_t>(piece) % s_cnChunk == 0);
        // One of sixteen to thirty would leave a gap that none of its like fits.
        EXPECT_TRUE(piece->m_uiChunks <= s_cnMostChunks / 2 || piece->m_uiChunks == s_cnMostChunks);
        CBlockPool::release(piece, count);
    }
}

// Else a long block would waste the rest of the piece that it does not fit.
TEST(BlockPool, aPieceServesOnAfterALongBlock)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: there are no large pages here";
    const tFixedForecast begun(0.1);
    CBlockPool pool;
    pool.begin(&begun);
    std::map<CBlockPool::tPiece*, std::uint32_t> counts;
    CBlockPool::tPiece* before = nullptr;
    while (before == nullptr || before->m_uiChunks == 0)
    {
        if (char* const block = pool.take(s_cnSize))
            ++counts[before = piece4(pool, block)];
    }
    char* const longer = pool.take(2 * s_cnChunk - 2000);  // a little is left after it
    ASSERT_NE(longer, nullptr);
    ++counts[piece4(pool, longer)];
    EXPECT_NE(piece4(pool, longer), before);
    const std::size_t pieces = counts.size();
    for (int i = 0; i < 100; ++i)
        ++counts[piece4(pool, pool.take(s_cnSize))];
    EXPECT_EQ(counts.size(), pieces);
    pool.close();
    for (const auto& [piece, count] : counts)
        CBlockPool::release(piece, count);
}

TEST(BlockPool, aTreeThatIsNearlyDoneGetsNoLargePages)
{
    const tFixedForecast nearlyDone(0.99);
    CBlockPool pool;
    pool.begin(&nearlyDone);
    std::map<CBlockPool::tPiece*, std::uint32_t> counts;
    for (int i = 0; i < 10000; ++i)
    {
        if (char* const block = pool.take(s_cnSize))
            ++counts[piece4(pool, block)];
    }
    pool.close();
    for (const auto& [piece, count] : counts)
    {
        EXPECT_EQ(piece->m_uiChunks, 0U);
        CBlockPool::release(piece, count);
    }
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

TEST(BlockPool, stringsOfALoadedTreeChange)
{
    CFields tree = load("[" + std::string(300, ',') + "\"first\",\"second\",\"third\",\"fourth\",\"\",\"sixth\"]");
    tree[300] = "another text, which is longer";
    EXPECT_TRUE(tree[301].resizeCodes(9, '!'));
    EXPECT_TRUE(tree[302].resizeCodes(2, 0));
    EXPECT_TRUE(tree[303].resizeCodes(6, 0));
    EXPECT_TRUE(tree[304].resizeCodes(3, 'x'));
    tree[305].swapValue(tree[300], false);
    EXPECT_EQ(tree[300].asString(), "sixth");
    EXPECT_EQ(tree[301].asString(), "second!!!");
    EXPECT_EQ(tree[302].asString(), "th");
    EXPECT_EQ(tree[303].asString(), "fourth");
    EXPECT_EQ(tree[304].asString(), "xxx");
    EXPECT_EQ(tree[305].asString(), "another text, which is longer");
    tree.removeChildAt(301);
    EXPECT_EQ(tree[301].asString(), "th");
}

// Applications read the length there.
TEST(BlockPool, stringsOfLoadedTreesAndCopiesHaveTheirLengthBeforeThem)
{
    const auto prefix = [](const CFields& node) {
        std::uint32_t length = 0;
        std::memcpy(&length, node.getValueRef().m_pData, sizeof length);
        return length;
    };
    const CFields tree = load("[" + std::string(300, ',') + "\"first\",\"\"]");
    const CFields copy(tree);
    EXPECT_EQ(prefix(tree[300]), 5U);
    EXPECT_EQ(prefix(copy[300]), 5U);
    EXPECT_STREQ(copy[300].getValueRef().m_pData + 4, "first");
    EXPECT_EQ(prefix(copy[301]), 0U);
}

TEST(BlockPool, forecastsOfDeepTreesHaveBounds)
{
    CFields tree(DT_array);
    CFields* list = &tree;
    for (int level = 0; level < 40; ++level)
    {
        for (int i = 0; i < 16; ++i)
            list->addArrayAt(DT_array);
        list = &(*list)[0U];
    }
    for (int i = 0; i < 20000; ++i)
        list->addArrayAt("some text");
    EXPECT_EQ(CFields(tree), tree);
}

TEST(BlockPool, aStringThatCannotBeResizedStays)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    CFields tree = load("[" + std::string(300, ',') + "\"first\"]");
    {
        const CFailingMalloc fail(1);
        EXPECT_TRUE(tree[300].resizeCodes(9, 0));
        EXPECT_TRUE(fail.hasFailed());
    }
    EXPECT_EQ(tree[300].asString(), "first");
}

TEST(BlockPool, longStringsAndContainersAreWhole)
{
    CFields tree(DT_array);
    for (unsigned int length = 980; length < 1060; ++length)
    {
        tree.addArrayAt(std::string(length, 'x').c_str());
        CFields& list = tree.addArrayAt(DT_array);
        for (unsigned int i = 0; i < length / 16; ++i)
            list.addArrayAt(static_cast<int>(i));
    }
    for (const auto rule : {static_cast<unsigned char>(ER_SER_PKT), static_cast<unsigned char>(ER_BER)})
    {
        CSavers saver;
        const std::string text = saver.saving(tree, rule);
        CFields loaded;
        CLoaders loader;
        ASSERT_TRUE(loader.loading(text, loaded));
        EXPECT_EQ(loaded, tree) << static_cast<int>(rule);
        EXPECT_EQ(CFields(loaded), tree) << static_cast<int>(rule);
    }
}

TEST(BlockPool, allPagesAreGivenBack)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: there are no large pages here";
    const std::string text = document(60000);
    const std::size_t before = mappedBytes();
    {
        CFields tree = load(text);
        const std::size_t loaded = mappedBytes();
        EXPECT_GE(loaded, before + 4 * CBlockPool::s_cnLongestPiece);
        CFields copy(tree);
        EXPECT_GE(mappedBytes(), loaded + 4 * CBlockPool::s_cnLongestPiece);
        tree.removeAll(DT_null);
        EXPECT_EQ(copy, load(text));
        const CFields second(copy);
        copy.removeAll(DT_null);
        EXPECT_EQ(second, load(text));
    }
    EXPECT_EQ(mappedBytes(), before);
}

TEST(BlockPool, aTreeFromABinaryFileGetsLargePages)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: there are no large pages here";
    const CFields tree = load(document(60000));
    for (const char* const password : {"", "a password"})
    {
        const std::string file = CSaver4BER_BASIC().saving(tree, SAVE_ALL, password);
        const std::size_t before = mappedBytes();
        {
            CLoader4BER loader;
            CFields loaded;
            ASSERT_TRUE(loader.loading(file, loaded, password)) << loader.getLastErrMsg();
            EXPECT_GE(mappedBytes(), before + 4 * CBlockPool::s_cnLongestPiece);
            EXPECT_EQ(loaded, tree);
        }
        EXPECT_EQ(mappedBytes(), before);
    }
}

TEST(BlockPool, aMemberThatIsKeptKeepsOnePiece)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: there are no large pages here";
    const std::string text = document(60000);
    const std::size_t before = mappedBytes();
    std::vector<CFields> kept;
    kept.reserve(8);
    for (int round = 0; round < 8; ++round)
        kept.push_back(std::move(load(text)[30000]));
    EXPECT_LE(mappedBytes(), before + 8 * CBlockPool::s_cnLongestPiece);
    EXPECT_GT(mappedBytes(), before);
    for (const CFields& member : kept)
        EXPECT_EQ(member, kept[0]);
}
