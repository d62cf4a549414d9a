// tests/ser/saver_stream_test.cpp - the human-friendly text for streams.
//
// The bytes are those of the string saver, whatever the stream is set to.
#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <locale>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "murv/saver.h"
#include "tests/ser/deep_tree.h"
#include "tests/ser/saver_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

std::string text4Stream(const CFields& tree, unsigned int style = SAVE_ALL, unsigned int scbc = SCBC_SECOND_VALUE,
                        const std::string& unit = "  ")
{
    CStreamSaver4SER_HFW saver(unit);
    saver.setSCBC(scbc);
    std::ostringstream os;
    saver.saving(os, tree, static_cast<unsigned char>(style));
    EXPECT_FALSE(saver.isError()) << saver.getLastErrMsg();
    return os.str();
}

/// An array whose text is `lines` lines of "  1000,".
CFields longArray(unsigned int lines)
{
    return arrayOf(lines, 1000);
}

/// Takes a number of bytes, then nothing more.
class CLimitedBuffer : public std::streambuf
{
public:
    explicit CLimitedBuffer(std::size_t limit) : m_nLimit(limit)
    {
    }

    std::string m_strTaken;
    std::vector<std::size_t> m_vSlices;
    unsigned int m_uiRefused = 0;

private:
    int_type overflow(int_type c) override
    {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override
    {
        const std::size_t taken = std::min(static_cast<std::size_t>(count), m_nLimit - m_strTaken.size());
        m_strTaken.append(bytes, taken);
        m_vSlices.push_back(static_cast<std::size_t>(count));
        m_uiRefused += taken < static_cast<std::size_t>(count) ? 1 : 0;
        return static_cast<std::streamsize>(taken);
    }

    std::size_t m_nLimit;
};

struct tThousands : std::numpunct<char>
{
    char do_thousands_sep() const override
    {
        return '\'';
    }
    char do_decimal_point() const override
    {
        return ',';
    }
    std::string do_grouping() const override
    {
        return "\3";
    }
    std::string do_truename() const override
    {
        return "wahr";
    }
};

CFields numbers()
{
    CFields root(DT_fields);
    add(root, "i", 1234567, 12345);
    add(root, "d", 1234567.25);
    add(root, "b", true);
    add(root, "s", "text");
    return root;
}

TEST(SaverStream, writesWhatTheStringSaverWrites)
{
    for (unsigned int style = 0; style <= SAVE_ALL; ++style)
    {
        for (unsigned int scbc = 0; scbc < 16; ++scbc)
            ASSERT_EQ(text4Stream(sampleTree(), style, scbc), text4String(sampleTree(), style, scbc)) << style;
    }
}

TEST(SaverStream, writesLargeTextsInSlices)
{
    CLimitedBuffer buffer(10000000);
    std::ostream os(&buffer);
    const CFields tree = longArray(100000);
    CStreamSaver4SER_HFW saver;
    saver.saving(os, tree);
    EXPECT_EQ(buffer.m_strTaken, text4String(tree));
    ASSERT_GT(buffer.m_vSlices.size(), 5U);
    buffer.m_vSlices.pop_back();
    for (const std::size_t slice : buffer.m_vSlices)
    {
        EXPECT_GT(slice, 60000U);
        EXPECT_LE(slice, 65536U);
    }
}

TEST(SaverStream, writesStringsAndCommentsLargerThanASlice)
{
    CFields tree(DT_fields);
    add(tree, "a", std::string(200000, 'x') + std::string(100000, '\xE4'))
        .setComment("//" + std::string(300000, 'c'), CP_trailing);
    add(tree, "b", 1).setComment("//" + std::string(300000, 'c') + "\n// next", CP_before);
    EXPECT_EQ(text4Stream(tree), text4String(tree));
}

TEST(SaverStream, indentsByTheUnit)
{
    EXPECT_EQ(text4Stream(sampleTree(), 63, 13, "\t"),
              "{\n\t\"a\" = 1,\n\t\"flags\" =[ 1, 2, 3 ],\n\t#7 \"sub\" =\n\t{\n\t\t\"x\" = 5\n\t}\n}\n");
    EXPECT_EQ(text4Stream(arrayOf({arrayOf({1})}), 63, 8, "ab"), "[\nab[\nabab1\nab]\n]");
    EXPECT_EQ(text4Stream(arrayOf({arrayOf({1})}), 63, 8, ""), "[\n[\n1\n]\n]");
    EXPECT_EQ(text4Stream(arrayOf({arrayOf({1})}), 63, 8, std::string(50, '\t')),
              "[\n" + std::string(50, '\t') + "[\n" + std::string(100, '\t') + "1\n" + std::string(50, '\t') + "]\n]");
}

TEST(SaverStream, breaksLinesAtTheSamePlacesWithTabs)
{
    CFields tree(DT_fields);
    add(tree, "a", "");
    EXPECT_EQ(text4Stream(tree, 63, 8, "\t"), "{\n\t\"a\" = }");
    CFields unnamed(DT_fields);
    add(add(unnamed, "", DT_fields), "x", 5);
    EXPECT_EQ(text4Stream(unnamed, 63, 8, "\t"), "{\n\t{\n\t\t\"x\" = 5\n\t}\n}");
}

TEST(SaverStream, formattingFlagsOfTheStreamDoNotCount)
{
    std::ostringstream os;
    os << std::hex << std::showbase << std::showpos << std::uppercase << std::boolalpha << std::setfill('*')
       << std::setw(40) << std::setprecision(2) << std::fixed << std::left;
    CStreamSaver4SER_HFW().saving(os, numbers());
    EXPECT_EQ(os.str(), text4String(numbers()));
    EXPECT_EQ(os.str(), "{\n  #12345 \"i\" = 1234567,\n  \"d\" = 1234567.25,\n  \"b\" = true,\n  \"s\" = \"text\"\n}");
    EXPECT_EQ(os.precision(), 2);
}

TEST(SaverStream, localesDoNotCount)
{
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new tThousands));
    std::ostringstream os;
    os.imbue(std::locale());
    CStreamSaver4SER_HFW().saving(os, numbers());
    const std::string string = text4String(numbers());
    std::locale::global(before);
    EXPECT_EQ(os.str(), "{\n  #12345 \"i\" = 1234567,\n  \"d\" = 1234567.25,\n  \"b\" = true,\n  \"s\" = \"text\"\n}");
    EXPECT_EQ(string, os.str());
}

