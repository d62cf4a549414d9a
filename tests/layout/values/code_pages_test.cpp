// tests/layout/values/code_pages_test.cpp - characters of the code pages.
#include "layout/values/code_pages.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{

using namespace murv::detail;

constexpr const char* s_cpPages[] = {"ascii", "latin1", "cp037", "cp500", "cp1047"};

std::string readText(const char* page, std::string_view bytes)
{
    std::string_view text;
    std::string scratch;
    return readPageText(findCodePage(page), bytes, text, scratch) ? std::string(text) : "!";
}

std::string madeText(const char* page, std::string_view text)
{
    std::string out = "<";
    const bool done = makePageText(findCodePage(page), text, out);
    return done ? out.substr(1) : out == "<" ? "!" : "a part was left";
}

TEST(CodePages, areFoundByTheirNames)
{
    for (const char* const page : s_cpPages)
    {
        ASSERT_NE(nullptr, findCodePage(page));
        EXPECT_EQ(page, findCodePage(page)->m_strvName);
    }
    EXPECT_EQ(nullptr, findCodePage("cp437"));
    EXPECT_EQ(nullptr, findCodePage(""));
}

TEST(CodePages, everyByteComesBack)
{
    for (const char* const page : s_cpPages)
    {
        std::set<std::string> characters;
        for (unsigned int byte = 0; byte < findCodePage(page)->m_uiCharacters; ++byte)
        {
            const std::string bytes(1, static_cast<char>(byte));
            const std::string text = readText(page, bytes);
            EXPECT_EQ(bytes, madeText(page, text)) << page << " " << byte;
            EXPECT_TRUE(characters.insert(text).second) << page << " " << byte;
        }
    }
}

TEST(CodePages, lettersDigitsAndBlanksOfEbcdicAreTheSameInAllThree)
{
    for (const char* const page : {"cp037", "cp500", "cp1047"})
    {
        EXPECT_EQ("ABCDEFGHI", readText(page, "\xC1\xC2\xC3\xC4\xC5\xC6\xC7\xC8\xC9"));
        EXPECT_EQ("JKLMNOPQR", readText(page, "\xD1\xD2\xD3\xD4\xD5\xD6\xD7\xD8\xD9"));
        EXPECT_EQ("STUVWXYZ", readText(page, "\xE2\xE3\xE4\xE5\xE6\xE7\xE8\xE9"));
        EXPECT_EQ("abcdefghi", readText(page, "\x81\x82\x83\x84\x85\x86\x87\x88\x89"));
        EXPECT_EQ("0123456789", readText(page, "\xF0\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8\xF9"));
        EXPECT_EQ(" .<(+&*);-/,%_>?:#@'=\"{}\\",
                  readText(page,
                           "\x40\x4B\x4C\x4D\x4E\x50\x5C\x5D\x5E\x60\x61\x6B\x6C\x6D\x6E\x6F\x7A\x7B\x7C\x7D\x7E"
                           "\x7F\xC0\xD0\xE0"));
    }
}

TEST(CodePages, charactersThatDiffer)
{
    EXPECT_EQ("\xC2\xA2|!\xC2\xAC^[]", readText("cp037", "\x4A\x4F\x5A\x5F\xB0\xBA\xBB"));
    EXPECT_EQ("[!]^\xC2\xA2\xC2\xAC|", readText("cp500", "\x4A\x4F\x5A\x5F\xB0\xBA\xBB"));
    EXPECT_EQ("\xC2\xA2|!^\xC2\xAC\xC3\x9D\xC2\xA8", readText("cp1047", "\x4A\x4F\x5A\x5F\xB0\xBA\xBB"));
    EXPECT_EQ("\xC3\x9D\xC2\xA8", readText("cp037", "\xAD\xBD"));
    EXPECT_EQ("[]", readText("cp1047", "\xAD\xBD"));
    EXPECT_EQ("\xC3\x84\xC3\x96\xC3\x9C\xC3\x9F", readText("cp037", "\x63\xEC\xFC\x59"));
}

TEST(CodePages, lineEndsOfEbcdic)
{
    for (const char* const page : {"cp037", "cp500", "cp1047"})
    {
        EXPECT_EQ("\n", readText(page, "\x25"));
        EXPECT_EQ("\xC2\x85", readText(page, "\x15"));
        EXPECT_EQ("\r", readText(page, "\x0D"));
        EXPECT_EQ("\x25", madeText(page, "\n"));
    }
}

TEST(CodePages, asciiHasNoMoreThan128Characters)
{
    EXPECT_EQ("plain\x7F", readText("ascii", "plain\x7F"));
    EXPECT_EQ("!", readText("ascii", "pl\x80in"));
    EXPECT_EQ("!", madeText("ascii",
                            "h\xC3\xB6"
                            "flich"));
}

TEST(CodePages, aCharacterThatThePageLacksIsRefused)
{
    EXPECT_EQ("!", madeText("latin1", "12 \xE2\x82\xAC"));
    EXPECT_EQ("!", madeText("cp037", "12 \xE2\x82\xAC"));
    EXPECT_EQ("\xF6", madeText("latin1", "\xC3\xB6"));
}

TEST(CodePages, textThatIsNotUtf8IsRefused)
{
    EXPECT_EQ("!", madeText("latin1", "ab\xF6"));
    EXPECT_EQ("!", madeText("latin1", "ab\xC3"));
    EXPECT_EQ("!", madeText("latin1", "\xC0\x80"));
}

TEST(CodePages, asciiBytesAreNotCopied)
{
    const std::string bytes = "nothing above 7F";
    for (const char* const page : {"ascii", "latin1"})
    {
        std::string_view text;
        std::string scratch;
        ASSERT_TRUE(readPageText(findCodePage(page), bytes, text, scratch));
        EXPECT_EQ(bytes.data(), text.data());
    }
}

TEST(CodePages, wideCharactersStandAtEveryPlace)
{
    for (std::size_t size = 1; size < 20; ++size)
    {
        for (std::size_t at = 0; at < size; ++at)
        {
            std::string bytes(size, 'x');
            bytes[at] = '\xE9';
            const std::string text = bytes.substr(0, at) + "\xC3\xA9" + bytes.substr(at + 1);
            ASSERT_EQ(text, readText("latin1", bytes));
            ASSERT_EQ(bytes, madeText("latin1", text));
        }
    }
    EXPECT_EQ("\xC3\xA9\xC3\xA9\xC3\xA9", readText("latin1", "\xE9\xE9\xE9"));
}

}  // namespace
