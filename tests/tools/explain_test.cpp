// tests/tools/explain_test.cpp - murv explain, byte for byte.
#include <gtest/gtest.h>

#include "tests/tools/sales.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
/// Explains a packet given in hexadecimal digits.
tRun explain(const std::string& layout, const std::string& hex, std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"explain", "-e", layout, "-x", hex});
    return murvOn("", options);
}
}  // namespace

TEST(Explain, showsEveryByteWithWhatItMeans)
{
    EXPECT_EQ(explain(s_cpMessageLayout, "07 03 41 64 61 2A 00 FF").m_strOutput,
              "record 1, 8 bytes at 0x00\n"
              "  0000  07                       .         kind      7               BNF1\n"
              "  0001  03                       .         (length)\n"
              "  0002  41 64 61                 Ada       name      \"Ada\"           BCV1+1\n"
              "  0005  2A                       *         flags     high 2, low 10  BNF1; bits 4 high, 4 low\n"
              "  0006  00 FF                    ..        raw       0x00FF          BCF2\n");
}

TEST(Explain, layoutForATryMayBeShort)
{
    const tRun run = explain("\"age\" = (BNF1) 0, \"name\" = (BCV1+1) \"\"", "2A:03:41:64:61");
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_NE(run.m_strOutput.find("name      \"Ada\""), std::string::npos) << run.m_strOutput;
}

TEST(Explain, commentsOfTheLayoutStandAboveTheFirstValue)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("in", s_cpSales);
    const tRun run = murv(files, {"explain", "-l", "l.murv", "in", "--record", "2"});
    EXPECT_EQ(run.m_strOutput,
              "record 2: sales[0], 19 bytes at 0x0A\n"
              "  000A  53                       S         type                 \"S\"         ACF1fix\n"
              "                                           // in the currency of the shop\n"
              "  000B  30 30 31 32 35 30        001250    amount               \"12.50\"     ANF6; decimals 2\n"
              "  0011  ** ** ** ** 35 36 37 38  ****5678  card                 \"****5678\"  ACF8; mask 4\n"
              "  0019  74 65 61 20              tea       note                 \"tea\"       ACF4\n"
              "  001D  0A                       .         (end of the record)\n");
    const tRun all = murv(files, {"explain", "-l", "l.murv", "in"});
    EXPECT_EQ(all.m_strOutput.find("currency"), all.m_strOutput.rfind("currency"));
    EXPECT_NE(murv(files, {"explain", "-l", "l.murv", "in", "--unmask"}).m_strOutput.find("12345678"),
              std::string::npos);
}

TEST(Explain, marksWhatFailsAndShowsWhatWasUnderstoodBefore)
{
    const tRun run = explain("\"@\" = \"layout 1; lines\", \"a\" = (ANF2) 0, \"b\" = (ANF2) 0, \"c\" = (ACF1) \"\"",
                             "31 32 33 78 79 0A 34 35 36 37 38 0A");
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strOutput,
              "record 1 - does not fit\n"
              "  0000  31 32                    12        a           12  ANF2\n"
              "  0002  33 78                    3x        b               ANF2\n"
              "        ^^^^^ error: Other characters stand where digits must\n"
              "  0004  79 0A                    y.        (not read)\n"
              "\n"
              "record 2, 5 bytes at 0x06\n"
              "  0006  34 35                    45        a                    45   ANF2\n"
              "  0008  36 37                    67        b                    67   ANF2\n"
              "  000A  38                       8         c                    \"8\"  ACF1\n"
              "  000B  0A                       .         (end of the record)\n");
}

TEST(Explain, aNumberThatProvesWrongLaterIsMarkedWhereItStands)
{
    const tRun run = explain(R"("a" = (BCV1+1) "", "n" = (BNF1) 0, "@n" = "size of a", "z" = (BNF1) 0)", "01 41 05 07");
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strOutput,
              "record 1 - does not fit\n"
              "  0000  01                       .         (length)\n"
              "  0001  41                       A         a           \"A\"  BCV1+1\n"
              "  0002  05                       .         n           5    BNF1; size of a\n"
              "        ^^ error: The size does not agree with the part\n"
              "  0003  07                       .         (not read)\n");
}

