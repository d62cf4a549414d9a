// tests/ber/lossless_test.cpp - binary files that lose nothing: empty containers, and what is refused.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "murv/murv.h"
#include "tests/ber/random_file_tree.h"
#include "tests/support/same_tree.h"

namespace murv::tests
{

namespace
{

std::string savedLossless(const CFields& tree, std::string& message, unsigned char style = SAVE_ALL)
{
    CSaver4BER_BASIC saver;
    saver.setSCBC(SCBC_LOSSLESS);
    std::string file = saver.saving(tree, style);
    message = saver.getLastErrMsg().substr(saver.isError() ? saver.getLastErrMsg().find("] ") + 2 : 0);
    return file;
}

std::string refusal(const CFields& tree)
{
    std::string message;
    EXPECT_EQ(savedLossless(tree, message), "");
    return message;
}

tPacketExpInfo fixedItem()
{
    tPacketExpInfo pei{};
    pei.m_uiLength = 4;
    return pei;
}

}  // namespace

TEST(LosslessBinary, theBytesAreThoseOfEverySaving)
{
    CRandomFileTree trees(7);
    CSaver4BER_BASIC plain;
    for (int i = 0; i < 300; ++i)
    {
        const CFields tree = trees.make();
        std::string message;
        const std::string file = savedLossless(tree, message);
        ASSERT_EQ(message, "");
        ASSERT_EQ(file, plain.saving(tree));
    }
}

TEST(LosslessBinary, emptyContainersComeBackEmpty)
{
    CFields tree(DT_fields);
    tree.addChildRef("a").setValue(DT_fields);
    CFields& array = tree.addChildRef("b", 7);
    array.setValue(DT_array);
    array.setComment("// c", CP_trailing);
    tree.addChildRef("c").setValue(1);
    CLoader4BER loader(LCBC_COMMENT | LCBC_LOSSLESS);
    CFields back;
    ASSERT_TRUE(loader.loading(CSaver4BER_BASIC().saving(tree), back)) << loader.getLastErrMsg();
    EXPECT_EQ(difference(tree, back, SP_all & ~SP_offsets), "");
    ASSERT_TRUE(loader.loading(CSaver4BER_BASIC().saving(CFields(DT_array)), back));
    EXPECT_EQ(back.getDT(), DT_array);
    EXPECT_EQ(back.getChildCount(), 0U);
    back.addArrayAt(CFields(1));
    EXPECT_EQ(back.getChildCount(), 1U);
}

TEST(LosslessBinary, withoutTheBitEmptyContainersAreRefused)
{
    CLoader4BER loader;
    CFields back;
    EXPECT_FALSE(loader.loading(CSaver4BER_BASIC().saving(CFields(DT_array)), back));
    EXPECT_EQ(loader.getLastErrMsg(), "* Offset 0\n  Element number must be bigger than 0\n");
}

TEST(LosslessBinary, manyEmptyContainersAreReadWithTheirParent)
{
    CFields tree(DT_array);
    for (int i = 0; i < 5000; ++i)
        tree.addArrayAt(CFields(i % 2 == 0 ? DT_array : DT_fields));
    CLoader4BER loader(LCBC_LOSSLESS);
    CFields back;
    const std::string file = CSaver4BER_BASIC().saving(tree);
    ASSERT_TRUE(loader.loading(file, back)) << loader.getLastErrMsg();
    EXPECT_EQ(difference(tree, back, SP_all & ~SP_offsets), "");
    for (std::size_t size = 13; size < 200; ++size)
        EXPECT_FALSE(loader.loading(file.substr(0, size), back)) << size;
}

TEST(LosslessBinary, whatAFileCannotHoldIsRefusedWithItsPath)
{
    CFields tree(DT_fields);
    CFields& leaf = tree.addChildRef("x");
    leaf.setValue(std::nan(""));
    std::string message;
    EXPECT_NE(savedLossless(tree, message), "") << "every double is held";
    leaf.setValue(1);

    tree.addChildRef("c").setValue(DT_array);
    tree[1].pkt_SetExp(fixedItem());
    EXPECT_EQ(refusal(tree), "c: a binary file cannot hold the packet expression of a container");
    EXPECT_NE(savedLossless(tree, message, SAVE_ALL & ~SAVE_PEI), "");
    tree[1].pkt_SetExp({});

    tPacketExpInfo pei = fixedItem();
    pei.m_ucPrefixSize = 10;
    leaf.pkt_SetExp(pei);
    EXPECT_EQ(refusal(tree), "x: a binary file cannot hold this packet expression");
    pei = fixedItem();
    pei.m_uiReserved = 1;
    leaf.pkt_SetExp(pei);
    EXPECT_EQ(refusal(tree), "x: a binary file cannot hold this packet expression");
    leaf.pkt_SetExp(fixedItem());

    leaf.setValue(2, VK_fix);
    EXPECT_EQ(refusal(tree), "x: a binary file cannot hold a second value without the keyword \"fix\" or \"valid\"");
}

TEST(LosslessBinary, commentsComeBackWhateverTheyEndIn)
{
    CFields tree(DT_fields);
    CFields& leaf = tree.addChildRef("x");
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        leaf.setComment("// ends in line feeds\n\n\n", position);
        tree.setComment("/* not closed, \r\n\n", position);
    }
    std::string message;
    const std::string file = savedLossless(tree, message);
    EXPECT_EQ(message, "");
    CFields back;
    ASSERT_TRUE(CLoader4BER(LCBC_COMMENT | LCBC_LOSSLESS).loading(file, back));
    EXPECT_EQ(difference(tree, back, SP_all & ~SP_offsets), "");
    EXPECT_EQ(back[0].getCommentCopy(CP_trailing), "// ends in line feeds\n\n");
}

TEST(LosslessBinary, filesOfHugeSizeAreRefusedBeforeTheyAreMade)
{
    // Borrowed text: the tree is small, and its body larger than 32 bits can say once it is encoded.
    static const std::string text(std::size_t{1} << 20U, 'x');
    CFields tree(DT_array);
    for (int i = 0; i < 3300; ++i)
        tree.addArrayAt(CFields(CStaticString(text.c_str())));
    EXPECT_EQ(refusal(tree), "the root: a binary file cannot hold more than 2147483647 bytes");
    tree.resizeArray(2);
    std::string message;
    EXPECT_NE(savedLossless(tree, message), "") << message;
}

TEST(LosslessBinary, theErrorPathLeadsToTheRefusedNode)
{
    CFields tree(DT_fields);
    tree.addChildRef("a") = 1;
    CFields& container = tree.addChildRef("b").addArrayAt(CFields(DT_array));
    container.pkt_SetExp(fixedItem());
    CSavers savers(SCBC_LOSSLESS);
    EXPECT_EQ(savers.saving(tree, ER_BER), "");
    EXPECT_EQ(savers.getErrorPath(), std::vector<unsigned int>({1, 0}));
}

TEST(LosslessBinary, bothValuesOfANaNAreOne)
{
    CFields leaf(std::nan(""));
    tPacketExpInfo pei = fixedItem();
    pei.m_usSkIndex = VK_fix;
    leaf.pkt_SetExp(pei);
    leaf.setVK(VK_fix);
    std::string message;
    CFields back;
    ASSERT_TRUE(CLoader4BER(LCBC_LOSSLESS).loading(savedLossless(leaf, message), back));
    EXPECT_EQ(difference(leaf, back, SP_all & ~SP_offsets), "");
}

}  // namespace murv::tests
