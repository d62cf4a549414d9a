// tests/ser/lossless_test.cpp - how lossless text looks, what it refuses, and what the loader's bit changes.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <sstream>
#include <vector>

#include "murv/loader.h"
#include "tests/ser/saver_helpers.h"

using namespace murv;
using namespace murv::tests;

namespace
{

using tPath = std::vector<unsigned int>;

constexpr unsigned int s_cuiLoad = LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS;

std::string compact(const CFields& tree, unsigned char style = SAVE_ALL, unsigned int scbc = SCBC_LOSSLESS)
{
    CSaver4SER_PKT saver;
    saver.setSCBC(scbc);
    return saver.saving(tree, style);
}

std::string indented(const CFields& tree, unsigned int more = 0, unsigned char style = SAVE_ALL)
{
    CSaver4SER_HFW saver;
    saver.setSCBC(SCBC_LOSSLESS | more);
    return saver.saving(tree, style);
}

/// The message without the function that reports it.
std::string withoutPlace(const std::string& message)
{
    return message.substr(message.find("] ") + 2);
}

std::string refusal(const CFields& tree, unsigned char style = SAVE_ALL)
{
    CSaver4SER_HFW saver;
    saver.setSCBC(SCBC_LOSSLESS);
    EXPECT_EQ(saver.saving(tree, style), "");
    EXPECT_EQ(saver.getLastErrCode(), -991);
    return saver.isError() ? withoutPlace(saver.getLastErrMsg()) : "nothing was refused";
}

CFields loaded(const std::string& text, unsigned int lcbc = s_cuiLoad)
{
    CLoader4SER loader(lcbc);
    CFields tree;
    EXPECT_TRUE(loader.loading(text, tree)) << text << loader.getLastErrMsg();
    return tree;
}

CFields oneMember(const char* name, const CFields& value)
{
    CFields tree(DT_fields);
    add(tree, name, value);
    return tree;
}

}  // namespace

TEST(LosslessText, doublesAreShortAndStayDoubles)
{
    EXPECT_EQ(compact(arrayOf({25.0, 0.1, 1e20, -0.0, 0.0, 12.5, 5e-324, 100000.0, 1e-5})),
              "[25.0,0.1,1e+20,-0.0,0.0,12.5,5e-324,100000.0,1e-05]");
}

TEST(LosslessText, integersOfTheTypeThatTheirDigitsDoNotTellHaveOneZeroBeforeThem)
{
    EXPECT_EQ(compact(arrayOf({5, 5u, 0, 0u, 3000000000LL, 3000000000u, -7})), "[5,05,0,00,03000000000,3000000000,-7]");
}

TEST(LosslessText, emptyStringsAreWritten)
{
    EXPECT_EQ(compact(oneMember("a", CFields(""))), "{\"a\"=\"\"}");
    EXPECT_EQ(indented(oneMember("a", CFields(""))), "{\n  \"a\" = \"\"\n}");
    CFields untouched(DT_codelist);
    EXPECT_EQ(compact(untouched), "\"\"");
}

TEST(LosslessText, theLastLineHasOneLineEnd)
{
    const CFields after = commented(CFields(1), "// c", CP_after);
    EXPECT_EQ(indented(after, SCBC_FINAL_NEWLINE), "1\n// c\n");
    EXPECT_EQ(indented(commented(CFields(1), "// c", CP_trailing), SCBC_FINAL_NEWLINE), "1 // c\n");
    CSaver4SER_HFW saver;
    saver.setSCBC(SCBC_FINAL_NEWLINE);
    EXPECT_EQ(saver.saving(after), "1\n// c\n\n");  // as ever
}

TEST(LosslessText, nullIsAlwaysTheWord)
{
    EXPECT_EQ(compact(oneMember("a", CFields())), "{\"a\"=null}");
    EXPECT_EQ(indented(oneMember("a", CFields())), "{\n  \"a\" = null\n}");
}

TEST(LosslessText, emptyContainersAreBrackets)
{
    CFields tree(DT_fields);
    add(tree, "a", DT_fields);
    add(tree, "b", DT_array);
    add(tree, "", DT_array);
    EXPECT_EQ(compact(tree), "{\"a\"={},\"b\"=[],[]}");
    EXPECT_EQ(indented(tree), "{\n  \"a\" = {},\n  \"b\" = [],\n  []\n}");
}

