// tests/layout/values/text_values_test.cpp - texts, byte strings and bytes as hexadecimal digits, rule by rule.
#include "tests/layout/values/item_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

const tItem s_ctText = fixedItem(IF_text, 6);
const tItem s_ctKept = paddedItem(s_ctText, PAD_none);
const tItem s_ctBytes = fixedItem(IF_bytes, 4);

std::string madeOwn(const tItem& item, const tScalar& value)
{
    std::string out;
    const E_PacketFault fault = makeOwnValue(item, value, out);
    return fault == PF_none ? out : std::string("!") + getFaultName(fault);
}

TEST(TextValues, blanksAtTheEndArePadding)
{
    EXPECT_EQ("\"ab c\"", readBack(s_ctText, "ab c  "));
    EXPECT_EQ("\"  ab\"", readBack(s_ctText, "  ab  "));
    EXPECT_EQ("\"\"", readBack(s_ctText, "      "));
    EXPECT_EQ("ab c  ", made(s_ctText, "ab c"));
    EXPECT_EQ("      ", made(s_ctText, ""));
    EXPECT_EQ("abcdef", made(s_ctText, "abcdef"));
}

TEST(TextValues, blanksInFrontArePaddingOfRightTexts)
{
    const tItem right = paddedItem(s_ctText, PAD_blanksFront);
    EXPECT_EQ("\"ab c\"", readBack(right, "  ab c"));
    EXPECT_EQ("\"ab  \"", readBack(right, "  ab  "));
    EXPECT_EQ("  ab c", made(right, "ab c"));
    EXPECT_EQ("!lossy", made(right, " ab"));
    EXPECT_EQ("  ab  ", made(right, "ab  "));
}

TEST(TextValues, aTextThatEndsInPaddingIsRefused)
{
    EXPECT_EQ("!lossy", made(s_ctText, "ab "));
    EXPECT_EQ("!lossy", made(s_ctText, "ab    "));
    EXPECT_EQ("!lossy", made(paddedItem(s_ctBytes, PAD_zeroBytes), std::string_view("a\0", 2)));
}

TEST(TextValues, nothingIsCut)
{
    EXPECT_EQ("!tooLong", made(s_ctText, "abcdefg"));
    EXPECT_EQ("!tooLong", made(varyingItem(IF_text, 3), "abcd"));
    EXPECT_EQ("abc", made(varyingItem(IF_text, 3), "abc"));
}

TEST(TextValues, keptPaddingIsPartOfTheValue)
{
    EXPECT_EQ("\"ab    \"", readBack(s_ctKept, "ab    "));
    EXPECT_EQ("ab    ", made(s_ctKept, "ab    "));
    EXPECT_EQ("!width", made(s_ctKept, "ab"));
    EXPECT_EQ("!tooLong", made(s_ctKept, "abcdefg"));
}

TEST(TextValues, byteStringsAreKeptWhole)
{
    EXPECT_EQ(std::string("\"a \0 \"", 6), readBack(s_ctBytes, std::string_view("a \0 ", 4)));
    EXPECT_EQ("a \xFF ", made(s_ctBytes, "a \xFF "));
    EXPECT_EQ("!width", made(s_ctBytes, "abc"));
    EXPECT_EQ("!tooLong", made(s_ctBytes, "abcde"));
}

TEST(TextValues, zeroBytesAndBlanksArePaddingByRule)
{
    const tItem zeros = paddedItem(s_ctBytes, PAD_zeroBytes);
    EXPECT_EQ("\"ab\"", readBack(zeros, std::string_view("ab\0\0", 4)));
    EXPECT_EQ("\"ab  \"", readBack(zeros, "ab  "));
    EXPECT_EQ(std::string("ab\0\0", 4), made(zeros, "ab"));
    const tItem blanks = paddedItem(s_ctBytes, PAD_blanksAfter);
    EXPECT_EQ("\"ab\"", readBack(blanks, "ab  "));
    EXPECT_EQ("ab  ", made(blanks, "ab"));
}

TEST(TextValues, varyingTextsHaveNoPadding)
{
    const tItem varying = varyingItem(IF_text);
    EXPECT_EQ("\" ab \"", readBack(varying, " ab "));
    EXPECT_EQ(" ab ", made(varying, " ab "));
    EXPECT_EQ("\"\"", readBack(varying, ""));
    EXPECT_EQ("", made(varying, ""));
}

TEST(TextValues, onlyTextsAndByteStringsAreTaken)
{
    EXPECT_EQ("!type", made(s_ctText, 42));
    EXPECT_EQ("!type", made(s_ctText, 1.5));
    EXPECT_EQ("!type", made(s_ctText, boolScalar(true)));
    EXPECT_EQ("!null", made(s_ctText, tScalar()));
    EXPECT_EQ("!null", made(s_ctBytes, tScalar()));
}

