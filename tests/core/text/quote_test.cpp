// tests/core/text/quote_test.cpp - quoting and of the scans for the next byte of a kind.
//
// The block-wise code is compared with a byte-wise rule at every alignment, length and place.
#include "core/text/quote.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "core/text/escape_table.h"
#include "core/text/hex.h"
#include "core/text/utf8.h"
#include "tests/core/text_helpers.h"

namespace
{

using namespace murv::detail;
using murv::tests::CExactText;

std::string quotedText(std::string_view text)
{
    const CExactText exact(text);
    const std::unique_ptr<char[]> room(new char[quotedRoom(text.size())]);
    return std::string(room.get(), writeQuoted(room.get(), exact.begin(), exact.size()));
}

std::string quotedCharacters(std::string_view text)
{
    const CExactText exact(text);
    const std::unique_ptr<char[]> room(new char[quotedRoom(text.size())]);
    return std::string(room.get(), writeQuotedCharacters(room.get(), exact.begin(), exact.size()));
}

/// The rule byte by byte.
std::string quotedByBytes(std::string_view text)
{
    std::string result = "\"";
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        char hex[8];
        std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned int>(byte));
        const char* const named = byte == 8    ? "\\b"
                                  : byte == 9  ? "\\t"
                                  : byte == 10 ? "\\n"
                                  : byte == 12 ? "\\f"
                                  : byte == 13 ? "\\r"
                                  : c == '"'   ? "\\\""
                                  : c == '\\'  ? "\\\\"
                                               : nullptr;
        if (named != nullptr)
            result += named;
        else if (byte < 32 || byte >= 127)
            result += hex;
        else
            result += c;
    }
    return result + "\"";
}

/// Tries a scan with every byte as the stop, and every clean byte as the run, at all offsets and lengths to 80.
template <class tScan, class tIsStop>
void tryScan(tScan scan, tIsStop isStop, char clean)
{
    for (std::size_t offset = 0; offset < 17; ++offset)
    {
        for (std::size_t size = 0; size <= 80; ++size)
        {
            const CExactText run(std::string(size, clean), offset);
            ASSERT_EQ(scan(run.begin(), run.end()), run.end()) << size;
        }
    }
    for (unsigned int byte = 0; byte < 256; ++byte)
    {
        const char c = static_cast<char>(byte);
        for (std::size_t size = 1; size <= 80; size += (size < 40 ? 1 : 13))
        {
            for (std::size_t place = 0; place < size; place += (size < 20 ? 1 : 3))
            {
                std::string text(size, clean);
                text[place] = c;
                const CExactText exact(text, byte % 16);
                const char* const expected = isStop(c) ? exact.begin() + place : exact.end();
                ASSERT_EQ(scan(exact.begin(), exact.end()), expected) << byte << " at " << place << " of " << size;
            }
        }
    }
}

}  // namespace

TEST(Quote, textWithoutEscapesStandsBetweenQuotes)
{
    EXPECT_EQ(quotedText(""), "\"\"");
    EXPECT_EQ(quotedText("x"), "\"x\"");
    EXPECT_EQ(quotedText("a/b c~"), "\"a/b c~\"");
}

TEST(Quote, everyByteByItself)
{
    for (int byte = 0; byte < 256; ++byte)
    {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(quotedText(text), quotedByBytes(text)) << byte;
    }
    EXPECT_EQ(quotedText("\x7F"), "\"\\x7F\"");
    EXPECT_EQ(quotedText("\t"), "\"\\t\"");
    EXPECT_EQ(quotedText("\v"), "\"\\x0B\"");
    EXPECT_EQ(quotedText(std::string(1, '\0')), "\"\\x00\"");
    EXPECT_EQ(quotedText("\xC3\xA4"), "\"\\xC3\\xA4\"");
}

TEST(Quote, everyRowOfTheTableIsWrittenIfItSaysSo)
{
    for (const tEscapeRow& row : s_ctEscapes)
    {
        const std::string text(1, static_cast<char>(row.m_ucByte));
        EXPECT_EQ(quotedText(text), row.m_bWritten ? std::string("\"\\") + row.m_cLetter + "\"" : "\"" + text + "\"");
    }
}