TEST(LosslessText, oneLineArraysHaveOrdinaryBlanks)
{
    CFields tree(DT_fields);
    add(tree, "a", arrayOf({1, 2}));
    add(tree, "", arrayOf({CFields(), CFields(DT_array)}), 7);
    EXPECT_EQ(indented(tree, SCBC_ONE_LINE_ARRAY), "{\n  \"a\" = [1, 2],\n  #7 [null, []]\n}");
    EXPECT_EQ(indented(tree, SCBC_ONE_LINE_ARRAY, SAVE_ALL & ~SAVE_SPACING), "{\n  \"a\"=[1,2],\n  #7 [null,[]]\n}");
    EXPECT_EQ(indented(arrayOf({1, 2}), SCBC_ONE_LINE_ARRAY), "[1, 2]");
}

TEST(LosslessText, charactersStandAsThemselves)
{
    EXPECT_EQ(compact(oneMember("Zürich", CFields("日本語 😀 naïve"))), "{\"Zürich\"=\"日本語 😀 naïve\"}");
    EXPECT_EQ(indented(oneMember("Zürich", CFields("ü"))), "{\n  \"Zürich\" = \"ü\"\n}");
}

TEST(LosslessText, whatIsNotToBeSeenIsEscaped)
{
    EXPECT_EQ(compact(CFields("\x01\n\"\\\x7F")), "\"\\x01\\n\\\"\\\\\\x7F\"");
    EXPECT_EQ(compact(CFields("\xC2\x85\xE2\x80\xAE\xE2\x80\x8B\xEF\xBB\xBF\xE2\x80\xA8")),
              "\"\\xC2\\x85\\xE2\\x80\\xAE\\xE2\\x80\\x8B\\xEF\\xBB\\xBF\\xE2\\x80\\xA8\"");
    // Not UTF-8: alone, cut, overlong, half of a pair.
    EXPECT_EQ(compact(CFields("ü\xFFü\xC3")), "\"ü\\xFFü\\xC3\"");
    EXPECT_EQ(compact(CFields("\xC0\xAF\xED\xA0\x80")), "\"\\xC0\\xAF\\xED\\xA0\\x80\"");
}

TEST(LosslessText, aBlankStandsWhereTokensWouldRunTogether)
{
    CFields tree(DT_fields);
    for (const CFields& value : {CFields(5), CFields(0u), CFields(2.5), CFields(-5), CFields(-2.5), CFields("s")})
        add(tree, "", value, 3);
    add(tree, "n", 5, 3);
    add(tree, "", 5, 3).pkt_SetExp(itemOf(4));
    EXPECT_EQ(compact(tree), "{#3 5,#3 00,#3 2.5,#3-5,#3-2.5,#3\"s\",#3\"n\"=5,#3(ACF4)5}");
    EXPECT_EQ(compact(oneMember("n", CFields(5)), SAVE_ALL & ~SAVE_NAME), "{5}");
    tree[1].setName("n");
    EXPECT_EQ(compact(tree, SAVE_ALL & ~(SAVE_NAME | SAVE_PEI)), "{#3 5,#3 00,#3 2.5,#3-5,#3-2.5,#3\"s\",#3 5,#3 5}");
}

TEST(LosslessText, withoutTheBitNothingChanges)
{
    CFields tree(DT_fields);
    for (const CFields& value : {CFields(25.0), CFields(0.1), CFields(""), CFields("ü"), CFields(), CFields(5u)})
        add(tree, "ü", value);
    add(tree, "a", arrayOf({1, 2}));
    EXPECT_EQ(compact(tree, SAVE_ALL, SCBC_SECOND_VALUE),
              "{\"\\xC3\\xBC\"=25,\"\\xC3\\xBC\"=0.10000000000000001,\"\\xC3\\xBC\"=,\"\\xC3\\xBC\"=\"\\xC3\\xBC\","
              "\"\\xC3\\xBC\"=,\"\\xC3\\xBC\"=5,\"a\"=[1,2]}");
}

TEST(LosslessText, whatIsNotFiniteIsRefusedWithItsPath)
{
    CFields order(DT_fields);
    add(order, "price", std::nan(""));
    const CFields orders = arrayOf({1, 2, 3, order});
    EXPECT_EQ(refusal(oneMember("orders", orders)), "orders[3].price: text cannot hold NaN");
    EXPECT_EQ(refusal(CFields(-std::numeric_limits<double>::infinity())),
              "the root: text cannot hold an infinite number");
    EXPECT_EQ(refusal(oneMember("a b", CFields(std::nan("")))), "\"a b\": text cannot hold NaN");
}

TEST(LosslessText, aPathLeadsToTheNodeAlsoAmongEqualNames)
{
    CFields tree(DT_fields);
    add(tree, "a", 1);
    add(tree, "a", std::nan(""));
    EXPECT_EQ(refusal(tree), "[1]: text cannot hold NaN");
}