TEST(TextValues, theLayoutsOwnValueIsFilledUp)
{
    EXPECT_EQ("ab    ", madeOwn(s_ctKept, makeScalar("ab")));
    EXPECT_EQ("ab    ", madeOwn(s_ctText, makeScalar("ab ")));
    EXPECT_EQ(std::string("ab\0\0", 4), madeOwn(s_ctBytes, makeScalar("ab")));
    EXPECT_EQ("      ", madeOwn(s_ctText, tScalar()));
    EXPECT_EQ("0000", madeOwn(fixedItem(IF_hexText, 4), makeScalar("")));
    EXPECT_EQ("!tooLong", madeOwn(s_ctText, makeScalar("abcdefg")));
    EXPECT_EQ("0007", madeOwn(fixedItem(IF_digits, 4), makeScalar("007")));
    EXPECT_EQ("0050", madeOwn(decimalItem(fixedItem(IF_digits, 4), 2), makeScalar("00.5")));
    EXPECT_EQ("!null", madeOwn(fixedItem(IF_digits, 4), tScalar()));
    EXPECT_EQ("\x40\x40\x40\x40\x40\x40", madeOwn(pageItem(s_ctKept, "cp037"), makeScalar("")));
}

TEST(TextValues, codePagesGiveUtf8)
{
    const tItem ebcdic = pageItem(s_ctText, "cp037");
    EXPECT_EQ("\"A\xC3\x84!\"", readBack(ebcdic, "\xC1\x63\x5A\x40\x40\x40"));
    EXPECT_EQ("\xC1\x63\x5A\x40\x40\x40", made(ebcdic, "A\xC3\x84!"));
    EXPECT_EQ("!character", made(ebcdic, "\xE2\x82\xAC"));
    EXPECT_EQ("!character", made(ebcdic, "\xC4"));
    EXPECT_EQ("!lossy", made(ebcdic, "A "));
    EXPECT_EQ("!character", readBack(pageItem(s_ctText, "ascii"), "caf\xE9  "));
    EXPECT_EQ("\"caf\xC3\xA9\"", readBack(pageItem(s_ctText, "latin1"), "caf\xE9  "));
    EXPECT_EQ("!tooLong", made(pageItem(s_ctText, "latin1"), "caf\xC3\xA9xxx"));
    EXPECT_EQ("caf\xE9xx", made(pageItem(s_ctText, "latin1"), "caf\xC3\xA9xx"));
}

TEST(TextValues, withoutACodePageTextIsBytes)
{
    EXPECT_EQ("\"\xFF\xFE\"", readBack(s_ctText, "\xFF\xFE    "));
    EXPECT_EQ("\xFF\xFE    ", made(s_ctText, "\xFF\xFE"));
}

TEST(TextValues, hexadecimalDigitsAreTwoAByte)
{
    const tItem hex = fixedItem(IF_hexText, 6);
    EXPECT_EQ("\"\x12\xAB\xFF\"", readBack(paddedItem(hex, PAD_none), "12ABFF"));
    EXPECT_EQ("!digits", readBack(hex, "12abFF"));
    EXPECT_EQ("!digits", readBack(hex, "12 BFF"));
    EXPECT_EQ("!digits", readBack(fixedItem(IF_hexText, 3), "123"));
    EXPECT_EQ("12ABFF", made(hex, "\x12\xAB\xFF"));
    EXPECT_EQ("!width", made(hex, "\x12\xAB"));
    EXPECT_EQ("!tooLong", made(hex, "\x12\xAB\xFF\x01"));
    EXPECT_EQ("\"\x12\xAB\xFF\"", readBack(lowerItem(hex), "12abff"));
    EXPECT_EQ("!digits", readBack(lowerItem(hex), "12ABff"));
    EXPECT_EQ("12abff", made(lowerItem(hex), "\x12\xAB\xFF"));
}

TEST(TextValues, paddingOfHexadecimalDigitsStandsInTheItem)
{
    const tItem hex = paddedItem(fixedItem(IF_hexText, 6), PAD_blanksAfter);
    EXPECT_EQ("\"\x12 \"", readBack(hex, "1220  "));
    EXPECT_EQ("1220  ", made(hex, "\x12 "));
}

TEST(TextValues, hexadecimalDigitsAreInTheCodePage)
{
    const tItem hex = pageItem(fixedItem(IF_hexText, 4), "cp037");
    EXPECT_EQ("\"\x1A\x09\"", readBack(hex, "\xF1\xC1\xF0\xF9"));
    EXPECT_EQ("\xF1\xC1\xF0\xF9", made(hex, "\x1A\x09"));
}

TEST(TextValues, datesInTextsAreChecked)
{
    const tItem date = timeItem(fixedItem(IF_text, 8), "YYYYMMDD");
    EXPECT_EQ("\"20250131\"", readBack(date, "20250131"));
    EXPECT_EQ("\"20250231\"!date", readBack(date, "20250231"));
    EXPECT_EQ("\"2025\"!date", readBack(date, "2025    "));
    EXPECT_EQ("20250231!date", made(date, "20250231"));
}

TEST(TextValues, textsOfThePacketAreNotCopied)
{
    const std::string bytes = "plain text, no copy   ";
    std::string scratch;
    tScalar value;
    ASSERT_EQ(PF_none, readValue(fixedItem(IF_text, 22), bytes, VO_none, value, scratch));
    EXPECT_EQ(bytes.data(), value.m_strvText.data());
    EXPECT_TRUE(scratch.empty());
}

}  // namespace
