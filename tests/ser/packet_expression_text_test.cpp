// tests/ser/packet_expression_text_test.cpp - packet expressions before values, and every message about one.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

namespace
{
/// Codes, length, prefix, calibration, kind, index and option of a node's expression.
std::string expression(const CFields& node)
{
    const tPacketExpInfo pei = node.pkt_GetExp();
    std::string text;
    for (const int part :
         {static_cast<int>(pei.m_ePacketExp), static_cast<int>(pei.m_eRuntimeExp), static_cast<int>(pei.m_eLengthExp),
          static_cast<int>(pei.m_uiLength), static_cast<int>(pei.m_ucPrefixSize), static_cast<int>(pei.m_cCalibration),
          static_cast<int>(pei.m_ucSkKind), static_cast<int>(pei.m_usSkIndex), static_cast<int>(pei.m_ucSkOption)})
        text += (text.empty() ? "" : " ") + std::to_string(part);
    return text;
}

std::string expression4Text(std::string_view notation, unsigned int flags = s_cuiUsual)
{
    const tLoad load("{\"a\"=" + std::string(notation) + "1}", flags);
    return load.m_bDone ? expression(load.m_tTree.getChildAt(0)) : load.result();
}

/// The message about an expression that begins at line 1, column 6.
std::string refused(const char* message)
{
    return errorAt(1, 6, message);
}
}  // namespace

TEST(PacketExpressionText, standsBeforeAnyScalar)
{
    EXPECT_EQ(loaded("[(ACF4)1,(ACF4)\"t\",(ACF4)true,(ACF4)null,(ACF4)]"), "[1,\"t\",true,null,null]");
}

TEST(PacketExpressionText, standsBeforeMembersWithAndWithoutNames)
{
    const tLoad load("{\"a\"=(ACF1)1,#2 \"b\"=(ACF2)2,(ACF3)3,#4 (ACF4)4,#5 = (ACF5) 5}");
    EXPECT_EQ(load.result(), "{a=1,#2 b=2,3,#4 4,#5 5}");
    for (unsigned int i = 0; i < 5; ++i)
        EXPECT_EQ(+load.m_tTree.getChildAt(i).pkt_GetExp().m_uiLength, i + 1);
}

TEST(PacketExpressionText, standsBeforeTheRoot)
{
    const tLoad load("(ACF8YYYYMMDD) 20240101");
    EXPECT_EQ(load.result(), "20240101");
    EXPECT_EQ(expression(load.m_tTree), "0 0 0 8 0 0 0 31 0");
    EXPECT_EQ(expression(tLoad("#1 \"n\" = (ACF8) 5").m_tTree), "0 0 0 8 0 0 0 0 0");
    EXPECT_EQ(expression(tLoad("#1 (ACF8) 5").m_tTree), "0 0 0 8 0 0 0 0 0");
    EXPECT_EQ(expression(tLoad("(ACF8)").m_tTree), "0 0 0 8 0 0 0 0 0");
}

TEST(PacketExpressionText, standsBeforeAContainerThatIsNew)
{
    EXPECT_EQ(loaded("{\"a\"=(ACF4) {\"b\"=(ACF4) 1}}"), "{a={b=1}}");
    EXPECT_EQ(loaded("[(ACF4) [(ACF4) 1]]"), "[[1]]");
    EXPECT_EQ(loaded("(ACF4) {1}"), "{1}");
}

TEST(PacketExpressionText, lettersAndLength)
{
    EXPECT_EQ(expression4Text("(ACF8)"), "0 0 0 8 0 0 0 0 0");
    EXPECT_EQ(expression4Text("(BNF8)"), "1 1 0 8 0 0 0 0 0");
    EXPECT_EQ(expression4Text("(ACD0)"), "0 0 2 0 0 0 0 0 0");
    EXPECT_EQ(expression4Text("(ANV2-3)"), "0 1 1 2 2 -3 0 0 0");
    EXPECT_EQ(expression4Text("(ANV2+128)"), "0 1 1 2 2 -128 0 0 0");
    EXPECT_EQ(expression4Text("(ACF+8)"), "0 0 0 8 0 0 0 0 0");
}

