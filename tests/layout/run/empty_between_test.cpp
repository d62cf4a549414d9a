// Field sets between marks that have no bytes.
#include <gtest/gtest.h>

#include <string>

#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

const char* const s_cpLayout = R"({ "@" = "layout 1; lines", "l" = [ { "@" = "between \",\"", "a" = (ACF0) "",
    "s" = { "@" = "between \"^\"", "n" = (ANF0) 7, "y" = (ANF0) 8 }, "b" = (ACF0) "" } ] })";

std::string made(const std::string& data)
{
    murv::CLayout layout;
    EXPECT_TRUE(layout.compile(s_cpLayout));
    murv::CFields tree;
    murv::CLoader4SER loader(murv::LCBC_COMMENT | murv::LCBC_LOSSLESS);
    EXPECT_TRUE(loader.loading(data, tree)) << loader.getLastErrMsg();
    murv::CPacketMaker maker(layout);
    std::string packet;
    return maker.make(tree, packet) ? packet : murv::getFaultName(maker.getFault().m_eCode);
}

std::string read(const std::string& bytes)
{
    murv::CLayout layout;
    EXPECT_TRUE(layout.compile(s_cpLayout));
    murv::CPacketReader reader(layout);
    murv::CFields tree;
    return reader.read(bytes, tree) ? tree.toMURV(murv::ER_SER_PKT, murv::SAVE_NAME | murv::SAVE_VALUE)
                                    : murv::getFaultName(reader.getFault().m_eCode);
}

TEST(EmptyBetween, aFieldSetIsThereWithoutMembers)
{
    EXPECT_EQ(read("a,,b\n"), R"({"l"=[{"a"="a","s"={},"b"="b"}]})");
    EXPECT_EQ(read("a,\n"), R"({"l"=[{"a"="a","s"={}}]})");
    EXPECT_EQ(made(R"({ "l" = [ { "a" = "a", "s" = {}, "b" = "b" } ] })"), "a,,b\n");
    EXPECT_EQ(made(R"({ "l" = [ { "a" = "a", "s" = {} } ] })"), "a,\n");
    EXPECT_EQ(made(R"({ "l" = [ { "a" = "a", "b" = "b" } ] })"), "a,,b\n");
}

TEST(EmptyBetween, membersAreThereAsBefore)
{
    EXPECT_EQ(read("a,5,b\n"), R"({"l"=[{"a"="a","s"={"n"=5},"b"="b"}]})");
    EXPECT_EQ(made(R"({ "l" = [ { "a" = "a", "s" = { "n" = 5 }, "b" = "b" } ] })"), "a,5,b\n");
    EXPECT_EQ(made(R"({ "l" = [ { "a" = "a", "s" = { "y" = 6 }, "b" = "b" } ] })"), "a,7^6,b\n");
    EXPECT_EQ(read("a,^6,b\n"), "blank");
}

TEST(EmptyBetween, aRecordWithoutBytesIsItsFirstPart)
{
    EXPECT_EQ(read("\n"), R"({"l"=[{"a"=}]})");
}

}  // namespace
