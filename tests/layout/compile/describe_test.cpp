// tests/layout/compile/describe_test.cpp - a compiled layout as a tree.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "murv/murv.h"
#include "tests/support/source_file.h"

using namespace murv;
using murv::tests::contentOf;

namespace
{
CFields describe(const std::string& members)
{
    CLayout layout;
    const bool isCompiled = layout.compile("{ " + members + " }");
    EXPECT_TRUE(isCompiled) << layout.getMistakes().front().m_strMessage;
    CFields description;
    layout.describe(description);
    return description;
}

std::string line(const CFields& node)
{
    CFields alone = node;
    alone.clearName();
    return alone.toMURV(ER_SER_PKT);
}

/// The names of all members in a tree, but for those of pages, which are names of rules.
void collectNames(const CFields& node, std::set<std::string>& names)
{
    for (const CFields& member : node)
    {
        const std::string name(member.getName(), member.getNameLen());
        if (!name.empty())
            names.insert(name);
        if (name != "pages")
            collectNames(member, names);
    }
}
}  // namespace

TEST(Describe, leavesOutWhatIsUsual)
{
    const CFields description = describe("\"@\" = \"layout 1\", \"a\" = (BNF2) 7");
    EXPECT_EQ(line(description["parts"][1]), R"({"kind"="leaf","name"="a","path"="a","expression"="BNF2","parent"=0,)"
                                             R"("item"={"form"="binary","length"=2}})");
    EXPECT_EQ(line(description["frame"]), R"({"kind"="none"})");
    EXPECT_EQ(line(description["spans"]) + line(description["links"]) + line(description["pages"]), "[][]{}");
}

TEST(Describe, saysWhenAPartIsThere)
{
    const CFields parts = describe(
        "\"@\" = \"layout 1\", \"k\" = (BNF1) 0, \"@k\" = \"bits 2 a, 6 b\", "
        "\"x\" = (BNF1) 0, \"@x\" = \"if k.a != 1 | 2\"")["parts"];
    EXPECT_EQ(line(parts[1]["item"]["bits"]), R"([{"name"="a","bits"=2,"shift"=6},{"name"="b","bits"=6,"shift"=0}])");
    EXPECT_EQ(line(parts[2]["tests"]), R"([{"part"=1,"shift"=6,"bits"=2,"is"="!=",)"
                                       R"("values"=[{"text"="1","number"="1"},{"text"="2","number"="2"}]}])");
}

TEST(Describe, saysWhatNumbersAreAbout)
{
    const CFields description = describe(
        "\"@\" = \"layout 1\", \"n\" = (BNF2) 0, \"@n\" = \"size of d / 2 + 3\", "
        "\"d\" = (BCF0) \"\", \"c\" = (BNF2) 0, \"@c\" = \"crc16 modbus of n..d\"");
    EXPECT_EQ(line(description["spans"]), R"([{"first"=2,"last"=2,"size"=0},{"first"=1,"last"=2}])");
    EXPECT_EQ(line(description["links"][0]),
              R"({"kind"="size","number"={"part"=1},"span"=0,"times"=2,"plus"=3,"rules"=true,"numberFirst"=true})");
    EXPECT_EQ(line(description["links"][1]), R"({"kind"="check","number"={"part"=3},"span"=1,"check"="crc16 modbus"})");
    EXPECT_EQ(line(description["parts"][2]["size"]), "0");
}

TEST(Describe, saysWhereThingsEnd)
{
    const CFields parts = describe(
        "\"@\" = \"layout 1\", \"a\" = (ACV2+2) \"\", \"b\" = (ACF9) \"\", "
        "\"@b\" = \"ends \\\"|\\\"\", \"l\" = [ { (ACF1fix) \"A\" } ]")["parts"];
    EXPECT_EQ(line(parts[1]["item"]["prefix"]), R"({"width"=2})");
    EXPECT_EQ(line(parts[2]["marks"]), R"(["|"])");
    EXPECT_EQ(parts[2]["endsBy"].asString(), "mark");
    EXPECT_EQ(parts[3]["endsBy"].asString(), "heads");
    EXPECT_EQ(line(parts[3]["heads"]), R"([[{"offset"=0,"bytes"="A"}]])");
}

TEST(Describe, hasThePagesThatAreUsed)
{
    const CFields pages = describe(
        "\"@\" = \"layout 1\", \"a\" = (ACF1) \"\", \"@a\" = \"cp037\", "
        "\"b\" = (ACF1) \"\", \"@b\" = \"latin1\"")["pages"];
    ASSERT_EQ(pages.getChildCount(), 1U);
    const std::string characters = pages["cp037"].asString();
    ASSERT_EQ(characters.size(), 256U);
    EXPECT_EQ(characters.substr(0xC1, 3), "ABC");
}

TEST(Describe, ofALayoutThatIsNotCompiledThrows)
{
    CFields description;
    EXPECT_THROW(CLayout().describe(description), CLogicError);
}

TEST(Describe, thePageListsEveryMember)
{
    const std::string page = contentOf("docs/layout-description.md");
    std::set<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(MURV_SOURCE_DIR "/share/murv/layouts"))
    {
        CLayout layout;
        ASSERT_TRUE(layout.compile(contentOf(file.path()))) << file.path();
        CFields description;
        layout.describe(description);
        collectNames(description, names);
    }
    const CFields rare = describe(
        "\"@\" = \"layout 1; prefixed BNF2 + 2\", \"d\" = (ANF8) 0, \"@d\" = \"valid date YYYYMMDD; zero is null\", "
        "\"h\" = (ACF4) \"\", \"@h\" = \"hex lower; mask 1\", \"t\" = (ANF6YYMMDD) 0, \"@t\" = \"keep\", "
        "\"l\" = [ { \"m\" = (ANF5) 0, \"@m\" = \"decimals 2\" } ], \"@l\" = \"until m = 0.01\", "
        "\"p\" = { \"@\" = \"between \\\",\\\"\", \"x\" = (ACF0) \"\", \"@x\" = \"required\", \"y\" = (ACF0) \"\" }");
    collectNames(rare, names);
    EXPECT_GT(names.size(), 60U);
    for (const std::string& name : names)
        EXPECT_NE(page.find("`" + name + "`"), std::string::npos) << name;
}
