// Items of fixed width: strict values, literals, byte order, and what the pkt_ members read wrongly.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

struct tOneItem
{
    const char* m_pRule;
    const char* m_pLayout;  // expression and value, then rules
    const char* m_pWords;
    std::string m_strBytes;
    std::string m_strTree;  // of the item alone; or what reading says
};

/// Else the test library prints the bytes, of which some were never written.
void PrintTo(const tOneItem& item, std::ostream* out)
{
    *out << item.m_pRule;
}

std::string nameOfRule(const testing::TestParamInfo<tOneItem>& info)
{
    return info.param.m_pRule;
}

CLayout oneItem(const tOneItem& item)
{
    const std::string rules = *item.m_pWords != 0 ? ", \"@n\" = \"" + std::string(item.m_pWords) + "\"" : "";
    return layout4("\"n\" = " + std::string(item.m_pLayout) + rules);
}

class BothWays : public testing::TestWithParam<tOneItem>
{
};

TEST_P(BothWays, bytesAndValueAgree)
{
    expectBoth(oneItem(GetParam()), GetParam().m_strBytes, "{\"n\"=" + GetParam().m_strTree + "}");
}

const tOneItem s_atBoth[] = {
    {"digits", "(ANF5) 0", "", "00012", "12"},
    {"minusInFront", "(ANF5) 0", "", "-0012", "-12"},
    {"text", "(ACF4) \"\"", "", "ab  ", "\"ab\""},
    {"textWithItsPadding", "(ACF4) \"\"", "keep", "ab  ", "\"ab  \""},
    {"rightText", "(ACF4) \"\"", "right", "  ab", "\"ab\""},
    {"hexText", "(ACF4) \"\"", "hex", "0AFF", "\"\\x0A\\xFF\""},
    {"hexTextInLowerCase", "(ACF4) \"\"", "hex lower", "0aff", "\"\\x0A\\xFF\""},
    {"wholeBytes", "(BCF3) \"\"", "", bytes("a\0 "), "\"a\\x00 \""},
    {"paddedBytes", "(BCF3) \"\"", "pad zero", bytes("a\0\0"), "\"a\""},
    {"blankPaddedBytes", "(BCF3) \"\"", "pad blank", "a  ", "\"a\""},
    {"bigBytes", "(BNF2) 0", "", bytes("\1\2"), "258"},
    {"littleBytes", "(BNF2) 0", "little", bytes("\1\2"), "513"},
    {"threeLittleBytes", "(BNF3) 0", "little", bytes("\1\2\3"), "197121"},
    {"eightBytesOfOnes", "(BNF8) 0", "", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "18446744073709551615"},
    {"eightBytesJustBeyondSigned", "(BNF8) 0", "", bytes("\x80\0\0\0\0\0\0\0"), "9223372036854775808"},
    {"eightBytesOfTheLargestSigned", "(BNF8) 0", "", "\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "9223372036854775807"},
    {"eightSignedBytesOfOnes", "(BNF8) 0", "signed", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "-1"},
    {"theSmallestSigned", "(BNF8) 0", "signed", bytes("\x80\0\0\0\0\0\0\0"), "-9223372036854775808"},
    {"signedByte", "(BNF1) 0", "signed", "\xFE", "-2"},
    {"decimals", "(ANF6) 0", "decimals 2", "001250", "\"12.50\""},
    {"decimalsBelowOne", "(ANF6) 0", "decimals 2", "-00005", "\"-0.05\""},
    {"writtenPoint", "(ANF6) 0", "decimals \\\",\\\"", "012,50", "\"12.50\""},
    {"binaryDecimals", "(BNF2) 0", "decimals 3; signed", "\xFF\xFF", "\"-0.001\""},
    {"octal", "(ANF4) 0", "octal", "0644", "420"},
    {"octalWithTail", "(ANF4) 0", "octal \\\"\\x00\\\"", bytes("644\0"), "420"},
    {"hexNumber", "(ANF4) 0", "hex", "00FF", "255"},
    {"packedWithSign", "(BNF2) 0", "packed; signed", "\x12\x3D", "-123"},
    {"packedWithoutSign", "(BNF2) 0", "packed", "\x12\x3F", "123"},
    {"bcd", "(BNF2) 0", "bcd", "\x12\x34", "1234"},
    {"zoned", "(ANF3) 0", "zoned; signed", "12L", "-123"},
    {"zonedWithoutSign", "(ANF3) 0", "zoned", "123", "123"},
    {"trailingSign", "(ANF4) 0", "trailing sign", "123-", "-123"},
    {"exactDigits", "(ANF25) 0", "exact", "0123456789012345678901234", "\"0123456789012345678901234\""},
    {"twentyFiveDigits", "(ANF25) 0", "", "1234567890123456789012345", "\"1234567890123456789012345\""},
    {"blankIsNull", "(ANF3) 0", "blank is null", "   ", "null"},
    {"zeroIsNull", "(ANF3) 0", "zero is null", "000", "null"},
    {"blanksForZeros", "(ANF4) 0", "pad blank", "  12", "12"},
    {"digitsAtTheLeft", "(ANF4) 0", "left", "12  ", "12"},
    {"bitsAsAFieldSet", "(BNF1) 0", "bits 1 a, 3 b, 4 c", "\xB5", "{\"a\"=1,\"b\"=3,\"c\"=5}"},
    {"bitsOfALittleNumber", "(BNF2) 0", "little; bits 4 a, 12 b", bytes("\2\x10"), "{\"a\"=1,\"b\"=2}"},
    {"bitsOfEightBytes", "(BNF8) 0", "bits 64 a", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "{\"a\"=18446744073709551615}"},
    {"aDate", "(ANF6YYMMDD) 0", "keep", "240229", "240229"},
    {"ascii", "(ACF3) \"\"", "ascii", "a~ ", "\"a~\""},
    {"latin1", "(ACF3) \"\"", "latin1",
     "\xE9 "
     "b",
     "\"\\xC3\\xA9 b\""},
    {"ebcdicText", "(ACF3) \"\"", "cp037", "\xC1\xF1\x40", "\"A1\""},
    {"ebcdicNumber", "(ANF3) 0", "cp037", "\xF0\xF1\xF2", "12"},
    {"ebcdicLineFeed", "(ACF2) \"\"", "cp1047; keep", "\x25\x15", "\"\\x0A\\xC2\\x85\""},
    {"float4", "(BNF4) 0", "float", bytes("\x3F\xC0\0\0"), "1.5"},
    {"float8", "(BNF8) 0", "float; little", bytes("\0\0\0\0\0\0\xF8\xBF"), "-1.5"},
};

INSTANTIATE_TEST_SUITE_P(Items, BothWays, testing::ValuesIn(s_atBoth), nameOfRule);

class Refused : public testing::TestWithParam<tOneItem>
{
};

TEST_P(Refused, bytesAreNotRead)
{
    EXPECT_EQ(read(oneItem(GetParam()), GetParam().m_strBytes),
              GetParam().m_strTree + " at n @0+" + std::to_string(GetParam().m_strBytes.size()));
}

const tOneItem s_atRefused[] = {
    {"aSuffix", "(ANF5) 0", "", "0012L", "digits"},
    {"aComma", "(ANF4) 0", "", "1,23", "digits"},
    {"letters", "(ANF4) 0", "", "12ab", "digits"},
    {"aHexPrefix", "(ANF4) 0", "", "0x1F", "digits"},
    {"blanks", "(ANF4) 0", "", "    ", "blank"},
    {"blankDate", "(ANF6YYMMDD) 0", "", "      ", "blank"},
    {"blanksInFront", "(ANF4) 0", "", "  12", "padding"},
    {"blanksAfter", "(ANF4) 0", "", "12  ", "padding"},
    {"plus", "(ANF4) 0", "", "+012", "sign"},
    {"minusZero", "(ANF4) 0", "", "-000", "sign"},
    {"minusInTheMiddle", "(ANF4) 0", "", "0-12", "digits"},
    {"mixedPadding", "(ANF4) 0", "pad blank", " 012", "padding"},
    {"octalDigitEight", "(ANF4) 0", "octal", "0648", "digits"},
    {"hexInTheOtherCase", "(ANF4) 0", "hex", "00ff", "digits"},
    {"hexTextInTheOtherCase", "(ACF2) \"\"", "hex", "ff", "digits"},
    {"packedLetter", "(BNF2) 0", "packed", "\x1A\x3F", "digits"},
    {"packedSignOfUnsigned", "(BNF2) 0", "packed", "\x12\x3C", "sign"},
    {"packedSignAAndB", "(BNF2) 0", "packed; signed", "\x12\x3B", "sign"},
    {"bcdLetter", "(BNF1) 0", "bcd", "\x1A", "digits"},
    {"zonedSignOfUnsigned", "(ANF3) 0", "zoned", "12L", "digits"},
    {"noTrailingSign", "(ANF4) 0", "trailing sign", "0123", "sign"},
    {"aByteAboveAscii", "(ACF2) \"\"", "ascii", "a\x80", "character"},
    {"anotherNotANumber", "(BNF4) 0", "float", bytes("\xFF\xC0\0\0"), "float"},
    {"moreThan64BitsInHex", "(ANF17) 0", "hex", "10000000000000000", "range"},
    {"aPointAtTheEnd", "(ANF4) 0", "decimals \\\".\\\"", "123.", "digits"},
    {"aLiteral", "(ACF2fix) \"ab\"", "", "ac", "literal"},
};

INSTANTIATE_TEST_SUITE_P(Items, Refused, testing::ValuesIn(s_atRefused), nameOfRule);

class Unmade : public testing::TestWithParam<tOneItem>
{
};

TEST_P(Unmade, valueIsNotMade)
{
    EXPECT_EQ(make(oneItem(GetParam()), "{\"n\"=" + GetParam().m_strTree + "}"), GetParam().m_strBytes + " at n");
}

const tOneItem s_atUnmade[] = {
    {"aLongNumber", "(ANF3) 0", "", "tooLong", "1000"},
    {"aTruthValueAsDigits", "(ANF3) 0", "", "type", "true"},
    {"aTruthValueAsBytes", "(BNF2) 0", "", "type", "false"},
    {"aLongNegativeNumber", "(ANF3) 0", "", "tooLong", "-100"},
    {"aLongText", "(ACF3) \"\"", "", "tooLong", "\"abcd\""},
    {"longBytes", "(BCF3) \"\"", "", "tooLong", "\"abcd\""},
    {"shortBytes", "(BCF3) \"\"", "", "width", "\"ab\""},
    {"shortKeptText", "(ACF3) \"\"", "keep", "width", "\"ab\""},
    {"textEndingInPadding", "(ACF3) \"\"", "", "lossy", "\"a \""},
    {"rightTextBeginningInPadding", "(ACF3) \"\"", "right", "lossy", "\" a\""},
    {"aFraction", "(ANF5) 0", "", "lossy", "1.5"},
    {"tooManyDecimals", "(ANF5) 0", "decimals 2", "lossy", "\"1.505\""},
    {"textInANumber", "(ANF5) 0", "", "digits", "\"12ab\""},
    {"plusInANumber", "(ANF5) 0", "", "sign", "\"+12\""},
    {"minusZero", "(ANF5) 0", "", "sign", "\"-0\""},
    {"aTextWithZerosInFront", "(ANF5) 0", "", "lossy", "\"007\""},
    {"aNumberInAText", "(ACF5) \"\"", "", "type", "12"},
    {"nullInANumber", "(ANF5) 0", "", "null", "null"},
    {"nullInAText", "(ACF5) \"\"", "", "null", "null"},
    {"zeroWhereZerosAreNull", "(ANF5) 0", "zero is null", "lossy", "0"},
    {"belowZeroWithoutSign", "(BNF2) 0", "", "negative", "-1"},
    {"belowZeroInOctal", "(ANF5) 0", "octal", "negative", "-1"},
    {"aLongBinaryNumber", "(BNF2) 0", "", "tooLong", "65536"},
    {"aLongSignedNumber", "(BNF1) 0", "signed", "tooLong", "128"},
    {"aContainerInALeaf", "(BNF1) 0", "", "type", "{\"a\"=1}"},
    {"anArrayInALeaf", "(BNF1) 0", "", "type", "[1]"},
    {"unknownBits", "(BNF1) 0", "bits 1 a, 7 b", "unknown", "{\"c\"=1}"},
    {"aTextBeyondTheCodePage", "(ACF3) \"\"", "cp037", "character", "\"\\xE2\\x82\\xAC\""},
    {"aTextBeyondAscii", "(ACF3) \"\"", "ascii", "character", "\"\\xC3\\xA9\""},
    {"anotherLiteral", "(ACF2fix) \"ab\"", "", "literal", "\"ac\""},
    {"anInvalidValue", "(ANF2) 1", "valid 1..12", "invalid", "13"},
    {"aFloatBeyondFourBytes", "(BNF4) 0", "float", "tooLong", "1e39"},
    {"packedDigitsTooMany", "(BNF2) 0", "packed", "tooLong", "1234"},
};

INSTANTIATE_TEST_SUITE_P(Items, Unmade, testing::ValuesIn(s_atUnmade), nameOfRule);

}  // namespace

