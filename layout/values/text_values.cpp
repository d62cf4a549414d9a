// layout/values/text_values.cpp - texts and byte strings, and byte strings as hexadecimal digits.
//
// Padding is taken away before characters are looked at, so that most of an item costs an eighth of a step a byte.
#include <cstddef>

#include "core/text/hex.h"
#include "core/text/trim.h"
#include "layout/values/code_pages.h"
#include "layout/values/form_codecs.h"
#include "layout/values/number_text.h"

namespace murv::detail
{

namespace
{

char blank4(const tItem& item)
{
    return item.m_pPage != nullptr ? item.m_pPage->blank() : ' ';
}

/// The byte that fills a text that is shorter than its item.
char fill4(const tItem& item)
{
    const bool zeros = item.m_ePadding == PAD_zeroBytes || (item.m_ePadding == PAD_none && item.m_eForm == IF_bytes);
    return zeros ? '\0' : blank4(item);
}

std::string_view stripPadding(const tItem& item, std::string_view bytes)
{
    if (item.m_bVaries)
        return bytes;
    switch (item.m_ePadding)
    {
    case PAD_blanksAfter: return trimEnd(bytes, blank4(item));
    case PAD_blanksFront: return trimFront(bytes, blank4(item));
    case PAD_zeroBytes: return trimEnd(bytes, '\0');
    default: return bytes;
    }
}

/// Whether reading would take a part of the bytes for padding.
bool endsInPadding(const tItem& item, std::string_view bytes)
{
    if (bytes.empty() || item.m_bVaries)
        return false;
    switch (item.m_ePadding)
    {
    case PAD_blanksAfter: return bytes.back() == blank4(item);
    case PAD_blanksFront: return bytes.front() == blank4(item);
    case PAD_zeroBytes: return bytes.back() == '\0';
    default: return false;
    }
}

/// Fills what was appended from a place on up to the width of the item.
E_PacketFault fillUp(const tItem& item, E_Origin origin, std::size_t before, std::string& out)
{
    const std::size_t size = out.size() - before;
    const bool bounded = !item.m_bVaries || item.m_uiLength != 0;
    if (bounded && size > item.m_uiLength)
        return PF_tooLong;
    if (item.m_bVaries || size == item.m_uiLength)
        return PF_none;
    const std::size_t missing = item.m_uiLength - size;
    if (item.m_ePadding == PAD_none && origin == OR_data)
        return PF_width;
    if (item.m_ePadding == PAD_blanksFront)
        out.insert(before, missing, fill4(item));
    else
        out.append(missing, fill4(item));
    return PF_none;
}

/// The text of a value; null has none but in the layout itself.
E_PacketFault takeText(const tScalar& value, E_Origin origin, std::string_view& text)
{
    if (value.m_eType == DT_codelist)
        text = value.m_strvText;
    else if (value.m_eType != DT_null)
        return PF_type;
    else if (origin == OR_data)
        return PF_null;
    return PF_none;
}

constexpr bool isLower(char digit)
{
    return digit >= 'a';
}

/// Two digits as a byte; -1 when one of them is none, or of the other case.
int byte4Digits(const tItem& item, char first, char second)
{
    const int high = hexValue(first);
    const int low = hexValue(second);
    const bool otherCase =
        (high > 9 && isLower(first) != item.m_bLower) || (low > 9 && isLower(second) != item.m_bLower);
    return high < 0 || low < 0 || otherCase ? -1 : high * 16 + low;
}

}  // namespace

E_PacketFault readText(const tItem& item, std::string_view bytes, unsigned int, tScalar& value, std::string& scratch)
{
    std::string_view text = stripPadding(item, bytes);
    if (item.m_pPage != nullptr && !readPageText(item.m_pPage, text, text, scratch))
        return PF_character;
    value = makeScalar(text);
    return item.m_pTime == nullptr ? PF_none : checkTime(item, value);
}

E_PacketFault makeText(const tItem& item, const tScalar& value, E_Origin origin, std::string& out)
{
    std::string_view text;
    const std::size_t before = out.size();
    if (const E_PacketFault fault = takeText(value, origin, text); fault != PF_none)
        return fault;
    if (!makePageText(item.m_pPage, text, out))
        return PF_character;
    if (origin == OR_data && endsInPadding(item, std::string_view(out).substr(before)))
        return PF_lossy;
    const E_PacketFault fault = fillUp(item, origin, before, out);
    return fault != PF_none || item.m_pTime == nullptr ? fault : checkTime(item, value);
}

E_PacketFault readHexText(const tItem& item, std::string_view bytes, unsigned int, tScalar& value, std::string& scratch)
{
    const std::string_view digits = readPageDigits(item.m_pPage, stripPadding(item, bytes), scratch, 0);
    if (digits.size() % 2 != 0)
        return PF_digits;
    if (digits.data() != scratch.data())
        scratch.resize(digits.size() / 2);
    char* out = scratch.data();  // where the digits lie in it, a byte is written after its digits were read
    for (std::size_t i = 0; i < digits.size(); i += 2)
    {
        const int byte = byte4Digits(item, digits[i], digits[i + 1]);
        if (byte < 0)
            return PF_digits;
        *out++ = static_cast<char>(byte);
    }
    value = makeScalar(std::string_view(scratch.data(), digits.size() / 2));
    return PF_none;
}

E_PacketFault makeHexText(const tItem& item, const tScalar& value, E_Origin origin, std::string& out)
{
    std::string_view text;
    const std::size_t before = out.size();
    if (const E_PacketFault fault = takeText(value, origin, text); fault != PF_none)
        return fault;
    const char* const digits = item.m_bLower ? "0123456789abcdef" : "0123456789ABCDEF";
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        out += digits[byte >> 4];
        out += digits[byte & 15U];
    }
    if (origin == OR_layout && item.m_ePadding == PAD_none && !item.m_bVaries && out.size() - before < item.m_uiLength)
        out.append(item.m_uiLength - (out.size() - before), '0');
    makePageDigits(item.m_pPage, out, before);
    return fillUp(item, origin, before, out);
}

}  // namespace murv::detail
