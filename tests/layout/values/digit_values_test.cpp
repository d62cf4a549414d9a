// tests/layout/values/digit_values_test.cpp - decimal numbers in characters, rule by rule.
#include <limits>

#include "tests/layout/values/item_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

const tItem s_ctFive = fixedItem(IF_digits, 5);

TEST(DigitValues, zerosInFrontFillFixedWidth)
{
    EXPECT_EQ("42", readBack(s_ctFive, "00042"));
    EXPECT_EQ("-42", readBack(s_ctFive, "-0042"));
    EXPECT_EQ("0", readBack(s_ctFive, "00000"));
    EXPECT_EQ("00042", made(s_ctFive, 42));
    EXPECT_EQ("-0042", made(s_ctFive, -42));
    EXPECT_EQ("99999", made(s_ctFive, 99999));
}

TEST(DigitValues, nothingIsCut)
{
    EXPECT_EQ("!tooLong", made(s_ctFive, 100000));
    EXPECT_EQ("!tooLong", made(s_ctFive, -10000));
    EXPECT_EQ("!tooLong", made(varyingItem(IF_digits, 3), 1000));
    EXPECT_EQ("1000", made(varyingItem(IF_digits), 1000));
}

TEST(DigitValues, otherCharactersAreRefused)
{
    EXPECT_EQ("!sign", readBack(s_ctFive, "+0042"));
    EXPECT_EQ("!sign", readBack(s_ctFive, "-0000"));
    EXPECT_EQ("!blank", readBack(s_ctFive, "     "));
    EXPECT_EQ("!padding", readBack(s_ctFive, "   42"));
    EXPECT_EQ("!padding", readBack(s_ctFive, "42   "));
    EXPECT_EQ("!digits", readBack(s_ctFive, "0 042"));
    EXPECT_EQ("!digits", readBack(s_ctFive, "12x45"));
    EXPECT_EQ("!digits", readBack(s_ctFive, "0-042"));
    EXPECT_EQ("!digits", readBack(s_ctFive, "12.45"));
    EXPECT_EQ("!digits", readBack(fixedItem(IF_digits, 1), "-"));
    EXPECT_EQ("!digits", readBack(fixedItem(IF_digits, 1), "\xB1"));
}

TEST(DigitValues, integersOf64BitsAreSignedWhenTheyFit)
{
    const tItem twenty = fixedItem(IF_digits, 20);
    EXPECT_EQ("9223372036854775807", readBack(twenty, "09223372036854775807"));
    EXPECT_EQ("9223372036854775808u", readBack(twenty, "09223372036854775808"));
    EXPECT_EQ("18446744073709551615u", readBack(twenty, "18446744073709551615"));
    EXPECT_EQ("-9223372036854775808", readBack(twenty, "-9223372036854775808"));
    EXPECT_EQ("18446744073709551615", made(twenty, unsignedScalar(18446744073709551615U)));
    EXPECT_EQ("-9223372036854775808", made(twenty, std::numeric_limits<long long>::min()));
}

TEST(DigitValues, beyond64BitsTheDigitsAreText)
{
    const tItem wide = fixedItem(IF_digits, 25);
    EXPECT_EQ("\"18446744073709551616\"", readBack(wide, "0000018446744073709551616"));
    EXPECT_EQ("\"-9223372036854775809\"", readBack(wide, "-000009223372036854775809"));
    EXPECT_EQ("\"1234567890123456789012345\"", readBack(wide, "1234567890123456789012345"));
    EXPECT_EQ("1234567890123456789012345", made(wide, "1234567890123456789012345"));
    EXPECT_EQ("-000009223372036854775809", made(wide, "-9223372036854775809"));
    EXPECT_EQ("!tooLong", made(wide, "12345678901234567890123456"));
}

TEST(DigitValues, varyingWidthHasNoZerosInFront)
{
    const tItem varying = varyingItem(IF_digits);
    EXPECT_EQ("42", readBack(varying, "42"));
    EXPECT_EQ("0", readBack(varying, "0"));
    EXPECT_EQ("-7", readBack(varying, "-7"));
    EXPECT_EQ("!zeros", readBack(varying, "042"));
    EXPECT_EQ("!zeros", readBack(varying, "-07"));
    EXPECT_EQ("!zeros", readBack(varying, "00"));
    EXPECT_EQ("!blank", readBack(varying, ""));
    EXPECT_EQ("!padding", readBack(varying, " 42"));
    EXPECT_EQ("-42", made(varying, -42));
}

