// tests/ser/pei_writer_test.cpp - packet expressions as text, and that the reader understands them.

#include "murv/saver.h"
#include "ser/pei_reader.h"
#include "tests/support/clean_registries.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace
{

using namespace murv;

/// Opens the writer, which only savers see.
class CPeiSaver : public ISaver
{
public:
    CPeiSaver() : ISaver(0)
    {
    }
    std::string write(const tPacketExpInfo& pei, E_DataType type = DT_null)
    {
        m_ucWritten = 0;
        return makePEI(type, pei, m_ucWritten);
    }
    void setStyle(unsigned char style)
    {
        m_ucStyle = style;
    }
    unsigned char written() const
    {
        return m_ucWritten;
    }
    /// The message without its line number.
    std::string message() const
    {
        std::string text = getLastErrMsg();
        const std::size_t mark = text.find('#');
        if (mark != std::string::npos)
            text.erase(mark + 1, text.find(']') - mark - 1);
        return text;
    }

private:
    unsigned char m_ucWritten = 0;
};

tPacketExpInfo pei4(unsigned int form, unsigned int runtime, unsigned int lengthExp, unsigned int length)
{
    tPacketExpInfo pei{};
    pei.m_ePacketExp = static_cast<E_PacketExpCode>(form & 1);
    pei.m_eRuntimeExp = static_cast<E_RuntimeExpCode>(runtime & 1);
    pei.m_eLengthExp = static_cast<E_LengthExpCode>(lengthExp & 3);
    pei.m_uiLength = length;
    return pei;
}

tPacketExpInfo variable4(unsigned int prefix, int calibration)
{
    tPacketExpInfo pei = pei4(0, 0, LEC_V, 0);
    pei.m_ucPrefixSize = static_cast<unsigned char>(prefix);
    pei.m_cCalibration = static_cast<signed char>(calibration);
    return pei;
}

tPacketExpInfo keyword4(unsigned int kind, unsigned int index, unsigned int option = 0)
{
    tPacketExpInfo pei{};
    pei.m_ucSkKind = static_cast<unsigned char>(kind & 15U);
    pei.m_usSkIndex = static_cast<unsigned short>(index);
    pei.m_ucSkOption = static_cast<unsigned char>(option & 15U);
    return pei;
}

std::string text4(const tPacketExpInfo& pei)
{
    CPeiSaver saver;
    std::string text = saver.write(pei);
    EXPECT_FALSE(saver.isError()) << saver.getLastErrMsg();
    EXPECT_EQ(saver.written(), SAVE_PEI);
    return text;
}

TEST(PeiWriter, lettersAndLength)
{
    EXPECT_EQ(text4(tPacketExpInfo{}), "(ACF0)");
    EXPECT_EQ(text4(pei4(1, 1, LEC_F, 12)), "(BNF12)");
    EXPECT_EQ(text4(pei4(0, 1, LEC_D, 4294967295u)), "(AND4294967295)");
}

TEST(PeiWriter, unknownLengthCodeEndsTheText)
{
    EXPECT_EQ(text4(pei4(0, 0, 3, 12)), "(AC");
}

TEST(PeiWriter, runTimeLengthIsZeroWithoutItsValue)
{
    CPeiSaver saver;
    saver.setStyle(SAVE_ALL & ~SAVE_VALUE);
    EXPECT_EQ(saver.write(pei4(0, 0, LEC_D, 7)), "(ACD0)");
    EXPECT_EQ(saver.write(pei4(0, 0, LEC_F, 7)), "(ACF7)");
    saver.setStyle(SAVE_VALUE);
    EXPECT_EQ(saver.write(pei4(0, 0, LEC_D, 7)), "(ACD7)");
}

TEST(PeiWriter, prefixComesWithItsCalibration)
{
    EXPECT_EQ(text4(variable4(2, -3)), "(ACV2-3)");
    EXPECT_EQ(text4(variable4(2, 0)), "(ACV2+0)");
    EXPECT_EQ(text4(variable4(9, 127)), "(ACV9+127)");
    EXPECT_EQ(text4(variable4(1, -128)), "(ACV1-128)");
    EXPECT_EQ(text4(variable4(127, 1)), "(ACV127+1)");
    EXPECT_EQ(text4(variable4(128, 1)), "(ACV4294967168+1)");
    EXPECT_EQ(text4(variable4(255, 1)), "(ACV4294967295+1)");
}

TEST(PeiWriter, prefixOfZeroIsNotWritten)
{
    EXPECT_EQ(text4(variable4(0, 5)), "(ACV)");
    tPacketExpInfo pei = keyword4(0, 13);
    pei.m_eLengthExp = LEC_V;
    EXPECT_EQ(text4(pei), "(ACVYYYY)");
}

TEST(PeiWriter, internalKeywordIsWrittenByName)
{
    EXPECT_EQ(text4(keyword4(0, 31)), "(ACF0YYYYMMDD)");
    EXPECT_EQ(text4(keyword4(0, 3, 2)), "(ACF0sizedef_2)");
    EXPECT_EQ(text4(keyword4(0, 3)), "(ACF0sizedef_)");
    EXPECT_EQ(text4(keyword4(0, 11, 2)), "(ACF0DOY2)");
    EXPECT_EQ(text4(keyword4(0, 38, 15)), "(ACF0YYYYMMDDhhmmSSsss15)");
}

TEST(PeiWriter, invalidInternalIndexIsReportedAndLeftOut)
{
    for (unsigned int index : {5u, 10u, 21u, 30u, 39u, 65535u})
    {
        CPeiSaver saver;
        EXPECT_EQ(saver.write(keyword4(0, index)), "(ACF0)");
        EXPECT_EQ(saver.getLastErrCode(), -991);
        EXPECT_EQ(saver.message(),
                  "[murv::ISaver::makePEI#] '" + std::to_string(index) + "' was invalid index of internal keyword");
        EXPECT_EQ(saver.written(), SAVE_PEI);
    }
}

TEST(PeiWriter, containerIsReported)
{
    CPeiSaver saver;
    EXPECT_EQ(saver.write(pei4(0, 0, LEC_F, 7), DT_array), "");
    EXPECT_EQ(saver.getLastErrCode(), -991);
    EXPECT_EQ(saver.message(), "[murv::ISaver::makePEI#] 'array' data type was not supported");
    EXPECT_EQ(saver.written(), 0);
    EXPECT_EQ(saver.write(pei4(0, 0, LEC_F, 7), DT_fields), "");
    EXPECT_EQ(saver.message(), "[murv::ISaver::makePEI#] 'fields' data type was not supported");
}

TEST(PeiWriter, externalKeywordIsWrittenByItsCallback)
{
    const tests::tCleanRegistries clean;
    EXPECT_EQ(text4(keyword4(4, 7)), "(ACF0)");
    CFields::setGetTxtFP4ESK(4, [](unsigned short index, unsigned char option) -> const char* {
        return index == 7 ? (option == 0 ? "plain" : "option_") : nullptr;
    });
    EXPECT_EQ(text4(keyword4(4, 7)), "(ACF0plain)");
    EXPECT_EQ(text4(keyword4(4, 7, 3)), "(ACF0option_3)");
    EXPECT_EQ(text4(keyword4(4, 8)), "(ACF0)");
    EXPECT_EQ(text4(keyword4(5, 7)), "(ACF0)");
}

std::string s_strLong;

TEST(PeiWriter, externalKeywordThatDoesNotFitIsReportedAndLeftOut)
{
    const tests::tCleanRegistries clean;
    CFields::setGetTxtFP4ESK(4, [](unsigned short, unsigned char) { return s_strLong.c_str(); });
    for (unsigned int option : {0u, 5u, 15u})
    {
        // "(ACF0", the text, the option's digits, ")" and the final NUL in 256 bytes.
        const std::size_t most = 256 - 5 - 2 - (option == 0 ? 0 : std::to_string(option).size());
        s_strLong.assign(most, 'x');
        EXPECT_EQ(text4(keyword4(4, 7, option)),
                  "(ACF0" + s_strLong + (option == 0 ? "" : std::to_string(option)) + ")");
        for (std::size_t length : {most + 1, std::size_t{100000}})
        {
            s_strLong.assign(length, 'x');
            CPeiSaver saver;
            EXPECT_EQ(saver.write(keyword4(4, 7, option)), "(ACF0)");
            EXPECT_EQ(saver.getLastErrCode(), -991);
            EXPECT_EQ(saver.message(),
                      "[murv::ISaver::makePEI#] Too long keyword text(" + std::to_string(length) + ")");
        }
    }
}

TEST(PeiWriter, bitsWrittenBeforeAreKept)
{
    CPeiSaver saver;
    class COpen : public CPeiSaver
    {
    public:
        unsigned char add(unsigned char written)
        {
            makePEI(DT_null, tPacketExpInfo{}, written);
            return written;
        }
    };
    EXPECT_EQ(COpen().add(6), 14);
}

TEST(PeiWriter, whatIsWrittenIsReadBack)
{
    for (unsigned int code = 0; code < 12; ++code)
    {
        for (unsigned int index : {0u, 1u, 2u, 3u, 4u, 11u, 13u, 20u, 31u, 38u})
        {
            for (unsigned int size : {1u, 4u, 9u})
            {
                tPacketExpInfo pei = keyword4(0, index, index == 3 || index == 4 ? size : 0);
                const tPacketExpInfo shape = pei4(code & 1, code >> 1 & 1, code >> 2, size);
                pei.m_ePacketExp = shape.m_ePacketExp;
                pei.m_eRuntimeExp = shape.m_eRuntimeExp;
                pei.m_eLengthExp = shape.m_eLengthExp;
                pei.m_uiLength = size;
                if (pei.m_eLengthExp == LEC_V)
                {
                    pei.m_ucPrefixSize = static_cast<unsigned char>(size);
                    pei.m_cCalibration = static_cast<signed char>(size * 30 - 140);
                }
                const std::string text = text4(pei);
                tPacketExpInfo got{};
                EXPECT_EQ(detail::decodePei(std::string_view(text).substr(1, text.size() - 2), 0, got), nullptr);
                EXPECT_EQ(std::memcmp(&got, &pei, sizeof pei), 0) << text;
            }
        }
    }
}

}  // namespace
