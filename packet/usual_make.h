// packet/usual_make.h - items of usual leaves: short, of fixed length, with a number that fits or a text.
//
// Nearly all items of most packets are such. They are written to their place without a call; makeOtherItem has the
// rules for everything else, so each function may decline what it likes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/field_access.h"
#include "core/text/digit_words.h"
#include "core/text/word_bytes.h"
#include "packet/packet_buffer.h"

namespace murv::detail
{

/// A byte string, with blanks or zero bytes after it; null is an empty one.
inline bool makeUsualCodes(const CFields& leaf, E_PacketExpCode form, std::size_t length, char* out)
{
    std::string_view bytes;
    if (tFieldAccess::type(leaf) == DT_codelist)
    {
        const char* const block = tFieldAccess::value(leaf).m_pData;
        if (block == nullptr || !tFieldAccess::isOwned(leaf))
            return false;
        bytes = view4Prefixed(block);
    }
    std::memset(out, form == PEC_A ? ' ' : '\0', CPacketBuffer::s_cnSlack);
    copyShort(out, bytes.data(), std::min(length, bytes.size()));
    return true;
}

/// The value of a leaf that holds a whole number, or of a bool 0 or 1.
inline std::uint64_t usualNumber(const CFields& leaf)
{
    const uMultiValue& value = tFieldAccess::value(leaf);
    return tFieldAccess::type(leaf) == DT_bool ? std::uint64_t{value.m_bValue} : value.m_ullValue;
}

/// A whole number in digits, with zeros before them but after a minus sign.
inline bool makeUsualText(const CFields& leaf, std::size_t length, char* out)
{
    const std::uint64_t value = usualNumber(leaf);
    const std::uint64_t sign = tFieldAccess::type(leaf) == DT_sint ? value >> 63 : 0;  // 1 for a negative number
    const std::uint64_t magnitude = (value ^ (0 - sign)) + sign;
    const std::size_t digits = length - static_cast<std::size_t>(sign);
    if (length > s_cnShortDigits || magnitude >= s_caullPowers[digits])
        return false;
    *out = '-';
    storeDigits<storeLastWide>(out + sign, magnitude, digits);
    return true;
}

/// The low bytes of a whole number, the high one first. Of eight bytes and more there are other rules.
inline bool makeUsualWord(const CFields& leaf, std::size_t length, char* out)
{
    if (length >= sizeof(std::uint64_t))
        return false;
    storeLastWide(out, reverseBytes(usualNumber(leaf)), length);
    return true;
}

/// Writes the item of a usual leaf. CPacketBuffer::s_cnSlack bytes may be overwritten, whatever its length.
/// \return its end; null for any other leaf, and the bytes there are then unspecified
inline char* makeUsual(const CFields& leaf, char* out)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    const std::size_t length = pei.m_uiLength;
    if (pei.m_eLengthExp != LEC_F || length - 1 >= CPacketBuffer::s_cnSlack)
        return nullptr;
    bool isMade = false;
    const E_DataType type = tFieldAccess::type(leaf);
    if (type == DT_codelist || type == DT_null)
        isMade = makeUsualCodes(leaf, pei.m_ePacketExp, length, out);
    else if (type == DT_sint || type == DT_uint || type == DT_bool)
        isMade = pei.m_ePacketExp == PEC_A ? makeUsualText(leaf, length, out) : makeUsualWord(leaf, length, out);
    return isMade ? out + length : nullptr;
}

}  // namespace murv::detail
