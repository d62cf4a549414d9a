// What numbers say about parts that are not there.
#include <gtest/gtest.h>

#include <string>

#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

using namespace std::string_literals;

/// Reads bytes and makes them again. \return the bytes, or the name of the fault, or that of the first finding
std::string thereAndBack(const std::string& members, const std::string& bytes)
{
    murv::CLayout layout;
    EXPECT_TRUE(layout.compile("{ \"@\" = \"layout 1\", " + members + " }"));
    for (const murv::tLayoutMistake& mistake : layout.getMistakes())
        ADD_FAILURE() << mistake.m_strMessage;
    murv::CPacketReader reader(layout);
    murv::CFields tree;
    if (!reader.read(bytes, tree))
        return murv::getFaultName(reader.getFault().m_eCode);
    if (!reader.getFindings().empty())
        return murv::getFaultName(reader.getFindings().front().m_eCode);
    murv::CPacketMaker maker(layout);
    std::string packet;
    return maker.make(tree, packet) ? packet : murv::getFaultName(maker.getFault().m_eCode);
}

void expectSame(const std::string& members, const std::string& bytes)
{
    EXPECT_EQ(thereAndBack(members, bytes), bytes) << members;
}

TEST(AbsentParts, haveTheSizeZero)
{
    const std::string layout = R"("c" = (BNF1) 0, "n" = (BNF1) 0, "@n" = "size of o", "o" = (ACF0) "", )"
                               R"("@o" = "if c = 1", "z" = (BNF1) 0)";
    expectSame(layout,
               "\x01\x02"
               "ab\x05");
    expectSame(layout, "\0\0\x05"s);
    EXPECT_EQ(thereAndBack(layout, "\0\x01\x05"s), "leftOver");
    EXPECT_EQ(thereAndBack(layout, "\0\x02\x05"s), "more");
}

TEST(AbsentParts, haveTheCountZero)
{
    const std::string layout = R"("c" = (BNF1) 0, "n" = (BNF1) 0, "@n" = "count of o", "o" = [ (BNF1) 0 ], )"
                               R"("@o" = "if c = 1", "z" = (BNF1) 0)";
    expectSame(layout, "\x01\x02\x01\x02\x05");
    expectSame(layout, "\0\0\x05"s);
    EXPECT_EQ(thereAndBack(layout, "\0\x02\x05"s), "count");
}

TEST(AbsentParts, haveTheCountZeroInElements)
{
    const std::string layout = R"("l" = [ { "c" = (BNF1) 0, "n" = (BNF1) 0, "@n" = "count of o", )"
                               R"("o" = [ (BNF1) 0 ], "@o" = "if c = 1" } ], "@l" = "to end")";
    expectSame(layout, "\x01\x02\x01\x02\0\0"s);
    EXPECT_EQ(thereAndBack(layout, "\0\x02\0\0"s), "count");
    EXPECT_EQ(thereAndBack(layout, "\0\0\0\x02"s), "count");
}

TEST(AbsentParts, ofAlternativesHaveTheSizeZero)
{
    const std::string layout = R"("c" = (BNF1) 0, "n" = (BNF1) 0, "@n" = "size of v.a", "v" = { "@" = "one of by c", )"
                               R"(#1 "a" = (ACF0) "", #2 "b" = (BNF1) 0 })";
    expectSame(layout,
               "\x01\x02"
               "ab");
    expectSame(layout, "\x02\0\x05"s);
    EXPECT_EQ(thereAndBack(layout, "\x02\x01\x05"), "size");
}

TEST(AbsentParts, areLeftOutOfARowThatTheyBegin)
{
    const std::string layout = R"("c" = (BNF1) 0, "n" = (BNF1) 0, "@n" = "size of a..b", "a" = (BNF1) 0, )"
                               R"("@a" = "if c = 1", "b" = (ACF0) "", "@b" = "to end", "z" = (BNF1) 0)";
    expectSame(layout, "\x01\x03\x09xy\x05");
    expectSame(layout, "\0\x02xy\x05"s);
    EXPECT_EQ(thereAndBack(layout, "\0\x02xyz\x05"s), "leftOver");
}

TEST(AbsentParts, areLeftOutOfARowThatTheyEnd)
{
    const std::string layout = R"("c" = (BNF1) 0, "n" = (BNF1) 0, "@n" = "size of a..b", "a" = (BNF1) 0, )"
                               R"("b" = (BNF1) 0, "@b" = "if c = 1; align 8", "z" = (BNF1) 0)";
    expectSame(layout, "\x01\x02\x09\x08\0\0\0\0\x05"s);
    expectSame(layout, "\0\x01\x09\x05"s);
    EXPECT_EQ(thereAndBack(layout, "\0\x02\x09\x05"s), "leftOver");
}

TEST(AbsentParts, areLeftOutOfChecks)
{
    const std::string begins = R"("c" = (BNF1) 0, "a" = (BNF1) 0, "@a" = "if c = 1", "b" = (BNF1) 0, "n" = (BNF1) 0, )"
                               R"("@n" = "sum8 of a..b")";
    const std::string ends = R"("c" = (BNF1) 0, "a" = (BNF1) 0, "b" = (BNF1) 0, "@b" = "if c = 1", "n" = (BNF1) 0, )"
                             R"("@n" = "sum8 of a..b")";
    for (const std::string& layout : {begins, ends})
    {
        expectSame(layout, "\x01\x02\x03\x05");
        expectSame(layout, "\0\x03\x03"s);
        EXPECT_EQ(thereAndBack(layout, "\0\x03\x04"s), "checksum");
    }
}

TEST(AbsentParts, areTheOptionalOnesOfSizeZero)
{
    const std::string layout = R"("n" = (BNF1) 0, "@n" = "size of o", "o" = { "@" = "optional", "x" = (ACF0) "", )"
                               R"("@x" = "to end" }, "z" = (BNF1) 0)";
    expectSame(layout, "\0\x05"s);
    expectSame(layout,
               "\x02"
               "ab\x05");
}

}  // namespace