TEST(DigitValues, blanksForZerosInFront)
{
    const tItem blanks = paddedItem(s_ctFive, PAD_blanksFront);
    EXPECT_EQ("42", readBack(blanks, "   42"));
    EXPECT_EQ("-42", readBack(blanks, "  -42"));
    EXPECT_EQ("0", readBack(blanks, "    0"));
    EXPECT_EQ("12345", readBack(blanks, "12345"));
    EXPECT_EQ("!padding", readBack(blanks, "  042"));
    EXPECT_EQ("!padding", readBack(blanks, "00042"));
    EXPECT_EQ("!padding", readBack(blanks, "42   "));
    EXPECT_EQ("!digits", readBack(blanks, "-  42"));
    EXPECT_EQ("   42", made(blanks, 42));
    EXPECT_EQ("  -42", made(blanks, -42));
    EXPECT_EQ("    0", made(blanks, 0));
}

TEST(DigitValues, digitsLeftAndBlanksAfterThem)
{
    const tItem left = paddedItem(s_ctFive, PAD_blanksAfter);
    EXPECT_EQ("42", readBack(left, "42   "));
    EXPECT_EQ("-42", readBack(left, "-42  "));
    EXPECT_EQ("!padding", readBack(left, "042  "));
    EXPECT_EQ("!padding", readBack(left, " 42  "));
    EXPECT_EQ("42   ", made(left, 42));
}

TEST(DigitValues, blankIsNullOnlyByItsRule)
{
    EXPECT_EQ("null", readBack(blankNullItem(s_ctFive), "     "));
    EXPECT_EQ("null", readBack(blankNullItem(varyingItem(IF_digits)), ""));
    EXPECT_EQ("!blank", readBack(blankNullItem(varyingItem(IF_digits)), "  "));
    EXPECT_EQ("0", readBack(blankNullItem(s_ctFive), "00000"));
    EXPECT_EQ("!padding", readBack(blankNullItem(s_ctFive), "    1"));
    EXPECT_EQ("     ", made(blankNullItem(s_ctFive), tScalar()));
    EXPECT_EQ("", made(blankNullItem(varyingItem(IF_digits)), tScalar()));
    EXPECT_EQ("!null", made(s_ctFive, tScalar()));
}

TEST(DigitValues, zeroIsNullOnlyByItsRule)
{
    EXPECT_EQ("null", readBack(zeroNullItem(s_ctFive), "00000"));
    EXPECT_EQ("1", readBack(zeroNullItem(s_ctFive), "00001"));
    EXPECT_EQ("!blank", readBack(zeroNullItem(s_ctFive), "     "));
    EXPECT_EQ("00000", made(zeroNullItem(s_ctFive), tScalar()));
    EXPECT_EQ("0", made(zeroNullItem(varyingItem(IF_digits)), tScalar()));
    EXPECT_EQ("    0", made(zeroNullItem(paddedItem(s_ctFive, PAD_blanksFront)), tScalar()));
}

TEST(DigitValues, aZeroThatWouldBeReadAsNullIsRefused)
{
    EXPECT_EQ("!lossy", made(zeroNullItem(s_ctFive), 0));
    EXPECT_EQ("!lossy", made(zeroNullItem(s_ctFive), "0"));
    EXPECT_EQ("!lossy", made(zeroNullItem(s_ctFive), 0.0));
    EXPECT_EQ("!lossy", made(zeroNullItem(decimalItem(s_ctFive, 2)), "0.00"));
}

TEST(DigitValues, impliedDecimalsAreExactText)
{
    const tItem cents = decimalItem(s_ctFive, 2);
    EXPECT_EQ("\"12.50\"", readBack(cents, "01250"));
    EXPECT_EQ("\"0.05\"", readBack(cents, "00005"));
    EXPECT_EQ("\"0.00\"", readBack(cents, "00000"));
    EXPECT_EQ("\"-0.05\"", readBack(cents, "-0005"));
    EXPECT_EQ("!sign", readBack(cents, "-0000"));
    EXPECT_EQ("\"123456789012345678901.23\"",
              readBack(decimalItem(fixedItem(IF_digits, 25), 2), "0012345678901234567890123"));
    EXPECT_EQ("\"0.000042\"", readBack(decimalItem(s_ctFive, 6), "00042"));
    EXPECT_EQ("\"42\"", readBack(decimalItem(s_ctFive, 0), "00042"));
}