TEST(Explain, masksHoldInWhatCouldNotBeRead)
{
    const tRun run = explain("\"a\" = (ANF1) 0, \"b\" = (ACF4) \"\", \"@b\" = \"mask\"", "78 31 32 33 34");
    EXPECT_EQ(run.m_strOutput.find("31 32"), std::string::npos) << run.m_strOutput;
    EXPECT_NE(run.m_strOutput.find("** ** ** **"), std::string::npos) << run.m_strOutput;
}

TEST(Explain, marksAreShownAndRulesHaveTheirEscapes)
{
    EXPECT_EQ(explain("\"a\" = (ACF0) \"\", \"@a\" = \"ends \\\"\\x00\\r\\\"\"", "41 00 0D").m_strOutput,
              "record 1, 3 bytes at 0x00\n"
              "  0000  41                       A         a       \"A\"  ACF0; ends \"\\x00\\r\"\n"
              "  0001  00 0D                    ..        (mark)\n");
}

TEST(Explain, packetMayBeEmpty)
{
    EXPECT_EQ(explain("\"@\" = \"layout 1; lines\", \"a\" = { \"b\" = (ANF1) 0 }", "").m_strOutput,
              "record 1 - does not fit\n"
              "  0000                                     a\n"
              "        ^^ error: The input ends too soon; at least 1 byte more must follow\n");
    EXPECT_EQ(explain("\"b\" = (ANF1) 0", "").m_strOutput, "");
}

TEST(Explain, longValuesAreCut)
{
    std::string hex;
    for (int i = 0; i < 100; ++i)
        hex += "41";
    const tRun run = explain("\"a\" = (ACF100) \"\"", hex);
    EXPECT_NE(run.m_strOutput.find("\n        ... 68 more bytes\n"), std::string::npos) << run.m_strOutput;
}

TEST(Explain, nestedPartsAreIndented)
{
    const tRun run =
        explain("\"n\" = (BNF1) 0, \"@n\" = \"count of list\", \"list\" = [ { \"x\" = (BNF1) 0 } ]", "02 07 08");
    EXPECT_EQ(run.m_strOutput,
              "record 1, 3 bytes at 0x00\n"
              "  0000  02                       .         n      2  BNF1; count of list\n"
              "                                           list\n"
              "                                             [0]\n"
              "  0001  07                       .             x  7  BNF1\n"
              "                                             [1]\n"
              "  0002  08                       .             x  8  BNF1\n");
}

TEST(Explain, jsonIsOneObjectARecord)
{
    EXPECT_EQ(explain("\"a\" = (BNF1) 0, \"b\" = (BCV1+1) \"\"", "2A 01 FF", {"--json"}).m_strOutput,
              "{\"record\":1,\"kind\":\".\",\"path\":\"\",\"offset\":0,\"length\":3,\"fits\":true,\"items\":["
              "{\"offset\":0,\"length\":1,\"bytes\":\"2A\",\"path\":\"a\",\"expression\":\"BNF1\",\"value\":42},"
              "{\"offset\":1,\"length\":1,\"bytes\":\"01\",\"is\":\"length\"},"
              "{\"offset\":2,\"length\":1,\"bytes\":\"FF\",\"path\":\"b\",\"expression\":\"BCV1+1\","
              "\"value\":{\"hex\":\"FF\"}}]}\n");
}

TEST(Explain, wrongCallsSayWhatIsMissing)
{
    EXPECT_EQ(murvOn("", {"explain", "-x", "00"}).m_strError,
              "murv: error: a layout is required: --layout or --layout-text\n");
    const tRun odd = explain("\"a\" = (BNF1) 0", "2A 4");
    EXPECT_EQ(odd.m_iExit, 2);
    EXPECT_EQ(odd.m_strError.substr(0, odd.m_strError.find('\n')),
              "<hex>:1:5: error: two hexadecimal digits are needed for each byte");
    const tRun none = explain("\"a\" = (BNF1) 0", "2A", {"--record", "2"});
    EXPECT_EQ(none.m_iExit, 1);
    EXPECT_EQ(none.m_strError, "murv: error: there is no record 2\n");
    EXPECT_EQ(explain("\"a\" = (BNX1) 0", "2A").m_iExit, 3);
}

}  // namespace murv::tests
