// tests/packet/make_test.cpp - the items of all kinds, byte for byte, and what a packet is made of.

#include "packet_helpers.h"
#include "packet_model.h"

#include "packet/item_make.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace
{

using namespace murv;
using namespace murv::tests;

constexpr double s_cdInfinity = std::numeric_limits<double>::infinity();
constexpr double s_cdNan = std::numeric_limits<double>::quiet_NaN();

TEST(PacketMake, asciiFixedFillsAndCuts)
{
    struct tCase
    {
        CFields m_tValue;
        unsigned int m_uiLength;
        const char* m_pItem;
    };
    const tCase cases[] = {
        {CFields(), 2, "  "},
        {true, 3, "001"},
        {false, 1, "0"},
        {5, 4, "0005"},
        {-5, 4, "-005"},
        {-5, 3, "-05"},
        {-5, 2, "-5"},
        {-5, 1, "-"},
        {12345, 3, "123"},
        {-12345, 3, "-12"},
        {0, 1, "0"},
        {42u, 5, "00042"},
        {1234u, 2, "12"},
        {1.5, 6, "0001.5"},
        {-1.5, 6, "-001.5"},
        {0.1, 4, "0.10"},
        {-0.0, 4, "-000"},
        {s_cdNan, 6, "00null"},
        {s_cdInfinity, 7, "1e+9999"},
        {-s_cdInfinity, 10, "-001e+9999"},
        {"AB", 4, "AB  "},
        {"ABCDE", 3, "ABC"},
        {"", 2, "  "},
        {"-5", 4, "-5  "},
        {CFields(DT_codelist), 3, "   "},
    };
    for (const tCase& row : cases)
    {
        for (const char* letters : {"ACF", "ANF", "ACD", "AND"})
            EXPECT_EQ(made(row.m_tValue, pei4(letters, row.m_uiLength)), row.m_pItem) << letters;
    }
}

TEST(PacketMake, asciiVariableHasAPrefixInText)
{
    struct tCase
    {
        CFields m_tValue;
        unsigned int m_uiWidth;
        int m_iCalibration;
        const char* m_pItem;
    };
    const tCase cases[] = {
        {42, 3, 0, "00542"},      {42, 3, 3, "00242"},
        {CFields(), 3, 0, "003"}, {true, 1, 0, "21"},
        {"", 2, 0, "02"},         {"abcdefghij", 1, 0, "1abcdefghij"},
        {"ab", 2, 10, "-6ab"},    {"ab", 4, 10, "00-4ab"},
        {"ab", 1, 10, "-ab"},     {"ab", 2, -128, "13ab"},
        {"ab", 3, -128, "133ab"}, {-7, 2, 0, "04-7"},
        {-0.5, 2, 0, "06-0.5"},   {123u, 9, 9, "000000003123"},
    };
    for (const tCase& row : cases)
    {
        for (const char* letters : {"ACV", "ANV"})
            EXPECT_EQ(made(row.m_tValue, pei4(letters, row.m_uiWidth, row.m_iCalibration)), row.m_pItem) << letters;
    }
}

TEST(PacketMake, binaryFixedIsBigEndian)
{
    struct tCase
    {
        CFields m_tValue;
        unsigned int m_uiLength;
        std::string m_strItem;
    };
    const tCase cases[] = {
        {CFields(), 2, bytes4("\0\0")},
        {true, 3, bytes4("\0\0\1")},
        {false, 1, bytes4("\0")},
        {true, 8, bytes4("\0\0\0\0\0\0\0\1")},
        {-1, 2, "\xFF\xFF"},
        {258, 1, "\2"},
        {258, 7, bytes4("\0\0\0\0\0\1\2")},
        {-1, 10, "\xAD\xAD\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"},
        {1, 9, bytes4("\0\0\0\0\0\0\0\0\1")},
        {ULLONG_MAX, 9, bytes4("\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF")},
        {1.0, 4, bytes4("\0\0\0\0")},
        {1.0, 9, bytes4("\0\x3F\xF0\0\0\0\0\0\0")},
        {-1.0, 9, bytes4("\xAD\xBF\xF0\0\0\0\0\0\0")},
        {-0.0, 9, bytes4("\0\x80\0\0\0\0\0\0\0")},
        {"AB", 4, bytes4("AB\0\0")},
        {"ABCDE", 3, "ABC"},
        {"ABCDEFGH", 8, "ABCDEFGH"},
    };
    for (const tCase& row : cases)
    {
        for (const char* letters : {"BCF", "BNF", "BCD", "BND"})
            EXPECT_EQ(made(row.m_tValue, pei4(letters, row.m_uiLength)), row.m_strItem) << letters;
    }
}

TEST(PacketMake, binaryNumbersOfExactlyEightBytesGiveNothing)
{
    for (const CFields& value : {CFields(-1), CFields(1), CFields(1u), CFields(-2.5)})
    {
        EXPECT_EQ(made(value, pei4("BCF", 8)), "");
        EXPECT_EQ(made(value, pei4("BND", 8)), "");
    }
}

TEST(PacketMake, binaryVariableHasABigEndianPrefix)
{
    const std::string one = bytes4("\0\0\0\0\0\0\0\1");
    EXPECT_EQ(made(1, pei4("BCV", 2)), bytes4("\0\x0A") + one);
    EXPECT_EQ(made(1u, pei4("BNV", 1, 1)), "\x08" + one);
    EXPECT_EQ(made(1.0, pei4("BNV", 1)), bytes4("\x09\x3F\xF0\0\0\0\0\0\0"));
    EXPECT_EQ(made(CFields(), pei4("BCV", 3)), bytes4("\0\0\3"));
    EXPECT_EQ(made(true, pei4("BCV", 1)), "\2\1");
    EXPECT_EQ(made("xyz", pei4("BCV", 2, -1)), bytes4("\0\6xyz"));
    EXPECT_EQ(made("xyz", pei4("BCV", 8)), "xyz");
}

TEST(PacketMake, widePrefixIsMarkedOnlyBeforeNullAndBool)
{
    const std::string minus = "\xFF\xFF\xFF\xFF\xFF\xFF\xFF";
    EXPECT_EQ(made(CFields(), pei4("BCV", 9, 100)), "\xAD" + minus + "\xA5");
    EXPECT_EQ(made(true, pei4("BCV", 9, 100)), "\xAD" + minus + "\xA6\1");
    EXPECT_EQ(made("a", pei4("BCV", 9, 100)), bytes4("\0") + minus + "\xA6" + "a");
    EXPECT_EQ(made(CFields(), pei4("BCV", 10)), bytes4("\0\0\0\0\0\0\0\0\0\x0A"));
}

TEST(PacketMake, itemsWithoutLengthGiveNothing)
{
    for (const char* letters : {"ACF", "ANV", "ACD", "BCF", "BNV", "BND"})
        EXPECT_EQ(made("abc", pei4(letters, 0)), "") << letters;
    EXPECT_EQ(made("abc", CFields::nullPktExp), "");
    tPacketExpInfo unknown = pei4("ACF", 3);
    unknown.m_eLengthExp = static_cast<E_LengthExpCode>(3);
    unknown.m_ucPrefixSize = 3;
    EXPECT_EQ(made("abc", unknown), "");
}

TEST(PacketMake, containersContributeTheirMembersInOrder)
{
    CFields tree(DT_fields);
    addLeaf(tree, "a", 1, pei4("ACF", 2));
    CFields& list = tree.addChildRef("list");
    list.setValue(DT_array);
    list.pkt_SetExp(pei4("ACF", 9));
    for (int i = 0; i < 70; ++i)
        addLeaf(list, "", i, pei4("ACF", 2));
    tree.addChildRef("none").setValue(DT_fields);
    addLeaf(tree, "z", "Z", pei4("ACF", 1));
    std::string expected = "01";
    for (int i = 0; i < 70; ++i)
        expected += (i < 10 ? "0" : "") + std::to_string(i);
    EXPECT_EQ(tree.pkt_Make4Children(false), expected + "Z");
    EXPECT_EQ(tree.pkt_Make4Children(false, &tree["z"]), "Z");
    EXPECT_EQ(CFields().pkt_Make4Children(true, &tree), expected + "Z");
    EXPECT_EQ(list.pkt_Make4OneSelf(false), "");
    EXPECT_EQ(tree["z"].pkt_Make4Children(false), "Z");
}

TEST(PacketMake, treeWithoutExpressionsGivesAnEmptyPacket)
{
    CFields tree(DT_fields);
    tree.addChildRef("a") = 1;
    tree.addChildRef("b") = "text";
    EXPECT_EQ(tree.pkt_Make4Children(true), "");
}

TEST(PacketMake, containerLeftWithoutMembersIsEmpty)
{
    CFields tree(DT_array);
    tree.removeAll(DT_fields);
    EXPECT_EQ(tree.pkt_Make4Children(true), "");
    EXPECT_EQ(parsedTree(tree, "abc"), 3);
    EXPECT_EQ(failedLeaves(tree, "abc"), 0u);
}

TEST(PacketMake, variableItemRecordsItsTotalLength)
{
    for (const bool keywords : {false, true})
    {
        CFields leaf = leaf4("abc", pei4("ACV", 2, 1));
        EXPECT_EQ(leaf.pkt_Make4OneSelf(keywords), "04abc");
        EXPECT_EQ(recorded4(leaf), 5u);
    }
    CFields bare = leaf4("abc", pei4("BCV", 8));
    EXPECT_EQ(bare.pkt_Make4OneSelf(false), "abc");
    EXPECT_EQ(recorded4(bare), 3u);
}

TEST(PacketMake, packetLargerThanTheFirstRoomIsWhole)
{
    for (std::size_t each : {1u, 31u, 32u, 33u, 511u, 512u, 513u, 5000u})
    {
        CFields tree(DT_array);
        std::string expected;
        for (int i = 0; i < 40; ++i)
        {
            addLeaf(tree, "", i, pei4("ACF", static_cast<unsigned int>(each)));
            addLeaf(tree, "", std::string(each, 'x'), pei4("ACV", 4));
            expected += modelItem(i, true, false, static_cast<unsigned int>(each), 0);
            expected += modelItem(std::string(each, 'x'), true, true, 4, 0);
        }
        EXPECT_EQ(tree.pkt_Make4Children(false), expected) << each;
    }
}

TEST(PacketMake, nodeThatIsNoLeafIsReported)
{
    const auto report = [](const char* letters, E_DataType type) {
        return thrown([letters, type] {
            CFields node = leaf4(CFields(type), pei4(letters, 1));
            detail::CPacketBuffer packet;
            detail::makeItem(node, packet);
        });
    };
    EXPECT_EQ(report("ACF", DT_fields), "[murv::CFields::pkt_makeToACF#0] Unknown data type(2)");
    EXPECT_EQ(report("AND", DT_array), "[murv::CFields::pkt_makeToACF#0] Unknown data type(1)");
    EXPECT_EQ(report("ANV", DT_array), "[murv::CFields::pkt_makeToACV#0] Unknown data type");
    EXPECT_EQ(report("BCF", DT_array), "[murv::CFields::pkt_makeToBCF#0] Unknown data type");
    EXPECT_EQ(report("BCV", DT_array), "[murv::CFields::pkt_makeToBCV#0] Unknown data type");
}

std::vector<CFields> sampleValues()
{
    std::vector<CFields> values = {CFields(),
                                   CFields(true),
                                   CFields(false),
                                   CFields(0),
                                   CFields(-1),
                                   CFields(LLONG_MIN),
                                   CFields(LLONG_MAX),
                                   CFields(0u),
                                   CFields(ULLONG_MAX),
                                   CFields(0.0),
                                   CFields(-0.0),
                                   CFields(s_cdNan),
                                   CFields(s_cdInfinity),
                                   CFields(-s_cdInfinity),
                                   CFields(""),
                                   CFields(DT_codelist),
                                   CFields(CStaticString("static"))};
    std::mt19937_64 random(7);
    for (int i = 0; i < 60; ++i)
    {
        const std::uint64_t word = random() >> (random() % 64);
        double number = 0;
        const std::uint64_t bits = random();
        std::memcpy(&number, &bits, sizeof number);
        values.emplace_back(static_cast<long long>(word));
        values.emplace_back(-static_cast<long long>(word >> 1));
        values.emplace_back(static_cast<unsigned long long>(word));
        values.emplace_back(number);
        values.emplace_back(static_cast<double>(word % 100000) / 8);
        std::string text(static_cast<std::size_t>(word % 40), '\0');
        for (char& byte : text)
            byte = static_cast<char>(random());
        values.emplace_back(text);
    }
    return values;
}

TEST(PacketMake, everyKindEqualsTheModel)
{
    const std::vector<CFields> values = sampleValues();
    for (const char* letters : {"ACF", "ANF", "BCF", "BNF", "ACD", "BND"})
    {
        for (unsigned int length = 0; length <= 40; ++length)
        {
            for (const CFields& value : values)
                ASSERT_EQ(made(value, pei4(letters, length)), modelItem(value, letters[0] == 'A', false, length, 0))
                    << letters << length << " " << modelText(value);
        }
    }
    for (const char* letters : {"ACV", "ANV", "BCV", "BNV"})
    {
        for (unsigned int width : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 10u, 20u, 200u, 255u})
        {
            for (int calibration = -128; calibration <= 127; calibration += calibration % 3 == 0 ? 5 : 4)
            {
                for (std::size_t i = 0; i < values.size(); i += 5)
                    ASSERT_EQ(made(values[i], pei4(letters, width, calibration)),
                              modelItem(values[i], letters[0] == 'A', true, width, calibration))
                        << letters << width << " " << calibration << " " << modelText(values[i]);
            }
        }
    }
}

}  // namespace
