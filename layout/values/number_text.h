// layout/values/number_text.h - numbers between their digits and the values that people see.
//
// All forms of digits share this: a number with decimals is a text, one without is an integer, or a text when 64 bits
// do not hold it. The other way, integers, texts and doubles become rows of digits that each form lays out by itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/text/double_text.h"
#include "layout/values/item.h"
#include "layout/values/scalar.h"
#include "murv/packet_fault.h"

namespace murv::detail
{

/// What a presentation appends to a scratch besides the digits: a sign, a point, zeros.
inline constexpr std::size_t s_cnPresentationRoom = 272;

// ------------------------------------------------------------------------------------------------ reading

/// The value of a whole number by the item's rules for decimals, null and dates.
/// \param scratch  the text is appended
E_PacketFault presentWhole(const tItem& item, unsigned int options, bool negative, unsigned long long magnitude,
                           tScalar& value, std::string& scratch);

/// The same for any number of decimal digits, zeros in front included.
/// \param scratch  has room for the presentation and the digits when these lie in it
E_PacketFault presentDigits(const tItem& item, unsigned int options, bool negative, std::string_view digits,
                            tScalar& value, std::string& scratch);

/// The digits as they are, with their sign and a point; for exact items.
/// \param digits  in decimal; empty when `point` is the first
E_PacketFault presentExact(const tItem& item, bool negative, std::string_view digits, tScalar& value,
                           std::string& scratch);

/// The number of up to 20 digits. \return false when 64 bits do not hold it
bool magnitude4Digits(std::string_view digits, std::uint64_t& magnitude);

/// Whether all bytes are decimal digits, as in an empty text.
bool areDigits(std::string_view text);

/// PF_date unless the item is no date or time, or the value is one that exists; null is none.
E_PacketFault checkTime(const tItem& item, const tScalar& value);

// ------------------------------------------------------------------------------------------------- making

/// A number as it is written: whole digits, zeros, a point where the item writes one, zeros, digits, zeros.
struct tWrittenNumber
{
    bool m_bNegative = false;
    bool m_bZero = false;
    bool m_bPoint = false;  // a point stands in the text
    std::string_view m_strvWhole;
    std::size_t m_nWholeZeros = 0;
    std::size_t m_nFractionZeros = 0;
    std::string_view m_strvFraction;
    std::size_t m_nLastZeros = 0;
    char m_acRoom[s_cnDoubleTextRoom];

    std::size_t wholeSize() const
    {
        return m_strvWhole.size() + m_nWholeZeros;
    }
    std::size_t fractionSize() const
    {
        return m_nFractionZeros + m_strvFraction.size() + m_nLastZeros;
    }
    /// Bytes that append() appends.
    std::size_t size() const
    {
        return wholeSize() + (m_bPoint ? 1 : 0) + fractionSize();
    }
    void append(char point, std::string& out) const;
    /// The number that the digits write without their point. \return false when 64 bits do not hold it
    bool magnitude(std::uint64_t& result) const;
};

/// Takes a number from a value that is not null, and scales it as the item's decimals say. Numbers that reading would
/// take for null, and what the item's decimals cannot say, are refused.
///
/// \param number  lies in the value's text or in its own room
E_PacketFault takeNumber(const tItem& item, const tScalar& value, tWrittenNumber& number);

/// The same for items whose number is an integer of 64 bits.
E_PacketFault takeMagnitude(const tItem& item, const tScalar& value, bool& negative, std::uint64_t& magnitude);

/// PF_date when the number is not one of the item's dates or times.
E_PacketFault checkTime(const tItem& item, bool negative, std::uint64_t magnitude);

}  // namespace murv::detail