TEST(DigitValues, impliedDecimalsTakeIntegersTextsAndDoubles)
{
    const tItem cents = decimalItem(s_ctFive, 2);
    EXPECT_EQ("01200", made(cents, 12));
    EXPECT_EQ("01250", made(cents, "12.50"));
    EXPECT_EQ("01250", made(cents, "12.5"));
    EXPECT_EQ("-1250", made(cents, "-12.50"));
    EXPECT_EQ("00005", made(cents, "0.05"));
    EXPECT_EQ("00000", made(cents, "0.00"));
    EXPECT_EQ("01250", made(cents, 12.5));
    EXPECT_EQ("00010", made(cents, 0.1));
    EXPECT_EQ("!lossy", made(cents, 12.345));
    EXPECT_EQ("!lossy", made(cents, "12.345"));
    EXPECT_EQ("!lossy", made(cents, "12.500"));
    EXPECT_EQ("!tooLong", made(cents, 1000));
    EXPECT_EQ("!tooLong", made(cents, "1000.00"));
    EXPECT_EQ("!lossy", made(cents, "01.00"));
    EXPECT_EQ("!digits", made(cents, "1x.00"));
    EXPECT_EQ("!digits", made(cents, "1.0.0"));
    EXPECT_EQ("!digits", made(decimalItem(s_ctFive, 0), "5."));
    EXPECT_EQ("1234567890123456", made(decimalItem(fixedItem(IF_digits, 16), 3), "1234567890123.456"));
}

TEST(DigitValues, anOptionGivesTheUnscaledInteger)
{
    EXPECT_EQ("1250", readBack(decimalItem(s_ctFive, 2), "01250", VO_unscaled));
    EXPECT_EQ("\"1234567890123456789012345\"",
              readBack(decimalItem(fixedItem(IF_digits, 25), 2), "1234567890123456789012345", VO_unscaled));
}

TEST(DigitValues, aWrittenPointHasDigitsOnBothSidesOrIsNotThere)
{
    const tItem point = pointedItem(fixedItem(IF_digits, 6));
    EXPECT_EQ("\"12.50\"", readBack(point, "012.50"));
    EXPECT_EQ("\"0.5\"", readBack(point, "0000.5"));
    EXPECT_EQ("\"-1.5\"", readBack(point, "-001.5"));
    EXPECT_EQ("\"12\"", readBack(point, "000012"));
    EXPECT_EQ("\"0.00\"", readBack(point, "000.00"));
    EXPECT_EQ("!digits", readBack(point, ".12345"));
    EXPECT_EQ("!digits", readBack(point, "12345."));
    EXPECT_EQ("!digits", readBack(point, "1.2.34"));
    EXPECT_EQ("!sign", readBack(point, "-00.00"));
    EXPECT_EQ("!zeros", readBack(pointedItem(varyingItem(IF_digits)), "00.5"));
    EXPECT_EQ("\"0.5\"", readBack(pointedItem(varyingItem(IF_digits)), "0.5"));
}

TEST(DigitValues, aWrittenPointKeepsTheDecimalsOfTheValue)
{
    const tItem point = pointedItem(fixedItem(IF_digits, 6));
    EXPECT_EQ("012.50", made(point, "12.50"));
    EXPECT_EQ("0012.5", made(point, "12.5"));
    EXPECT_EQ("0012.5", made(point, 12.5));
    EXPECT_EQ("000012", made(point, 12));
    EXPECT_EQ("000012", made(point, 12.0));
    EXPECT_EQ("-000.5", made(point, -0.5));
    EXPECT_EQ("000.05", made(point, 0.05));
    EXPECT_EQ("!digits", made(point, ".5"));
    EXPECT_EQ("!digits", made(point, "5."));
    EXPECT_EQ("!tooLong", made(point, "1234.56"));
}

TEST(DigitValues, aCommaIsWrittenWhereTheRuleSaysSo)
{
    const tItem comma = pointedItem(fixedItem(IF_digits, 6), ',');
    EXPECT_EQ("\"12.50\"", readBack(comma, "012,50"));
    EXPECT_EQ("!digits", readBack(comma, "012.50"));
    EXPECT_EQ("012,50", made(comma, "12.50"));
}

TEST(DigitValues, exactItemsKeepTheirDigits)
{
    const tItem exact = exactItem(s_ctFive);
    EXPECT_EQ("\"00042\"", readBack(exact, "00042"));
    EXPECT_EQ("\"-0042\"", readBack(exact, "-0042"));
    EXPECT_EQ("!sign", readBack(exact, "-0000"));
    EXPECT_EQ("00042", made(exact, "00042"));
    EXPECT_EQ("!width", made(exact, "42"));
    EXPECT_EQ("00042", made(exact, 42));
    EXPECT_EQ("\"042\"", readBack(exactItem(varyingItem(IF_digits)), "042"));
}