TEST(LosslessText, aPathThatIsTooLongIsShortenedInTheMiddle)
{
    CFields value(std::nan(""));
    for (int level = 0; level < 200; ++level)
        value = oneMember("level", value);
    const std::string message = refusal(value);
    EXPECT_EQ(message.rfind("level.level.", 0), 0U) << message;
    EXPECT_NE(message.find("..."), std::string::npos) << message;
    EXPECT_NE(message.find(".level: text cannot hold NaN"), std::string::npos) << message;
}

TEST(LosslessText, theErrorPathLeadsToTheRefusedNode)
{
    CFields order(DT_fields);
    add(order, "number", 1);
    add(order, "price", std::nan(""));
    const CFields tree = oneMember("orders", arrayOf({1, 2, 3, order}));
    CSaver4SER_PKT saver;
    saver.setSCBC(SCBC_LOSSLESS);
    EXPECT_EQ(saver.getErrorPath(), std::nullopt);
    saver.saving(tree);
    EXPECT_EQ(saver.getErrorPath(), tPath({0, 3, 1}));
    saver.saving(CFields(std::nan("")));
    EXPECT_EQ(saver.getErrorPath(), tPath()) << "of the root";
    saver.saving(CFields(1));
    EXPECT_EQ(saver.getErrorPath(), std::nullopt);
}

TEST(LosslessText, theErrorPathStaysUntilTheErrorIsCleared)
{
    const CFields tree = oneMember("x", CFields(std::nan("")));
    CSavers savers(SCBC_LOSSLESS);
    savers.saving(tree, ER_SER_HFW);
    savers.saving(CFields(1), ER_SER_HFW);
    EXPECT_EQ(savers.getErrorPath(), tPath({0}));
    const CSavers copy(savers);
    savers.clearError();
    EXPECT_EQ(savers.getErrorPath(), std::nullopt);
    EXPECT_EQ(copy.getErrorPath(), tPath({0}));
}

TEST(LosslessText, anotherErrorOfTheFrontSaverTakesThePathAway)
{
    CSavers savers(SCBC_LOSSLESS);
    savers.saving(oneMember("x", CFields(std::nan(""))), ER_SER_HFW);
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    savers.saving(out, CFields(1));
    EXPECT_EQ(withoutPlace(savers.getLastErrMsg()), "Output stream failed");
    EXPECT_EQ(savers.getErrorPath(), std::nullopt);
}

TEST(LosslessText, allTextSaversRefuseAndWriteNothing)
{
    const CFields tree = oneMember("x", CFields(std::nan("")));
    CSavers savers(SCBC_LOSSLESS);
    EXPECT_EQ(savers.saving(tree, ER_SER_PKT), "");
    EXPECT_EQ(withoutPlace(savers.getLastErrMsg()), "x: text cannot hold NaN");
    savers.clearError();
    std::ostringstream out;
    savers.saving(out, tree);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(withoutPlace(savers.getLastErrMsg()), "x: text cannot hold NaN");
    EXPECT_EQ(savers.getErrorPath(), tPath({0}));
    EXPECT_EQ(savers.getLastErrMsg().rfind("[murv::CStreamSaver4SER_HFW::saving#", 0), 0U);
}

TEST(LosslessText, aStreamGetsNothingOfATextThatIsTooLong)
{
    CFields tree(1);
    for (int level = 0; level < 300; ++level)
        tree = oneMember("x", tree);
    CStreamSaver4SER_HFW saver(std::string(std::size_t{64} << 10U, ' '));
    saver.setSCBC(SCBC_LOSSLESS);
    std::ostringstream out;
    saver.saving(out, tree);
    EXPECT_EQ(withoutPlace(saver.getLastErrMsg()), "the root: text cannot hold more than 2147483647 bytes");
    EXPECT_EQ(saver.getErrorPath(), tPath());
    EXPECT_TRUE(out.str().empty()) << out.str().size();
}

TEST(LosslessText, aTextThatOnlyMightBeTooLongIsWritten)
{
    // Lines of a block comment keep their places, but each of them might have been indented.
    constexpr unsigned int indentation = 1U << 20U;
    std::string comment = "/*";
    for (int line = 0; line < 3000; ++line)
        comment += "\nx";
    CFields tree = arrayOf({1});
    tree[0].setComment(comment + "*/", CP_before);
    CSaver4SER_HFW wanted(indentation);
    wanted.setSCBC(SCBC_LOSSLESS);
    CStreamSaver4SER_HFW saver(std::string(indentation, ' '));
    saver.setSCBC(SCBC_LOSSLESS);
    std::ostringstream out;
    saver.saving(out, tree);
    EXPECT_FALSE(saver.isError()) << saver.getLastErrMsg();
    EXPECT_TRUE(out.str() == wanted.saving(tree)) << out.str().size();
    EXPECT_FALSE(wanted.isError()) << wanted.getLastErrMsg();
}

