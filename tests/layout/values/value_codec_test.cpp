// tests/layout/values/value_codec_test.cpp - length prefixes, and which values are valid.
#include <utility>

#include "tests/layout/values/item_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

tItem prefixedItem(unsigned char width, signed char calibration, bool binary = false, unsigned int most = 0)
{
    tItem item = varyingItem(IF_text, most);
    item.m_ucPrefix = width;
    item.m_cCalibration = calibration;
    item.m_bBinaryPrefix = binary;
    return item;
}

std::string readLength(const tItem& item, std::string_view bytes)
{
    std::uint64_t length = 0;
    const E_PacketFault fault = readPrefix(item, bytes, length);
    return fault == PF_none ? std::to_string(length) : std::string("!") + getFaultName(fault);
}

std::string madeLength(const tItem& item, std::uint64_t length)
{
    std::string out = "<";
    const E_PacketFault fault = makePrefix(item, length, out);
    EXPECT_TRUE(fault == PF_none || out == "<");
    return fault == PF_none ? out.substr(1) : std::string("!") + getFaultName(fault);
}

TEST(Prefix, countsItselfLessTheCalibration)
{
    EXPECT_EQ("5", readLength(prefixedItem(3, 0), "008hello"));
    EXPECT_EQ("8", readLength(prefixedItem(3, 3), "008"));
    EXPECT_EQ("3", readLength(prefixedItem(3, -2), "008"));
    EXPECT_EQ("008", madeLength(prefixedItem(3, 0), 5));
    EXPECT_EQ("005", madeLength(prefixedItem(3, 3), 5));
    EXPECT_EQ("010", madeLength(prefixedItem(3, -2), 5));
}

TEST(Prefix, hasDigitsAndNothingElse)
{
    EXPECT_EQ("!digits", readLength(prefixedItem(3, 3), " 08"));
    EXPECT_EQ("!digits", readLength(prefixedItem(3, 3), "-08"));
    EXPECT_EQ("!digits", readLength(prefixedItem(3, 3), "0x8"));
    EXPECT_EQ("!tooLong", madeLength(prefixedItem(2, 2), 100));
    EXPECT_EQ("99", madeLength(prefixedItem(2, 2), 99));
    EXPECT_EQ("999999999", madeLength(prefixedItem(9, 9), 999999999));
}

TEST(Prefix, ofLessThanNothingOrMoreThanTheMostIsRefused)
{
    EXPECT_EQ("!size", readLength(prefixedItem(3, 0), "002"));
    EXPECT_EQ("0", readLength(prefixedItem(3, 0), "003"));
    EXPECT_EQ("!size", readLength(prefixedItem(3, 3, false, 7), "008"));
    EXPECT_EQ("7", readLength(prefixedItem(3, 3, false, 7), "007"));
    EXPECT_EQ("!tooLong", madeLength(prefixedItem(1, 5), 3)) << "a number below zero";
}

TEST(Prefix, binaryInEitherOrder)
{
    const tItem big = prefixedItem(2, 2, true);
    EXPECT_EQ("258", readLength(big, "\x01\x02"));
    EXPECT_EQ("513", readLength(littleItem(big), "\x01\x02"));
    EXPECT_EQ("\x01\x02", madeLength(big, 258));
    EXPECT_EQ("\x02\x01", madeLength(littleItem(big), 258));
    EXPECT_EQ("!tooLong", madeLength(big, 65536));
}

TEST(Prefix, widerThanAWord)
{
    const tItem nine = prefixedItem(9, 9, true);
    const std::string_view bytes("\0\0\0\0\0\0\0\1\2", 9);
    EXPECT_EQ("258", readLength(nine, bytes));
    EXPECT_EQ(bytes, madeLength(nine, 258));
    const std::string reversed(bytes.rbegin(), bytes.rend());
    EXPECT_EQ("258", readLength(littleItem(nine), reversed));
    EXPECT_EQ(reversed, madeLength(littleItem(nine), 258));
    EXPECT_EQ("!size", readLength(nine, std::string_view("\1\0\0\0\0\0\0\1\2", 9)));
}

TEST(Prefix, isInTheCodePage)
{
    const tItem ebcdic = pageItem(prefixedItem(2, 2), "cp037");
    EXPECT_EQ("12", readLength(ebcdic, "\xF1\xF2"));
    EXPECT_EQ("!digits", readLength(ebcdic, "12"));
    EXPECT_EQ("\xF1\xF2", madeLength(ebcdic, 12));
    tItem raw = prefixedItem(2, 2);
    raw.m_pPrefixPage = findCodePage("cp500");
    EXPECT_EQ("\xF1\xF2", madeLength(raw, 12)) << "the value has no page, its prefix has one";
    EXPECT_EQ("12", readLength(raw, "\xF1\xF2"));
}

TEST(Prefix, everyLengthComesBack)
{
    for (const int calibration : {-128, -1, 0, 1, 3, 127})
    {
        for (const bool binary : {false, true})
        {
            const tItem item = prefixedItem(3, static_cast<signed char>(calibration), binary);
            for (std::uint64_t length = 0; length < 1100; ++length)
            {
                const std::string bytes = madeLength(item, length);
                ASSERT_TRUE(bytes == "!tooLong" || readLength(item, bytes) == std::to_string(length))
                    << length << " " << calibration;
            }
        }
    }
}

