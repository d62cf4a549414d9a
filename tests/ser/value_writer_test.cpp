// tests/ser/value_writer_test.cpp - the value writer that all text savers share.
//
// It writes one scalar with packet expression, blanks and second value.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "tests/ser/saver_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

/// The members that savers inherit.
class CProbe : public ISaver
{
public:
    explicit CProbe(unsigned int style = SAVE_ALL, unsigned int scbc = SCBC_SECOND_VALUE) : ISaver(scbc)
    {
        m_ucStyle = static_cast<unsigned char>(style);
    }
    /// \param written  before; `m_ucWritten` is what it becomes
    std::string make(const CFields& node, unsigned char written = 0)
    {
        m_ucWritten = written;
        return makePEIandValue(node, m_ucWritten);
    }

    unsigned char m_ucWritten = 0;
};

TEST(ValueWriter, writesEveryTypeOfScalar)
{
    CProbe probe;
    EXPECT_EQ(probe.make(CFields()), "");
    EXPECT_EQ(probe.make(true), "true");
    EXPECT_EQ(probe.make(false), "false");
    EXPECT_EQ(probe.make(std::numeric_limits<long long>::min()), "-9223372036854775808");
    EXPECT_EQ(probe.make(std::numeric_limits<unsigned long long>::max()), "18446744073709551615");
    EXPECT_EQ(probe.make(0.1), "0.10000000000000001");
    EXPECT_EQ(probe.make(std::numeric_limits<double>::quiet_NaN()), "null");
    EXPECT_EQ(probe.make(-std::numeric_limits<double>::infinity()), "-1e+9999");
    EXPECT_EQ(probe.make("a\tb"), "\"a\\tb\"");
    EXPECT_EQ(probe.make(CStaticString("static")), "\"static\"");
    EXPECT_FALSE(probe.isError());
}

TEST(ValueWriter, flagsAWrittenValueOnly)
{
    CProbe probe;
    probe.make(1, 2);
    EXPECT_EQ(probe.m_ucWritten, 2 | 16);
    probe.make("", 4);
    EXPECT_EQ(probe.m_ucWritten, 4);
    probe.make(CFields(), 4);
    EXPECT_EQ(probe.m_ucWritten, 4);
}

TEST(ValueWriter, anEmptyStringWritesNothing)
{
    EXPECT_EQ(CProbe().make(""), "");
    EXPECT_EQ(CProbe().make(DT_codelist), "");
    EXPECT_EQ(CProbe().make(CStaticString("")), "");
}

TEST(ValueWriter, writesNullAsAWordOnlyWhenConfigured)
{
    CProbe probe(SAVE_ALL, SCBC_NULL_WORD);
    EXPECT_EQ(probe.make(CFields()), "null");
    EXPECT_EQ(probe.m_ucWritten, 16);
}

TEST(ValueWriter, separatesAValueFromWhatStandsBeforeIt)
{
    CProbe probe;
    EXPECT_EQ(probe.make(1, 0), "1");
    EXPECT_EQ(probe.make(1, 2), " 1");
    EXPECT_EQ(probe.make(1, 4), " 1");
    EXPECT_EQ(probe.make(1, 8), " 1");
    EXPECT_EQ(probe.make(1, 16), "1");
    EXPECT_EQ(probe.make("", 4), " ");
    EXPECT_EQ(probe.make(CFields(), 4), "");
    EXPECT_EQ(CProbe(SAVE_ALL, SCBC_NULL_WORD).make(CFields(), 4), " null");
    EXPECT_EQ(CProbe(SAVE_ALL - SAVE_SPACING).make(1, 4), "1");
    EXPECT_EQ(CProbe(SAVE_ALL - SAVE_VALUE).make(1, 4), "");
}

TEST(ValueWriter, writesThePacketExpressionBeforeTheValue)
{
    const CFields node = withItem("1234", itemOf(4));
    CProbe probe;
    EXPECT_EQ(probe.make(node), "(ACF4) \"1234\"");
    EXPECT_EQ(probe.m_ucWritten, 8 | 16);
    EXPECT_EQ(probe.make(node, 2), " (ACF4) \"1234\"");
    EXPECT_EQ(probe.make(node, 4), " (ACF4) \"1234\"");
    EXPECT_EQ(probe.make(node, 8), "(ACF4) \"1234\"");
    EXPECT_EQ(CProbe(SAVE_ALL - SAVE_SPACING).make(node, 4), "(ACF4)\"1234\"");
    EXPECT_EQ(CProbe(SAVE_ALL - SAVE_PEI).make(node, 4), " \"1234\"");
    EXPECT_EQ(CProbe(SAVE_ALL - SAVE_VALUE).make(node, 4), " (ACF4)");
    EXPECT_EQ(CProbe().make(withItem("", itemOf(4)), 4), " (ACF4) ");
    EXPECT_EQ(CProbe().make(withItem(CFields(), itemOf(4)), 4), " (ACF4)");
}

