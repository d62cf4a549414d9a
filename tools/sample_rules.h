// tools/sample_rules.h - what the rules of a part say about the data that it takes.
//
// The layout is compiled, so its rules are well-formed; only what random data depends on is read here.
#pragma once

#include <string>
#include <vector>

#include "murv/layout.h"

namespace murv::tool
{

/// Words about values.
enum E_SampleWord : unsigned int
{
    SW_none = 0,
    SW_signed = 1U << 0U,
    SW_float = 1U << 1U,
    SW_octal = 1U << 2U,
    SW_hex = 1U << 3U,
    SW_packed = 1U << 4U,
    SW_bcd = 1U << 5U,
    SW_zoned = 1U << 6U,
    SW_trailing = 1U << 7U,
    SW_exact = 1U << 8U,
    SW_blankNull = 1U << 9U,
    SW_zeroNull = 1U << 10U,
    SW_padBlank = 1U << 11U,
    SW_padZero = 1U << 12U,
    SW_left = 1U << 13U,
    SW_right = 1U << 14U,
    SW_keep = 1U << 15U,
    SW_raw = 1U << 16U,
    SW_ascii = 1U << 17U,
    SW_page = 1U << 18U,  // a code page of 256 characters
    SW_size = 1U << 19U,  // says the size or count of another part
    SW_bits = 1U << 20U,  // says which parts are there
    SW_check = 1U << 21U,
    SW_total = 1U << 22U,
};

enum E_SampleCompare
{
    SC_equal,
    SC_differs,
    SC_atMost,
    SC_atLeast,
    SC_below,
    SC_above,
    SC_anyBit,
};

/// The comparison of a rule: `flags.alarm = 1 | 2`.
struct tSampleTest
{
    std::vector<std::string> m_vPath;  // empty: the element itself
    E_SampleCompare m_eCompare = SC_equal;
    std::vector<std::string> m_vValue;
};

/// Valid values; a single one is low and high.
struct tSampleRange
{
    std::string m_strLow;
    std::string m_strHigh;
};

struct tSampleRules
{
    unsigned int m_uiWords = SW_none;
    unsigned int m_uiDecimals = 0;
    bool m_bPoint = false;    // is written
    std::size_t m_nTail = 0;  // bytes after the digits
    std::vector<tSampleTest> m_vIf;
    std::vector<tSampleTest> m_vUntil;    // one at most
    std::vector<std::string> m_vChooser;  // path of what chooses the part that is there
    std::string m_strElse;
    std::vector<tSampleRange> m_vValid;
    std::string m_strValidDate;
    std::string m_strMarks;  // all bytes of marks
    bool m_bOptional = false;
};

inline constexpr unsigned int s_cuiSamplePages = SW_ascii | SW_page | SW_raw;

/// The rules of a part; those of its array included when it is a leaf, but not what it inherits from further out.
tSampleRules sampleRules(const CLayout& layout, unsigned int part);

}  // namespace murv::tool
