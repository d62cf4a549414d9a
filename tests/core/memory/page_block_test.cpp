// tests/core/memory/page_block_test.cpp - large blocks straight from the system.
#include "core/memory/page_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <thread>

#include "tests/support/large_pages.h"
#include "tests/support/sanitized.h"

using namespace murv;
using namespace murv::detail;
using namespace murv::tests;
// Where this fails, the other tests here would be left out.
TEST(PageBlock, linuxHasThem)
{
#if defined(__linux__) && !defined(MURV_TEST_SANITIZED)
    EXPECT_TRUE(hasLargePages());
#else
    EXPECT_FALSE(hasLargePages());
#endif
}

TEST(PageBlock, beginsAtALargePage)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: there are no large pages here";
    for (const std::size_t pages : {std::size_t{1}, std::size_t{3}})
    {
        auto* const block = static_cast<unsigned char*>(mapPages(pages * s_cnLargePage));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % s_cnLargePage, 0u);
        std::memset(block, 1, pages * s_cnLargePage);  // all of it is there
        unmapPages(block, pages * s_cnLargePage);
    }
}

// New pages are zero, so a mark shows that a block was kept.
TEST(PageBlock, eightAreKeptForTheNextOnes)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: there are no large pages here";
    unsigned char* block[12];
    for (unsigned char*& place : block)
    {
        place = static_cast<unsigned char*>(mapPages(s_cnLargePage));
        ASSERT_NE(place, nullptr);
        place[100] = 1;
    }
    for (unsigned char* const place : block)
        unmapPages(place, s_cnLargePage);
    int kept = 0;
    for (unsigned char*& place : block)
    {
        place = static_cast<unsigned char*>(mapPages(s_cnLargePage));
        ASSERT_NE(place, nullptr);
        kept += place[100];
    }
    EXPECT_EQ(kept, 8);
    std::sort(std::begin(block), std::end(block), std::less<>());
    EXPECT_EQ(std::unique(std::begin(block), std::end(block)), std::end(block));  // nobody shares one
    for (unsigned char* const place : block)
        unmapPages(place, s_cnLargePage);
}

TEST(PageBlock, threadsShareNone)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: there are no large pages here";
    const auto use = [](unsigned char mark) {
        for (int i = 0; i < 2000; ++i)
        {
            auto* const block = static_cast<unsigned char*>(mapPages(s_cnLargePage));
            ASSERT_NE(block, nullptr);
            block[0] = block[s_cnLargePage - 1] = mark;
            std::this_thread::yield();
            ASSERT_EQ(block[0], mark);
            ASSERT_EQ(block[s_cnLargePage - 1], mark);
            unmapPages(block, s_cnLargePage);
        }
    };
    std::thread other(use, static_cast<unsigned char>(1));
    use(2);
    other.join();
}

TEST(PageBlock, thereIsNoneWithoutMemory)
{
    errno = 7;
    EXPECT_EQ(mapPages(SIZE_MAX / s_cnLargePage * s_cnLargePage - 2 * s_cnLargePage), nullptr);
    EXPECT_EQ(errno, 7);
}
