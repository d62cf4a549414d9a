// tests/core/flags_test.cpp - the 32-bit flag words.
#include "murv/flags.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace
{

using namespace murv;

TEST(BitCombi32, beginsWithItsArgument)
{
    EXPECT_EQ(0u, CBitCombi32().BC32_Get());
    EXPECT_EQ(0xF0u, CBitCombi32(0xF0).BC32_Get());
    const CBitCombi32 word(7);
    EXPECT_EQ(7u, CBitCombi32(word).BC32_Get());
}

TEST(BitCombi32, setReplacesTheWord)
{
    CBitCombi32 word(1);
    EXPECT_EQ(0xFFFFFFFFu, word.BC32_Set(0xFFFFFFFF));
    EXPECT_EQ(0xFFFFFFFFu, word.BC32_Get());
}

TEST(BitCombi32, orSetsTheBitsOfTheMask)
{
    CBitCombi32 word(0x30);
    EXPECT_EQ(0x35u, word.BC32_Or(0x15));
    EXPECT_EQ(0x35u, word.BC32_Get());
}

TEST(BitCombi32, nandClearsTheBitsOfTheMask)
{
    CBitCombi32 word(0x30);
    EXPECT_EQ(0x20u, word.BC32_Nand(0x10));
    EXPECT_EQ(0x20u, word.BC32_Get());
    EXPECT_EQ(0x20u, word.BC32_Nand(0x0F));
}

TEST(BitCombi32, checkIsTrueForAnyBitOfTheMask)
{
    const CBitCombi32 word(0x30);
    EXPECT_TRUE(word.BC32_Check(0x10));
    EXPECT_TRUE(word.BC32_Check(0x11));
    EXPECT_FALSE(word.BC32_Check(0x0F));
    EXPECT_FALSE(word.BC32_Check(0));
    EXPECT_FALSE(CBitCombi32(0xFFFFFFFF).BC32_Check(0));
}

TEST(BitCombi32, checkAndSetReplacesTheWholeWordWhenABitIsSet)
{
    CBitCombi32 word(0x30);
    EXPECT_TRUE(word.BC32_ChecknSet(0x10, 5));
    EXPECT_EQ(5u, word.BC32_Get());
    word.BC32_Set(0x20);
    EXPECT_FALSE(word.BC32_ChecknSet(0x10, 5));
    EXPECT_EQ(0x20u, word.BC32_Get());
}

TEST(BitCombi32, countingUpSkipsZero)
{
    CBitCombi32 word(0);
    EXPECT_EQ(1u, word.BC32_Inc());
    word.BC32_Set(4294967294);
    EXPECT_EQ(4294967295u, word.BC32_Inc());
    EXPECT_EQ(1u, word.BC32_Inc());
    EXPECT_EQ(1u, word.BC32_Get());
}

TEST(BitCombi32, countingDownStaysAtZero)
{
    CBitCombi32 word(2);
    EXPECT_EQ(1u, word.BC32_Dec());
    EXPECT_EQ(0u, word.BC32_Dec());
    EXPECT_EQ(0u, word.BC32_Dec());
    EXPECT_EQ(0u, word.BC32_Get());
}

TEST(BitCombi32, assignmentTakesTheWordAndReturnsItself)
{
    CBitCombi32 word;
    EXPECT_EQ(&word, &(word = 5));
    EXPECT_EQ(5u, word.BC32_Get());
    EXPECT_EQ(&word, &(word = -1));
    EXPECT_EQ(0xFFFFFFFFu, word.BC32_Get());
    EXPECT_EQ(&word, &(word = 0x80000000u));
    EXPECT_EQ(0x80000000u, word.BC32_Get());
    const CBitCombi32 other(9);
    EXPECT_EQ(&word, &(word = other));
    EXPECT_EQ(9u, word.BC32_Get());
}

TEST(BitCombi32, equalityCompares32Bits)
{
    EXPECT_TRUE(CBitCombi32(5) == 5);
    EXPECT_FALSE(CBitCombi32(5) == 6);
    EXPECT_TRUE(CBitCombi32(0xFFFFFFFF) == -1);
}

TEST(LoaderConfig, defaultIs0x30)
{
    EXPECT_TRUE(CLoaderConfig() == 0x30);
    EXPECT_EQ(0x30u, CLoaderConfig().BC32_Get());
    EXPECT_EQ(0u, CLoaderConfig(0).BC32_Get());
}

TEST(LoaderConfig, isAFlagWord)
{
    static_assert(std::is_base_of_v<CBitCombi32, CLoaderConfig>);
    static_assert(sizeof(CLoaderConfig) == sizeof(CBitCombi32));
    static_assert(std::has_virtual_destructor_v<CBitCombi32>);
    CLoaderConfig config;
    CBitCombi32& base = config;
    EXPECT_EQ(&base, &(base = 3));
    EXPECT_TRUE(config == 3);
    EXPECT_EQ(&base, &(base = 4u));
    EXPECT_TRUE(base == 4);
    EXPECT_EQ(&base, &(base = CBitCombi32(8)));
    EXPECT_EQ(8u, config.BC32_Get());
}

TEST(LoaderConfig, copiesAndAssigns)
{
    CLoaderConfig config(0x55);
    const CLoaderConfig copy(config);
    EXPECT_TRUE(copy == 0x55);
    config = 1;
    EXPECT_TRUE(config == 1);
    config = 2u;
    EXPECT_TRUE(config == 2);
    config = copy;
    EXPECT_TRUE(config == 0x55);
    config = CBitCombi32(3);
    EXPECT_TRUE(config == 3);
}

TEST(LoaderConfig, bitsHaveTheirValues)
{
    EXPECT_EQ(0x01u, LCBC_ROOT_CONTAINER);
    EXPECT_EQ(0x02u, LCBC_NUMBER_NAME);
    EXPECT_EQ(0x04u, LCBC_POSITIVE_LENGTH);
    EXPECT_EQ(0x08u, LCBC_UNICODE_UTF8);
    EXPECT_EQ(0x10u, LCBC_COMMENT);
    EXPECT_EQ(0x20u, LCBC_EMPTY_NULL);
    EXPECT_EQ(0x40u, LCBC_DUPLICATE);
}

}  // namespace