tItem validItem(tItem item, std::vector<tValidRange> ranges)
{
    item.m_vValid = std::move(ranges);
    return item;
}

TEST(Valid, withoutARuleAllValuesAre)
{
    EXPECT_TRUE(isValidValue(fixedItem(IF_digits, 5), signedScalar(5)));
}

TEST(Valid, numbersFromOneToAnother)
{
    const tItem month = validItem(fixedItem(IF_digits, 2), {{"1", "12"}, {"99", "99"}});
    EXPECT_TRUE(isValidValue(month, signedScalar(1)));
    EXPECT_TRUE(isValidValue(month, signedScalar(12)));
    EXPECT_TRUE(isValidValue(month, signedScalar(99)));
    EXPECT_FALSE(isValidValue(month, signedScalar(0)));
    EXPECT_FALSE(isValidValue(month, signedScalar(13)));
    EXPECT_FALSE(isValidValue(month, signedScalar(-5)));
    EXPECT_TRUE(isValidValue(month, tScalar())) << "null is no value";
}

TEST(Valid, numbersAreComparedExactly)
{
    const tItem item = validItem(fixedItem(IF_digits, 30), {{"-1.5", "18446744073709551616.01"}});
    EXPECT_TRUE(isValidValue(item, unsignedScalar(18446744073709551615U)));
    EXPECT_TRUE(isValidValue(item, makeScalar("18446744073709551616.010")));
    EXPECT_FALSE(isValidValue(item, makeScalar("18446744073709551616.011")));
    EXPECT_TRUE(isValidValue(item, makeScalar("-1.50")));
    EXPECT_FALSE(isValidValue(item, makeScalar("-1.51")));
    EXPECT_TRUE(isValidValue(item, makeScalar("-0.00")));
    EXPECT_FALSE(isValidValue(item, signedScalar(-2)));
}

TEST(Valid, doubles)
{
    const tItem degrees = validItem(fixedItem(IF_float, 8), {{"-90", "90"}});
    EXPECT_TRUE(isValidValue(degrees, doubleScalar(-90)));
    EXPECT_TRUE(isValidValue(degrees, doubleScalar(89.99)));
    EXPECT_FALSE(isValidValue(degrees, doubleScalar(90.01)));
    EXPECT_FALSE(isValidValue(degrees, doubleScalar(std::stod("nan"))));
}

TEST(Valid, textsAreTheSameWithoutPadding)
{
    const tItem kind = validItem(fixedItem(IF_text, 3), {{"A", ""}, {"B", "B"}, {"", ""}});
    EXPECT_TRUE(isValidValue(kind, makeScalar("A")));
    EXPECT_TRUE(isValidValue(kind, makeScalar("B  ")));
    EXPECT_TRUE(isValidValue(kind, makeScalar("")));
    EXPECT_FALSE(isValidValue(kind, makeScalar("AB")));
    EXPECT_FALSE(isValidValue(kind, makeScalar("a")));
    EXPECT_FALSE(isValidValue(validItem(fixedItem(IF_text, 3), {{"1", "1"}}), makeScalar("01")));
}

TEST(Valid, rangesOfTexts)
{
    const tItem letters = validItem(fixedItem(IF_text, 2), {{"A", "F"}});
    EXPECT_TRUE(isValidValue(letters, makeScalar("C")));
    EXPECT_FALSE(isValidValue(letters, makeScalar("G")));
    const tItem digits = validItem(fixedItem(IF_text, 2), {{"1", "12"}});
    EXPECT_TRUE(isValidValue(digits, makeScalar("09")));
    EXPECT_FALSE(isValidValue(digits, makeScalar("13")));
}

TEST(Valid, dates)
{
    tItem date = fixedItem(IF_digits, 8);
    date.m_strValidDate = "DDMMYYYY";
    EXPECT_TRUE(isValidValue(date, signedScalar(1022024)));
    EXPECT_TRUE(isValidValue(date, signedScalar(29022024)));
    EXPECT_FALSE(isValidValue(date, signedScalar(29022023)));
    EXPECT_FALSE(isValidValue(date, signedScalar(32012024)));
    EXPECT_TRUE(isValidValue(date, makeScalar("01022024")));
    EXPECT_FALSE(isValidValue(date, makeScalar("1022024")));
    EXPECT_FALSE(isValidValue(date, makeScalar("01x22024")));
    EXPECT_FALSE(isValidValue(date, signedScalar(-1022024)));
    EXPECT_TRUE(isValidValue(date, tScalar()));
}

TEST(Valid, datesWithOtherCharactersBetweenTheirParts)
{
    tItem date = fixedItem(IF_text, 10);
    date.m_strValidDate = "YYYY-MM-DD";
    EXPECT_TRUE(isValidValue(date, makeScalar("2024-02-29")));
    EXPECT_FALSE(isValidValue(date, makeScalar("2023-02-29")));
    EXPECT_FALSE(isValidValue(date, makeScalar("2024/02/29")));
    EXPECT_FALSE(isValidValue(date, makeScalar("20240229")));
}

}  // namespace