TEST(Quote, theRoomIsExactForTheWorstText)
{
    for (std::size_t size = 0; size <= 80; ++size)
        EXPECT_EQ(quotedText(std::string(size, '\x80')).size(), quotedRoom(size));
}

TEST(Quote, anEscapeAtEveryPlaceOfEveryLength)
{
    for (std::size_t size = 1; size <= 80; ++size)
    {
        for (std::size_t place = 0; place < size; ++place)
        {
            for (const char stop : {'\n', '"', '\x7F', '\xFF'})
            {
                std::string text(size, 'a');
                text[place] = stop;
                ASSERT_EQ(quotedText(text), quotedByBytes(text)) << place << " of " << size;
            }
        }
    }
}

TEST(Quote, randomBytesOfEveryDensity)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i)
    {
        std::string text(static_cast<std::size_t>(random() % 120), 'a');
        const std::uint64_t density = 1 + random() % 20;
        for (char& c : text)
            c = random() % density == 0 ? static_cast<char>(random()) : static_cast<char>(' ' + random() % 95);
        ASSERT_EQ(quotedText(text), quotedByBytes(text));
    }
}

TEST(Quote, cleanBeginningNeedsOneByteForEach)
{
    for (std::size_t clean = 0; clean <= 50; ++clean)
    {
        for (std::size_t rest = 1; rest <= 20; ++rest)
        {
            const std::string text = std::string(clean, 'a') + std::string(rest, '\x01');
            const std::unique_ptr<char[]> room(new char[clean + quotedRoom(rest)]);
            EXPECT_EQ(std::string(room.get(), writeQuoted(room.get(), text.data(), text.size())), quotedByBytes(text));
        }
    }
}

TEST(ByteScan, findEscapeStopsAtWhatIsEscaped)
{
    const auto isStop = [](char c) { return quotedByBytes(std::string(1, c)) != std::string{'"', c, '"'}; };
    tryScan(findEscape, isStop, 'a');
    tryScan(findEscape, isStop, ' ');
    tryScan(findEscape, isStop, '~');
}

TEST(ByteScan, findStringStopStopsAtQuoteAndBackslash)
{
    const auto isStop = [](char c) { return c == '"' || c == '\\'; };
    tryScan(findStringStop, isStop, 'a');
    tryScan(findStringStop, isStop, '!');
    tryScan(findStringStop, isStop, '\xFF');
}

TEST(ByteScan, findLineEndStopsAtCarriageReturnAndLineFeed)
{
    const auto isStop = [](char c) { return c == '\r' || c == '\n'; };
    tryScan(findLineEnd, isStop, '\f');
    tryScan(findLineEnd, isStop, '\0');
}

TEST(ByteScan, skipBlanksStopsAtWhatIsNotBlank)
{
    const auto isStop = [](char c) { return c != ' ' && c != '\t' && c != '\r' && c != '\n'; };
    for (const char blank : {' ', '\t', '\r', '\n'})
        tryScan(skipBlanks, isStop, blank);
}

TEST(ByteScan, skipDigitsStopsAtWhatIsNoDigit)
{
    const auto isStop = [](char c) { return c < '0' || c > '9'; };
    tryScan(skipDigits, isStop, '0');
    tryScan(skipDigits, isStop, '9');
}

TEST(ByteScan, nullIsAnEmptyRange)
{
    EXPECT_EQ(findEscape(nullptr, nullptr), nullptr);
    EXPECT_EQ(skipBlanks(nullptr, nullptr), nullptr);
    EXPECT_EQ(skipDigits(nullptr, nullptr), nullptr);
}

TEST(ByteScan, copyTakesAllBeforeTheStop)
{
    for (std::size_t size = 0; size <= 80; ++size)
    {
        for (std::size_t place = 0; place <= size; ++place)
        {
            std::string text(size, 'x');
            if (place < size)
                text[place] = '\\';
            const CExactText exact(text);
            const std::unique_ptr<char[]> room(new char[size]);
            const char* in = exact.begin();
            char* out = room.get();
            copyUntilStop<tBackslashStop>(in, exact.end(), out);
            ASSERT_EQ(in, exact.begin() + place);
            ASSERT_EQ(std::string_view(room.get(), static_cast<std::size_t>(out - room.get())), text.substr(0, place));
        }
    }
}