TEST(Runs, doublesInDigitsTakeTheirShortestText)
{
    EXPECT_EQ(make(layout4("\"n\" = (ANF8) 0, \"@n\" = \"decimals 2\""), "{\"n\"=12.5}"), "00001250");
    EXPECT_EQ(make(layout4("\"n\" = (ANF8) 0, \"@n\" = \"decimals 2\""), "{\"n\"=0.1}"), "00000010");
    EXPECT_EQ(make(layout4("\"n\" = (ANF8) 0"), "{\"n\"=120.0}"), "00000120");
    EXPECT_EQ(make(layout4("\"n\" = (ANF8) 0, \"@n\" = \"decimals 2\""), "{\"n\"=0.125}"), "lossy at n");
}

TEST(Runs, decimalsComeUnscaledWhenAskedFor)
{
    tReadOptions options;
    options.m_bUnscaled = true;
    EXPECT_EQ(read(layout4("\"n\" = (ANF6) 0, \"@n\" = \"decimals 2\""), "001250", options), "{\"n\"=1250}");
    EXPECT_EQ(read(layout4("\"n\" = (BNF2) 0, \"@n\" = \"decimals 2\""), "\1\2", options), "{\"n\"=258}");
}

TEST(Runs, aFloatOfFourBytesRounds)
{
    EXPECT_EQ(make(layout4("\"n\" = (BNF4) 0, \"@n\" = \"float\""), "{\"n\"=0.1}"), "\x3D\xCC\xCC\xCD");
}

