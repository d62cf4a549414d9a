// tests/core/text/unescape_test.cpp - decoding escaped text.
//
// Texts stand in blocks of their exact size and are decoded into blocks of the same size.
#include "core/text/unescape.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "core/text/escape_table.h"
#include "core/text/quote.h"
#include "core/text/utf8.h"
#include "tests/core/text_helpers.h"

namespace
{

using namespace murv::detail;
using murv::tests::CExactText;

struct tDecoded
{
    std::string m_strBytes;
    std::string m_strMessage;
    std::ptrdiff_t m_nPlace;  // -1 without an error
};

tDecoded decode(std::string_view text, E_UnicodeMode mode)
{
    const CExactText exact(text);
    const std::unique_ptr<char[]> room(new char[text.size()]);
    const tUnescaped result = unescape(exact.begin(), exact.end(), mode, room.get());
    return {std::string(room.get(), result.m_pEnd), s_cpUnescapeMessages[result.m_eError],
            result.m_pPlace == nullptr ? -1 : result.m_pPlace - exact.begin()};
}

testing::AssertionResult decodes(std::string_view text, E_UnicodeMode mode, std::string_view expected)
{
    const tDecoded result = decode(text, mode);
    if (result.m_strBytes == expected && result.m_strMessage.empty() && result.m_nPlace == -1)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << text << ": " << testing::PrintToString(result.m_strBytes) << " "
                                       << result.m_strMessage;
}

/// The error, its place, and what was decoded before it; tried alone and after a text of 20 bytes.
testing::AssertionResult fails(const std::string& text, E_UnicodeMode mode, std::string_view message)
{
    for (const std::string& before : {std::string(), std::string("12345678901234567890")})
    {
        const tDecoded result = decode(before + text, mode);
        if (result.m_strMessage != message || result.m_nPlace != static_cast<std::ptrdiff_t>(before.size()) ||
            result.m_strBytes != before)
            return testing::AssertionFailure() << text << ": " << result.m_strMessage << " at " << result.m_nPlace;
    }
    return testing::AssertionSuccess();
}

}  // namespace

TEST(Unescape, textWithoutEscapesIsCopied)
{
    for (std::size_t size = 0; size <= 80; ++size)
    {
        const std::string text(size, 'a');
        EXPECT_TRUE(decodes(text, UM_bytes, text));
        EXPECT_TRUE(decodes(text, UM_codePoint, text));
    }
    EXPECT_TRUE(decodes("\"\n\xFF", UM_bytes, "\"\n\xFF"));
}

TEST(Unescape, everyRowOfTheTableIsUnderstood)
{
    for (const tEscapeRow& row : s_ctEscapes)
    {
        const std::string escape{'\\', row.m_cLetter};
        const std::string byte(1, static_cast<char>(row.m_ucByte));
        EXPECT_TRUE(decodes(escape, UM_bytes, byte));
        EXPECT_TRUE(decodes(escape, UM_codePoint, byte));
    }
}

TEST(Unescape, anEscapeAtEveryPlaceOfEveryLength)
{
    for (std::size_t before = 0; before <= 40; ++before)
    {
        for (std::size_t after = 0; after <= 40; ++after)
        {
            const std::string a(before, 'a');
            const std::string b(after, 'b');
            ASSERT_TRUE(decodes(a + "\\n" + b, UM_bytes, a + "\n" + b));
            ASSERT_TRUE(decodes(a + "\\x41" + b, UM_bytes, a + "A" + b));
            ASSERT_TRUE(decodes(a + "\\u20AC" + b, UM_codePoint, a + "\xE2\x82\xAC" + b));
        }
    }
}

TEST(Unescape, hexIsOneByte)
{
    EXPECT_TRUE(decodes("\\x00\\x7f\\xFF\\xaB", UM_bytes, std::string_view("\0\x7F\xFF\xAB", 4)));
}