TEST(SaverStream, reportsAFailingStreamAndKeepsWhatWasWritten)
{
    const CFields tree = longArray(3);
    const std::string whole = text4String(tree);
    for (std::size_t limit = 0; limit < whole.size(); ++limit)
    {
        CLimitedBuffer buffer(limit);
        std::ostream os(&buffer);
        CStreamSaver4SER_HFW saver;
        saver.saving(os, tree);
        EXPECT_EQ(saver.getLastErrCode(), -999);
        EXPECT_EQ(withoutLine(saver.getLastErrMsg()), "[murv::CStreamSaver4SER_HFW::saving#0] Output stream failed");
        EXPECT_TRUE(os.bad());
        EXPECT_EQ(buffer.m_strTaken, whole.substr(0, limit));
    }
}

TEST(SaverStream, stopsWritingOnceAStreamHasFailed)
{
    CLimitedBuffer buffer(100000);
    std::ostream os(&buffer);
    CStreamSaver4SER_HFW saver;
    saver.saving(os, longArray(1000000));
    EXPECT_EQ(saver.getLastErrCode(), -999);
    EXPECT_EQ(buffer.m_vSlices.size(), 2U);
    EXPECT_EQ(buffer.m_uiRefused, 1U);
}

TEST(SaverStream, reportsAStreamThatHadFailedBefore)
{
    std::ostringstream os;
    os.setstate(std::ios::badbit);
    CStreamSaver4SER_HFW saver;
    saver.saving(os, sampleTree());
    EXPECT_EQ(saver.getLastErrCode(), -999);
    EXPECT_EQ(os.str(), "");
}

TEST(SaverStream, isUsableAgainAfterAStreamFailed)
{
    CLimitedBuffer buffer(0);
    std::ostream failing(&buffer);
    CStreamSaver4SER_HFW saver;
    saver.saving(failing, sampleTree());
    ASSERT_TRUE(saver.isError());
    std::ostringstream os;
    saver.saving(os, sampleTree());
    EXPECT_FALSE(saver.isError());
    EXPECT_EQ(os.str(), text4String(sampleTree()));
}

TEST(SaverStream, passesOnWhatAStreamThrows)
{
    CLimitedBuffer buffer(10);
    std::ostream os(&buffer);
    os.exceptions(std::ios::badbit);
    CStreamSaver4SER_HFW saver;
    EXPECT_THROW(saver.saving(os, sampleTree()), std::ios_base::failure);
    EXPECT_EQ(buffer.m_strTaken, text4String(sampleTree()).substr(0, 10));
    std::ostringstream other;
    saver.saving(other, CFields(5));
    EXPECT_EQ(other.str(), "5");
}

TEST(SaverStream, writesNothingForNothing)
{
    std::ostringstream os;
    CStreamSaver4SER_HFW saver;
    saver.saving(os, CFields());
    EXPECT_FALSE(saver.isError());
    EXPECT_EQ(os.str(), "");
}

TEST(SaverStream, appendsToWhatTheStreamHolds)
{
    std::ostringstream os;
    os << "before ";
    CStreamSaver4SER_HFW().saving(os, arrayOf({1}));
    EXPECT_EQ(os.str(), "before [\n  1\n]");
}

TEST(SaverStream, reportsInvalidKeywordsAndWritesOn)
{
    std::ostringstream os;
    CStreamSaver4SER_HFW saver;
    saver.saving(os, withItem(1, itemOf(0, 5)));
    EXPECT_EQ(os.str(), "(ACF0) 1");
    EXPECT_EQ(saver.getLastErrCode(), -991);
    saver.saving(os, CFields(1));
    EXPECT_FALSE(saver.isError());
}

TEST(SaverStream, aCopiedSaverHasTheSameUnit)
{
    CStreamSaver4SER_HFW saver("\t");
    std::ostringstream os;
    saver.saving(os, CFields(1));
    CStreamSaver4SER_HFW copy(saver);
    copy.saving(os, arrayOf({2}));
    EXPECT_EQ(os.str(), "1[\n\t2\n]");
    EXPECT_EQ(copy.getSCBC(), 8U);
}

TEST(SaverStream, savesATreeOfAMillionLevelsOnASmallStack)
{
    onSmallStack([] {
        const CFields tree = nestedArrays(1000000);
        EXPECT_EQ(text4Stream(tree, 63, 8, ""), text4String(tree, 63, 8, 0));
    });
}

}  // namespace
