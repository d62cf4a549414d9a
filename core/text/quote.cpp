// core/text/quote.cpp - text in double quotes, with escapes.
//
// Runs without escapes are copied in blocks; an escape is one four-byte store from a table made of the escape rows.
// Texts of up to 16 bytes without escapes have a path of their own: without it, documents full of names and short texts
// take 1.1 times as long to save on one line.
#include "core/text/quote.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "core/text/escape_table.h"
#include "core/text/utf8.h"

namespace murv::detail
{

namespace
{

struct tEscapeText
{
    std::array<char, 4> m_acText;
    unsigned char m_ucLength;
};

constexpr std::array<tEscapeText, 256> makeEscapeTexts() noexcept
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::array<tEscapeText, 256> texts{};
    for (unsigned int byte = 0; byte < 256; ++byte)
    {
        if (s_ctLetter4Byte[byte] != 0)
            texts[byte] = {{'\\', s_ctLetter4Byte[byte]}, 2};
        else if (tEscapeStop::isStop(static_cast<unsigned char>(byte)))
            texts[byte] = {{'\\', 'x', digits[byte >> 4], digits[byte & 15]}, 4};
        else
            texts[byte] = {{static_cast<char>(byte)}, 1};
    }
    return texts;
}

constexpr auto s_ctEscapeTexts = makeEscapeTexts();
static_assert(s_ctEscapeTexts['\t'].m_acText[1] == 't' && s_ctEscapeTexts[127].m_acText[3] == 'F');
static_assert(s_ctEscapeTexts['/'].m_ucLength == 1 && s_ctEscapeTexts['"'].m_ucLength == 2);

/// Copies a text of up to 16 bytes by words that overlap, without a loop.
/// \return false for a longer one and one with escapes; `out` may be overwritten then
bool copyShortClean(char* out, const char* text, std::size_t length) noexcept
{
    if (length > 16)
        return false;
    if (length >= 8)
    {
        const std::uint64_t first = loadWord(text);
        const std::uint64_t last = loadWord(text + length - 8);
        storeWord(out, first);
        storeWord(out + length - 8, last);
        return !tEscapeStop::hasStop(first) && !tEscapeStop::hasStop(last);
    }
    if (length >= 4)
    {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
        std::memcpy(&first, text, sizeof first);
        std::memcpy(&last, text + length - sizeof last, sizeof last);
        std::memcpy(out, &first, sizeof first);
        std::memcpy(out + length - sizeof last, &last, sizeof last);
        return !tEscapeStop::hasStop(first | std::uint64_t{last} << 32);
    }
    bool isClean = true;
    for (std::size_t i = 0; i < length; ++i)
    {
        out[i] = text[i];
        isClean = isClean && !tEscapeStop::isStop(static_cast<unsigned char>(text[i]));
    }
    return isClean;
}

}  // namespace

const char* findEscape(const char* p, const char* end) noexcept
{
    return findStop<tEscapeStop>(p, end);
}

char* writeQuoted(char* out, const char* text, std::size_t length) noexcept
{
    *out++ = '"';
    if (copyShortClean(out, text, length))
    {
        out += length;
        *out++ = '"';
        return out;
    }
    const char* const end = text + length;
    for (;;)
    {
        copyUntilStop<tEscapeStop>(text, end, out);
        if (text == end)
            break;
        // Escapes come in runs, as texts of other alphabets do. Four bytes of room are left for each byte of text, so
        // the full store stays inside. With a search for the end of a run after each, such texts take 3 times as long.
        const tEscapeText* escape = &s_ctEscapeTexts[static_cast<unsigned char>(*text)];
        do
        {
            std::memcpy(out, escape->m_acText.data(), 4);
            out += escape->m_ucLength;
            if (++text == end)
                break;
            escape = &s_ctEscapeTexts[static_cast<unsigned char>(*text)];
        } while (escape->m_ucLength != 1);
    }
    *out++ = '"';
    return out;
}

char* writeQuotedCharacters(char* out, const char* text, std::size_t length) noexcept
{
    *out++ = '"';
    const char* const end = text + length;
    for (;;)
    {
        // Not copyUntilStop(): with a second caller it would be inlined nowhere, and quoting ASCII would pay for it.
        const char* const stop = findEscape(text, end);
        if (stop != text)
            std::memcpy(out, text, static_cast<std::size_t>(stop - text));
        out += stop - text;
        text = stop;
        if (text == end)
            break;
        const tUtf8Point point = readUtf8(text, end);
        if (point.m_nLength > 1 && isPrintable(point.m_uiCodePoint))
        {
            std::memcpy(out, text, point.m_nLength);
            out += point.m_nLength;
            text += point.m_nLength;
            continue;
        }
        // Of a character that is not printable all bytes are escaped; of what is none, one.
        for (std::size_t left = point.m_nLength == 0 ? 1 : point.m_nLength; left != 0; --left)
        {
            const tEscapeText& escape = s_ctEscapeTexts[static_cast<unsigned char>(*text++)];
            std::memcpy(out, escape.m_acText.data(), 4);
            out += escape.m_ucLength;
        }
    }
    *out++ = '"';
    return out;
}

}  // namespace murv::detail