TEST(PacketExpressionText, keywords)
{
    EXPECT_EQ(expression4Text("(ACF8YYYYMMDD)"), "0 0 0 8 0 0 0 31 0");
    EXPECT_EQ(expression4Text("(ACD0sizedef_3)"), "0 0 2 0 0 0 0 3 3");
    EXPECT_EQ(expression4Text("(ACD0sizedef_)"), "0 0 2 0 0 0 0 3 0");
}

TEST(PacketExpressionText, blanksMayStandBefore)
{
    EXPECT_EQ(expression4Text("( \t\r\n ACF8)"), "0 0 0 8 0 0 0 0 0");
}

TEST(PacketExpressionText, aRemarkMayFollow)
{
    EXPECT_EQ(expression4Text("(ACF4 note)"), "0 0 0 4 0 0 0 0 0");
    EXPECT_EQ(expression4Text("(ACF4\n\"( // /* \n)"), "0 0 0 4 0 0 0 0 0");
}

TEST(PacketExpressionText, everyMessageAboutItsBounds)
{
    EXPECT_EQ(expression4Text("()"), refused("This packet expression empty"));
    EXPECT_EQ(expression4Text("( \n )"), refused("This packet expression empty"));
    EXPECT_EQ(expression4Text("(ACF)"), refused("The packet expression is too short"));
    EXPECT_EQ(expression4Text("(ACF note)"), refused("The packet expression is too short"));
    EXPECT_EQ(expression4Text("(ACF8" + std::string(252, 'x') + ")"), refused("The packet expression is too long"));
    EXPECT_EQ(expression4Text("(ACF8"), refused("Found not ')' in packet expression"));
    EXPECT_EQ(expression4Text("("), refused("Found not ')' in packet expression"));
    EXPECT_EQ(expression4Text("(ACF8 "), refused("Missing ')' in packet expression"));
}

TEST(PacketExpressionText, mayHaveUpTo255Bytes)
{
    EXPECT_EQ(expression4Text("(ACF8" + std::string(251, 'x') + ")"),
              refused("Found not a supporting-keyword index in packet expression"));
    EXPECT_EQ(expression4Text("(ACF" + std::string(252, '0') + "8)"), refused("The packet expression is too long"));
    EXPECT_EQ(expression4Text("(ACF" + std::string(251, '0') + "8)"), "0 0 0 8 0 0 0 0 0");
}

TEST(PacketExpressionText, everyMessageAboutItsContent)
{
    EXPECT_EQ(expression4Text("(XCF8)"), refused("Mismatched syntax for packet E_PacketExpCode"));
    EXPECT_EQ(expression4Text("(aCF8)"), refused("Mismatched syntax for packet E_PacketExpCode"));
    EXPECT_EQ(expression4Text("(AXF8)"), refused("Mismatched syntax for packet E_RuntimeExpCode"));
    EXPECT_EQ(expression4Text("(ACX8)"), refused("Mismatched syntax for packet E_LengthExpCode"));
    EXPECT_EQ(expression4Text("(ACF-1)"), refused("Packet length must bigger than 0"));
    EXPECT_EQ(expression4Text("(ACF99999999999)"), refused("Packet length is too big"));
    EXPECT_EQ(expression4Text("(ANV2+129)"), refused("Calibration value must between -127 and 128"));
    EXPECT_EQ(expression4Text("(ANV2-128)"), refused("Calibration value must between -127 and 128"));
    EXPECT_EQ(expression4Text("(ACD0sizedef_0)"), refused("Supporting-keyword optional value must bigger than 0"));
    EXPECT_EQ(expression4Text("(ACF8nothing)"), refused("Found not a supporting-keyword index in packet expression"));
    EXPECT_EQ(expression4Text("(ANV10)"), refused("Packet variable length must be little than 10"));
}

