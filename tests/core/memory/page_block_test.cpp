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

#include "tests/support/sanitized.h"

using namespace murv::detail;
TEST(PageBlock, beginsAtALargePage)
{
#ifdef MURV_TEST_SANITIZED
    GTEST_SKIP() << "NOT TESTED: AddressSanitizer watches blocks of the heap only";
#endif
    for (const std::size_t pages : {std::size_t{1}, std::size_t{3}})
    {
        auto* const block = static_cast<unsigned char*>(mapPages(pages * s_cnLargePage));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % s_cnLargePage, 0u);
        std::memset(block, 1, pages * s_cnLargePage);  // all of it is there
        unmapPages(block, pages * s_cnLargePage);
    }
}

TEST(PageBlock, someAreKeptForTheNextOne)
{
#ifdef MURV_TEST_SANITIZED
    GTEST_SKIP() << "NOT TESTED: AddressSanitizer watches blocks of the heap only";
#endif
    void* block[8];
    for (void*& place : block)
        place = mapPages(s_cnLargePage);
    for (void* const place : block)
        unmapPages(place, s_cnLargePage);
    int again = 0;
    void* second[8];
    for (void*& place : second)
    {
        place = mapPages(s_cnLargePage);
        again += std::count(std::begin(block), std::end(block), place) != 0 ? 1 : 0;
    }
    EXPECT_GE(again, 4);
    std::sort(std::begin(second), std::end(second), std::less<>());
    EXPECT_EQ(std::unique(std::begin(second), std::end(second)), std::end(second));  // nobody shares one
    for (void* const place : second)
        unmapPages(place, s_cnLargePage);
}

TEST(PageBlock, threadsShareNone)
{
    const auto use = [](unsigned char mark) {
        for (int i = 0; i < 2000; ++i)
        {
            auto* const block = static_cast<unsigned char*>(mapPages(s_cnLargePage));
            if (block == nullptr)
                return;  // tested elsewhere
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
    EXPECT_EQ(mapPages(SIZE_MAX / 2 / s_cnLargePage * s_cnLargePage), nullptr);
    EXPECT_EQ(errno, 7);
}