TEST(Runs, oldSignsAreFindings)
{
    EXPECT_EQ(read(layout4("\"n\" = (BNF2) 0, \"@n\" = \"packed; signed\""), "\x12\x3F"),
              "{\"n\"=123} ! oldSign at n @0+2");
    EXPECT_EQ(read(layout4("\"n\" = (ANF3) 0, \"@n\" = \"zoned; signed\""), "123"), "{\"n\"=123} ! oldSign at n @0+3");
}

TEST(Runs, impossibleDatesAreFindingsBothWays)
{
    const CLayout layout = layout4("\"d\" = (ANF6YYMMDD) 0");
    EXPECT_EQ(read(layout, "230229"), "{\"d\"=230229} ! date at d @0+6");
    EXPECT_EQ(make(layout, "{\"d\"=230229}"), "230229 ! date at d @0+6");
}

TEST(Runs, valuesOutsideTheValidOnesAreFindings)
{
    const CLayout layout = layout4(
        "\"n\" = (ANF2) 1, \"@n\" = \"valid 1..12\", \"t\" = (ACF2) \"A\", "
        "\"@t\" = \"valid \\\"A\\\" | \\\"BC\\\"\", "
        "\"d\" = (ACF8) \"01012000\", \"@d\" = \"valid date DDMMYYYY\"");
    expectBoth(layout, "12BC29022024", "{\"n\"=12,\"t\"=\"BC\",\"d\"=\"29022024\"}");
    EXPECT_EQ(read(layout, "13B 29022023"),
              "{\"n\"=13,\"t\"=\"B\",\"d\"=\"29022023\"}"
              " ! invalid at n @0+2 ! invalid at t @2+2 ! invalid at d @4+8");
    EXPECT_EQ(make(layout, "{\"d\"=\"29022023\"}"), "invalid at d");
}

