// tests/io/line_counter_test.cpp - lines and columns, asked for in order.
#include "io/line_counter.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "murv/load_error.h"

using namespace murv::detail;

namespace
{
/// "line:column" of every offset from 0 to the size, from one counter.
std::string places(std::string_view text)
{
    CLineCounter counter(text.data());
    std::string all;
    for (std::size_t i = 0; i <= text.size(); ++i)
    {
        all += std::to_string(counter.line4(text.data() + i));
        all += ":" + std::to_string(counter.column()) + " ";
    }
    return all;
}
}  // namespace

TEST(LineCounter, columnsCountBytes)
{
    EXPECT_EQ(places("ab\xC3\xA4"), "1:1 1:2 1:3 1:4 1:5 ");
    EXPECT_EQ(places(""), "1:1 ");
}

TEST(LineCounter, linesEndWithEachKindOfBreak)
{
    EXPECT_EQ(places("a\nb"), "1:1 1:2 2:1 2:2 ");
    EXPECT_EQ(places("a\rb"), "1:1 1:2 2:1 2:2 ");
    EXPECT_EQ(places("\n\n\r\r"), "1:1 2:1 3:1 4:1 5:1 ");
}

TEST(LineCounter, aPairIsOneBreakUnlessThePlaceIsWithinIt)
{
    EXPECT_EQ(places("a\r\nb\r\n"), "1:1 1:2 2:1 2:1 2:2 3:1 3:1 ");
    EXPECT_EQ(places("\n\r"), "1:1 2:1 3:1 ");
}

TEST(LineCounter, onePlaceIsFoundWithoutACounter)
{
    const std::string_view text = "a\r\nbc";
    std::string all;
    for (unsigned int offset = 0; offset <= text.size() + 1; ++offset)
    {
        const murv::tDataPlace place = murv::place4Offset(text, offset);
        all += std::to_string(place.m_uiOffset) + "=" + std::to_string(place.m_uiLine) + ":" +
               std::to_string(place.m_uiColumn) + " ";
    }
    EXPECT_EQ(all, "0=1:1 1=1:2 2=2:1 3=2:1 4=2:2 5=2:3 5=2:3 ") << "an offset after the end is the end";
    EXPECT_EQ(murv::place4Offset({}, 0).m_uiLine, 1U);
}

TEST(LineCounter, goesOnFromWhereItWas)
{
    const std::string text = "one\r\ntwo\nthree";
    CLineCounter counter(text.data());
    EXPECT_EQ(counter.line4(text.data() + 4), 2);
    EXPECT_EQ(counter.column(), 1);
    EXPECT_EQ(counter.line4(text.data() + 4), 2);
    EXPECT_EQ(counter.line4(text.data() + 7), 2);
    EXPECT_EQ(counter.column(), 3);
    EXPECT_EQ(counter.line4(text.data() + 14), 3);
    EXPECT_EQ(counter.column(), 6);
}
