// tests/front/savers_test.cpp - the entrance to all savers, of toMURV and of the stream insertion operator.
#include <gtest/gtest.h>

#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>

#include "murv/saver.h"
#include "tests/ser/saver_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

/// A node that every text saver reports an error for, and the text it becomes nevertheless.
CFields faulty()
{
    return withItem(1, itemOf(0, 5));
}

TEST(Savers, areDestroyedThroughTheirBases)
{
    static_assert(std::has_virtual_destructor_v<CErrorBase>);
    static_assert(std::has_virtual_destructor_v<CBitCombi32>);
    static_assert(std::has_virtual_destructor_v<ISaver>);
    static_assert(std::has_virtual_destructor_v<IStringSaver>);
    static_assert(std::has_virtual_destructor_v<IStreamSaver>);
    const std::unique_ptr<CErrorBase> savers(new CSavers);
    EXPECT_FALSE(savers->isError());
}

TEST(Savers, picksTheSaverByTheEncodingRule)
{
    CSavers savers;
    EXPECT_EQ(savers.saving(sampleTree(), ER_SER_HFW), text4String(sampleTree()));
    EXPECT_EQ(savers.saving(sampleTree(), ER_SER_PKT), text4Packet(sampleTree()));
    EXPECT_FALSE(savers.isError());
}

TEST(Savers, writesIndentedTextWhenNotToldOtherwise)
{
    CSavers savers;
    EXPECT_EQ(savers.saving(sampleTree()), text4String(sampleTree()));
    std::ostringstream os;
    savers.saving(os, sampleTree());
    EXPECT_EQ(os.str(), text4String(sampleTree()));
}

TEST(Savers, rulesAndStylesAreUnsignedNumbers)
{
    static_assert(std::is_same_v<std::underlying_type_t<E_EncodingRule>, unsigned int>);
    static_assert(std::is_same_v<std::underlying_type_t<E_SaveStyle>, unsigned int>);
    std::ostringstream os;
    os << ER_BER << ' ' << SAVE_ALL;
    EXPECT_EQ(os.str(), "2 63");
}

TEST(Savers, startsWithTheSecondValueBit)
{
    EXPECT_EQ(CSavers().getSCBC(), 8U);
    EXPECT_EQ(CSavers(5).getSCBC(), 5U);
}

TEST(Savers, passesItsConfigurationOn)
{
    CSavers savers(SCBC_FINAL_NEWLINE | SCBC_ONE_LINE_ARRAY);
    EXPECT_EQ(savers.saving(arrayOf({1}), ER_SER_HFW), "[ 1 ]\n");
    EXPECT_EQ(savers.saving(arrayOf({1}), ER_SER_PKT), "[1]\n");
    std::ostringstream os;
    savers.saving(os, arrayOf({1}), ER_SER_HFW);
    EXPECT_EQ(os.str(), "[ 1 ]\n");
    savers.setSCBC(0);
    EXPECT_EQ(savers.saving(arrayOf({1}), ER_SER_HFW), "[\n  1\n]");
}

TEST(Savers, givesNothingForAStyleOrRuleOutOfRangeWithoutAnError)
{
    CSavers savers(0);
    EXPECT_EQ(savers.saving(sampleTree(), ER_SER_HFW, 64), "");
    EXPECT_EQ(savers.saving(sampleTree(), ER_SER_HFW, 255), "");
    EXPECT_EQ(savers.saving(sampleTree(), 3), "");
    EXPECT_EQ(savers.saving(sampleTree(), 255), "");
    std::ostringstream os;
    savers.saving(os, sampleTree(), ER_SER_HFW, 64);
    savers.saving(os, sampleTree(), 3);
    EXPECT_EQ(os.str(), "");
    EXPECT_FALSE(savers.isError());
}

TEST(Savers, writesOnlyIndentedTextToStreams)
{
    CSavers savers;
    std::ostringstream os;
    savers.saving(os, sampleTree(), ER_SER_PKT);
    savers.saving(os, sampleTree(), ER_BER);
    EXPECT_EQ(os.str(), "");
    EXPECT_FALSE(savers.isError());
    savers.saving(os, sampleTree(), ER_SER_HFW);
    EXPECT_EQ(os.str(), text4String(sampleTree()));
}

TEST(Savers, successiveSavingsAreIndependent)
{
    CSavers savers(9);
    EXPECT_EQ(savers.saving(arrayOf({1, 2}), ER_SER_HFW, SAVE_VALUE), "[ 1,2 ]");
    EXPECT_EQ(savers.saving(arrayOf({3}), ER_SER_HFW, SAVE_ALL), "[ 3 ]");
    EXPECT_EQ(savers.saving(arrayOf({1, 2}), ER_SER_HFW, SAVE_VALUE), "[ 1,2 ]");
}

TEST(Savers, passesOnErrorsUnchanged)
{
    CSavers savers;
    CSaver4SER_HFW indented;
    EXPECT_EQ(savers.saving(faulty(), ER_SER_HFW), "(ACF0) 1");
    indented.saving(faulty());
    EXPECT_EQ(savers.getLastErrCode(), -991);
    EXPECT_EQ(savers.getLastErrMsg(), indented.getLastErrMsg());
    EXPECT_EQ(withoutLine(savers.getLastErrMsg()),
              "[murv::ISaver::makePEI#0] '5' was invalid index of internal keyword");
}