TEST(Runs, nowGoesIntoDatesButThoseThatAreKept)
{
    tMakeOptions options;
    options.m_bNow = true;
    const CLayout layout =
        layout4("\"a\" = (ANF8YYYYMMDD) 20000101, \"b\" = (ANF8YYYYMMDD) 20000101, \"@b\" = \"keep\"");
    const std::string made = make(layout, "{\"a\"=19990101,\"b\"=19990101}", options);
    EXPECT_GT(made.substr(0, 8), "20200101");
    EXPECT_EQ(made.substr(8), "19990101");
    EXPECT_EQ(make(layout, "{}"), "2000010120000101");
}

TEST(Runs, wordsAreInheritedAndOverruled)
{
    const CLayout layout =
        layout4("\"a\" = (BNF2) 0, \"s\" = { \"b\" = (BNF2) 0, \"c\" = (BNF2) 0, \"@c\" = \"big\" }", "little");
    expectBoth(layout, bytes("\1\0\1\0\0\1"), R"({"a"=1,"s"={"b"=1,"c"=1}})");
}

TEST(Runs, inheritedPagesAreForTextItemsAlone)
{
    const CLayout layout = layout4(
        "\"a\" = (ACF1) \"\", \"b\" = (BCF1) \"x\", \"c\" = (BCF1) \"x\", \"@c\" = \"cp037\", "
        "\"d\" = (ACF1) \"\", \"@d\" = \"raw\", \"e\" = (ACV1+1) \"\", \"@e\" = \"raw\"",
        "cp037");
    expectBoth(layout, "\xC1\xC1\xC1\xC1\xF1\xC1", R"({"a"="A","b"="\xC1","c"="A","d"="\xC1","e"="\xC1"})");
}

