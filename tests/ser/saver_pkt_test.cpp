// tests/ser/saver_pkt_test.cpp - the text on one line.
#include <gtest/gtest.h>

#include <string>

#include "murv/saver.h"
#include "murv/text.h"
#include "tests/ser/deep_tree.h"
#include "tests/ser/saver_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

TEST(SaverPkt, writesOneLine)
{
    EXPECT_EQ(text4Packet(sampleTree(), 63, 13), "{\"a\"=1,\"flags\"=[1,2,3],#7\"sub\"={\"x\"=5}}\n");
}

TEST(SaverPkt, putsABlankAfterEqualSignsForYaml)
{
    CSaver4SER_PKT saver;
    saver.setSCBC(13);
    saver.setCompatibilityYAML(true);
    EXPECT_EQ(saver.saving(sampleTree()), "{\"a\"= 1,\"flags\"= [1,2,3],#7\"sub\"= {\"x\"= 5}}\n");
    saver.setCompatibilityYAML(false);
    EXPECT_EQ(saver.saving(sampleTree()), "{\"a\"=1,\"flags\"=[1,2,3],#7\"sub\"={\"x\"=5}}\n");
}

TEST(SaverPkt, writesThePartsThatTheStyleAsksFor)
{
    EXPECT_EQ(text4Packet(sampleTree(), SAVE_VALUE), "{1,[1,2,3],{5}}");
    EXPECT_EQ(text4Packet(sampleTree(), SAVE_SPACING), "{,[,,],{}}");
    EXPECT_EQ(text4Packet(sampleTree(), SAVE_ID), "{,[,,],#7{}}");
    EXPECT_EQ(text4Packet(sampleTree(), SAVE_NAME), "{\"a\"=,\"flags\"=[,,],\"sub\"={\"x\"=}}");
}

TEST(SaverPkt, writesEmptyContainers)
{
    EXPECT_EQ(text4Packet(CFields(DT_fields)), "{}");
    EXPECT_EQ(text4Packet(CFields(DT_array)), "[]");
    EXPECT_EQ(text4Packet(CFields(DT_array), 63, SCBC_FINAL_NEWLINE), "[]\n");
    CFields bare;
    bare.removeAll(DT_fields);
    EXPECT_EQ(text4Packet(arrayOf({bare, CFields(DT_array)})), "[{},[]]");
}

TEST(SaverPkt, writesTheRootsIdAndName)
{
    CFields root(5);
    root.setID(3);
    EXPECT_EQ(text4Packet(root), "#35");
    root.setName("n");
    EXPECT_EQ(text4Packet(root), "#3\"n\"=5");
    EXPECT_EQ(text4Packet(CFields()), "");
}

TEST(SaverPkt, writesNullAsAWordOnlyWhenConfigured)
{
    CFields tree(DT_fields);
    add(tree, "a", CFields());
    EXPECT_EQ(text4Packet(tree), "{\"a\"=}");
    EXPECT_EQ(text4Packet(tree, 63, SCBC_NULL_WORD), "{\"a\"=null}");
    EXPECT_EQ(text4Packet(tree["a"]), "\"a\"=");
}

TEST(SaverPkt, writesPacketExpressionsWithoutBlanks)
{
    CFields tree(DT_fields);
    add(tree, "a", 1234).pkt_SetExp(itemOf(4));
    EXPECT_EQ(text4Packet(tree), "{\"a\"=(ACF4)1234}");
    EXPECT_EQ(text4Packet(withItem(1234, itemOf(4))), "(ACF4)1234");
}

TEST(SaverPkt, neverWritesComments)
{
    CFields tree(DT_fields);
    CFields& a = add(tree, "a", 1);
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        a.setComment("// c", position);
    tree.setComment("// root", CP_before);
    EXPECT_EQ(text4Packet(tree), "{\"a\"=1}");
}

TEST(SaverPkt, writesNamesAndIdsOfElementsNever)
{
    CFields array(DT_array);
    CFields element(1);
    element.setName("n");
    element.setID(9);
    array.addArrayAt(element);
    ASSERT_STREQ(array[0].getName(), "n");
    EXPECT_EQ(text4Packet(array), "[1]");
}

TEST(SaverPkt, writesEveryByteOfAString)
{
    const std::string bytes = everyByte();
    EXPECT_EQ(text4Packet(CFields(bytes)), ToQuotedEscapeString(bytes));
}

TEST(SaverPkt, clearsItsErrorWhenASavingStarts)
{
    CSaver4SER_PKT saver;
    EXPECT_EQ(saver.saving(withItem(1, itemOf(0, 5))), "(ACF0)1");
    EXPECT_EQ(saver.getLastErrCode(), -991);
    saver.saving(CFields(1));
    EXPECT_FALSE(saver.isError());
}

TEST(SaverPkt, startsWithTheSecondValueBit)
{
    EXPECT_EQ(CSaver4SER_PKT().getSCBC(), 8U);
    EXPECT_EQ(CSaver4SER_PKT().saving(dual(1, 2)), "(ACF4fix)2");
}

TEST(SaverPkt, aCopyKeepsTheSwitch)
{
    CSaver4SER_PKT saver;
    saver.setCompatibilityYAML(true);
    CSaver4SER_PKT copy(saver);
    CFields tree(DT_fields);
    add(tree, "a", 1);
    EXPECT_EQ(copy.saving(tree), "{\"a\"= 1}");
    CSaver4SER_PKT assigned;
    assigned = saver;
    EXPECT_EQ(assigned.saving(tree), "{\"a\"= 1}");
}

TEST(SaverPkt, savesATreeOfAMillionLevelsOnASmallStack)
{
    constexpr unsigned int levels = 1000000;
    onSmallStack([] {
        const CFields tree = nestedArrays(levels);
        EXPECT_EQ(text4Packet(tree), std::string(levels, '[') + std::string(levels, ']'));
    });
}

}  // namespace
