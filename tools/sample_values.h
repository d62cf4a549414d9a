// tools/sample_values.h - random values that an item can hold.
//
// Numbers have their whole range, with more at its ends than chance would give; texts have any length that fits, and
// characters of their code page; dates exist. What is refused nevertheless is found when the packet is made.
#pragma once

#include <string_view>

#include "tools/sample_plan.h"
#include "tools/sample_random.h"

namespace murv::tool
{

enum E_SampleSize
{
    SZ_any,
    SZ_empty,  // texts without bytes, arrays without elements, where they may
    SZ_some,   // at least one of them
};

/// How wild a sample is.
struct tSampleStyle
{
    unsigned int m_uiOptional = 50;   // percent of optional parts that are there
    std::uint64_t m_ullElements = 3;  // of an array, at most
    E_SampleSize m_eSize = SZ_any;
    bool m_bPlain = false;  // small numbers, short texts of letters and digits
};

/// A value for a leaf; null, a number, a text, or a field set of small numbers.
/// \param marks  bytes that texts avoid
CFields makeSampleValue(const tSamplePart& part, std::string_view marks, const tSampleStyle& style,
                        CSampleRandom& random);

/// A value that is wished for, as the leaf takes it.
CFields sampleValue4Text(const tSamplePart& part, const std::string& text);

/// The value of a literal, as far as its bytes show it: a number in bytes is tried in one byte order or the other.
CFields sampleLiteral(const tSamplePart& part, CSampleRandom& random);

/// A date or time in the letters of a keyword or of "valid date": YYMMDD, hh:mm. Empty when they are none.
std::string sampleDate(std::string_view letters, CSampleRandom& random);

}  // namespace murv::tool