TEST(Runs, elementsOfLeavesTakeTheValueWordsOfTheirArray)
{
    const CLayout layout =
        layout4("\"n\" = (BNF1) 0, \"@n\" = \"count of a\", \"a\" = [ (BNF2) 0 ], \"@a\" = \"little\"");
    expectBoth(layout, bytes("\2\1\0\2\0"), R"({"n"=2,"a"=[1,2]})");
}

TEST(Runs, partsWithOnlyAnIdKeepIt)
{
    const CLayout layout = layout4("#7 = (BNF1) 0, \"@#7\" = \"valid 1..2\", \"b\" = (BNF1) 0");
    expectBoth(layout, "\1\2", R"({#7=1,"b"=2})");
    EXPECT_EQ(make(layout, "{#7=9}"), "invalid at #7");
}

TEST(Runs, partsWithoutNameAndIdAreInNoTree)
{
    expectBoth(layout4("(ACF2fix) \"ab\", \"n\" = (ANF1) 0"), "ab1", R"({"n"=1})");
    EXPECT_EQ(read(layout4("(ACF2fix) \"ab\", \"n\" = (ANF1) 0"), "ax1"), "literal at (1) @0+2");
}

TEST(Runs, likeIsACopy)
{
    const CLayout layout = layout4(
        "\"a\" = { \"n\" = (BNF1) 0, \"t\" = (ACF2) \"\", \"@t\" = \"right\" }, "
        "\"b\" = { \"@\" = \"like a\" }");
    expectBoth(layout, "\1 x\2 y", R"({"a"={"n"=1,"t"="x"},"b"={"n"=2,"t"="y"}})");
}

TEST(Runs, standardKeywordsSayTheSameAsRules)
{
    registerStandardKeywords();
    expectBoth(layout4("\"a\" = (ANF6dec_2) 0, \"b\" = (BNF2le) 0, \"c\" = (BNF1int) 0, \"d\" = (BNF2packed_2) 0, "
                       "\"e\" = (ANF3oct) 0, \"f\" = (ACF3right) \"\""),
               bytes("001250\1\0\xFF\x12\x3F"
                     "017  x"),
               R"({"a"="12.50","b"=1,"c"=-1,"d"="1.23","e"=15,"f"="x"})");
}

TEST(Runs, namesThatBeginWithAtAreWrittenTwice)
{
    expectBoth(layout4("\"@@x\" = (BNF1) 0"), "\5", R"({"@x"=5})");
}

}  // namespace murv::tests
