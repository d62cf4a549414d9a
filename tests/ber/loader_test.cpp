// tests/ber/loader_test.cpp - what the binary loader makes of records, and what it says when it refuses one.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "murv/murv.h"
#include "tests/ber/murf_bytes.h"
#include "tests/support/same_tree.h"

namespace murv::tests
{

namespace
{
/// Registers the callback for one kind as long as it lives.
class CCheckIdx
{
public:
    CCheckIdx(unsigned char kind, CFields::tCheckIdxFP check) : m_ucKind(kind)
    {
        CFields::setCheckIdxFP4ESK(kind, check);
    }
    CCheckIdx(const CCheckIdx&) = delete;
    CCheckIdx& operator=(const CCheckIdx&) = delete;
    ~CCheckIdx()
    {
        CFields::setCheckIdxFP4ESK(m_ucKind, nullptr);
    }

private:
    const unsigned char m_ucKind;
};

/// A number with that expression.
CBodyBytes expressed(std::string_view expression, std::string_view name = {})
{
    CBodyBytes body;
    body.number(DT_sint, 1).number(0, 4).bytes(expression).name(name).noComments();
    return body.number(8, 4).number(5, 8);
}

std::string expressionOf(unsigned char codes, unsigned char prefix, unsigned char keyword, unsigned short index)
{
    return CBodyBytes()
        .number(codes, 1)
        .number(prefix, 1)
        .number(0, 1)
        .number(keyword, 1)
        .number(index, 2)
        .number(0, 4)
        .str();
}

CBodyBytes commented(std::string_view before, std::string_view trailing = {}, std::string_view after = {})
{
    CBodyBytes body;
    body.number(DT_sint, 1).number(0, 4).noExpression().name("");
    return body.text(before).text(trailing).text(after).number(8, 4).number(5, 8);
}

std::string inRecord(const std::string& message, unsigned int start, unsigned int place)
{
    return "* Offset " + std::to_string(start) + "\n  " + message + "\nSee Offset " + std::to_string(place) +
           " for detail.\n";
}
}  // namespace

// Values

TEST(BinaryLoader, leavesOfAllTypes)
{
    const tLoaded loaded = load(file4Body(CBodyBytes()
                                              .container(DT_array, 8)
                                              .leaf(DT_null)
                                              .leaf(DT_bool, "\x02")
                                              .leaf(DT_bool, std::string(1, '\0'))
                                              .leaf(DT_sint, "\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF")
                                              .leaf(DT_uint, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF")
                                              .leaf(DT_double, std::string("\0\0\0\0\0\0\xF8\x3F", 8))
                                              .leaf(DT_codelist, std::string("a\0b", 3))
                                              .container(DT_fields, 1)
                                              .leaf(DT_codelist, "", "n")
                                              .str()));
    ASSERT_EQ(loaded.m_strMessage, "");
    CFields expected;
    for (const CFields& value : {CFields(), CFields(true), CFields(false), CFields(-2), CFields(~0ULL), CFields(1.5),
                                 CFields(std::string("a\0b", 3)), CFields(DT_fields)})
        expected.addArrayAt(value);
    expected[7].addChildRef("n") = "";
    EXPECT_EQ(difference(loaded.m_tTree, expected, SP_all & ~SP_offsets), "");
    EXPECT_EQ(loaded.m_tTree, expected);
}

TEST(BinaryLoader, numbersOfFourBytesAreConverted)
{
    const tLoaded loaded = load(file4Body(CBodyBytes()
                                              .container(DT_array, 3)
                                              .leaf(DT_sint, "\xFE\xFF\xFF\xFF")
                                              .leaf(DT_uint, "\xFE\xFF\xFF\xFF")
                                              .leaf(DT_double, std::string("\0\0\xC0\x3F", 4))
                                              .str()));
    ASSERT_EQ(loaded.m_strMessage, "");
    EXPECT_EQ(loaded.m_tTree[0], CFields(-2));
    EXPECT_EQ(loaded.m_tTree[1], CFields(4294967294u));
    EXPECT_EQ(loaded.m_tTree[2], CFields(1.5));
}

TEST(BinaryLoader, valueOfNoBytesIsTheZeroValueOfItsType)
{
    for (const E_DataType type : {DT_null, DT_bool, DT_sint, DT_uint, DT_double})
    {
        const tLoaded loaded = load(file4Body(CBodyBytes().leaf(type).str()));
        EXPECT_EQ(loaded.m_strMessage, "");
        EXPECT_EQ(loaded.m_tTree, CFields(type)) << type;
    }
    EXPECT_EQ(load(file4Body(CBodyBytes().leaf(DT_codelist).str())).m_tTree, CFields(""));
}

TEST(BinaryLoader, otherValueLengthsAreMismatched)
{
    const std::string byte(1, 'x');
    for (const E_DataType type : {DT_sint, DT_uint, DT_double})
        for (const std::size_t length : {1u, 2u, 3u, 5u, 7u, 9u, 40000u})
            EXPECT_EQ(message4Body(CBodyBytes().leaf(type, std::string(length, 'x'))),
                      inRecord("Mismatched value length", 0, 32));
    for (const std::size_t length : {2u, 4u, 8u, 40000u})
        EXPECT_EQ(message4Body(CBodyBytes().leaf(DT_bool, std::string(length, 'x'))),
                  inRecord("Mismatched value length", 0, 32));
    for (const std::size_t length : {1u, 8u, 40000u})
        EXPECT_EQ(message4Body(CBodyBytes().leaf(DT_null, std::string(length, 'x'))),
                  inRecord("Mismatched value length", 0, 32));
}

TEST(BinaryLoader, longStringsAndCommentsAreReadWhole)
{
    const std::string text(200001, 't');
    const std::string comment = "//" + std::string(99999, 'c');
    CBodyBytes body;
    body.container(DT_fields, 2).number(DT_codelist, 1).number(0, 4).noExpression().name("long");
    body.text(comment).text("").text("/*").text(text).integer(7, "next");
    for (const std::string& file : {file4Body(body.str()), file4Body(body.str(), "pw")})
    {
        const tLoaded loaded = load(file, "pw");
        ASSERT_EQ(loaded.m_strMessage, "");
        EXPECT_TRUE(loaded.m_tTree["long"].asString() == text);
        EXPECT_TRUE(loaded.m_tTree["long"].getCommentCopy(CP_before) == comment);
        EXPECT_FALSE(loaded.m_tTree["long"].hasComment(CP_trailing));
        EXPECT_EQ(loaded.m_tTree["long"].getCommentCopy(CP_after), "/*");
        EXPECT_EQ(loaded.m_tTree["next"], CFields(7));
    }
}

// Names and IDs

TEST(BinaryLoader, namesKeepAllBytes)
{
    const std::string name("\0a\xFF", 3);
    const tLoaded loaded = load(file4Body(CBodyBytes().container(DT_fields, 1, "root").integer(1, name).str()));
    EXPECT_EQ(std::string(loaded.m_tTree.getName()), "root");
    EXPECT_EQ(name4Node(loaded.m_tTree.getChildAt(0)), name);
}

TEST(BinaryLoader, elementsOfArraysKeepNameAndId)
{
    const tLoaded loaded = load(file4Body(CBodyBytes().container(DT_array, 1).integer(1, "n", 9).str()));
    EXPECT_EQ(name4Node(loaded.m_tTree.getChildAt(0)), "n");
    EXPECT_EQ(loaded.m_tTree.getChildAt(0).getID(), 9u);
}

TEST(BinaryLoader, membersOfLargeSetsAreFoundByName)
{
    CBodyBytes body;
    body.container(DT_fields, 1000);
    for (unsigned int i = 0; i < 1000; ++i)
        body.integer(i, "n" + std::to_string(i));
    const tLoaded loaded = load(file4Body(body.str()));
    ASSERT_EQ(loaded.m_strMessage, "");
    for (unsigned int i = 0; i < 1000; ++i)
        EXPECT_EQ(loaded.m_tTree["n" + std::to_string(i)].asUint32(), i);
}

TEST(BinaryLoader, idAbove31BitsIsRefused)
{
    EXPECT_EQ(message4Body(CBodyBytes().integer(1, "", 0x80000000)), "* Offset 0\n  Failed to set the field ID\n");
    EXPECT_EQ(message4Body(CBodyBytes().container(DT_array, 1, "", 0xFFFFFFFF).integer(1)),
              "* Offset 0\n  Failed to set the field ID\n");
    EXPECT_EQ(load(file4Body(CBodyBytes().integer(1, "", 0x7FFFFFFF).str())).m_tTree.getID(), 0x7FFFFFFFu);
}

TEST(BinaryLoader, repeatedNameIsRefusedAndTheFirstOneIsNamed)
{
    CBodyBytes body;
    body.container(DT_fields, 3).integer(1, "a").integer(2, "b").integer(3, "a");
    const tLoaded loaded = load(file4Body(body.str()));
    EXPECT_EQ(loaded.m_strMessage,
              inRecord("This field not allow the duplication or a error occured", 22 + 2 * 41, 22));
    EXPECT_EQ(loaded.m_tTree.getChildCount(), 2u);
    EXPECT_EQ(loaded.m_tTree["a"], CFields(1));
}

TEST(BinaryLoader, repeatedNamesOfAllKindsAreRefused)
{
    for (const unsigned int before : {0u, 7u, 63u, 64u, 200u})
    {
        CBodyBytes leaves;
        CBodyBytes containers;
        leaves.container(DT_fields, before + 2).integer(1, "twice");
        containers.container(DT_fields, before + 2).container(DT_array, 1, "twice").integer(1);
        for (unsigned int i = 0; i < before; ++i)
        {
            leaves.integer(1, std::to_string(i));
            containers.integer(1, std::to_string(i));
        }
        leaves.leaf(DT_codelist, std::string(100000, 'x'), "twice");
        containers.container(DT_fields, 1, "twice").integer(1);
        for (const std::string& body : {leaves.str(), containers.str()})
            EXPECT_NE(load(file4Body(body)).m_strMessage.find("not allow the duplication"), std::string::npos)
                << before;
    }
}

TEST(BinaryLoader, sameNameInAnotherSetIsNoDuplicate)
{
    CBodyBytes body;
    body.container(DT_fields, 2).integer(1, "a").container(DT_fields, 1, "b").integer(2, "a");
    EXPECT_EQ(message4Body(body), "");
}

TEST(BinaryLoader, repeatedIdBelowTheSameSetIsRefused)
{
    CBodyBytes body;
    body.container(DT_fields, 2).container(DT_array, 1, "a").integer(1, "", 7).integer(2, "b", 7);
    EXPECT_EQ(message4Body(body),
              inRecord("This field not allow the duplication or a error occured", 22 + 23 + 40, 22 + 23));
    CBodyBytes own;
    own.container(DT_fields, 1, "", 7).integer(1, "a", 7);
    EXPECT_EQ(message4Body(own), inRecord("This field not allow the duplication or a error occured", 22, 0));
}

TEST(BinaryLoader, repeatedIdOfAnElementIsAccepted)
{
    CBodyBytes body;
    body.container(DT_fields, 2).integer(1, "a", 7);
    body.container(DT_array, 2, "b").integer(2, "", 7).integer(3, "", 7);
    const tLoaded loaded = load(file4Body(body.str()));
    EXPECT_EQ(loaded.m_strMessage, "");
    EXPECT_EQ(loaded.m_tTree["b"][1].getID(), 7u);
}

TEST(BinaryLoader, sameIdInAnotherSetIsNoDuplicate)
{
    CBodyBytes body;
    body.container(DT_fields, 2).container(DT_fields, 1, "a").integer(1, "x", 7);
    body.container(DT_fields, 1, "b").integer(2, "x", 7);
    const tLoaded loaded = load(file4Body(body.str()));
    EXPECT_EQ(loaded.m_strMessage, "");
    EXPECT_EQ(loaded.m_tTree["b"]["x"].getID(), 7u);
}

TEST(BinaryLoader, duplicatesAreAddedWhenTheConfigurationSaysSo)
{
    CBodyBytes body;
    body.container(DT_fields, 3).integer(1, "a", 7).integer(2, "a", 7).container(DT_array, 1, "a").integer(3);
    const tLoaded loaded = load(file4Body(body.str()), nullptr, LCBC_DUPLICATE);
    ASSERT_EQ(loaded.m_strMessage, "");
    EXPECT_EQ(loaded.m_tTree.getChildCount(), 3u);
    EXPECT_EQ(loaded.m_tTree["a"], CFields(1));
    EXPECT_EQ(loaded.m_tTree[1].getID(), 7u);
}

// Comments

TEST(BinaryLoader, commentsAreKept)
{
    const tLoaded loaded = load(file4Body(commented("// one\n", "/*2*/", "//\n//").str()));
    ASSERT_EQ(loaded.m_strMessage, "");
    EXPECT_EQ(loaded.m_tTree.getCommentCopy(CP_before), "// one\n");
    EXPECT_EQ(loaded.m_tTree.getCommentCopy(CP_trailing), "/*2*/");
    EXPECT_EQ(loaded.m_tTree.getCommentCopy(CP_after), "//\n//");
}

TEST(BinaryLoader, commentsAreDroppedWhenNotAskedFor)
{
    const std::string file = file4Body(commented("// one").str());
    EXPECT_FALSE(load(file, nullptr, 0x30, false).m_tTree.isComment());
    EXPECT_FALSE(load(file, nullptr, 0x20, true).m_tTree.isComment());
    EXPECT_EQ(load(file, nullptr, 0x20, true).m_tTree, CFields(5));
}

TEST(BinaryLoader, commentThatDoesNotBeginWithASlashFails)
{
    EXPECT_EQ(message4Body(commented("note")), inRecord("Comments must start with /", 0, 20));
    EXPECT_EQ(message4Body(commented("//", "x" + std::string(50000, 'y'))),
              inRecord("Comments must start with /", 0, 26));
    EXPECT_EQ(message4Body(commented("", "", std::string("\0/", 2))), inRecord("Comments must start with /", 0, 28));
}

TEST(BinaryLoader, containersHaveComments)
{
    CBodyBytes body;
    body.number(DT_array, 1).number(0, 4).number(1, 4).name("").text("//a").text("").text("//b").integer(1);
    const tLoaded loaded = load(file4Body(body.str()));
    EXPECT_EQ(loaded.m_tTree.getCommentCopy(CP_before), "//a");
    EXPECT_EQ(loaded.m_tTree.getCommentCopy(CP_after), "//b");
    EXPECT_FALSE(loaded.m_tTree.getChildAt(0).isComment());
}

// Packet expressions

TEST(BinaryLoader, packetExpressionIsKept)
{
    const tLoaded loaded =
        load(file4Body(expressed(std::string("\x05\x02\xFF\x00\x1F\x00\x09\x00\x00\x00", 10)).str()));
    ASSERT_EQ(loaded.m_strMessage, "");
    const tPacketExpInfo pei = loaded.m_tTree.pkt_GetExp();
    EXPECT_EQ(pei.m_ePacketExp, PEC_B);
    EXPECT_EQ(pei.m_eLengthExp, LEC_V);
    EXPECT_EQ(pei.m_ucPrefixSize, 2);
    EXPECT_EQ(pei.m_cCalibration, -1);
    EXPECT_EQ(+pei.m_usSkIndex, 31);
    EXPECT_EQ(+pei.m_uiLength, 9u);
}

TEST(BinaryLoader, keywordsFixAndValidGiveASecondValue)
{
    for (const E_ValueKind kind : {VK_fix, VK_valid})
    {
        const tLoaded loaded =
            load(file4Body(expressed(expressionOf(0, 0, 0, static_cast<unsigned short>(kind))).str()));
        EXPECT_EQ(loaded.m_tTree.getVK(), kind);
        EXPECT_EQ(loaded.m_tTree.asSint32(VK_fix), 5);
    }
    const tLoaded other = load(file4Body(expressed(expressionOf(0, 0, 0, 11)).str()));
    EXPECT_EQ(other.m_tTree.getVK(), VK_actual);
    EXPECT_TRUE(other.m_tTree.isNull(VK_fix));
}

TEST(BinaryLoader, faultyPacketExpressionsAreRefused)
{
    struct tRow
    {
        std::string m_strExpression;
        const char* m_pMessage;
    };
    const CCheckIdx unknown(1, [](unsigned short, unsigned char) { return 0; });
    const CCheckIdx invalid(2, [](unsigned short, unsigned char) { return -1; });
    const CCheckIdx accepted(15, [](unsigned short, unsigned char) { return 1; });
    const tRow rows[] = {
        {expressionOf(0x0C, 0, 0, 0), "Mismatched syntax for packet E_LengthExpCode"},
        {expressionOf(0, 10, 0, 0), "Packet variable length must be little than 10"},
        {expressionOf(0, 0, 0xA0, 0), "Supporting-keyword option value must be little than 10"},
        {expressionOf(0, 0, 3, 1), "Not exist supporting-keyword kind"},
        {expressionOf(0, 0, 1, 1), "Not exist supporting-keyword index"},
        {expressionOf(0, 0, 2, 1), "Invalid index or option for supporting-keyword"},
        {expressionOf(0, 0, 0, 5), "Invalid internal supporting-keyword index"},
        {expressionOf(0, 0, 0, 39), "Invalid internal supporting-keyword index"},
        {expressionOf(0, 0, 0, 3), "Supporting-keyword option value must be bigger than 0"},
    };
    for (const tRow& row : rows)
        EXPECT_EQ(message4Body(expressed(row.m_strExpression)), inRecord(row.m_pMessage, 0, 5));
    EXPECT_EQ(message4Body(expressed(expressionOf(0, 9, 0x9F, 1))), "");
}

TEST(BinaryLoader, exceptionOfACallbackPassesAndTheLoaderIsUsableAfterwards)
{
    const CCheckIdx throwing(1, [](unsigned short, unsigned char) -> int { throw std::runtime_error("no table"); });
    CBodyBytes body;
    body.container(DT_fields, 2).integer(1, "a").bytes(expressed(expressionOf(0, 0, 1, 1), "b").str());
    CLoader4BER loader;
    CFields tree;
    EXPECT_THROW(loader.loading(file4Body(body.str()), tree), std::runtime_error);
    EXPECT_EQ(tree["a"].asSint32(), 1);
    EXPECT_TRUE(loader.loading(file4Body(CBodyBytes().integer(3).str()), tree));
    EXPECT_EQ(tree.asSint32(), 3);
}

// Records

// Fields are looked at in the order of the record; an ID comes before a name that repeats, and a value comes last.
TEST(BinaryLoader, firstFaultOfARecordIsTold)
{
    EXPECT_EQ(message4Body(CBodyBytes().container(DT_array, 0, "", 0x80000000)),
              "* Offset 0\n  Element number must be bigger than 0\n");
    CBodyBytes leaf;
    leaf.number(DT_sint, 1).number(0x80000000, 4).bytes(expressionOf(0, 10, 0, 0)).name("").noComments();
    EXPECT_EQ(message4Body(leaf.number(8, 4).number(5, 8)), "* Offset 0\n  Failed to set the field ID\n");
    EXPECT_EQ(message4Body(expressed(expressionOf(0x0C, 10, 0, 0))),
              inRecord("Mismatched syntax for packet E_LengthExpCode", 0, 5));
}

TEST(BinaryLoader, typeAboveSevenIsNoRecord)
{
    for (unsigned int type = 8; type < 256; ++type)
        EXPECT_EQ(message4Body(CBodyBytes().number(type, 1).bytes(std::string(40, '\0'))),
                  "* Offset 0\n  Syntax error: value, field or array expected.\n");
}

TEST(BinaryLoader, containerWithoutMembersIsRefused)
{
    CFields tree;
    tree.addChildRef("a") = 1;
    tree.addChildRef("b").setValue(DT_fields);
    const tLoaded loaded = load(save(tree));
    EXPECT_EQ(loaded.m_strMessage, "* Offset 63\n  Element number must be bigger than 0\n");
    EXPECT_EQ(loaded.m_tTree["a"], CFields(1));
}

// Records that lie well before the end of the data are read another way than the last ones.
TEST(BinaryLoader, containerWithoutMembersIsRefusedWhateverFollows)
{
    for (const E_DataType outer : {DT_fields, DT_array})
    {
        CBodyBytes body;
        body.container(outer, 2).container(DT_array, 0).leaf(DT_codelist, std::string(2000, 'x'));
        EXPECT_EQ(message4Body(body), "* Offset 22\n  Element number must be bigger than 0\n");
    }
}

TEST(BinaryLoader, errorsHaveTheirRange)
{
    const tLoaded loaded = load(file4Body(CBodyBytes().container(DT_array, 1).leaf(DT_bool, "xx").str()));
    ASSERT_EQ(loaded.m_vError.size(), 1u);
    EXPECT_EQ(loaded.m_vError[0].m_uiStart, 22u);
    EXPECT_EQ(loaded.m_vError[0].m_uiEnd, 54u);
    EXPECT_EQ(loaded.m_vError[0].m_strMessage, "Mismatched value length");
    EXPECT_EQ(loaded.m_iCode, 0);
}

TEST(BinaryLoader, bytesAfterTheRootAreIgnored)
{
    EXPECT_EQ(load(file4Body(CBodyBytes().integer(5).bytes("anything").str())).m_tTree, CFields(5));
}

TEST(BinaryLoader, nodesKnowWhereTheirRecordsLie)
{
    const tLoaded loaded = load(file4Body(CBodyBytes().container(DT_fields, 1).leaf(DT_codelist, "ab", "n").str()));
    EXPECT_EQ(loaded.m_tTree.getOffsetStart(), 0);
    EXPECT_EQ(loaded.m_tTree.getOffsetEnd(), 57);
    EXPECT_EQ(loaded.m_tTree["n"].getOffsetStart(), 22);
    EXPECT_EQ(loaded.m_tTree["n"].getOffsetEnd(), 57);
}

// Nesting

namespace
{
CBodyBytes nested(unsigned int containers)
{
    CBodyBytes body;
    for (unsigned int i = 0; i < containers; ++i)
        body.container(i % 2 == 0 ? DT_array : DT_fields, 1);
    return body.integer(1);
}
}  // namespace

TEST(BinaryLoader, thousandLevelsAreRead)
{
    const tLoaded loaded = load(file4Body(nested(999).str()));
    EXPECT_EQ(loaded.m_strMessage, "");
    EXPECT_EQ(loaded.m_tTree.getMemberCount(), 999u);
}

TEST(BinaryLoader, oneLevelMoreThrows)
{
    for (const unsigned int containers : {1000u, 1001u, 5000u})
        EXPECT_EQ(thrown([&] { load(file4Body(nested(containers).str())); }),
                  "[murv::CLoader4BER::loadFieldInfo#0] Exceeded s_cnStackDepthLimit");
    const std::string after(2000, '\0');
    EXPECT_EQ(load(file4Body(nested(999).str() + after)).m_strMessage, "");
    EXPECT_EQ(thrown([&] { load(file4Body(nested(1000).str() + after)); }),
              "[murv::CLoader4BER::loadFieldInfo#0] Exceeded s_cnStackDepthLimit");
}

TEST(BinaryLoader, loaderIsUsableAfterItThrew)
{
    CLoader4BER loader;
    CFields tree;
    EXPECT_THROW(loader.loading(file4Body(nested(1000).str()), tree), CLogicError);
    EXPECT_TRUE(loader.loading(file4Body(CBodyBytes().integer(5).str()), tree));
    EXPECT_EQ(tree, CFields(5));
}

// The target

TEST(BinaryLoader, targetKeepsWhatTheFileDoesNotState)
{
    CFields target("before");
    target.setName("name");
    target.setID(3);
    target.setComment("//c", CP_before);
    tPacketExpInfo pei{};
    pei.m_uiLength = 9;
    target.pkt_SetExp(pei);
    CLoader4BER loader;
    ASSERT_TRUE(loader.loading(file4Body(CBodyBytes().integer(5).str()), target));
    EXPECT_EQ(target, CFields(5));
    EXPECT_EQ(std::string(target.getName()), "name");
    EXPECT_EQ(target.getID(), 3u);
    EXPECT_EQ(target.getCommentCopy(CP_before), "//c");
    EXPECT_EQ(+target.pkt_GetExp().m_uiLength, 9u);
}

TEST(BinaryLoader, valueReplacesBothValuesOfTheTarget)
{
    CFields target(1);
    target.setValue("second", VK_fix);
    target.setVK(VK_fix);
    CLoader4BER loader;
    ASSERT_TRUE(loader.loading(file4Body(CBodyBytes().container(DT_array, 1).integer(5).str()), target));
    EXPECT_EQ(target.getVK(), VK_actual);
    EXPECT_TRUE(target.isNull(VK_fix));
}

TEST(BinaryLoader, fatalFailureLeavesTheTargetAlone)
{
    CFields target;
    target.addChildRef("a") = 1;
    CLoader4BER loader;
    EXPECT_FALSE(loader.loading("MURF and more bytes", target));
    EXPECT_EQ(target["a"], CFields(1));
}

TEST(BinaryLoader, nothingToLoadIsFalseAndLeavesTheError)
{
    CFields target(1);
    CLoader4BER loader;
    EXPECT_FALSE(loader.loading("MURF", target));
    const std::string before = loader.getLastErrMsg();
    EXPECT_FALSE(loader.loadit(nullptr, 5, target));
    EXPECT_FALSE(loader.loadit("MURF", 0, target));
    EXPECT_EQ(loader.getLastErrMsg(), before);
    EXPECT_EQ(target, CFields(1));
}

TEST(BinaryLoader, tooMuchDataIsRefused)
{
    CFields target;
    CLoader4BER loader;
    EXPECT_FALSE(loader.loadit("MURF", 0x80000000, target));
    EXPECT_EQ(withoutLine(loader.getLastErrMsg()), "[murv::CLoader4BER::loadit#0] Too big data size(2147483648)");
    EXPECT_EQ(loader.getLastErrCode(), -991);
}

TEST(BinaryLoader, nextLoadForgetsTheError)
{
    CFields target;
    CLoader4BER loader;
    EXPECT_FALSE(loader.loading(file4Body(CBodyBytes().container(DT_array, 0).bytes("12345678").str()), target));
    EXPECT_FALSE(loader.getStatus());
    EXPECT_TRUE(loader.loading(file4Body(CBodyBytes().integer(5).str()), target));
    EXPECT_TRUE(loader.getStatus());
    EXPECT_TRUE(loader.getErrorRanges().empty());
}

TEST(BinaryLoader, frontLoaderReachesIt)
{
    CFields tree;
    CLoaders loaders;
    EXPECT_TRUE(loaders.loading(file4Body(CBodyBytes().integer(5).str(), "pw"), tree, "pw"));
    EXPECT_EQ(tree, CFields(5));
    EXPECT_FALSE(loaders.loading(file4Body(CBodyBytes().integer(5).str(), "pw"), tree, "wp"));
    EXPECT_EQ(withoutLine(loaders.getLastErrMsg()), "[murv::CLoader4BER::loadHeader#0] Mismatched password");
}

}  // namespace murv::tests