TEST(ValueWriter, anExpressionThatDiffersInItsLastByteAloneIsWritten)
{
    EXPECT_EQ(CProbe().make(withItem(1, itemOf(0xFF000000U))), "(ACF4278190080) 1");
    tPacketExpInfo binary{};
    binary.m_ePacketExp = PEC_B;
    EXPECT_EQ(CProbe().make(withItem(1, binary)), "(BCF0) 1");
}

TEST(ValueWriter, savesTheSecondValueOfANodeWhoseValuesDiffer)
{
    EXPECT_EQ(CProbe().make(dual(1, 2, VK_fix)), "(ACF4fix) 2");
    EXPECT_EQ(CProbe().make(dual(1, 2, VK_valid)), "(ACF4valid) 2");
    EXPECT_EQ(CProbe().make(dual(1, "text")), "(ACF4fix) \"text\"");
    EXPECT_EQ(CProbe().make(dual("text", true)), "(ACF4fix) true");
    EXPECT_EQ(CProbe().make(dual(1, 2.5)), "(ACF4fix) 2.5");
    EXPECT_EQ(CProbe().make(dual(-1, 7U)), "(ACF4fix) 7");
}

TEST(ValueWriter, equalValuesKeepTheKeyword)
{
    EXPECT_EQ(CProbe().make(dual(1, 1)), "(ACF4fix) 1");
    EXPECT_EQ(CProbe(SAVE_ALL, 0).make(dual(1, 1)), "(ACF4fix) 1");
}

TEST(ValueWriter, withoutTheSecondValueBitTheKeywordIsLeftOut)
{
    EXPECT_EQ(CProbe(SAVE_ALL, 0).make(dual(1, 2, VK_fix)), "(ACF4) 1");
    EXPECT_EQ(CProbe(SAVE_ALL, 0).make(dual(1, 2, VK_valid)), "(ACF4) 1");
}

TEST(ValueWriter, withoutPacketExpressionsTheFirstValueIsSaved)
{
    EXPECT_EQ(CProbe(SAVE_ALL - SAVE_PEI).make(dual(1, 2)), "1");
}

TEST(ValueWriter, otherKeywordsLeaveTheFirstValue)
{
    CFields node = dual(1, 2);
    node.pkt_SetExp(itemOf(4, 13));
    EXPECT_EQ(CProbe().make(node), "(ACF4YYYY) 1");
    tPacketExpInfo external = itemOf(4, 1);
    external.m_ucSkKind = 9;  // nothing is registered for it
    node.pkt_SetExp(external);
    EXPECT_EQ(CProbe().make(node), "(ACF4) 1");
}

TEST(ValueWriter, theBlankLooksAtTheTypeOfTheValueThatIsWritten)
{
    EXPECT_EQ(CProbe().make(withItem(1, itemOf(4, VK_fix)), 4), " (ACF4fix)");  // the second value is null
    EXPECT_EQ(CProbe(SAVE_ALL, 10).make(withItem(1, itemOf(4, VK_fix)), 4), " (ACF4fix) null");
    EXPECT_EQ(CProbe().make(dual(CFields(), 5), 4), " (ACF4fix) 5");
}

TEST(ValueWriter, refusesContainers)
{
    CProbe probe;
    EXPECT_EQ(probe.make(DT_array), "");
    EXPECT_EQ(probe.getLastErrCode(), -991);
    EXPECT_EQ(withoutLine(probe.getLastErrMsg()),
              "[murv::ISaver::makePEIandValue#0] 'array' data type was not supported");
    EXPECT_EQ(probe.make(DT_fields), "");
    EXPECT_EQ(withoutLine(probe.getLastErrMsg()),
              "[murv::ISaver::makePEIandValue#0] 'fields' data type was not supported");
}

TEST(ValueWriter, writesStringsOfEveryLengthAroundItsRoom)
{
    CProbe probe;
    for (std::size_t length = 1; length < 1200; ++length)
    {
        const std::string clean(length, 'c');
        ASSERT_EQ(probe.make(clean), "\"" + clean + "\"");
        const std::string mixed = clean + std::string(length, '\xFF');
        std::string expected = "\"" + clean;
        for (std::size_t i = 0; i < length; ++i)
            expected += "\\xFF";
        ASSERT_EQ(probe.make(mixed), expected + "\"");
    }
}

}  // namespace
