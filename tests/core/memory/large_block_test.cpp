// tests/core/memory/large_block_test.cpp - where large blocks of trees lie.
#include "core/memory/large_block.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

#include "core/memory/page_chunk.h"
#include "murv/fields.h"
#include "murv/loader.h"
#include "murv/saver.h"
#include "tests/support/large_pages.h"

using namespace murv;
using namespace murv::detail;
using namespace murv::tests;

TEST(LargeBlock, aLargeSetLiesInPages)
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

TEST(LargeBlock, theOneBlockOfACopyOrOfABinaryFileLiesInPagesFrom32MegabytesOn)
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

TEST(LargeBlock, smallBlocksAreOfTheHeap)
{
    const std::size_t before = mappedBytes();
    void* const block = allocateLarge(128 * 1024);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(mappedBytes(), before);
    freeLarge(block, 128 * 1024);
    freeLarge(nullptr, s_cnLargePage);
    void* const longer = allocateExact(s_cullExactPagesFrom - 1);
    ASSERT_NE(longer, nullptr);
    EXPECT_EQ(mappedBytes(), before);
    freeExact(longer, s_cullExactPagesFrom - 1);
    freeExact(nullptr, s_cullExactPagesFrom);
}

TEST(LargeBlock, thereIsNoneWithoutMemory)
{
    if (!hasLargePages())
        GTEST_SKIP() << "NOT TESTED: these blocks are of the heap here, which may end the program";
    errno = 7;
    EXPECT_EQ(allocateExact(UINT64_MAX - 100), nullptr);
    EXPECT_EQ(allocateExact((UINT64_MAX >> 1) - 100), nullptr);
    EXPECT_EQ(errno, 7);
}

TEST(LargeBlock, whatPagesHoldWellLiesInThem)
{
    const std::size_t before = mappedBytes();
    for (const unsigned int kilobytes : {128U, 256U, 512U, 1024U, 2048U, 8192U})
    {
        const std::uint64_t size = kilobytes * std::uint64_t{1024};
        const bool isOfPages = hasLargePages() && kilobytes != 128 && kilobytes != 1024;
        void* const block = allocateLarge(size);
        ASSERT_NE(block, nullptr);
        std::memset(block, 1, size);
        EXPECT_EQ(mappedBytes(), before + (isOfPages ? size : 0)) << size;
        freeLarge(block, size);
        EXPECT_EQ(mappedBytes(), before) << size;
    }
}
