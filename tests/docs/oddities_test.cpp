// tests/docs/oddities_test.cpp - every entry of docs/oddities.md, in its order.
//
// The page says what happens; these tests make it true. An entry that changes changes here first.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>

#include "murv/murv.h"
#include "tests/support/thrown.h"

namespace murv::tests
{

namespace
{
constexpr unsigned int s_cuiDefault = LCBC_COMMENT | LCBC_EMPTY_NULL;

CFields load(const std::string& text, unsigned int flags = s_cuiDefault)
{
    CFields tree;
    CLoader4SER loader(flags);
    EXPECT_TRUE(loader.loading(text, tree)) << loader.getLastErrMsg();
    return tree;
}

std::string errorOf(const std::string& text, unsigned int flags = s_cuiDefault)
{
    CFields tree;
    CLoader4SER loader(flags);
    EXPECT_FALSE(loader.loading(text, tree));
    return loader.getLastErrMsg();
}

std::string compact(const CFields& tree)
{
    return tree.toMURV(ER_SER_PKT);
}
}  // namespace

// Reading text

TEST(Oddities, emptyBracesHoldOneNull)
{
    EXPECT_EQ(load("{}").getChildCount(), 1U);
    EXPECT_TRUE(load("[]")[0].isNull());
    EXPECT_EQ(errorOf("{}", LCBC_COMMENT), "* Line 1, Column 2\n  Syntax error: value, field or array expected.\n");
    EXPECT_EQ(load("{}", s_cuiDefault | LCBC_LOSSLESS).getChildCount(), 0U);
}

TEST(Oddities, commaBeforeTheEndAddsANull)
{
    EXPECT_EQ(load("[1, 2,]").getChildCount(), 3U);
    EXPECT_EQ(load("[,]").getChildCount(), 2U);
}

TEST(Oddities, textAfterTheRootIsIgnored)
{
    EXPECT_EQ(load("[1] anything ]]]").getChildCount(), 1U);
}

TEST(Oddities, wordsNeedNoEnd)
{
    EXPECT_TRUE(load("truelove").asBool());
    EXPECT_EQ(errorOf("[truelove]"), "* Line 1, Column 6\n  Missing ',' or ']' in array declaration\n");
}

TEST(Oddities, threeBytesAreTooFewForTheFrontLoader)
{
    CFields tree;
    CLoaders front;
    EXPECT_FALSE(front.loading("[1]", tree));
    EXPECT_EQ(withoutLine(front.getLastErrMsg()), "[murv::CLoaders::loadit#0] Unknown encoding rule(-1)");
    EXPECT_TRUE(front.loading("[1 ]", tree));
    EXPECT_TRUE(CLoader4SER().loading("[1]", tree));
}

TEST(Oddities, noDataIsNoErrorEither)
{
    CFields tree;
    CLoaders front;
    EXPECT_FALSE(front.loading("", tree));
    EXPECT_TRUE(front.getStatus());
}

TEST(Oddities, aMinusAloneIsZero)
{
    EXPECT_EQ(load("[-]")[0].asSint32(), 0);
    EXPECT_EQ(load("[-0]")[0].getDT(), DT_sint);
}

TEST(Oddities, numbersMayEndInAPointOrAnE)
{
    EXPECT_EQ(load("[1., 2e]")[0].getDT(), DT_double);
    EXPECT_EQ(load("[1., 2e]")[1].asDouble(), 2.0);
}

TEST(Oddities, integersAboveThirtyOneBitsAreUnsigned)
{
    EXPECT_EQ(load("[2147483647]")[0].getDT(), DT_sint);
    EXPECT_EQ(load("[2147483648]")[0].getDT(), DT_uint);
    EXPECT_EQ(load("[18446744073709551616]")[0].getDT(), DT_double);
}

TEST(Oddities, unicodeEscapesAreTwoBytesUnlessTheBitIsSet)
{
    EXPECT_EQ(load("[\"\\u0041\"]")[0].asString(), std::string("\0A", 2));
    EXPECT_EQ(load("[\"\\u0041\"]", s_cuiDefault | LCBC_UNICODE_UTF8)[0].asString(), "A");
}

TEST(Oddities, secondHalfOfASurrogatePairIsNotChecked)
{
    EXPECT_EQ(load("[\"\\ud83d\\u0041\"]", s_cuiDefault | LCBC_UNICODE_UTF8)[0].asString(), "\xF0\x9F\x91\x81");
}

TEST(Oddities, aRepeatedNameFillsTheSameMemberAgain)
{
    const CFields once = load("{\"a\"=1, \"b\"=2, \"a\"=3}");
    EXPECT_EQ(compact(once), "{\"a\"=3,\"b\"=2}");
    EXPECT_EQ(load("{\"a\"=1, \"b\"=2, \"a\"=3}", s_cuiDefault | LCBC_DUPLICATE).getChildCount(), 3U);
}

TEST(Oddities, aRepeatedIdFillsTheSameMemberAgain)
{
    EXPECT_EQ(compact(load("{#1 \"a\"=1, #1 \"b\"=2}")), "{#1\"a\"=2}");
}

TEST(Oddities, bytesAfterTheExpressionAreARemark)
{
    EXPECT_EQ(compact(load("[(ANF4 in cents) 7]")), "[(ANF4)7]");
}

TEST(Oddities, aCalibrationOf128IsStoredAsMinus128)
{
    EXPECT_EQ(load("[(ANV2+128) 1]")[0].pkt_GetExp().m_cCalibration, -128);
    EXPECT_EQ(errorOf("[(ANV2+129) 1]"), "* Line 1, Column 2\n  Calibration value must between -127 and 128\n");
}

TEST(Oddities, aLineKeepsOneCommentOfAValue)
{
    EXPECT_EQ(load("[1 /*a*/ /*b*/]")[0].getCommentCopy(CP_trailing), "/*b*/");
}

TEST(Oddities, theFirstErrorEndsTheLoad)
{
    CFields tree;
    CLoader4SER loader;
    EXPECT_FALSE(loader.loading("[a, b, c]", tree));
    EXPECT_EQ(loader.getErrorRanges().size(), 1U);
    EXPECT_EQ(tree.getChildCount(), 0U);
}

TEST(Oddities, nestingTooDeepIsAnException)
{
    const std::string deep(1001, '[');
    CFields tree;
    CLoaders loader;
    EXPECT_EQ(thrown([&] { loader.loading(deep, tree); }),
              "[murv::CLoader4SER::loadFieldInfo#0] Exceeded s_cnStackDepthLimit");
}

TEST(Oddities, aStreamEndsAtAByteOf255)
{
    std::istringstream in("[1, 2]\xFF[3]");
    CFields tree;
    EXPECT_TRUE(CLoaders().loading(in, tree));
    EXPECT_EQ(in.peek(), '[');
}

// Writing text

TEST(Oddities, ofWritingTextDoNotHappenToLosslessText)
{
    constexpr unsigned int read = s_cuiDefault | LCBC_LOSSLESS;
    const CFields tree =
        load("{\"a\"=\"\",\"b\"=null,\"c\"=25.0,\"d\"=-0.0,\"e\"=0.1,\"f\"=\"\xC3\xBC\",\"g\"=[1,2],#3 5}", read);
    CSavers saver(SCBC_LOSSLESS | SCBC_ONE_LINE_ARRAY);
    EXPECT_EQ(saver.saving(tree, ER_SER_PKT),
              "{\"a\"=\"\",\"b\"=null,\"c\"=25.0,\"d\"=-0.0,\"e\"=0.1,\"f\"=\"\xC3\xBC\",\"g\"=[1,2],#3 5}");
    EXPECT_NE(saver.saving(tree, ER_SER_HFW).find("\"g\" = [1, 2]"), std::string::npos);
    EXPECT_EQ(saver.saving(tree, 3), "") << "an unknown rule";
    EXPECT_FALSE(saver.isError());
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    {
        EXPECT_EQ(saver.saving(CFields(value), ER_SER_PKT), "");
        EXPECT_TRUE(saver.isError());
        saver.clearError();
    }
    CFields list(DT_array);
    for (int i = 0; i < 25; ++i)
        list.addArrayAt(CFields(1));
    EXPECT_NE(saver.saving(list, ER_SER_HFW).find('\n'), std::string::npos) << "25 elements";
}

TEST(Oddities, emptyStringsAreWrittenAsNothing)
{
    CFields tree;
    tree.addChildRef("a") = "";
    EXPECT_EQ(compact(tree), "{\"a\"=}");
    EXPECT_TRUE(load(compact(tree))["a"].isNull());
}

TEST(Oddities, nullIsWrittenAsNothingUnlessTheBitIsSet)
{
    CFields tree;
    tree.addChildRef("a");
    EXPECT_EQ(CSavers().saving(tree, ER_SER_PKT), "{\"a\"=}");
    EXPECT_EQ(CSavers(SCBC_NULL_WORD).saving(tree, ER_SER_PKT), "{\"a\"=null}");
}

TEST(Oddities, wholeDoublesComeBackAsIntegers)
{
    EXPECT_EQ(CFields(25.0).toMURV(ER_SER_PKT), "25");
    EXPECT_EQ(load("[" + CFields(25.0).toMURV(ER_SER_PKT) + "]")[0].getDT(), DT_sint);
    EXPECT_EQ(CFields(-0.0).toMURV(ER_SER_PKT), "-0");
}

TEST(Oddities, doublesHaveSeventeenDigits)
{
    EXPECT_EQ(ToString(0.1), "0.10000000000000001");
}

TEST(Oddities, aNotANumberIsWrittenAsNull)
{
    EXPECT_EQ(ToString(std::numeric_limits<double>::quiet_NaN()), "null");
    EXPECT_EQ(ToString(std::numeric_limits<double>::infinity()), "1e+9999");
}

TEST(Oddities, bytesFrom127OnAreEscaped)
{
    EXPECT_EQ(ToQuotedEscapeString("\xC3\xBC\x7F"), "\"\\xC3\\xBC\\x7F\"");
    EXPECT_EQ(load("[\"\\xC3\\xBC\"]")[0].asString(), "\xC3\xBC");
}

TEST(Oddities, aListOnOneLineTouchesItsEqualsSign)
{
    EXPECT_EQ(CSavers(SCBC_ONE_LINE_ARRAY).saving(load("{\"a\"=[1,2]}"), ER_SER_HFW), "{\n  \"a\" =[ 1, 2 ]\n}");
}

TEST(Oddities, twentyFiveElementsNeverGoOnOneLine)
{
    CFields list(DT_array);
    for (int i = 0; i < 23; ++i)
        list.addArrayAt(CFields(1));
    CSavers saver(SCBC_ONE_LINE_ARRAY);
    EXPECT_EQ(saver.saving(list, ER_SER_HFW).find('\n'), std::string::npos);
    list.addArrayAt(CFields(1));
    EXPECT_NE(saver.saving(list, ER_SER_HFW).find('\n'), std::string::npos);
}

TEST(Oddities, compactTextHasNoBlankAfterAnId)
{
    EXPECT_EQ(compact(load("{#7 \"a\" = 1}")), "{#7\"a\"=1}");
    EXPECT_EQ(compact(load("{#3 5}")), "{#35}");
    EXPECT_EQ(load("{#35}")[0].getID(), 35U);
}

TEST(Oddities, anUnknownRuleOrStyleWritesNothingAndIsNoError)
{
    CSavers saver;
    EXPECT_EQ(saver.saving(CFields(1), 3), "");
    EXPECT_EQ(saver.saving(CFields(1), ER_SER_HFW, 64), "");
    std::ostringstream stream;
    saver.saving(stream, CFields(1), ER_SER_PKT);
    EXPECT_EQ(stream.str(), "");
    EXPECT_FALSE(saver.isError());
}

// Binary files

TEST(Oddities, aFileWithAnEmptyContainerCannotBeReadBack)
{
    CSavers saver;
    const std::string file = saver.saving(CFields(DT_array), ER_BER);
    EXPECT_FALSE(saver.isError());
    CFields tree;
    CLoaders loader;
    EXPECT_FALSE(loader.loading(file, tree));
    EXPECT_EQ(loader.getLastErrMsg(), "* Offset 0\n  Element number must be bigger than 0\n");
    EXPECT_TRUE(CLoaders(s_cuiDefault | LCBC_LOSSLESS).loading(file, tree));
    EXPECT_EQ(tree.getDT(), DT_array);
    EXPECT_EQ(tree.getChildCount(), 0U);
}

// Trees

TEST(Oddities, fieldSetsAreEqualWhateverTheirNames)
{
    EXPECT_TRUE(load("{\"a\"=1}") == load("{\"b\"=1}"));
}

TEST(Oddities, fewerMembersAreLess)
{
    EXPECT_TRUE(load("[9, 9]") < load("[1, 1, 1]"));
}

TEST(Oddities, typesCountWhenComparing)
{
    EXPECT_FALSE(CFields(1) == CFields(1U));
    EXPECT_TRUE(CFields(true) < CFields(-5));
    EXPECT_FALSE(CFields(1) == CFields(1.0));
}

TEST(Oddities, aMissingNameGivesTheSharedNull)
{
    CFields tree = load("{\"a\"=1}");
    EXPECT_EQ(&tree["missing"], &CFields::freeNull);
    EXPECT_EQ(tree.getChildCount(), 1U);
    CFields other = load("{\"b\"=1}");
    tree["missing"] = 1;
    EXPECT_EQ(other["none"].asSint32(), 1);
    CFields::freeNull = DT_null;
    EXPECT_EQ(tree.findChildAt("missing", 7), nullptr);
    const CFields& constant = tree;
    EXPECT_EQ(&constant["missing"], &CFields::nullRef);
}

TEST(Oddities, aMissingIndexThrowsUnlessTheTreeIsConstant)
{
    CFields tree = load("[1]");
    EXPECT_EQ(thrown([&] { tree[1]; }), "[murv::CFields::operator []#0] found not a field for the index");
    const CFields& constant = tree;
    EXPECT_EQ(&constant[1], &CFields::nullRef);
}

TEST(Oddities, resizeArrayOnlyShrinks)
{
    CFields list = load("[1, 2, 3]");
    list.resizeArray(2);
    EXPECT_EQ(list.getChildCount(), 2U);
    EXPECT_NE(thrown([&] { list.resizeArray(3); }), "(nothing was thrown)");
}

TEST(Oddities, removeAllLeavesAContainerWithoutRoom)
{
    CFields node;
    node.removeAll(DT_fields);
    EXPECT_NE(thrown([&] { node.addChildRef("a"); }).find("m_pFV=NULL"), std::string::npos);
    node.setValue(DT_fields);
    EXPECT_NO_THROW(node.addChildRef("a"));
}

TEST(Oddities, addingAKnownNameGivesTheMemberThatIsThere)
{
    CFields tree;
    tree.addChildRef("a") = 1;
    tree.addChildRef("a") = 2;
    EXPECT_EQ(tree.getChildCount(), 1U);
    tree.addChildRef("a", 0, true) = 3;
    EXPECT_EQ(tree.getChildCount(), 2U);
}

TEST(Oddities, convertibleToAnIntegerMeans32Bits)
{
    const CFields big(1099511627776LL);
    EXPECT_FALSE(big.isConvertible(DT_sint));
    EXPECT_EQ(big.asSint64(), 1099511627776LL);
}

TEST(Oddities, asIntegerDropsTheFraction)
{
    EXPECT_EQ(CFields(3.5).asSint32(), 3);
    EXPECT_FALSE(CFields(3.5).isSint32());
}

TEST(Oddities, aNotANumberIsTrue)
{
    EXPECT_TRUE(CFields(std::numeric_limits<double>::quiet_NaN()).asBool());
    EXPECT_FALSE(CFields(0.0).asBool());
}

TEST(Oddities, everyNumberIsADouble)
{
    EXPECT_TRUE(CFields(1).isDouble());
    EXPECT_FALSE(CFields("1").isDouble());
}

TEST(Oddities, twoToTheSixtyThreeGivesTheLargestInteger)
{
    EXPECT_EQ(CFields(std::ldexp(1.0, 63)).asSint64(), CFields::maxSint64);
    EXPECT_FALSE(CFields(std::ldexp(1.0, 63)).isSint64());
}

TEST(Oddities, rangeTestsLookAtTheFirstValue)
{
    CFields node(1);
    node.setVK(VK_fix);
    node.setValue(5000000000LL, VK_fix);
    EXPECT_EQ(node.asSint32(VK_fix), static_cast<int>(5000000000LL - 4294967296LL));
}

TEST(Oddities, assigningABareValueKeepsTheName)
{
    CFields tree = load("{#3 \"a\" = 1}");
    tree["a"] = CFields(5);
    EXPECT_STREQ(tree["a"].getName(), "a");
    tree["a"] = load("{\"other\" = 7}")["other"];
    EXPECT_STREQ(tree[0].getName(), "other");
}

TEST(Oddities, aLoadedDocumentIsNoBareValue)
{
    const CFields loaded = load("{\"port\"=1}");
    CFields tree = load("{\"config\"=1, \"other\"=1, \"third\"=1}");
    tree["config"] = loaded;
    EXPECT_STREQ(tree[0].getName(), "");
    tree["other"].setValue(loaded);
    EXPECT_EQ(tree["other"]["port"].asSint32(), 1);
    EXPECT_TRUE(CLoaders().loading("{\"port\"=1}", tree["third"]));
    EXPECT_EQ(tree["third"]["port"].asSint32(), 1);
}

TEST(Oddities, setFieldKeepsTheIdWhenTheSourceHasNone)
{
    CFields node;
    node.setID(3);
    node.setField(CFields(1));
    EXPECT_EQ(node.getID(), 3U);
}

TEST(Oddities, writingTheSecondValueUnmarksIt)
{
    CFields node(1);
    node.setVK(VK_valid);
    node.setValue(2, VK_valid);
    EXPECT_EQ(node.getVK(), VK_actual);
}

TEST(Oddities, setValueGivesTheSecondValueTheTypeOfTheFirst)
{
    CFields node(12U);
    node.setValue("12", VK_fix);
    node.setVK(VK_fix);
    EXPECT_EQ(CFields(node).getDT(VK_fix), DT_codelist);
    CFields copy;
    copy.setValue(node);
    EXPECT_EQ(copy.getDT(VK_fix), DT_uint);
    EXPECT_EQ(copy.getValueRef(VK_fix).m_ullValue, 0U);
}

TEST(Oddities, tooManyDigitsAreCutNotRefused)
{
    unsigned long long value = 0;
    EXPECT_TRUE(aton64("18446744073709551616", 20, value));
    EXPECT_EQ(value, 1844674407370955161ULL);
    long long negative = 0;
    EXPECT_TRUE(aton64("-9223372036854775809", 20, negative));
    EXPECT_EQ(negative, 922337203685477580LL);
    EXPECT_TRUE(aton64("9223372036854775807x", 20, negative));
    EXPECT_EQ(negative, 922337203685477580LL);
    EXPECT_FALSE(aton64("922337203685477580x", 19, negative));
    EXPECT_EQ(negative, 0);
}

TEST(Oddities, commentsMustBeginWithASlash)
{
    CFields node;
    EXPECT_EQ(thrown([&] { node.setComment("note", CP_before); }),
              "[murv::CHeapString::setComment#0] Comments must start with /");
    EXPECT_NO_THROW(node.setComment("/note", CP_before));
}

// State words and errors

TEST(Oddities, theCounterNeverWrapsToZero)
{
    CBitCombi32 word(4294967295U);
    EXPECT_EQ(word.BC32_Inc(), 1U);
    EXPECT_EQ(CBitCombi32(0).BC32_Dec(), 0U);
}

TEST(Oddities, checkAndSetReplacesTheWholeWord)
{
    CBitCombi32 word(0x30);
    EXPECT_TRUE(word.BC32_ChecknSet(0x10, 5));
    EXPECT_EQ(word.BC32_Get(), 5U);
}

TEST(Oddities, successIsAnErrorOnceItIsSet)
{
    CErrorBase state;
    EXPECT_TRUE(state.setFixError(0));
    EXPECT_EQ(state.getLastErrMsg(), "[OK] Succeeded");
    EXPECT_TRUE(state.isError());
}

TEST(Oddities, aFailedTextLoadHasTheCodeZero)
{
    CFields tree;
    CLoaders loader;
    EXPECT_FALSE(loader.loading("{ : }", tree));
    EXPECT_EQ(loader.getLastErrCode(), 0);
    EXPECT_FALSE(loader.getStatus());
}

// Packets

TEST(Oddities, anOptionAboveNineIsGoodForTextOnly)
{
    const CFields tree = load("[(ANF3sizeset_12) 1]");
    EXPECT_EQ(compact(tree), "[(ANF3sizeset_12)1]");
    CFields read;
    CLoaders loader;
    EXPECT_FALSE(loader.loading(tree.toMURV(ER_BER), read));
    EXPECT_NE(loader.getLastErrMsg().find("Supporting-keyword option value must be little than 10"), std::string::npos);
    EXPECT_EQ(compact(load("[(ANF3sizeset_17) 1]")), "[(ANF3sizeset_1)1]");
}

}  // namespace murv::tests
