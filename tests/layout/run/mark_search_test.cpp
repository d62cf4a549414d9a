// tests/layout/run/mark_search_test.cpp - marks are searched from the item on, whatever was read before it.
#include <gtest/gtest.h>

#include <string>

#include "murv/layout.h"

namespace murv::tests
{

namespace
{

/// The value of "name" after reading, or the sentence of the fault.
std::string nameRead(const char* text, std::string_view bytes)
{
    CLayout layout;
    EXPECT_TRUE(layout.compile(text)) << text;
    CPacketReader reader(layout);
    CFields tree;
    return reader.read(bytes, tree) ? tree["name"].asString() : reader.getFault().m_strMessage;
}

}  // namespace

TEST(MarkSearch, markInTheLastByteOfASizedPartIsFound)
{
    const char* text = R"({ "@" = "layout 1", "size" = (BNF1) 0, "@size" = "size of name",
        "name" = (ACF0) "", "@name" = "ends \"|\"" })";
    EXPECT_EQ(nameRead(text,
                       "\x03"
                       "ab|"),
              "ab");
    EXPECT_EQ(nameRead(text, "\x01|"), "");
}

TEST(MarkSearch, markInTheLastByteOfTheRecordIsFound)
{
    const char* text = R"({ "@" = "layout 1; lines", "size" = (ANF1) 0, "name" = (ACF0) "", "@name" = "ends \"|\"" })";
    EXPECT_EQ(nameRead(text, "0ab|\n"), "ab");
}

TEST(MarkSearch, marksBetweenPartsAreFoundAfterFixedItems)
{
    const char* text = R"({ "@" = "layout 1; lines", "kind" = (ACF3) "", "row" = { "@" = "between \"|\"",
        "a" = (ACF0) "", "b" = (ACF0) "" } })";
    CLayout layout;
    ASSERT_TRUE(layout.compile(text)) << layout.getMistakes().front().m_strMessage;
    CPacketReader reader(layout);
    CFields tree;
    ASSERT_TRUE(reader.read("abcde|f\n", tree)) << reader.getFault().m_strMessage;
    EXPECT_EQ(tree["row"]["a"].asString(), "de");
    EXPECT_EQ(tree["row"]["b"].asString(), "f");
}

}  // namespace murv::tests
