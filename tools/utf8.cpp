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

}  // namespace murv::tool