TEST(Unescape, unicodeAsBytesIsHighByteFirst)
{
    EXPECT_TRUE(decodes("\\u0041", UM_bytes, std::string_view("\0A", 2)));
    EXPECT_TRUE(decodes("\\ud83d\\uDE00", UM_bytes, std::string_view("\xD8\x3D\xDE\0", 4)));
}

TEST(Unescape, unicodeAsCodePointIsUtf8)
{
    EXPECT_TRUE(decodes("\\u0041", UM_codePoint, "A"));
    EXPECT_TRUE(decodes("\\u0000", UM_codePoint, std::string_view("\0", 1)));
    EXPECT_TRUE(decodes("\\u007f\\u0080", UM_codePoint, "\x7F\xC2\x80"));
    EXPECT_TRUE(decodes("\\u07FF\\u0800", UM_codePoint, "\xDF\xBF\xE0\xA0\x80"));
    EXPECT_TRUE(decodes("\\uFFFF", UM_codePoint, "\xEF\xBF\xBF"));
    EXPECT_TRUE(decodes("\\ud83d\\ude00", UM_codePoint, "\xF0\x9F\x98\x80"));
    EXPECT_TRUE(decodes("\\ud800\\udc00\\udBFF\\udFFF", UM_codePoint, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"));
}

TEST(Unescape, loneLowSurrogateIsThreeBytes)
{
    EXPECT_TRUE(decodes("\\udc00", UM_codePoint, "\xED\xB0\x80"));
    EXPECT_TRUE(decodes("\\udfff", UM_codePoint, "\xED\xBF\xBF"));
}

TEST(Unescape, secondHalfIsNotCheckedToBeALowSurrogate)
{
    // 65536 + (0x3D << 10) + 0x41
    EXPECT_TRUE(decodes("\\ud83d\\u0041", UM_codePoint, "\xF0\x9F\x91\x81"));
    EXPECT_TRUE(decodes("\\ud83d\\ud83d", UM_codePoint, "\xF0\x9F\x90\xBD"));
}

TEST(Unescape, messagesOfBothModes)
{
    for (const E_UnicodeMode mode : {UM_bytes, UM_codePoint})
    {
        EXPECT_TRUE(fails("\\", mode, "Empty escape sequence in string"));
        EXPECT_TRUE(fails("\\x", mode, "Bad hexa escape sequence in string : two digits expected."));
        EXPECT_TRUE(fails("\\x4", mode, "Bad hexa escape sequence in string : two digits expected."));
        EXPECT_TRUE(fails("\\xg", mode, "Bad hexa escape sequence in string : two digits expected."));
        EXPECT_TRUE(fails("\\xg0", mode, "Bad hexa escape sequence in string"));
        EXPECT_TRUE(fails("\\x0g", mode, "Bad hexa escape sequence in string"));
        EXPECT_TRUE(fails("\\x 41", mode, "Bad hexa escape sequence in string"));
    }
}

TEST(Unescape, everyOtherLetterIsBad)
{
    for (int byte = 0; byte < 256; ++byte)
    {
        const char letter = static_cast<char>(byte);
        if (std::string_view("\"\\/bfnrtxu").find(letter) != std::string_view::npos)
            continue;
        EXPECT_TRUE(fails(std::string("\\") + letter + "0000", UM_bytes, "Bad escape sequence in string")) << byte;
        EXPECT_TRUE(fails(std::string("\\") + letter, UM_codePoint, "Bad escape sequence in string")) << byte;
    }
}

TEST(Unescape, messagesOfUnicodeAsBytes)
{
    for (const char* text : {"\\u", "\\u0", "\\u00", "\\u004", "\\ug", "\\u00g"})
        EXPECT_TRUE(fails(text, UM_bytes, "Bad unicode escape sequence in string : four digits expected."));
    for (const char* text : {"\\ug041", "\\u0g41", "\\u00g1", "\\u004g", "\\u    "})
        EXPECT_TRUE(fails(text, UM_bytes, "Bad unicode escape sequence in string"));
}

TEST(Unescape, messagesOfUnicodeAsCodePoint)
{
    for (const char* text : {"\\u", "\\u0", "\\u00", "\\u004", "\\ug", "\\u00g"})
        EXPECT_TRUE(fails(text, UM_codePoint, "Bad unicode escape sequence in string: four digits expected."));
    for (const char* text : {"\\ug041", "\\u0g41", "\\u00g1", "\\u004g", "\\ud83d\\ug000", "\\ud83d\\ude0x"})
        EXPECT_TRUE(fails(text, UM_codePoint, "Bad unicode escape sequence in string: hexadecimal digit expected."));
}

TEST(Unescape, everyPrefixOfASurrogatePair)
{
    const std::string pair = "\\ud83d\\ude00";
    for (std::size_t size = 6; size < pair.size(); ++size)
    {
        EXPECT_TRUE(fails(pair.substr(0, size), UM_codePoint,
                          "additional six characters expected to parse unicode surrogate pair."));
    }
    for (const char* text : {"\\ud83dabcdef", "\\ud83d\\n0000", "\\ud83d\\U0000", "\\ud83d/u0000"})
    {
        EXPECT_TRUE(fails(text, UM_codePoint,
                          "expecting another \\u token to begin the second half of a unicode surrogate pair"));
    }
}

TEST(Unescape, errorOfALaterEscapeHasItsOwnPlace)
{
    const tDecoded result = decode("a\\n\\x41b\\q", UM_bytes);
    EXPECT_EQ(result.m_strBytes, "a\nAb");
    EXPECT_EQ(result.m_nPlace, 8);
}

TEST(Unescape, whatIsQuotedReadsBack)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < 20000; ++i)
    {
        std::string text(static_cast<std::size_t>(random() % 100), ' ');
        for (char& c : text)
            c = random() % 3 == 0 ? static_cast<char>(random()) : 'a';
        std::vector<char> room(quotedRoom(text.size()));
        const char* const end = writeQuoted(room.data(), text.data(), text.size());
        const std::string_view inner(room.data() + 1, static_cast<std::size_t>(end - room.data()) - 2);
        ASSERT_TRUE(decodes(inner, i % 2 == 0 ? UM_bytes : UM_codePoint, text));
    }
}

