// tests/ber/big_endian_test.cpp - files whose numbers have their high byte first.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "murv/murv.h"
#include "tests/ber/murf_bytes.h"
#include "tests/ber/random_file_tree.h"
#include "tests/support/same_tree.h"

namespace murv::tests
{

namespace
{
const std::string s_cstrHeader("MURF\1\5\0\0\0\x0D\4\0\0", 13);

/// A tree as the body of a big-endian file.
void write(CBodyBytes& body, const CFields& node)
{
    const bool isContainer = node.isArray() || node.isField();
    body.number(node.getDT(), 1).number(node.getID(), 4);
    if (isContainer)
        body.number(node.getChildCount(), 4);
    else
    {
        const tPacketExpInfo pei = node.pkt_GetExp();
        unsigned char bytes[4];
        std::memcpy(bytes, &pei, sizeof bytes);
        for (const unsigned char byte : bytes)
            body.number(byte, 1);
        body.number(pei.m_usSkIndex, 2).number(pei.m_uiLength, 4);
    }
    body.name(name4Node(node));
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        body.text(node.getCommentCopy(position));
    if (isContainer)
    {
        for (const CFields& member : node)
            write(body, member);
    }
    else if (node.isCodelist())
        body.text(node.asString());
    else if (node.isNull())
        body.number(0, 4);
    else if (node.isBool())
        body.number(1, 4).number(node.asBool() ? 1 : 0, 1);
    else
        body.number(node.getRawBytes(), 4).number(node.getValueRef().m_ullValue, node.getRawBytes());
}
}  // namespace

// Every byte written out: a field set #258 "s" of an integer with a packet expression, a 4-byte integer, a double and a
// string with a comment.
TEST(BigEndian, fileMadeByHandIsRead)
{
    const std::string body(
        "\2"
        "\0\0\1\2"
        "\0\0\0\4"
        "\1s"
        "\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\0"
        "\4"
        "\0\0\0\7"
        "\4\2\1\0\0\x1F\0\0\1\0"
        "\1a"
        "\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\x8"
        "\xFF\xFF\xFF\xFF\xFF\xFF\xFE\xFF"
        "\5"
        "\0\0\0\0"
        "\0\0\0\0\0\0\0\0\0\0"
        "\1b"
        "\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\4"
        "\1\2\3\4"
        "\6"
        "\0\0\0\0"
        "\0\0\0\0\0\0\0\0\0\0"
        "\1c"
        "\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\x8"
        "\x3F\xF8\0\0\0\0\0\0"
        "\7"
        "\0\0\0\0"
        "\0\0\0\0\0\0\0\0\0\0"
        "\1d"
        "\0\0\0\3//x"
        "\0\0\0\0"
        "\0\0\0\0"
        "\0\0\0\2"
        "hi",
        23 + 41 + 37 + 41 + 38);
    const tLoaded loaded = load(s_cstrHeader + enciphered(0, body));
    ASSERT_EQ(loaded.m_strMessage, "");
    CFields tree = loaded.m_tTree;
    EXPECT_EQ(tree.getID(), 258u);
    EXPECT_EQ(std::string(tree.getName()), "s");
    ASSERT_EQ(tree.getChildCount(), 4u);
    EXPECT_EQ(tree["a"], CFields(-257));
    EXPECT_EQ(tree["a"].getID(), 7u);
    EXPECT_EQ(+tree["a"].pkt_GetExp().m_usSkIndex, 31);
    EXPECT_EQ(+tree["a"].pkt_GetExp().m_uiLength, 256u);
    EXPECT_EQ(tree["a"].pkt_GetExp().m_eLengthExp, LEC_V);
    EXPECT_EQ(tree["a"].pkt_GetExp().m_ucPrefixSize, 2);
    EXPECT_EQ(tree["b"], CFields(0x01020304u));
    EXPECT_EQ(tree["c"], CFields(1.5));
    EXPECT_EQ(tree["d"], CFields("hi"));
    EXPECT_EQ(tree["d"].getCommentCopy(CP_before), "//x");
}

TEST(BigEndian, faultyPacketExpressionIsRefused)
{
    CBodyBytes body(false);
    body.number(DT_sint, 1).number(0, 4).number(0, 4).number(5, 2).number(0, 4).name("").noComments().number(0, 4);
    EXPECT_EQ(load(s_cstrHeader + enciphered(0, body.str())).m_strMessage,
              "* Offset 0\n  Invalid internal supporting-keyword index\nSee Offset 5 for detail.\n");
}

TEST(BigEndian, shortDoubleIsASingle)
{
    const CBodyBytes body = CBodyBytes(false).leaf(DT_double, std::string("\x3F\xC0\0\0", 4));
    EXPECT_EQ(load(s_cstrHeader + enciphered(0, body.str())).m_tTree, CFields(1.5));
}

TEST(BigEndian, randomTreesAreRead)
{
    CRandomFileTree trees(6);
    for (int i = 0; i < 500; ++i)
    {
        const CFields tree = trees.make();
        CBodyBytes body(false);
        write(body, tree);
        const tLoaded loaded = load(s_cstrHeader + enciphered(0, body.str()));
        ASSERT_EQ(loaded.m_strMessage, "");
        ASSERT_EQ(difference(tree, loaded.m_tTree, SP_all & ~SP_offsets), "") << i;
    }
}

TEST(BigEndian, everyPrefixOfTheBodyFails)
{
    CBodyBytes body(false);
    body.container(DT_fields, 2).integer(5, "a").leaf(DT_codelist, "text", "b");
    for (std::size_t size = 6; size < body.str().size(); ++size)
        EXPECT_NE(load(s_cstrHeader + enciphered(0, body.str().substr(0, size))).m_strMessage, "") << size;
}

TEST(BigEndian, whatWasReadIsSavedLittleEndian)
{
    const CBodyBytes body = CBodyBytes(false).integer(5);
    EXPECT_EQ(save(load(s_cstrHeader + enciphered(0, body.str())).m_tTree), save(CFields(5)));
}

}  // namespace murv::tests