TEST(DigitValues, exactItemsTakeAPointAtEitherEnd)
{
    const tItem exact = exactItem(pointedItem(fixedItem(IF_digits, 2)));
    EXPECT_EQ("\".5\"", readBack(exact, ".5"));
    EXPECT_EQ("\"5.\"", readBack(exact, "5."));
    EXPECT_EQ("!digits", readBack(exactItem(pointedItem(fixedItem(IF_digits, 1))), "."));
    EXPECT_EQ(".5", made(exact, ".5"));
    EXPECT_EQ("5.", made(exact, "5."));
    EXPECT_EQ("!digits", made(exact, "."));
}

TEST(DigitValues, otherKindsOfValuesAreRefused)
{
    EXPECT_EQ("!type", made(s_ctFive, boolScalar(true)));
    EXPECT_EQ("!digits", made(s_ctFive, ""));
    EXPECT_EQ("!digits", made(s_ctFive, "abc"));
    EXPECT_EQ("!digits", made(s_ctFive, " 42"));
    EXPECT_EQ("!digits", made(s_ctFive, "1e3"));
    EXPECT_EQ("!sign", made(s_ctFive, "+42"));
    EXPECT_EQ("!sign", made(s_ctFive, "-0"));
    EXPECT_EQ("!sign", made(s_ctFive, -0.0));
    EXPECT_EQ("!lossy", made(s_ctFive, "042"));
    EXPECT_EQ("!lossy", made(s_ctFive, "1.5"));
    EXPECT_EQ("!lossy", made(s_ctFive, 1.5));
    EXPECT_EQ("!type", made(s_ctFive, std::numeric_limits<double>::infinity()));
    EXPECT_EQ("!type", made(s_ctFive, std::numeric_limits<double>::quiet_NaN()));
}

TEST(DigitValues, textsAndWholeDoublesAreNumbers)
{
    EXPECT_EQ("00042", made(s_ctFive, "42"));
    EXPECT_EQ("-0042", made(s_ctFive, "-42"));
    EXPECT_EQ("00042", made(s_ctFive, 42.0));
    EXPECT_EQ("0000100000000000000000000", made(fixedItem(IF_digits, 25), 1e20));
    EXPECT_EQ("!lossy", made(fixedItem(IF_digits, 25), 1e-20));
}

TEST(DigitValues, aTailStandsAfterTheDigits)
{
    const tItem tailed = tailedItem(s_ctFive, " \n");
    EXPECT_EQ("42", readBack(tailed, "042 \n"));
    EXPECT_EQ("!literal", readBack(tailed, "042\n "));
    EXPECT_EQ("!literal", readBack(tailed, "00042"));
    EXPECT_EQ("042 \n", made(tailed, 42));
    EXPECT_EQ("!tooLong", made(tailed, 1234));
    EXPECT_EQ("null", readBack(blankNullItem(tailed), "    \n"));
    EXPECT_EQ("    \n", made(blankNullItem(tailed), tScalar()));
}

TEST(DigitValues, trailingSignsAreAlwaysThere)
{
    const tItem trailing = fixedItem(IF_trailing, 5);
    EXPECT_EQ("42", readBack(trailing, "0042+"));
    EXPECT_EQ("-42", readBack(trailing, "0042-"));
    EXPECT_EQ("0", readBack(trailing, "0000+"));
    EXPECT_EQ("!sign", readBack(trailing, "0000-"));
    EXPECT_EQ("!sign", readBack(trailing, "00042"));
    EXPECT_EQ("!digits", readBack(trailing, "-042-"));
    EXPECT_EQ("!digits", readBack(fixedItem(IF_trailing, 1), "+"));
    EXPECT_EQ("0042+", made(trailing, 42));
    EXPECT_EQ("0042-", made(trailing, -42));
    EXPECT_EQ("!tooLong", made(trailing, 10000));
    EXPECT_EQ("12-", made(varyingItem(IF_trailing), -12));
    EXPECT_EQ("\"-1.25\"", readBack(decimalItem(trailing, 2), "0125-"));
}