TEST(Savers, keepsAnErrorUntilItIsCleared)
{
    CSavers savers;
    savers.saving(faulty(), ER_SER_PKT);
    ASSERT_EQ(savers.getLastErrCode(), -991);
    EXPECT_EQ(savers.saving(CFields(5), ER_SER_PKT), "5");
    EXPECT_EQ(savers.getLastErrCode(), -991);
    savers.clearError();
    savers.saving(CFields(5), ER_SER_PKT);
    EXPECT_FALSE(savers.isError());
}

TEST(Savers, passesOnTheErrorOfAStream)
{
    CSavers savers;
    std::ostringstream os;
    os.setstate(std::ios::badbit);
    savers.saving(os, sampleTree(), ER_SER_HFW);
    EXPECT_EQ(savers.getLastErrCode(), -999);
    EXPECT_EQ(withoutLine(savers.getLastErrMsg()), "[murv::CStreamSaver4SER_HFW::saving#0] Output stream failed");
}

TEST(Savers, copiesWorkOnTheirOwn)
{
    CSavers savers(5);
    savers.saving(sampleTree(), ER_SER_HFW);
    CSavers copy(savers);
    savers.setSCBC(0);
    EXPECT_EQ(copy.saving(arrayOf({1}), ER_SER_HFW), "[ 1 ]\n");
    EXPECT_EQ(savers.saving(arrayOf({1}), ER_SER_HFW), "[\n  1\n]");
}

TEST(Savers, knowTwoCryptTypes)
{
    CSavers savers;
    EXPECT_EQ(savers.getCryptType(), 0);
    EXPECT_TRUE(savers.setCryptType(1));
    EXPECT_EQ(savers.getCryptType(), 1);
    EXPECT_FALSE(savers.setCryptType(2));
    EXPECT_FALSE(savers.setCryptType(255));
    EXPECT_EQ(savers.getCryptType(), 1);
    EXPECT_TRUE(savers.setCryptType(0));
    EXPECT_EQ(savers.getCryptType(), 0);
}

TEST(Savers, cryptTypeIsCopiedAndSavingLeavesIt)
{
    CSavers savers;
    savers.setCryptType(1);
    savers.saving(sampleTree(), ER_BER);
    EXPECT_EQ(savers.getCryptType(), 1);
    EXPECT_EQ(CSavers(savers).getCryptType(), 1);
    CSavers other;
    other.saving(sampleTree(), ER_BER, SAVE_ALL, "password");
    EXPECT_EQ(other.getCryptType(), 0);
    other = savers;
    EXPECT_EQ(other.getCryptType(), 1);
}

TEST(Savers, errorIsCopied)
{
    CSavers savers;
    savers.saving(faulty(), ER_SER_HFW);
    ASSERT_TRUE(savers.isError());
    const CSavers copy(savers);
    EXPECT_EQ(copy.getLastErrCode(), savers.getLastErrCode());
    EXPECT_EQ(copy.getLastErrMsg(), savers.getLastErrMsg());
}

TEST(ToMurv, givesWhatSaversGive)
{
    for (const unsigned char style : std::initializer_list<unsigned char>{SAVE_ALL, SAVE_VALUE, SAVE_NAME})
    {
        EXPECT_EQ(sampleTree().toMURV(ER_SER_HFW, style), CSavers(8).saving(sampleTree(), ER_SER_HFW, style));
        EXPECT_EQ(sampleTree().toMURV(ER_SER_PKT, style), CSavers(8).saving(sampleTree(), ER_SER_PKT, style));
    }
    EXPECT_EQ(sampleTree().toMURV(ER_SER_HFW), text4String(sampleTree()));
}

TEST(ToMurv, dropsErrors)
{
    EXPECT_EQ(faulty().toMURV(ER_SER_PKT), "(ACF0)1");
    EXPECT_EQ(sampleTree().toMURV(3), "");
    EXPECT_EQ(sampleTree().toMURV(ER_SER_HFW, 64), "");
}

TEST(StreamInsertion, writesIndentedText)
{
    std::ostringstream os;
    os << std::setw(30) << std::hex;
    os << sampleTree();
    EXPECT_EQ(os.str(), text4String(sampleTree()));
    EXPECT_EQ(os.str(), CSavers(8).saving(sampleTree(), ER_SER_HFW));
}

TEST(StreamInsertion, givesTheStreamBack)
{
    std::ostringstream os;
    os << CFields(1) << " " << CFields("b");
    EXPECT_EQ(os.str(), "1 \"b\"");
}

TEST(StreamInsertion, throwsAndTellsStandardErrorWhatTheSaverReports)
{
    std::ostringstream os;
    testing::internal::CaptureStderr();
    std::string message;
    try
    {
        os << faulty();
    }
    catch (const CLogicError& error)
    {
        message = error.what();
    }
    const std::string written = testing::internal::GetCapturedStderr();
    const std::string inner = "[murv::ISaver::makePEI#";
    const std::size_t begin = message.find(inner);
    ASSERT_NE(begin, std::string::npos) << message;
    EXPECT_EQ(withoutLine(message.substr(0, begin)), "[murv::operator <<#0] saver: ");
    EXPECT_EQ(withoutLine(message.substr(begin)),
              "[murv::ISaver::makePEI#0] '5' was invalid index of internal keyword");
    EXPECT_EQ(written, message + "\n");
    EXPECT_EQ(os.str(), "(ACF0) 1");
}

TEST(StreamInsertion, throwsForAFailedStream)
{
    std::ostringstream os;
    os.setstate(std::ios::badbit);
    testing::internal::CaptureStderr();
    EXPECT_THROW(os << sampleTree(), CLogicError);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Output stream failed"), std::string::npos);
}

}  // namespace
