// tools/utf8.cpp - one row per shape of a sequence; the second byte's range shuts out overlong forms and surrogates.
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
struct tShapeRow
{
    unsigned char m_ucFirstMin;
    unsigned char m_ucFirstMax;
    unsigned char m_ucLength;
    unsigned char m_ucSecondMin;
    unsigned char m_ucSecondMax;
};

constexpr tShapeRow s_ctShapes[] = {
    {0x00, 0x7F, 1, 0x00, 0x00}, {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF},
    {0xE1, 0xEC, 3, 0x80, 0xBF}, {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF},
    {0xF0, 0xF0, 4, 0x90, 0xBF}, {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F},
};

bool hasShape(std::string_view text, const tShapeRow& shape)
{
    if (text.size() < shape.m_ucLength)
        return false;
    if (shape.m_ucLength == 1)
        return true;
    const auto second = static_cast<unsigned char>(text[1]);
    if (second < shape.m_ucSecondMin || second > shape.m_ucSecondMax)
        return false;
    for (std::size_t i = 2; i < shape.m_ucLength; ++i)
    {
        if (!isUtf8Inside(text[i]))
            return false;
    }
    return true;
}

struct tCharacterRange
{
    char32_t m_cFirst;
    char32_t m_cLast;
};

constexpr tCharacterRange s_ctControls[] = {
    {0x00, 0x1F},                        // C0
    {0x7F, 0x9F},                        // DEL and C1
    {0x061C, 0x061C},                    // the rest change the direction of writing: marks,
    {0x200E, 0x200F}, {0x202A, 0x202E},  // embeddings and overrides,
    {0x2066, 0x2069},                    // isolates
    {0xFEFF, 0xFEFF},                    // byte order mark, which takes no room: marks would be beside their place
};
}  // namespace

std::size_t utf8Length(std::string_view text)
{
    if (text.empty())
        return 0;
    const auto first = static_cast<unsigned char>(text[0]);
    for (const tShapeRow& shape : s_ctShapes)
    {
        if (first >= shape.m_ucFirstMin && first <= shape.m_ucFirstMax)
            return hasShape(text, shape) ? shape.m_ucLength : 0;
    }
    return 0;
}

bool isUtf8(std::string_view text)
{
    std::size_t at = 0;
    while (at < text.size())
    {
        const std::size_t length = static_cast<unsigned char>(text[at]) < 0x80 ? 1 : utf8Length(text.substr(at));
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

char32_t codePoint(std::string_view sequence)
{
    constexpr unsigned char firstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t character = static_cast<unsigned char>(sequence[0]) & firstBits[sequence.size()];
    for (const char byte : sequence.substr(1))
        character = character << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
    return character;
}

bool isControl(char32_t character)
{
    for (const tCharacterRange& range : s_ctControls)
    {
        if (character >= range.m_cFirst && character <= range.m_cLast)
            return true;
    }
    return false;
}

std::string shownText(std::string_view text)
{
    std::string shown;
    while (!text.empty())
    {
        const std::size_t length = utf8Length(text);
        if (length == 0 || isControl(codePoint(text.substr(0, length))))
            shown += '?';
        else
            shown += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return shown;
}

std::string escapedText(std::string_view text)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string shown;
    while (!text.empty())
    {
        const std::size_t length = utf8Length(text);
        const auto byte = static_cast<unsigned char>(text[0]);
        if (length != 0 && !isControl(codePoint(text.substr(0, length))))
            shown += text.substr(0, length);
        else if (byte == '\n' || byte == '\r' || byte == '\t')
            shown += byte == '\n' ? "\\n" : byte == '\r' ? "\\r" : "\\t";
        else
            for (const char hidden : text.substr(0, length == 0 ? 1 : length))
                shown.append("\\x")
                    .append(1, digits[static_cast<unsigned char>(hidden) >> 4U])
                    .append(1, digits[static_cast<unsigned char>(hidden) & 0xFU]);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return shown;
}

}  // namespace murv::tool