TEST(DigitValues, zonedNumbersHaveTheSignInTheLastDigit)
{
    const tItem zoned = signedItem(fixedItem(IF_zoned, 3));
    EXPECT_EQ("120", readBack(zoned, "12{"));
    EXPECT_EQ("121", readBack(zoned, "12A"));
    EXPECT_EQ("129", readBack(zoned, "12I"));
    EXPECT_EQ("-120", readBack(zoned, "12}"));
    EXPECT_EQ("-121", readBack(zoned, "12J"));
    EXPECT_EQ("-129", readBack(zoned, "12R"));
    EXPECT_EQ("!sign", readBack(zoned, "00}"));
    EXPECT_EQ("!sign", readBack(zoned, "12a"));
    EXPECT_EQ("!sign", readBack(zoned, "12S"));
    EXPECT_EQ("!digits", readBack(zoned, "1AA"));
    EXPECT_EQ("12{", made(zoned, 120));
    EXPECT_EQ("00A", made(zoned, 1));
    EXPECT_EQ("12R", made(zoned, -129));
    EXPECT_EQ("\"-1.29\"", readBack(decimalItem(zoned, 2), "12R"));
}

TEST(DigitValues, aPlainLastDigitOfASignedZonedNumberIsAFinding)
{
    const tItem zoned = signedItem(fixedItem(IF_zoned, 3));
    EXPECT_EQ("123!oldSign", readBack(zoned, "123"));
    EXPECT_EQ("123", readBack(fixedItem(IF_zoned, 3), "123"));
    EXPECT_EQ("123", made(fixedItem(IF_zoned, 3), 123));
    EXPECT_EQ("!negative", made(fixedItem(IF_zoned, 3), -1));
    EXPECT_EQ("!digits", readBack(fixedItem(IF_zoned, 3), "12A"));
    EXPECT_EQ("!sign", readBack(fixedItem(IF_zoned, 3), "-12"));
}

TEST(DigitValues, digitsSignsAndBlanksAreInTheCodePage)
{
    const tItem ebcdic = pageItem(s_ctFive, "cp037");
    EXPECT_EQ("42", readBack(ebcdic, "\xF0\xF0\xF0\xF4\xF2"));
    EXPECT_EQ("-42", readBack(ebcdic, "\x60\xF0\xF0\xF4\xF2"));
    EXPECT_EQ("!digits", readBack(ebcdic, "00042"));
    EXPECT_EQ("\x60\xF0\xF0\xF4\xF2", made(ebcdic, -42));
    EXPECT_EQ("null", readBack(blankNullItem(ebcdic), "\x40\x40\x40\x40\x40"));
    EXPECT_EQ("\x40\x40\x40\xF4\xF2", made(paddedItem(ebcdic, PAD_blanksFront), 42));
    const tItem zoned = signedItem(pageItem(fixedItem(IF_zoned, 3), "cp500"));
    EXPECT_EQ("-123", readBack(zoned, "\xF1\xF2\xD3"));
    EXPECT_EQ("\xF1\xF2\xC3", made(zoned, 123));
    EXPECT_EQ("123!oldSign", readBack(zoned, "\xF1\xF2\xF3"));
    EXPECT_EQ("\"-1234567890123456789012.345\"",
              readBack(decimalItem(pageItem(fixedItem(IF_digits, 26), "cp1047"), 3),
                       "\x60\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8\xF9\xF0\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8\xF9\xF0\xF1\xF2"
                       "\xF3\xF4\xF5"));
}

TEST(DigitValues, datesThatDoNotExistAreFindings)
{
    const tItem date = timeItem(fixedItem(IF_digits, 6), "YYMMDD");
    EXPECT_EQ("250131", readBack(date, "250131"));
    EXPECT_EQ("10203", readBack(date, "010203"));
    EXPECT_EQ("250231!date", readBack(date, "250231"));
    EXPECT_EQ("-25013!date", readBack(date, "-25013"));
    EXPECT_EQ("0!date", readBack(date, "000000"));
    EXPECT_EQ("null", readBack(zeroNullItem(date), "000000"));
    EXPECT_EQ("null", readBack(blankNullItem(date), "      "));
    EXPECT_EQ("250131", made(date, 250131));
    EXPECT_EQ("010203", made(date, 10203));
    EXPECT_EQ("010203", made(date, "010203"));
    EXPECT_EQ("!lossy", made(date, "01020"));
    EXPECT_EQ("250231!date", made(date, 250231));
    EXPECT_EQ("000000", made(zeroNullItem(date), tScalar()));
}

TEST(DigitValues, datesOfVaryingWidthHaveAllTheirDigits)
{
    const tItem date = timeItem(varyingItem(IF_digits), "YYMMDD");
    EXPECT_EQ("10203", readBack(date, "010203"));
    EXPECT_EQ("!width", readBack(date, "10203"));
    EXPECT_EQ("010203", made(date, 10203));
    EXPECT_EQ("!tooLong", made(date, 1010203));
    EXPECT_EQ("000000", made(zeroNullItem(date), tScalar()));
    EXPECT_EQ("null", readBack(zeroNullItem(date), "000000"));
}

}  // namespace