TEST(LosslessText, packetExpressionsThatTheNotationLacksAreRefused)
{
    CFields leaf(5);
    tPacketExpInfo pei{};
    pei.m_eLengthExp = LEC_V;
    pei.m_uiLength = 3;
    pei.m_ucPrefixSize = 3;
    pei.m_cCalibration = -128;
    leaf.pkt_SetExp(pei);
    CFields tree(DT_fields);
    tree.addChildRef("x").setField(leaf);
    EXPECT_EQ(refusal(tree), "[0]: text cannot hold this packet expression");
}

TEST(LosslessText, nothingIsLostThatTheStyleLeavesOut)
{
    CFields tree(DT_array);
    CFields& element = tree.addArrayAt(CFields(std::nan("")));
    element.setName("n");
    element.setID(3);
    element.setComment("/note", CP_before);
    element.pkt_SetExp(itemOf(4, 99));
    EXPECT_EQ(refusal(tree), "[0]: text cannot hold the name of an element of an array");
    EXPECT_EQ(refusal(tree, SAVE_ALL & ~SAVE_NAME), "[0]: text cannot hold the ID of an element of an array");
    EXPECT_EQ(refusal(tree, SAVE_PEI | SAVE_VALUE | SAVE_COMMENT), "[0]: text cannot hold NaN");
    element.setValue(1);
    EXPECT_EQ(refusal(tree, SAVE_PEI | SAVE_VALUE | SAVE_COMMENT), "[0]: text cannot hold this packet expression");
    EXPECT_EQ(refusal(tree, SAVE_VALUE | SAVE_COMMENT), "[0]: text cannot hold this comment as it is");
    EXPECT_EQ(indented(tree, 0, SAVE_VALUE), "[\n  1\n]");
}

TEST(LosslessText, containersKeepNoPacketExpression)
{
    CFields tree(DT_fields);
    add(tree, "c", DT_fields).pkt_SetExp(itemOf(4));
    EXPECT_EQ(refusal(tree), "c: text cannot hold the packet expression of a container");
}

TEST(LosslessText, secondValuesAreHeldAsFarAsTheKeywordGivesThem)
{
    CFields tree(DT_fields);
    CFields& leaf = add(tree, "x", 5);
    leaf.pkt_SetExp(itemOf(4, VK_fix));
    EXPECT_EQ(refusal(tree), "x: text cannot hold two values that differ");
    leaf.setVK(VK_fix);
    EXPECT_EQ(compact(tree), "{\"x\"=(ACF4fix)5}");
    leaf.setValue(6, VK_fix);
    EXPECT_EQ(refusal(tree), "x: text cannot hold two values that differ");
    leaf.setValue(5, VK_fix);
    EXPECT_EQ(refusal(tree), "x: text cannot hold a value kind that the keyword does not give");
    leaf.pkt_SetExp(itemOf(4));
    EXPECT_EQ(refusal(tree), "x: text cannot hold a second value without the keyword \"fix\" or \"valid\"");
}

TEST(LosslessText, commentsThatWouldNotComeBackAreRefused)
{
    const struct
    {
        const char* m_pComment;
        E_CommentPosition m_ePosition;
    } cases[] = {
        {"/note", CP_before},         {"// a\n\n// b", CP_before},
        {"/* not closed", CP_before}, {"/* a */ 5", CP_before},
        {"// a\r", CP_before},        {"// a\n// b", CP_trailing},
        {"/* a\n b */", CP_trailing}, {"/* a */ /* b */", CP_trailing},
    };
    for (const auto& row : cases)
    {
        CFields tree(DT_fields);
        add(tree, "x", 1).setComment(row.m_pComment, row.m_ePosition);
        EXPECT_EQ(refusal(tree), "x: text cannot hold this comment as it is") << row.m_pComment;
        EXPECT_EQ(compact(tree), "{\"x\"=1}");
    }
    CFields tree(DT_fields);
    add(tree, "x", 1).setComment("// a", CP_after);
    EXPECT_EQ(refusal(tree), "x: text cannot hold a comment after a node that is not the root");
}