TEST(Unescape, hostileTextStaysWithinTheRoom)
{
    // Made of pieces of escapes; the sanitizer watches both blocks.
    const char pieces[] = "\\\\\\uuxxdD8cC019afn\"/ g";
    std::mt19937_64 random(9);
    std::size_t errors = 0;
    for (int i = 0; i < 100000; ++i)
    {
        std::string text(static_cast<std::size_t>(random() % 40), ' ');
        for (char& c : text)
            c = pieces[random() % (sizeof pieces - 1)];
        const tDecoded result = decode(text, i % 2 == 0 ? UM_bytes : UM_codePoint);
        ASSERT_LE(result.m_strBytes.size(), text.size());
        ASSERT_EQ(result.m_strMessage.empty(), result.m_nPlace == -1);
        if (result.m_nPlace >= 0)
        {
            ASSERT_EQ(text[static_cast<std::size_t>(result.m_nPlace)], '\\');
            ++errors;
        }
    }
    EXPECT_GT(errors, 1000U);
}

TEST(Utf8, boundariesOfEveryLength)
{
    const struct
    {
        unsigned int m_uiCodePoint;
        std::string_view m_strBytes;
    } cases[] = {
        {0, std::string_view("\0", 1)},
        {127, "\x7F"},
        {128, "\xC2\x80"},
        {2047, "\xDF\xBF"},
        {2048, "\xE0\xA0\x80"},
        {65535, "\xEF\xBF\xBF"},
        {65536, "\xF0\x90\x80\x80"},
        {1114111, "\xF4\x8F\xBF\xBF"},
        {1114112, ""},
        {0xFFFFFFFFU, ""},
    };
    for (const auto& c : cases)
    {
        char room[4];
        const auto size = static_cast<std::size_t>(writeUtf8(room, c.m_uiCodePoint) - room);
        EXPECT_EQ(std::string(room, size), c.m_strBytes) << c.m_uiCodePoint;
    }
}