TEST(PacketExpressionText, aLengthOfZeroIsRefusedWhereConfigured)
{
    EXPECT_EQ(expression4Text("(ACF0)"), "0 0 0 0 0 0 0 0 0");
    EXPECT_EQ(expression4Text("(ACF0)", s_cuiUsual | LCBC_POSITIVE_LENGTH),
              refused("Packet length must bigger than 0"));
}

TEST(PacketExpressionText, aSecondOneIsRefused)
{
    EXPECT_EQ(loaded("{\"a\"=(ACF4)(ACF4)1}"), errorAt(1, 12, "Duplicated '(' in packet expression"));
    EXPECT_EQ(loaded("(ACF4) /*c*/ (ACF4) 1"), errorAt(1, 14, "Duplicated '(' in packet expression"));
    EXPECT_EQ(loaded("[(ACF4)()1]"), errorAt(1, 8, "Duplicated '(' in packet expression"));
}

TEST(PacketExpressionText, isOfOneValueOnly)
{
    const tLoad load("[(ACF4) 1,2,(ACF5) [3],(ACF6) 4]");
    EXPECT_EQ(load.result(), "[1,2,[3],4]");
    EXPECT_EQ(+load.m_tTree.getChildAt(1).pkt_GetExp().m_uiLength, 0u);
    EXPECT_EQ(+load.m_tTree.getChildAt(3).pkt_GetExp().m_uiLength, 6u);
}

TEST(PacketExpressionText, afterAScalarHasNoMember)
{
    const char* const noMember = "Add a field for this syntax";
    EXPECT_EQ(loaded("[1 (ACF4)]"), errorAt(1, 4, noMember));
    EXPECT_EQ(loaded("[true // comment\n(ACF4)]"), errorAt(2, 1, noMember));
    EXPECT_EQ(loaded("{\"a\"=1 (ACF4)}"), errorAt(1, 8, noMember));
    EXPECT_EQ(loaded("{\"a\"=1 /*c*/ (ACF4)}"), errorAt(1, 14, noMember));
    EXPECT_EQ(loaded("{\"a\" (ACF4) = 1}"), errorAt(1, 6, noMember));
}

TEST(PacketExpressionText, afterAContainerIsNoSeparator)
{
    EXPECT_EQ(loaded("[[1] (ACF4)]"), errorAt(1, 6, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("{\"a\"={1} (ACF4)}"), errorAt(1, 10, s_cpNoFieldsEnd));
    EXPECT_EQ(loaded("{{1} /*c*/ (ACF4)}"), errorAt(1, 12, "Missing ','"));
}

TEST(PacketExpressionText, failsTheLoadWithOneRecord)
{
    for (const char* const text : {"[()]", "[(", "[(ACF4", "[(ACF4 ", "[(ACF)", "[(ACF4)(ACF4)]", "[(XCF4)1]",
                                   "{\"a\"={1},\"a\"=(ACF4)1}", "(", "()", "(ACF", "[[(ACF8nothing) 1]]"})
    {
        const tLoad load(text);
        EXPECT_FALSE(load.m_bDone) << text;
        EXPECT_EQ(load.m_tLoader.getErrorRanges().size(), 1u) << text;
    }
}

TEST(PacketExpressionText, rangeOfAnErrorIsWhatWasRead)
{
    const tLoad load("[(ACF8nothing) 1]");
    const std::vector<tErrorRange> ranges = load.m_tLoader.getErrorRanges();
    ASSERT_EQ(ranges.size(), 1u);
    EXPECT_EQ(ranges[0].m_uiStart, 1u);
    EXPECT_EQ(ranges[0].m_uiEnd, 14u);
}

TEST(PacketExpressionText, ofAMemberReadAgainIsReplaced)
{
    const tLoad load("{\"a\"=(ACF4)1,\"a\"=(BNF8)2,\"b\"=(ACF3)1,\"b\"=5}");
    EXPECT_EQ(expression(load.m_tTree["a"]), "1 1 0 8 0 0 0 0 0");
    EXPECT_EQ(expression(load.m_tTree["b"]), "0 0 0 3 0 0 0 0 0");
}
