// tools/packet_leaf.cpp - names, masks and plain values of leaves.
#include "tools/packet_leaf.h"

#include <algorithm>
#include <cstring>

#include "tools/json_text.h"

namespace murv::tool
{

std::string pathInLayout(std::string_view path)
{
    std::string plain;
    bool isQuoted = false;
    bool isNumber = false;
    for (const char character : path)
    {
        isQuoted = isQuoted != (character == '"');
        isNumber = !isQuoted && (character == '[' || (isNumber && character != ']'));
        if (!isNumber && (isQuoted || character != ']'))
            plain += character;
    }
    return plain;
}

bool isElement(const CLayout& layout, unsigned int part)
{
    const unsigned int parent = layout.getPart(part).m_uiParent;
    return parent != CLayout::s_cuiNoPart && layout.getPart(parent).m_eKind == LP_array;
}

std::string label4Part(const CLayout& layout, unsigned int part)
{
    const tLayoutPart seen = layout.getPart(part);
    if (seen.m_uiParent == CLayout::s_cuiNoPart || isElement(layout, part))
        return {};
    if (!seen.m_strvName.empty())
        return std::string(seen.m_strvName);
    return seen.m_uiID == 0 ? std::string() : "#" + std::to_string(seen.m_uiID);
}

bool isLeftOut(const CLayout& layout, unsigned int part)
{
    const tLayoutPart seen = layout.getPart(part);
    return seen.m_bLiteral && seen.m_strvName.empty() && seen.m_uiID == 0 && !isElement(layout, part);
}

unsigned long long valueOfBits(const tLayoutBits& bits, unsigned long long number)
{
    return number >> bits.m_uiShift & (bits.m_uiWidth >= 64 ? ~0ULL : (1ULL << bits.m_uiWidth) - 1);
}

void appendPlainValue(std::string& out, const tPacketValue& value)
{
    double number = 0;
    switch (value.m_eType)
    {
    case DT_sint: out += std::to_string(static_cast<long long>(value.m_ullBits)); break;
    case DT_uint: out += std::to_string(value.m_ullBits); break;
    case DT_double:
        std::memcpy(&number, &value.m_ullBits, sizeof number);
        appendDouble(out, number);
        break;
    case DT_codelist: out += value.m_strvText; break;
    default: break;
    }
}

std::string maskedValue(const tPacketValue& value, const tByteRange& place, unsigned int shown)
{
    std::string text;
    appendPlainValue(text, value);
    const std::size_t width =
        value.m_eType == DT_codelist ? text.size() : std::max(text.size(), static_cast<std::size_t>(place.m_ullLength));
    text.insert(0, width - text.size(), '*');
    const std::size_t hidden = width - std::min<std::size_t>(shown, width);
    std::fill(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(hidden), '*');
    return text;
}

bool isMask(std::string_view text, unsigned int shown)
{
    const std::size_t hidden = text.size() - std::min<std::size_t>(shown, text.size());
    return hidden != 0 && text.substr(0, hidden).find_first_not_of('*') == std::string_view::npos;
}

}  // namespace murv::tool
