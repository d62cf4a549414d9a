// tools/sample_values.cpp - texts, and which kind of value a leaf gets.
#include "tools/sample_values.h"

#include <algorithm>

#include "tools/sample_numbers.h"

namespace murv::tool
{

namespace
{
constexpr std::uint64_t s_cullShort = 24;      // bytes of most texts
constexpr std::uint64_t s_cullLong = 300;      // of a few
constexpr std::uint64_t s_cullLongest = 4000;  // of very few
constexpr std::string_view s_cstrvWords = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ";

/// Which lengths a text may have, in bytes of its value.
struct tRoom
{
    std::uint64_t m_ullLeast;
    std::uint64_t m_ullMost;
};

tRoom room4Text(const tSamplePart& part)
{
    const tLayoutPart& seen = part.m_tPart;
    const bool isFixed = part.m_tExpression.m_cLength == 'F' && seen.m_ullLeast == seen.m_ullMost;
    const std::uint64_t unit = part.has(SW_hex) ? 2 : 1;
    const std::uint64_t most = (isFixed ? part.m_tExpression.m_ullWidth : seen.m_ullMost - seen.m_ullLeast) / unit;
    const bool isFilled =
        part.has(SW_padBlank | SW_padZero) || (part.m_tExpression.m_cForm == 'A' && !part.has(SW_keep));
    const bool isWhole = isFixed && (!isFilled || part.has(SW_hex | SW_keep));
    return {isWhole ? most : 0, most};
}

std::uint64_t pickLength(const tRoom& room, const tSampleStyle& style, CSampleRandom& random)
{
    if (room.m_ullLeast == room.m_ullMost || style.m_eSize == SZ_empty)
        return room.m_ullLeast;
    const std::uint64_t least = std::max<std::uint64_t>(room.m_ullLeast, style.m_eSize == SZ_some ? 1 : 0);
    const std::uint64_t kind = style.m_bPlain ? 99 : random.below(100);
    const std::uint64_t limit = kind == 0 ? s_cullLongest : kind < 4 ? s_cullLong : s_cullShort;
    const std::uint64_t most = std::max(least, std::min(room.m_ullMost, limit));
    if (kind < 20)
        return least;
    if (kind < 40)
        return room.m_ullMost <= s_cullLong ? room.m_ullMost : most;
    return random.between(least, style.m_bPlain ? std::min<std::uint64_t>(most, least + 4) : most);
}

/// A character of Latin-1 above ASCII, in UTF-8; the EBCDIC pages have these, too.
std::string latinCharacter(CSampleRandom& random)
{
    const auto code = static_cast<unsigned int>(random.between(0xA1, 0xFF));
    return {static_cast<char>(0xC0U | code >> 6U), static_cast<char>(0x80U | (code & 0x3FU))};
}

/// One byte or character; each counts as one in the packet.
std::string character(bool isPaged, unsigned int wildness, std::string_view marks, CSampleRandom& random)
{
    if (wildness == 2)
        return isPaged ? latinCharacter(random) : std::string(1, static_cast<char>(random.below(256)));
    constexpr int tries = 16;
    char byte = 'x';
    for (int i = 0; i < tries; ++i)
    {
        byte = wildness == 0 ? random.pick(s_cstrvWords) : static_cast<char>(random.between(' ', '~'));
        if (marks.find(byte) == std::string_view::npos)
            break;
    }
    return std::string(1, byte);
}

/// Random characters: letters and digits, all that ASCII prints, or sometimes anything.
std::string characters(const tSamplePart& part, std::uint64_t length, std::string_view marks, const tSampleStyle& style,
                       CSampleRandom& random)
{
    const bool isBinary = part.m_tExpression.m_cForm == 'B' || part.has(SW_hex);
    const bool isPaged = part.has(SW_page);
    const bool isAscii = part.has(SW_ascii) && !part.has(SW_raw);
    const unsigned int most = style.m_bPlain ? 0 : isAscii ? 1 : 2;
    const std::uint64_t kind = random.below(100);
    const unsigned int wildness = std::min<unsigned int>(most, kind < 40 ? 0 : kind < (isBinary ? 60U : 90U) ? 1 : 2);
    std::string text;
    for (std::uint64_t i = 0; i < length; ++i)
    {
        std::string next = character(isPaged, wildness, marks, random);
        if (next.size() == 1 && marks.find(next[0]) != std::string_view::npos)
            next = "x";
        text += next;
    }
    return text;
}

/// Changes what would be taken for padding.
void keepFromPadding(const tSamplePart& part, const tRoom& room, std::string& text)
{
    if (text.empty() || room.m_ullLeast == room.m_ullMost || part.m_tPart.m_ullLeast != part.m_tPart.m_ullMost)
        return;
    char& end = part.has(SW_right) ? text.front() : text.back();
    if (end == (part.has(SW_padZero) ? '\0' : ' '))
        end = 'x';
}

CFields makeText(const tSamplePart& part, std::string_view marks, const tSampleStyle& style, CSampleRandom& random)
{
    const tRoom room = room4Text(part);
    std::string text = characters(part, pickLength(room, style, random), marks, style, random);
    keepFromPadding(part, room, text);
    return CFields(text);
}

CFields makeValid(const tSamplePart& part, std::string_view marks, const tSampleStyle& style, CSampleRandom& random)
{
    constexpr int tries = 16;
    const tSampleRange& range = random.pick(part.m_tRules.m_vValid);
    const std::size_t decimals =
        part.m_tRules.m_bPoint ? static_cast<std::size_t>(random.below(3)) : part.m_tRules.m_uiDecimals;
    if (part.m_tExpression.m_cType == 'N')
    {
        const std::string number = sampleInRange(range, decimals, random);
        return sampleValue4Text(part, number.empty() ? range.m_strLow : number);
    }
    if (range.m_strLow == range.m_strHigh)
        return CFields(range.m_strLow);
    for (int i = 0; i < tries; ++i)
    {
        CFields value = makeText(part, marks, style, random);
        const std::string text = value.asString();
        if (text >= range.m_strLow && text <= range.m_strHigh)
            return value;
    }
    return CFields(random.chance(50) ? range.m_strLow : range.m_strHigh);
}
}  // namespace

CFields sampleValue4Text(const tSamplePart& part, const std::string& text)
{
    const bool isNumber = part.m_tExpression.m_cType == 'N' && !part.has(SW_exact);
    const bool isInteger = !text.empty() && text.size() <= 18 &&
                           text.find_first_not_of("0123456789", text[0] == '-' ? 1 : 0) == std::string::npos;
    if (isNumber && isInteger && part.m_tRules.m_uiDecimals == 0)
        return CFields(std::stoll(text));
    const std::uint64_t width = part.m_tExpression.m_ullWidth;
    const bool isShort = part.has(SW_exact) && part.m_tExpression.m_cLength == 'F' && text.size() < width;
    return CFields(isShort ? std::string(static_cast<std::size_t>(width) - text.size(), '0') + text : text);
}

CFields sampleLiteral(const tSamplePart& part, CSampleRandom& random)
{
    const bool hasPrefix = part.m_tExpression.m_cLength == 'V';
    std::string bytes(part.m_tPart.m_strvLiteral);
    bytes.erase(0, hasPrefix ? static_cast<std::size_t>(part.m_tExpression.m_ullWidth) : 0);
    if (part.m_tExpression.m_cType != 'N')
        return CFields(bytes);
    if (part.m_tExpression.m_cForm == 'A')
    {
        for (char& digit : bytes)  // those of EBCDIC, too
            digit = static_cast<unsigned char>(digit) >= 0xF0 ? static_cast<char>('0' + (digit & 0xF)) : digit;
        return sampleValue4Text(part, bytes);
    }
    if (random.chance(50))
        std::reverse(bytes.begin(), bytes.end());
    unsigned long long number = 0;
    for (const char byte : bytes)
        number = number << 8U | static_cast<unsigned char>(byte);
    return CFields(number);
}

CFields makeSampleValue(const tSamplePart& part, std::string_view marks, const tSampleStyle& style,
                        CSampleRandom& random)
{
    if (part.has(SW_blankNull | SW_zeroNull) && random.chance(12))
        return CFields();
    const bool hasValidDate = !part.m_tRules.m_strValidDate.empty();
    const std::string date = sampleDate(
        hasValidDate ? std::string_view(part.m_tRules.m_strValidDate) : part.m_tExpression.m_strKeyword, random);
    if (!date.empty())
        return sampleValue4Text(part, date);
    if (!part.m_tRules.m_vValid.empty())
        return makeValid(part, marks, style, random);
    if (part.m_tExpression.m_cType == 'N')
        return makeSampleNumber(part, style, random);
    return makeText(part, marks, style, random);
}

}  // namespace murv::tool