TEST(QuoteCharacters, printableOnesStandAsThemselves)
{
    EXPECT_EQ(quotedCharacters("Z\xC3\xBCrich \xE6\x97\xA5 \xF0\x9F\x98\x80"),
              "\"Z\xC3\xBCrich \xE6\x97\xA5 \xF0\x9F\x98\x80\"");
    EXPECT_EQ(quotedCharacters(""), "\"\"");
    for (const unsigned int point : {0xA0U, 0xE000U, 0xFE0FU, 0xFFFDU, 0x10FFFDU, 0x3000U, 0xFDCFU, 0xFDF0U})
        EXPECT_TRUE(isPrintable(point)) << point;
}

TEST(QuoteCharacters, hiddenOnesAreEscaped)
{
    for (const unsigned int point :
         {0x00U,   0x1FU,    0x7FU,     0x80U,    0x9FU,    0xADU,   0x061CU, 0x200BU, 0x200DU, 0x200FU,
          0x2028U, 0x2029U,  0x202EU,   0x2060U,  0x2066U,  0x2069U, 0xFEFFU, 0xFDD0U, 0xFDEFU, 0xFFFEU,
          0xFFFFU, 0x1FFFEU, 0x10FFFFU, 0xE0001U, 0xE0041U, 0x115FU, 0x3164U, 0xFFA0U, 0x1D173U})
        EXPECT_FALSE(isPrintable(point)) << point;
    EXPECT_EQ(quotedCharacters("a\xE2\x80\x8B"), "\"a\\xE2\\x80\\x8B\"");
}

TEST(QuoteCharacters, bytesThatAreNoUtf8AreEscapedOneByOne)
{
    EXPECT_EQ(quotedCharacters("\xFF\x80\xC3"), "\"\\xFF\\x80\\xC3\"");
    EXPECT_EQ(quotedCharacters("\xC3\x28"), "\"\\xC3(\"");
    EXPECT_EQ(quotedCharacters("\xC0\x80\xE0\x9F\xBF\xF0\x8F\xBF\xBF"),
              "\"\\xC0\\x80\\xE0\\x9F\\xBF\\xF0\\x8F\\xBF\\xBF\"")
        << "overlong";
    EXPECT_EQ(quotedCharacters("\xED\xA0\x80\xF4\x90\x80\x80\xF5"), "\"\\xED\\xA0\\x80\\xF4\\x90\\x80\\x80\\xF5\"")
        << "half of a pair, and beyond the last";
    EXPECT_EQ(quotedCharacters("\xE6\x97"), "\"\\xE6\\x97\"") << "cut";
}

TEST(QuoteCharacters, asciiIsAsEver)
{
    std::mt19937 random(3);
    for (int i = 0; i < 2000; ++i)
    {
        std::string text(static_cast<std::size_t>(random() % 70), ' ');
        for (char& c : text)
            c = static_cast<char>(random() % 128);
        ASSERT_EQ(quotedCharacters(text), quotedText(text));
    }
}

TEST(Hex, pairsBecomeBytesAndDigitsAreCounted)
{
    const struct
    {
        std::string m_strText;
        std::size_t m_cnRead;
        std::string m_strBytes;
    } cases[] = {
        {"", 0, ""},          {"4", 1, ""},     {"41", 2, "A"},
        {"4a4B4c", 6, "JKL"}, {"41g1", 2, "A"}, {"414", 3, "A"},
        {"414x", 3, "A"},     {"x", 0, ""},     {"fF00", 4, std::string("\xFF\0", 2)},
        {"4/", 1, ""},        {"4:", 1, ""},    {"4@", 1, ""},
        {"4G", 1, ""},        {"4`", 1, ""},    {"4\xFF", 1, ""},
    };
    for (const auto& c : cases)
    {
        const CExactText exact(c.m_strText);
        std::string bytes(c.m_strText.size() / 2, '#');
        ASSERT_EQ(decodeHexPairs(exact.begin(), exact.size(), bytes.data()), c.m_cnRead) << c.m_strText;
        EXPECT_EQ(bytes.substr(0, c.m_strBytes.size()), c.m_strBytes);
        EXPECT_EQ(bytes.find_first_not_of('#', c.m_strBytes.size()), std::string::npos) << "written too much";
    }
    char none = '#';
    EXPECT_EQ(decodeHexPairs("4142", 0, &none), 0U);
    EXPECT_EQ(none, '#');
}
