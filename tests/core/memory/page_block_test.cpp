// tests/core/memory/page_block_test.cpp - large blocks straight from the system.
#include "core/memory/page_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <string>
#include <thread>

#include "murv/fields.h"
#include "murv/loader.h"
#include "murv/saver.h"
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

TEST(PageBlock, aLargeSetLiesInThem)
{
    const std::size_t before = mappedBytes();
    {
        CFields set(DT_fields);
        for (int i = 0; i < 200000; ++i)
            set.addChildRef("n" + std::to_string(i)) = i;
        EXPECT_TRUE(!hasLargePages() || mappedBytes() >= before + 200000 * sizeof(CFields));
        EXPECT_EQ(set["n123456"].asSint32(), 123456);
        set.removeChildAt(0U);
        EXPECT_EQ(set.getChildAt(199998).asSint32(), 199999);
        EXPECT_EQ(set["n123456"].asSint32(), 123456);
        const CFields copy(set);
        set.removeAll(DT_null);
        EXPECT_EQ(copy["n199999"].asSint32(), 199999);
    }
    EXPECT_EQ(mappedBytes(), before);
}

TEST(PageBlock, theOneBlockOfACopyOrOfABinaryFileLiesInThemFrom32MegabytesOn)
{
    constexpr unsigned int least = (32U << 20) / sizeof(CFields);
    for (const unsigned int count : {least - 1, least})  // and some bytes for the head
    {
        CFields list(DT_array);
        for (unsigned int i = 0; i < count; ++i)
            list.addArrayAt(i);
        const std::string file = CSaver4BER_BASIC().saving(list);
        const std::size_t before = mappedBytes();
        const std::size_t most = hasLargePages() && count == least ? before + (34U << 20) : before;
        {
            CFields copy(list);
            EXPECT_EQ(mappedBytes(), most);
            copy.addArrayAt("one more");
            copy.removeChildAt(0U);
            EXPECT_EQ(copy.getChildAt(count - 2).asUint32(), count - 1);
            EXPECT_EQ(copy.getChildAt(count - 1).asString(), "one more");
            copy.removeChildAll();
            EXPECT_EQ(mappedBytes(), before);
        }
        {
            CFields loaded;
            ASSERT_TRUE(CLoader4BER().loading(file, loaded));
            EXPECT_GE(mappedBytes(), most);
            EXPECT_EQ(loaded, list);
        }
        EXPECT_EQ(mappedBytes(), before);
    }
}

TEST(PageBlock, smallBlocksAreOfTheHeap)
{
    const std::size_t before = mappedBytes();
    void* const block = allocateLarge(s_cnLargePage / 2);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(mappedBytes(), before);
    freeLarge(block, s_cnLargePage / 2);
    freeLarge(nullptr, s_cnLargePage);
    void* const longer = allocateExact(s_cullExactPagesFrom - 1);
    ASSERT_NE(longer, nullptr);
    EXPECT_EQ(mappedBytes(), before);
    freeExact(longer, s_cullExactPagesFrom - 1);
    freeExact(nullptr, s_cullExactPagesFrom);
}

TEST(PageBlock, thereIsNoneWithoutMemory)
{
    errno = 7;
    EXPECT_EQ(mapPages(SIZE_MAX / s_cnLargePage * s_cnLargePage - 2 * s_cnLargePage), nullptr);
    EXPECT_EQ(allocateExact(UINT64_MAX), nullptr);
    EXPECT_EQ(allocateExact(UINT64_MAX / 4), nullptr);
    EXPECT_EQ(errno, 7);
}
