// tests/ser/pei_reader_test.cpp - packet expressions from text: every field, every refusal.

#include "ser/pei_reader.h"

#include "murv/fields.h"
#include "murv/flags.h"
#include "tests/support/clean_registries.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace
{

using namespace murv;

/// The fields of a record, for comparing.
struct tRead
{
    std::string m_strMessage;
    unsigned int m_uiForm, m_uiRuntime, m_uiLengthExp, m_uiPrefix;
    int m_iCalibration;
    unsigned int m_uiKind, m_uiOption, m_uiIndex, m_uiLength;
};

tRead read(std::string_view text, unsigned int config = 0)
{
    // In a block of its own size, so that a byte read too many is seen.
    const std::unique_ptr<char[]> block(new char[text.size()]);
    if (!text.empty())
        std::memcpy(block.get(), text.data(), text.size());
    tPacketExpInfo pei{};
    const char* const message = detail::decodePei({block.get(), text.size()}, config, pei);
    EXPECT_TRUE(message == nullptr || CFields::pkt_IsNullExp(pei));
    return {message == nullptr ? "" : message,
            pei.m_ePacketExp,
            pei.m_eRuntimeExp,
            pei.m_eLengthExp,
            pei.m_ucPrefixSize,
            pei.m_cCalibration,
            pei.m_ucSkKind,
            pei.m_ucSkOption,
            pei.m_usSkIndex,
            pei.m_uiLength};
}

std::string fault(std::string_view text, unsigned int config = 0)
{
    return read(text, config).m_strMessage;
}

TEST(PeiReader, lettersGiveTheCodes)
{
    for (unsigned int code = 0; code < 12; ++code)
    {
        const std::string text = {"AB"[code & 1], "CN"[code >> 1 & 1], "FVD"[code >> 2], '5'};
        const tRead got = read(text);
        EXPECT_EQ(got.m_strMessage, "") << text;
        EXPECT_EQ(got.m_uiForm, code & 1) << text;
        EXPECT_EQ(got.m_uiRuntime, code >> 1 & 1) << text;
        EXPECT_EQ(got.m_uiLengthExp, code >> 2) << text;
    }
}

TEST(PeiReader, otherLettersAreRefused)
{
    for (const char* text : {"", "X", "aCF5", "CCF5", " ACF5"})
        EXPECT_EQ(fault(text), "Mismatched syntax for packet E_PacketExpCode") << text;
    for (const char* text : {"A", "AXF5", "AcF5", "AAF5"})
        EXPECT_EQ(fault(text), "Mismatched syntax for packet E_RuntimeExpCode") << text;
    for (const char* text : {"AC", "ACX5", "ACf5", "AC55"})
        EXPECT_EQ(fault(text), "Mismatched syntax for packet E_LengthExpCode") << text;
    EXPECT_EQ(fault(std::string_view("A\0F5", 4)), "Mismatched syntax for packet E_RuntimeExpCode");
}

TEST(PeiReader, numberIsTheLength)
{
    EXPECT_EQ(read("ACF8").m_uiLength, 8u);
    EXPECT_EQ(read("BND12").m_uiLength, 12u);
    EXPECT_EQ(read("ACF+7").m_uiLength, 7u);
    EXPECT_EQ(read("ACF0").m_uiLength, 0u);
    EXPECT_EQ(read("ACF-0").m_strMessage, "");
    EXPECT_EQ(read("ACF0000000000000012").m_uiLength, 12u);
    EXPECT_EQ(read("ACF4294967295").m_uiLength, 4294967295u);
    EXPECT_EQ(read("ACF8").m_uiPrefix, 0u);
}

TEST(PeiReader, numberWithoutDigitsIsZero)
{
    EXPECT_EQ(read("ACFYYYY").m_uiIndex, 13u);
    EXPECT_EQ(read("ACFYYYY").m_uiLength, 0u);
    EXPECT_EQ(read("ACF+YYYY").m_uiIndex, 13u);
    EXPECT_EQ(read("ACVYYYY").m_uiPrefix, 0u);
}

TEST(PeiReader, lengthThatDoesNotFitIsRefused)
{
    for (const char* text :
         {"ACF4294967296", "ACD99999999999", "ACF99999999999999999999999999999", "ACV256", "BNV4294967297"})
        EXPECT_EQ(fault(text), "Packet length is too big") << text;
}

TEST(PeiReader, negativeLengthIsRefused)
{
    for (const char* text : {"ACF-1", "ACD-5", "ANV-3", "ACF-99999999999999999999"})
        EXPECT_EQ(fault(text), "Packet length must bigger than 0") << text;
}

TEST(PeiReader, zeroLengthIsRefusedWhenConfigured)
{
    for (const char* text : {"ACF0", "ACD0sizedef_1", "ACV0", "ACFYYYY"})
    {
        EXPECT_EQ(fault(text), "") << text;
        EXPECT_EQ(fault(text, LCBC_POSITIVE_LENGTH), "Packet length must bigger than 0") << text;
    }
    EXPECT_EQ(fault("ACF1", LCBC_POSITIVE_LENGTH), "");
}

TEST(PeiReader, variableLengthGivesPrefixLengthAndCalibration)
{
    tRead got = read("ANV2-3");
    EXPECT_EQ(got.m_uiPrefix, 2u);
    EXPECT_EQ(got.m_uiLength, 2u);
    EXPECT_EQ(got.m_iCalibration, -3);
    got = read("ACV9");
    EXPECT_EQ(got.m_uiPrefix, 9u);
    EXPECT_EQ(got.m_iCalibration, 0);
    EXPECT_EQ(read("ACV3+12YYYY").m_iCalibration, 12);
    EXPECT_EQ(read("ACV3+12YYYY").m_uiIndex, 13u);
    EXPECT_EQ(read("ACV3YYYY").m_uiIndex, 13u);
    EXPECT_EQ(read("ACV3-YYYY").m_uiIndex, 13u);
}

TEST(PeiReader, calibrationLiesBetweenMinus127And128)
{
    EXPECT_EQ(read("ANV2-127").m_iCalibration, -127);
    EXPECT_EQ(read("ANV2+127").m_iCalibration, 127);
    EXPECT_EQ(read("ANV2+128").m_iCalibration, -128);
    for (const char* text : {"ANV2+129", "ANV2-128", "ANV2+99999999999999999999", "ANV2-9999YYYY"})
        EXPECT_EQ(fault(text), "Calibration value must between -127 and 128") << text;
}

TEST(PeiReader, prefixAboveNineIsRefused)
{
    for (const char* text : {"ACV10", "ACV255", "BNV99+3"})
        EXPECT_EQ(fault(text), "Packet variable length must be little than 10") << text;
}

TEST(PeiReader, internalKeywordsAreFoundByName)
{
    struct tCase
    {
        const char* m_pName;
        unsigned int m_uiIndex;
    };
    const tCase cases[] = {
        {"fix", 1},
        {"valid", 2},
        {"DOY", 11},
        {"DOW", 12},
        {"YYYY", 13},
        {"YY", 14},
        {"MM", 15},
        {"DD", 16},
        {"hh", 17},
        {"mm", 18},
        {"SS", 19},
        {"sss", 20},
        {"YYYYMMDD", 31},
        {"YYMMDD", 32},
        {"hhmmSS", 33},
        {"hhmmSSsss", 34},
        {"YYMMDDhhmmSS", 35},
        {"YYMMDDhhmmSSsss", 36},
        {"YYYYMMDDhhmmSS", 37},
        {"YYYYMMDDhhmmSSsss", 38},
    };
    for (const tCase& row : cases)
    {
        const tRead got = read(std::string("ACF8") + row.m_pName);
        EXPECT_EQ(got.m_uiIndex, row.m_uiIndex) << row.m_pName;
        EXPECT_EQ(got.m_uiKind, 0u);
        EXPECT_EQ(got.m_uiOption, 0u);
        EXPECT_EQ(got.m_uiLength, 8u);
    }
}

TEST(PeiReader, sizeKeywordsTakeAnOption)
{
    tRead got = read("ACD0sizedef_3");
    EXPECT_EQ(got.m_uiIndex, 3u);
    EXPECT_EQ(got.m_uiOption, 3u);
    got = read("ANF4sizeset_9");
    EXPECT_EQ(got.m_uiIndex, 4u);
    EXPECT_EQ(got.m_uiOption, 9u);
    got = read("ACD0sizedef_");
    EXPECT_EQ(got.m_uiIndex, 3u);
    EXPECT_EQ(got.m_uiOption, 0u);
    EXPECT_EQ(read("ACD0sizedef_+5").m_uiOption, 5u);
    EXPECT_EQ(read("ACD0sizedef_15").m_uiOption, 15u);
    EXPECT_EQ(read("ACD0sizedef_18").m_uiOption, 2u);
}

TEST(PeiReader, optionMustBeAboveZero)
{
    for (const char* text : {"ACD0sizedef_0", "ACD0sizedef_-1", "ACD0sizedef_x", "ACF4my_name", "ACF4sizedef_+"})
        EXPECT_EQ(fault(text), "Supporting-keyword optional value must bigger than 0") << text;
}

TEST(PeiReader, unknownKeywordIsRefused)
{
    for (const char* text : {"ACF8yyyymmdd", "ACF8YYYYMMDDx", "ACF8 ", "ACF8x", "ACF8_", "ACF8_3", "ACF8fix_2",
                             "ACF8DOY2", "ACF8sizedef", "ACF8sizedef__2", "ACV2+3x"})
        EXPECT_EQ(fault(text), "Found not a supporting-keyword index in packet expression") << text;
    EXPECT_EQ(fault(std::string_view("ACF8YYYY\0", 9)), "Found not a supporting-keyword index in packet expression");
    EXPECT_EQ(fault("ACF8" + std::string(300, 'x')), "Found not a supporting-keyword index in packet expression");
}

std::string s_strAsked;

int firstKind(const char* text, unsigned char option)
{
    s_strAsked += std::string(text) + "/" + std::to_string(option) + " ";
    return std::strcmp(text, "mine_") == 0 ? 100 + option : 0;
}

TEST(PeiReader, externalKeywordsAreAskedInTheOrderOfKinds)
{
    const tests::tCleanRegistries clean;
    s_strAsked.clear();
    CFields::setGetIdxFP4ESK(4, &firstKind);
    CFields::setGetIdxFP4ESK(9, [](const char*, unsigned char) { return 65535; });
    tRead got = read("ACF8mine_7");
    EXPECT_EQ(got.m_uiKind, 4u);
    EXPECT_EQ(got.m_uiIndex, 107u);
    EXPECT_EQ(got.m_uiOption, 7u);
    got = read("ACF8other");
    EXPECT_EQ(got.m_uiKind, 9u);
    EXPECT_EQ(got.m_uiIndex, 65535u);
    EXPECT_EQ(got.m_uiOption, 0u);
    EXPECT_EQ(s_strAsked, "mine_/7 other/0 ");
}

TEST(PeiReader, internalNamesComeFirst)
{
    const tests::tCleanRegistries clean;
    CFields::setGetIdxFP4ESK(1, [](const char*, unsigned char) { return 5; });
    EXPECT_EQ(read("ACF8YYYY").m_uiKind, 0u);
    EXPECT_EQ(read("ACF8YYYY").m_uiIndex, 13u);
}

TEST(PeiReader, indexesOutsideOfSixteenBitsAreNoHit)
{
    const tests::tCleanRegistries clean;
    for (const CFields::tGetIdxFP callback : {CFields::tGetIdxFP([](const char*, unsigned char) { return 0; }),
                                              CFields::tGetIdxFP([](const char*, unsigned char) { return -1; }),
                                              CFields::tGetIdxFP([](const char*, unsigned char) { return 65536; })})
    {
        CFields::setGetIdxFP4ESK(2, callback);
        EXPECT_EQ(fault("ACF8mine"), "Found not a supporting-keyword index in packet expression");
    }
}

TEST(PeiReader, lastUnderscoreIntroducesTheOption)
{
    const tests::tCleanRegistries clean;
    s_strAsked.clear();
    CFields::setGetIdxFP4ESK(1, &firstKind);
    read("ACF8a_b_3");
    read("ACF8a_3_");
    read("ACF8_a");
    read("ACF8a_259");
    EXPECT_EQ(s_strAsked, "a_b_/3 a_3_/0 _a/0 a_/3 ");
}

TEST(PeiReader, everyShortTextIsReadWithinItsBytes)
{
    const std::string letters = "ABCNFVD0129+-_xYM";
    for (std::string start : {"ACF", "BNV", "ACD4", "ANV2", "ACF1sizedef_"})
    {
        for (char first : letters)
        {
            for (char second : letters)
            {
                const std::string text = start + first + second;
                const tRead got = read(text);
                EXPECT_TRUE(!got.m_strMessage.empty() || got.m_uiPrefix <= 9) << text;
            }
        }
    }
}

}  // namespace
