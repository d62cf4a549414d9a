// tests/docs/comparison_page_test.cpp - what docs/comparison.md says of its message is so.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "murv/layout.h"
#include "murv/murv.h"
#include "tests/support/source_file.h"

namespace murv::tests
{

namespace
{
/// The page's layout.
std::string layoutOfThePage()
{
    const std::string page = contentOf("docs/comparison.md");
    const std::string begin = "```murv\n";
    const std::size_t at = page.find(begin) + begin.size();
    return page.substr(at, page.find("```", at) - at);
}

const std::string s_cstrPacket(
    "OR\0\0\x12\x67"
    "000125003Ada",
    18);
}  // namespace

TEST(ComparisonPage, theMessageHasTheValuesThatItSays)
{
    CLayout layout;
    ASSERT_TRUE(layout.compile(layoutOfThePage().c_str()));
    CFields order;
    ASSERT_TRUE(CPacketReader(layout).read(s_cstrPacket, order));
    EXPECT_EQ(order["number"].asSint32(), 4711);
    EXPECT_EQ(order["price"].asString(), "12.50");
    EXPECT_EQ(order["customer"].asString(), "Ada");
}

TEST(ComparisonPage, theLetterAmongDigitsIsAFaultOfThePrice)
{
    CLayout layout;
    ASSERT_TRUE(layout.compile(layoutOfThePage().c_str()));
    std::string damaged = s_cstrPacket;
    damaged[8] = 'O';
    CFields order;
    CPacketReader reader(layout);
    ASSERT_FALSE(reader.read(damaged, order));
    EXPECT_EQ(reader.getFault().m_strPath, "price");
    EXPECT_EQ(reader.getFault().m_ullOffset, 6u);
}

TEST(ComparisonPage, theLayoutIsThatOfTheReadme)
{
    std::string indented;
    std::istringstream lines(layoutOfThePage());
    for (std::string line; std::getline(lines, line);)
        indented += "    " + line + "\n";
    EXPECT_NE(contentOf("README.md").find("\n\n" + indented + "\n"), std::string::npos);
}

}  // namespace murv::tests
