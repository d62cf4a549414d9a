// tests/core/memory/page_chunk_test.cpp - parts of large pages: none is given out twice, none is lost.
#include "core/memory/page_chunk.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/large_pages.h"

#ifdef MURV_HAS_LARGE_PAGES
#include <sys/mman.h>
#endif

using namespace murv::detail;
using namespace murv::tests;

namespace
{

struct tBlock
{
    unsigned char* m_pBegin = nullptr;
    std::size_t m_nChunks = 0;
    unsigned char m_ucMark = 0;
};

std::uintptr_t page4(const void* block)
{
    return reinterpret_cast<std::uintptr_t>(block) / s_cnLargePage;
}

/// Marks both ends of each chunk.
template <typename tAction>
void forEachEnd(const tBlock& block, tAction&& action)
{
    for (std::size_t chunk = 0; chunk != block.m_nChunks; ++chunk)
    {
        action(block.m_pBegin[chunk * s_cnChunk]);
        action(block.m_pBegin[(chunk + 1) * s_cnChunk - 1]);
    }
}

tBlock take(std::size_t chunks, unsigned int mark = 0)
{
    const tBlock block{static_cast<unsigned char*>(takeChunks(chunks)), chunks, static_cast<unsigned char>(mark)};
    if (block.m_pBegin != nullptr)
        forEachEnd(block, [&block](unsigned char& end) { end = block.m_ucMark; });
    return block;
}

/// Whether nobody else has written there.
bool isWhole(const tBlock& block)
{
    bool whole = true;
    forEachEnd(block, [&](unsigned char end) { whole = whole && end == block.m_ucMark; });
    return whole;
}

void give(const tBlock& block)
{
    giveChunks(block.m_pBegin, block.m_nChunks);
}

/// Bytes of the process for which large pages are asked for; 0 where the system does not tell.
std::size_t advisedBytes()
{
    std::ifstream maps("/proc/self/smaps");
    std::size_t bytes = 0;
    std::size_t kilobytes = 0;
    for (std::string line; std::getline(maps, line);)
    {
        if (line.rfind("Size:", 0) == 0)
            kilobytes = std::strtoul(line.c_str() + 5, nullptr, 10);
        else if (line.rfind("VmFlags:", 0) == 0 && line.find(" hg") != std::string::npos)
            bytes += kilobytes * 1024;
    }
    return bytes;
}

/// Takes and gives back blocks at random, some at a time. \return how many were damaged
int takeAndGive(unsigned int seed, int steps)
{
    std::mt19937 engine(seed);
    std::vector<tBlock> held;
    const auto random = [&engine] { return static_cast<unsigned int>(engine()); };
    int damaged = 0;
    for (int step = 0; step < steps; ++step)
    {
        if (held.size() < 24 && random() % 2 == 0)
            held.push_back(take(random() % 3 == 0 ? random() % s_cnMostChunks + 1 : random() % 3 + 1, random()));
        if (held.empty() || random() % 2 == 0)
            continue;
        std::swap(held[random() % held.size()], held.back());
        damaged += isWhole(held.back()) ? 0 : 1;
        give(held.back());
        held.pop_back();
    }
    for (const tBlock& block : held)
    {
        damaged += isWhole(block) ? 0 : 1;
        give(block);
    }
    return damaged;
}

}  // namespace

#define MURV_NEEDS_LARGE_PAGES() \
    if (!hasLargePages())        \
    GTEST_SKIP() << "NOT TESTED: there are no large pages here"

TEST(PageChunk, onePageServesMany)
{
    MURV_NEEDS_LARGE_PAGES();
    dropKeptPages();
    std::vector<tBlock> blocks;
    std::set<std::uintptr_t> pages;
    for (std::size_t i = 0; i < s_cnMostChunks; ++i)
    {
        blocks.push_back(take(1, static_cast<unsigned int>(i)));
        ASSERT_NE(blocks.back().m_pBegin, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back().m_pBegin) % s_cnChunk, 0U);
        pages.insert(page4(blocks.back().m_pBegin));
    }
    EXPECT_EQ(pages.size(), 1U);
    const tBlock other = take(1);
    EXPECT_EQ(pages.count(page4(other.m_pBegin)), 0U);  // it is full
    give(other);
    for (const tBlock& block : blocks)
    {
        EXPECT_TRUE(isWhole(block));
        give(block);
    }
}

TEST(PageChunk, aBlockIsTheFirstRunThatIsLongEnough)
{
    MURV_NEEDS_LARGE_PAGES();
    dropKeptPages();
    std::vector<tBlock> blocks;
    for (int i = 0; i < 10; ++i)
        blocks.push_back(take(1));
    for (const int i : {1, 4, 5, 7, 8, 9})
        give(blocks[static_cast<std::size_t>(i)]);
    // Not in use: chunk 1, chunks 4 and 5, and all from 7 on.
    const auto expect = [&blocks](std::size_t chunks, std::size_t place) {
        const tBlock block = take(chunks);
        EXPECT_EQ(block.m_pBegin, blocks[0].m_pBegin + place * s_cnChunk) << chunks;
        return block;
    };
    const tBlock three = expect(3, 7);
    const tBlock two = expect(2, 4);
    const tBlock one = expect(1, 1);
    const tBlock rest = expect(s_cnMostChunks - 10, 10);
    for (const tBlock& block : {three, two, one, rest, blocks[0], blocks[2], blocks[3], blocks[6]})
        give(block);
}

