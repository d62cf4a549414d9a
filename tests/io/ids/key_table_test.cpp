// tests/io/ids/key_table_test.cpp - the table that a load remembers things in, against the standard one.
#include "io/ids/key_table.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

using namespace murv::detail;

TEST(KeyTable, findsNothingWhenEmpty)
{
    CKeyTable<std::uint64_t, int> table;
    EXPECT_EQ(table.find(0), nullptr);
    table.clear();
    EXPECT_EQ(table.find(0), nullptr);
}

TEST(KeyTable, entersAKeyOnce)
{
    CKeyTable<std::uint64_t, int> table;
    bool isNew = false;
    EXPECT_EQ(table.enter(7, 1, isNew), 1);
    EXPECT_TRUE(isNew);
    EXPECT_EQ(table.enter(7, 2, isNew), 1);
    EXPECT_FALSE(isNew);
    *table.find(7) = 3;
    EXPECT_EQ(*table.find(7), 3);
}

TEST(KeyTable, holdsWhatAMapHolds)
{
    std::mt19937_64 random(1);
    CKeyTable<std::uint64_t, std::uint64_t> table;
    for (const std::uint64_t range : {std::uint64_t{50}, std::uint64_t{5000}, std::uint64_t{1} << 60})
    {
        table.clear();
        std::map<std::uint64_t, std::uint64_t> map;
        for (int i = 0; i < 5000; ++i)
        {
            const std::uint64_t key = random() % range;
            bool isNew = false;
            const std::uint64_t value = table.enter(key, random(), isNew);
            EXPECT_EQ(isNew, map.try_emplace(key, value).second);
            const std::uint64_t other = random() % range;
            EXPECT_EQ(table.find(other) != nullptr, map.count(other) != 0);
        }
        for (const auto& [key, value] : map)
            ASSERT_EQ(*table.find(key), value);
    }
}