TEST(LosslessText, isIndentedByBlanksAlone)
{
    CStreamSaver4SER_HFW saver("ab");
    saver.setSCBC(SCBC_LOSSLESS);
    std::ostringstream out;
    saver.saving(out, CFields(1));
    EXPECT_EQ(withoutPlace(saver.getLastErrMsg()),
              "the root: text cannot hold an indentation that is not made of blanks and tabs");
}

TEST(LosslessLoad, emptyPairsAreEmptyContainers)
{
    for (const char* const text : {"{}", "[]", "{ \n }", "[ /* c */ ]", "{ // c\n }"})
    {
        EXPECT_EQ(loaded(text).getChildCount(), 0U) << text;
        EXPECT_EQ(loaded(text, LCBC_COMMENT | LCBC_EMPTY_NULL).getChildCount(), 1U) << text;
    }
    EXPECT_EQ(loaded("{}").getDT(), DT_fields);
    EXPECT_EQ(loaded("[]").getDT(), DT_array);
    EXPECT_EQ(loaded("[[],{}]").getChildCount(), 2U);
    EXPECT_EQ(loaded("{}", LCBC_LOSSLESS).getChildCount(), 0U);
}

TEST(LosslessLoad, aMissingValueIsStillNull)
{
    EXPECT_EQ(loaded("[1, 2,]").getChildCount(), 3U);
    EXPECT_EQ(loaded("[,]").getChildCount(), 2U);
    EXPECT_TRUE(loaded("{\"a\"=}")[0].isNull());
    EXPECT_EQ(loaded("[null]").getChildCount(), 1U);
}

TEST(LosslessLoad, aCommentInsideAnEmptyContainerStaysWithIt)
{
    const CFields tree = loaded("[\n// a\n[\n// b\n],\n{ /* c */ },\n1]");
    EXPECT_EQ(tree[0].getChildCount(), 0U);
    EXPECT_EQ(tree[0].getCommentCopy(CP_before), "// a\n// b");
    EXPECT_EQ(tree[1].getChildCount(), 0U);
    EXPECT_EQ(tree[1].getCommentCopy(CP_before), "/* c */");
    EXPECT_FALSE(tree[2].isComment());
    EXPECT_EQ(loaded("{ // c\n}").getCommentCopy(CP_before), "// c");
}

TEST(LosslessLoad, commentsBeforeAFirstValueStayWithIt)
{
    EXPECT_EQ(loaded("[\n/* a */\n1]")[0].getCommentCopy(CP_before), "/* a */");
    EXPECT_EQ(loaded("{\n/* a */\n#3 \"x\"=1}")[0].getCommentCopy(CP_before), "/* a */");
}

TEST(LosslessLoad, commentsThatAreNotToleratedAreNoValue)
{
    CLoader4SER loader(LCBC_EMPTY_NULL | LCBC_LOSSLESS);
    CFields tree;
    EXPECT_FALSE(loader.loading("[ /* c */ 1]", tree));
    EXPECT_EQ(loader.getLastErrMsg(), "* Line 1, Column 3\n  Syntax error: value, field or array expected.\n");
    EXPECT_TRUE(loader.loading("{ /* c */ }", tree));
    EXPECT_EQ(tree.getChildCount(), 0U);
}

TEST(LosslessLoad, oneZeroBeforeAnIntegerGivesTheOtherType)
{
    const CFields tree = loaded("[5, 05, 0, 00, 007, 0, -05, 02147483648, 2147483648, 09223372036854775808, 05.0]");
    const E_DataType types[] = {DT_sint, DT_uint, DT_sint, DT_uint, DT_sint,  DT_sint,
                                DT_sint, DT_sint, DT_uint, DT_uint, DT_double};
    for (unsigned int i = 0; i < tree.getChildCount(); ++i)
        EXPECT_EQ(tree[i].getDT(), types[i]) << i;
    EXPECT_EQ(tree[1].asUint32(), 5U);
    EXPECT_EQ(tree[7].asSint64(), 2147483648LL);
    EXPECT_EQ(loaded("/**/ 05").getDT(), DT_uint);
}

TEST(LosslessLoad, readersWithoutTheBitReadTheSameNumbers)
{
    const CFields tree = arrayOf({5u, 0u, 3000000000LL, 25.0, ""});
    const CFields plain = loaded(compact(tree), LCBC_COMMENT | LCBC_EMPTY_NULL);
    EXPECT_EQ(plain[0].asUint32(), 5U);
    EXPECT_EQ(plain[1].asUint32(), 0U);
    EXPECT_EQ(plain[2].asSint64(), 3000000000LL);
    EXPECT_EQ(plain[3].getDT(), DT_double);
    EXPECT_EQ(plain[4].getDT(), DT_codelist);
}