TEST(PageChunk, aFullPageServesAgainWhenHalfOfItIsGivenBack)
{
    MURV_NEEDS_LARGE_PAGES();
    dropKeptPages();
    std::vector<tBlock> blocks;
    for (std::size_t i = 0; i < s_cnMostChunks; ++i)
        blocks.push_back(take(1));
    for (std::size_t i = 0; i < 20; ++i)
        give(blocks[i]);
    for (std::size_t i = 0; i < 20; ++i)
    {
        blocks[i] = take(1);
        EXPECT_EQ(page4(blocks[i].m_pBegin), page4(blocks.back().m_pBegin)) << i;
    }
    for (const tBlock& block : blocks)
        give(block);
}

// Pages that hold little are used up before others; so what lives long does not keep many pages.
TEST(PageChunk, pagesHoldAtMostTwiceWhatIsInUse)
{
    MURV_NEEDS_LARGE_PAGES();
    dropKeptPages();
    const std::size_t advised = advisedBytes();
    std::mt19937 random(3);
    std::vector<tBlock> held;
    for (int step = 0; step < 50000; ++step)
    {
        if (held.size() == 1000)
        {
            std::swap(held[random() % held.size()], held.back());
            give(held.back());
            held.pop_back();
        }
        held.push_back(take(random() % 8 + 1));
    }
    std::size_t chunks = 0;
    for (const tBlock& block : held)
        chunks += block.m_nChunks;
    EXPECT_LE(advisedBytes() - advised, 2 * chunks * s_cnChunk + 8 * s_cnLargePage);  // and those that are kept
    for (const tBlock& block : held)
        give(block);
    dropKeptPages();
    EXPECT_EQ(advisedBytes(), advised);
}

TEST(PageChunk, whatIsInUseIsCounted)
{
    MURV_NEEDS_LARGE_PAGES();
    const std::size_t before = mappedBytes();
    const tBlock longest = take(s_cnMostChunks);
    EXPECT_EQ(mappedBytes(), before + s_cnMostChunks * s_cnChunk);
    const tBlock one = take(1);
    EXPECT_EQ(mappedBytes(), before + (s_cnMostChunks + 1) * s_cnChunk);
    give(longest);
    EXPECT_EQ(mappedBytes(), before + s_cnChunk);
    give(one);
    EXPECT_EQ(mappedBytes(), before);
}

#ifdef MURV_HAS_LARGE_PAGES
TEST(PageChunk, pagesThatNobodyUsesCanBeDropped)
{
    MURV_NEEDS_LARGE_PAGES();
    const auto isMapped = [](const tBlock& block) {
        unsigned char state[s_cnChunk / 4096];
        return mincore(block.m_pBegin, s_cnChunk, state) == 0;
    };
    dropKeptPages();
    const tBlock used = take(1);
    const tBlock longest = take(s_cnMostChunks);
    give(longest);
    EXPECT_TRUE(isMapped(longest));  // kept for the next
    dropKeptPages();
    EXPECT_FALSE(isMapped(longest));
    EXPECT_TRUE(isWhole(used));
    give(used);
    EXPECT_TRUE(isMapped(used));
    dropKeptPages();
    EXPECT_FALSE(isMapped(used));
}
#endif

TEST(PageChunk, randomBlocksAreApart)
{
    MURV_NEEDS_LARGE_PAGES();
    const std::size_t before = mappedBytes();
    dropKeptPages();
    const std::size_t advised = advisedBytes();
    EXPECT_EQ(takeAndGive(1, 4000), 0);
    EXPECT_EQ(mappedBytes(), before);
    dropKeptPages();
    EXPECT_EQ(advisedBytes(), advised);
}

TEST(PageChunk, threadsShareNone)
{
    MURV_NEEDS_LARGE_PAGES();
    const std::size_t before = mappedBytes();
    dropKeptPages();
    const std::size_t advised = advisedBytes();
    int damaged[4] = {};
    std::vector<std::thread> threads;
    for (unsigned int number = 0; number < 4; ++number)
        threads.emplace_back([&damaged, number] { damaged[number] = takeAndGive(number + 2, 1000); });
    for (std::thread& thread : threads)
        thread.join();
    for (const int count : damaged)
        EXPECT_EQ(count, 0);
    EXPECT_EQ(mappedBytes(), before);
    dropKeptPages();
    EXPECT_EQ(advisedBytes(), advised);
}

// One thread's blocks are given back by another.
TEST(PageChunk, otherThreadsMayGiveBack)
{
    MURV_NEEDS_LARGE_PAGES();
    const std::size_t before = mappedBytes();
    for (int round = 0; round < 20; ++round)
    {
        std::vector<tBlock> blocks;
        for (int i = 0; i < 50; ++i)
            blocks.push_back(take(1, static_cast<unsigned int>(i)));
        std::thread other([&blocks] {
            for (std::size_t i = 0; i < blocks.size(); i += 2)
                give(blocks[i]);
        });
        for (std::size_t i = 1; i < blocks.size(); i += 2)
            give(blocks[i]);
        other.join();
    }
    EXPECT_EQ(mappedBytes(), before);
}

TEST(PageChunk, errnoIsLeftAlone)
{
    errno = 7;
    const tBlock block = take(1);
    if (block.m_pBegin != nullptr)
        give(block);
    dropKeptPages();
    EXPECT_EQ(errno, 7);
}
