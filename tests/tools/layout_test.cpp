// tests/tools/layout_test.cpp - murv layout: the offset table, in every form.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpLayout = R"(// Readings of a station.
{
  "@" = "layout 1",
  "flags" = (BNF1) 0, "@flags" = "bits 1 alarm, 7 rest",
  // what it is called
  "name" = (ACF0) "", "@name" = "ends \"\x00\"; mask",
  "count" = (BNF1) 0, "@count" = "count of list",
  "list" = [ { "a" = (ANF3) 0, "b" = (BNF2) 0 } ],
  "crc" = (BNF4) 0, "@crc" = "crc32 of flags..list"
})";

tRun layoutOn(const std::vector<std::string>& options, const std::string& layout = s_cpLayout)
{
    std::vector<std::string> call = {"layout", "-"};
    call.insert(call.end(), options.begin(), options.end());
    return murvOn(layout, call);
}
}  // namespace

TEST(Layout, tableSaysWherePartsLie)
{
    const tRun run = layoutOn({});
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput,
              R"(path         offset       length   kind                     expression  rules                 comment
.            0            7..      record                               layout 1              Readings of a station.
flags        0            1        binary number            BNF1        bits 1 alarm, 7 rest
flags.alarm  0            1 bit    bit 7
flags.rest   0            7 bits   bits 6..0
name         1            1..      text, masked             ACF0        ends "\x00"; mask     what it is called
count        after name   1        binary number, computed  BNF1        count of list
list         after count  0..1275  array
list[]       +0           5        fields
list[].a     +0           3        number                   ANF3
list[].b     +3           2        binary number            BNF2
crc          after list   4        binary number, computed  BNF4        crc32 of flags..list
)");
}

TEST(Layout, csvHasOneThingAColumn)
{
    const std::string table = layoutOn({"--csv"}).m_strOutput;
    EXPECT_EQ(table.substr(0, table.find('\n') + 1),
              "path,offset,from,after,length,least,most,bits,shift,kind,expression,rules,comment\n");
    EXPECT_NE(table.find("\nflags.rest,0,.,,,,,7,0,bits 6..0,,,\n"), std::string::npos) << table;
    EXPECT_NE(table.find("\nname,1,.,,,1,,,,\"text, masked\",ACF0,\"ends \"\"\\x00\"\"; mask\",what it is called\n"),
              std::string::npos)
        << table;
    EXPECT_NE(table.find("\nlist[].b,3,list[],,2,2,2,,,binary number,BNF2,,\n"), std::string::npos) << table;
    EXPECT_NE(table.find("\ncrc,,,list,4,4,4,,,\"binary number, computed\",BNF4,crc32 of flags..list,\n"),
              std::string::npos)
        << table;
}

TEST(Layout, jsonIsOneObjectAPart)
{
    const std::string lines = layoutOn({"--json"}).m_strOutput;
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 9);
    EXPECT_NE(
        lines.find("{\"path\":\"crc\",\"kind\":\"binary number, computed\",\"id\":null,\"offset\":null,\"from\":null,"
                   "\"after\":\"list\",\"least\":4,\"most\":4,\"bits\":[],\"record\":false,\"literal\":false,"
                   "\"computed\":true,\"optional\":false,\"masked\":false,\"expression\":\"BNF4\",\"rules\":"
                   "[{\"rule\":\"crc32 of flags..list\",\"meaning\":\"cyclic redundancy check of 32 bits\"}],"
                   "\"comment\":\"\"}\n"),
        std::string::npos)
        << lines;
    EXPECT_NE(lines.find("\"bits\":[{\"name\":\"alarm\",\"width\":1,\"shift\":7},{\"name\":\"rest\",\"width\":7,"
                         "\"shift\":0}]"),
              std::string::npos)
        << lines;
}

TEST(Layout, markdownTakesNamesAsText)
{
    const std::string table =
        layoutOn({"--markdown"}, "{ \"@\" = \"layout 1\", \"a|b <i>_x_\" = (ACF2) \"\" }").m_strOutput;
    EXPECT_EQ(table,
              "| path | offset | length | kind | expression | rules | comment |\n"
              "|---|---|---|---|---|---|---|\n"
              "| . | 0 | 2 | record |  | layout 1 |  |\n"
              "| \"a\\|b &lt;i>\\_x\\_\" | 0 | 2 | text | ACF2 |  |  |\n");
}

TEST(Layout, terminalsActOnNoName)
{
    const std::string table = layoutOn({}, "{ \"@\" = \"layout 1\", \"a\x1b[2J\" = (ACF2) \"\" }").m_strOutput;
    EXPECT_NE(table.find("\n\"a?[2J\" "), std::string::npos) << table;
    EXPECT_EQ(table.find('\x1b'), std::string::npos);
}

TEST(Layout, columnsCountCharacters)
{
    const std::string table =
        layoutOn({}, "{ \"@\" = \"layout 1\", \"\xC3\xA4\" = (ACF2) \"\", \"\xE6\x97\xA5\" = (ACF2) \"\" }")
            .m_strOutput;
    EXPECT_NE(table.find("\n\xC3\xA4     0 "), std::string::npos) << table;
    EXPECT_NE(table.find("\n\xE6\x97\xA5    2 "), std::string::npos) << table;
}

TEST(Layout, mistakesAreShownAtTheirPlaces)
{
    const tRun run = layoutOn({}, "{ \"@\" = \"layout 1\", \"a\" = (ACF2) \"\", \"@a\" = \"sise of b\" }");
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError.rfind("<stdin>:1:45: error: a: ", 0), 0U) << run.m_strError;
    EXPECT_NE(run.m_strError.find("There is no rule \"sise of b\""), std::string::npos) << run.m_strError;
}

TEST(Layout, formsExcludeEachOther)
{
    EXPECT_EQ(layoutOn({"--csv", "--json"}).m_iExit, 2);
    EXPECT_EQ(layoutOn({"--markdown", "--csv"}).m_iExit, 2);
}

TEST(Layout, installedOnesAreFoundByName)
{
    const tRun run = murvOn("", {"layout", "ach", "--csv"});
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_NE(run.m_strOutput.find("\nbatches[].entries[].entry.amount,29,batches[].entries[].entry,,10,10,10,,,number,"
                                   "ANF10,decimals 2,"),
              std::string::npos)
        << run.m_strOutput;
}

}  // namespace murv::tests
