// Checksums and check digits.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

struct tCheck
{
    const char* m_pName;
    const char* m_pRule;
    const char* m_pNumber;  // expression
    std::string m_strData;
    std::string m_strSum;  // as it lies
};

/// Else the test library prints the bytes, of which some were never written.
void PrintTo(const tCheck& check, std::ostream* out)
{
    *out << check.m_pName;
}

std::string nameOfCheck(const testing::TestParamInfo<tCheck>& tested)
{
    return tested.param.m_pName;
}

class Checks : public testing::TestWithParam<tCheck>
{
};

}  // namespace

TEST_P(Checks, areFilledInAndCompared)
{
    const tCheck& check = GetParam();
    const CLayout layout = layout4("\"d\" = (BCF" + std::to_string(check.m_strData.size()) + ") \"" +
                                   std::string(check.m_strData.size(), '0') + "\", \"c\" = (" + check.m_pNumber +
                                   ") 0, \"@c\" = \"" + check.m_pRule + " of d\"");
    const std::string packet = check.m_strData + check.m_strSum;
    EXPECT_EQ(make(layout, "{\"d\"=" + quotedText(check.m_strData) + "}"), packet);
    CPacketReader reader(layout);
    EXPECT_TRUE(reader.check(packet));
    EXPECT_EQ(findings4(reader.getFindings()), "");
    std::string damaged = packet;
    damaged[0] ^= 1;
    EXPECT_TRUE(reader.check(damaged)) << place4(reader.getFault());
    EXPECT_EQ(findings4(reader.getFindings()), " ! checksum at c @" + std::to_string(check.m_strData.size()) + "+" +
                                                   std::to_string(check.m_strSum.size()));
}

const tCheck s_atChecks[] = {
    {"crc16", "crc16", "BNF2", "123456789", "\xBB\x3D"},
    {"modbus", "crc16 modbus", "BNF2", "123456789", "\x4B\x37"},
    {"ibm3740", "crc16 ibm-3740", "BNF2", "123456789", "\x29\xB1"},
    {"xmodem", "crc16 xmodem", "BNF2", "123456789", "\x31\xC3"},
    {"kermit", "crc16 kermit", "BNF2", "123456789", "\x21\x89"},
    {"crc32", "crc32", "BNF4", "123456789", "\xCB\xF4\x39\x26"},
    {"iscsi", "crc32 iscsi", "BNF4", "123456789", "\xE3\x06\x92\x83"},
    {"inet", "inet", "BNF2", bytes("\0\1\xF2\3\xF4\xF5\xF6\xF7"), "\x22\x0D"},
    {"xor", "xor", "BNF1", "abc", "`"},
    {"sum8", "sum8", "BNF1", "ab", "\xC3"},
    {"sum32", "sum32", "BNF4", "ab", bytes("\0\0\0\xC3")},
    {"luhn", "luhn", "ANF1", "7992739871", "3"},
    {"mod10", "mod10", "ANF1", "12-34-", "2"},
    {"mod97", "mod97", "ANF2", "794", "44"},
};

INSTANTIATE_TEST_SUITE_P(Kinds, Checks, testing::ValuesIn(s_atChecks), nameOfCheck);

TEST(Checks, theirOwnBytesCountAsZeros)
{
    const CLayout layout = layout4(R"("h" = { "a" = (BNF1) 0, "c" = (BNF1) 0, "@c" = "sum8 of .", "b" = (BNF1) 0 })");
    expectBoth(layout, "\1\3\2", R"({"h"={"a"=1,"c"=3,"b"=2}})");
}

TEST(Checks, theirOwnDigitsCountAsBlanks)
{
    const CLayout layout = layout4(R"("h" = { "a" = (BNF1) 0, "c" = (ANF3) 0, "@c" = "xor of .", "b" = (BNF1) 0 })");
    expectBoth(layout,
               "\1"
               "035\2",
               R"({"h"={"a"=1,"c"=35,"b"=2}})");
}

TEST(Checks, aNumberBeforeItsPartIsFilledInLast)
{
    const CLayout layout = layout4(R"("c" = (BNF1) 0, "@c" = "sum8 of n..b", "n" = (BNF1) 0, "@n" = "size of b",
        "b" = (BCF0) "", "@b" = "to end")");
    expectBoth(layout, bytes("\x63\2\1`"), R"({"c"=99,"n"=2,"b"="\x01`"})");
}

TEST(Checks, severalFieldsOfElementsAreCheckedEach)
{
    const CLayout layout = layout4(R"("a" = [ { "x" = (BNF1) 0, "c" = (BNF1) 0, "@c" = "sum8 of x" } ])");
    EXPECT_EQ(read(layout, "\1\1\2\3\4\4"),
              R"({"a"=[{"x"=1,"c"=1},{"x"=2,"c"=3},{"x"=4,"c"=4}]} ! checksum at a[1].c @3+1)");
}

TEST(Checks, anAbsentPartHasNoBytes)
{
    const CLayout layout =
        layout4(R"("k" = (ANF1) 0, "b" = (ACF1) "", "@b" = "if k = 1", "c" = (BNF1) 0, "@c" = "sum8 of b")");
    expectBoth(layout, bytes("0\0"), R"({"k"=0,"c"=0})");
    EXPECT_EQ(read(layout, "0\5"), R"({"k"=0,"c"=5} ! checksum at c @1+1)");
    EXPECT_EQ(read(layout, "1a\5"), R"({"k"=1,"b"="a","c"=5} ! checksum at c @2+1)");
}

TEST(Checks, theOptionAgreeComparesTheData)
{
    tMakeOptions options;
    options.m_bAgree = true;
    const CLayout layout = layout4(R"("x" = (BNF1) 0, "c" = (BNF1) 0, "@c" = "sum8 of x")");
    EXPECT_EQ(make(layout, R"({"x"=1,"c"=1})", options), "\1\1");
    EXPECT_EQ(make(layout, R"({"x"=1,"c"=2})", options), "checksum at c");
}

}  // namespace murv::tests
