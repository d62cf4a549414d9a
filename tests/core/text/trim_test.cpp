// tests/core/text/trim_test.cpp - padding at the ends of texts, and short numbers in digits.
//
// The word-wise code is compared with a byte-wise rule at every length and place; nothing outside may be touched.
#include "core/text/trim.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/text/digit_words.h"
#include "core/text/word_bytes.h"
#include "tests/core/text_helpers.h"

namespace
{

using namespace murv::detail;
using murv::tests::CExactText;

TEST(Trim, takesTheFillAwayAtEveryLengthAndPlace)
{
    std::mt19937 random(3);
    for (std::size_t size = 0; size < 40; ++size)
    {
        for (int round = 0; round < 200; ++round)
        {
            std::string text(size, ' ');
            for (std::size_t i = random() % (size + 1); i-- > 0;)
                text[random() % size] = random() % 2 == 0 ? 'x' : '!';
            const CExactText exact(text);
            const std::string_view view(exact.begin(), exact.size());
            const std::size_t last = text.find_last_not_of(' ');
            const std::size_t first = text.find_first_not_of(' ');
            ASSERT_EQ(last == std::string::npos ? "" : text.substr(0, last + 1), trimEnd(view, ' ')) << text;
            ASSERT_EQ(first == std::string::npos ? "" : text.substr(first), trimFront(view, ' ')) << text;
        }
    }
}

TEST(Trim, fillMayBeAnyByte)
{
    EXPECT_EQ("a", trimEnd(std::string_view("a\0\0\0\0\0\0\0\0\0", 10), '\0'));
    EXPECT_EQ("a", trimEnd("a\xFF\xFF", '\xFF'));
    EXPECT_EQ("a", trimFront("\x40\x40\x40\x40\x40\x40\x40\x40\x40"
                             "a",
                             '\x40'));
}

TEST(Trim, asciiIsBelow128AtEveryPlace)
{
    for (std::size_t size = 0; size < 20; ++size)
    {
        const std::string text(size, '\x7F');
        EXPECT_TRUE(isAscii(text));
        for (std::size_t at = 0; at < size; ++at)
        {
            std::string other = text;
            other[at] = '\x80';
            EXPECT_FALSE(isAscii(other)) << size << " " << at;
        }
    }
}

TEST(DigitWords, readOneToSixteenDigitsAndNothingElse)
{
    std::mt19937_64 random(4);
    std::uint64_t value = 0;
    for (std::size_t size = 1; size <= 16; ++size)
    {
        for (int round = 0; round < 100; ++round)
        {
            std::string text(size, '0');
            for (char& c : text)
                c = static_cast<char>('0' + random() % 10);
            const CExactText exact(text);
            ASSERT_TRUE(readShortDigits(exact.begin(), size, value));
            ASSERT_EQ(std::stoull(text), value);
            text[random() % size] = "/: -\xB1"[random() % 5];
            const CExactText damaged(text);
            ASSERT_FALSE(readShortDigits(damaged.begin(), size, value)) << text;
        }
    }
    EXPECT_FALSE(readShortDigits("", 0, value));
    EXPECT_FALSE(readShortDigits("12345678901234567", 17, value));
}

TEST(DigitWords, bytesAfterTheDigitsMayBeReadButDoNotCount)
{
    for (const char* const after : {"", "1", "x", "99999999", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"})
    {
        for (std::size_t size = 1; size <= 16; ++size)
        {
            const std::string digits = std::string("9876543210987654").substr(0, size);
            const CExactText exact(digits + after);
            std::uint64_t value = 0;
            ASSERT_TRUE(readShortDigits(exact.begin(), size, value, 0, exact.size())) << digits << after;
            ASSERT_EQ(std::stoull(digits), value) << digits << after;
        }
    }
}

TEST(DigitWords, storeANumberInOneToSixteenDigits)
{
    std::mt19937_64 random(5);
    for (std::size_t size = 1; size <= 16; ++size)
    {
        for (int round = 0; round < 100; ++round)
        {
            const std::uint64_t number = round == 0 ? s_caullPowers[size] - 1 : random() % s_caullPowers[size];
            const std::string digits = std::to_string(number);
            const std::string expected = std::string(size - digits.size(), '0') + digits;
            std::string exact(size + 1, '!');
            storeDigits<storeLast>(exact.data(), number, size);
            ASSERT_EQ(expected + "!", exact);
            std::string wide(size + 8, '!');
            storeDigits<storeLastWide>(wide.data(), number, size);
            ASSERT_EQ(expected, wide.substr(0, size));
            ASSERT_EQ('!', wide[size + 7]);
        }
    }
}

TEST(WordBytes, upTo32BytesMayOverlapWhileTheyAreCopied)
{
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.,";
    for (std::size_t count = 0; count <= 32; ++count)
    {
        for (std::size_t to = 0; to <= 32; ++to)
        {
            std::string text = alphabet;
            copyShort(text.data() + to, text.data() + 16, count);
            std::string expected = alphabet;
            ASSERT_EQ(expected.replace(to, count, alphabet, 16, count), text) << count << " to " << to;
        }
    }
}

TEST(DigitWords, aFlipReadsOtherCharacters)
{
    std::uint64_t value = 0;
    constexpr std::uint64_t flip = s_cullOnes * 0xC0;
    EXPECT_TRUE(readShortDigits("\xF1\xF2\xF3", 3, value, flip));
    EXPECT_EQ(123U, value);
    EXPECT_TRUE(readShortDigits("\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8\xF9", 9, value, flip));
    EXPECT_EQ(123456789U, value);
    EXPECT_FALSE(readShortDigits("123", 3, value, flip));
}

}  // namespace
