// packet/usual_read.h - values of usual items: short, and of a kind that the leaf holds already.
//
// Nearly all items of most packets are such. They are stored without a call, and without touching the heap; storeOther
// has the rules for everything else, so each function may decline what it likes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/field_access.h"
#include "core/text/digit_words.h"
#include "core/text/word_bytes.h"
#include "core/text/word_order.h"

namespace murv::detail
{

/// A byte string goes into the block of one of the same length, which it may overlap.
inline bool storeUsualCodes(CFields& leaf, std::string_view bytes)
{
    constexpr std::size_t longestShort = 32;
    if (tFieldAccess::type(leaf) != DT_codelist || !tFieldAccess::isOwned(leaf))
        return false;
    const std::string_view held = tFieldAccess::codes(leaf);
    if (held.data() == nullptr || held.size() != bytes.size())
        return false;
    char* const block = const_cast<char*>(held.data());
    if (bytes.size() <= longestShort)
        copyShort(block, bytes.data(), bytes.size());
    else
        std::memmove(block, bytes.data(), bytes.size());
    return true;
}

/// Whether a leaf holds a value that a number replaces without anything being released.
inline bool takesNumber(const CFields& leaf)
{
    const E_DataType held = tFieldAccess::type(leaf);
    return held != DT_codelist && !tFieldAccess::isContainer(held);
}

/// Digits, with "-" before them or not, become what scanNumber makes of them.
/// \param readable  bytes that may be read from the first one on
inline bool storeUsualText(CFields& leaf, std::string_view bytes, std::size_t readable)
{
    if (bytes.empty() || !takesNumber(leaf))
        return false;
    const bool isNegative = bytes.front() == '-';
    const std::size_t sign = isNegative ? 1 : 0;
    std::uint64_t magnitude = 0;
    if (!readShortDigits(bytes.data() + sign, bytes.size() - sign, magnitude, 0, readable - sign))
        return false;
    const bool isSigned = isNegative || magnitude <= INT32_MAX;
    tFieldAccess::setType(leaf, isSigned ? DT_sint : DT_uint).m_ullValue = isNegative ? 0 - magnitude : magnitude;
    return true;
}

/// Up to eight bytes are an integer, without extension of its sign.
inline bool storeUsualWord(CFields& leaf, std::string_view bytes)
{
    if (bytes.size() > sizeof(std::uint64_t) || !takesNumber(leaf))
        return false;
    tFieldAccess::setType(leaf, DT_sint).m_ullValue = loadOrdered(bytes, false);
    return true;
}

/// Makes the value bytes of a usual item the value of their leaf.
/// \param readable  bytes that may be read from the first one on, at least those of the item
/// \return false, with nothing changed, for any other item
inline bool storeUsual(CFields& leaf, std::string_view bytes, std::size_t readable)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    if (pei.m_eRuntimeExp == REC_C)
        return storeUsualCodes(leaf, bytes);
    return pei.m_ePacketExp == PEC_A ? storeUsualText(leaf, bytes, readable) : storeUsualWord(leaf, bytes);
}

}  // namespace murv::detail
