// packet/keyword_table.h - the internal supporting keywords and the parts of the time that they are made of.
//
// Text reader and writer, validation, filling and checking all use these rows. What a time keyword consists of is read
// off its name when the library is compiled.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "packet/clock.h"

namespace murv::detail
{

/// What a keyword does with its item.
enum E_KeywordRole : unsigned char
{
    KR_dual,  // compares the node's two values; the index is the value kind
    KR_size,  // announces a length (fixed or variable item), or takes it (item of run-time length)
    KR_time,  // is filled with the local time
};

/// A part of the time, in the letters that stand for it.
struct tTimePart
{
    std::string_view m_strvLetters;  // as many as the part has decimal places
    int tClockReading::*m_pValue;
    int m_iModulo;  // 0: the value as it is
    int m_iMin;
    int m_iMax;
};

/// Longer letters first, so that a name is split without looking ahead.
inline constexpr tTimePart s_ctTimeParts[] = {
    {"YYYY", &tClockReading::m_iYear, 0, 0, 9999},  {"DOY", &tClockReading::m_iDayOfYear, 0, 1, 366},
    {"DOW", &tClockReading::m_iDayOfWeek, 0, 0, 6}, {"sss", &tClockReading::m_iMillisecond, 0, 0, 999},
    {"YY", &tClockReading::m_iYear, 100, 0, 99},    {"MM", &tClockReading::m_iMonth, 0, 1, 12},
    {"DD", &tClockReading::m_iDay, 0, 1, 31},       {"hh", &tClockReading::m_iHour, 0, 0, 23},
    {"mm", &tClockReading::m_iMinute, 0, 0, 59},    {"SS", &tClockReading::m_iSecond, 0, 0, 60},
};

struct tKeywordRow
{
    unsigned short m_usIndex;
    const char* m_pName;
    E_KeywordRole m_eRole;

    constexpr std::string_view name() const
    {
        return m_pName;
    }
    /// The option is written directly after the name, and must not be 0.
    constexpr bool takesOption() const
    {
        return name().back() == '_';
    }
};

inline constexpr tKeywordRow s_ctKeywords[] = {
    {1, "fix", KR_dual},
    {2, "valid", KR_dual},
    {3, "sizedef_", KR_size},
    {4, "sizeset_", KR_size},
    {11, "DOY", KR_time},
    {12, "DOW", KR_time},
    {13, "YYYY", KR_time},
    {14, "YY", KR_time},
    {15, "MM", KR_time},
    {16, "DD", KR_time},
    {17, "hh", KR_time},
    {18, "mm", KR_time},
    {19, "SS", KR_time},
    {20, "sss", KR_time},
    {31, "YYYYMMDD", KR_time},
    {32, "YYMMDD", KR_time},
    {33, "hhmmSS", KR_time},
    {34, "hhmmSSsss", KR_time},
    {35, "YYMMDDhhmmSS", KR_time},
    {36, "YYMMDDhhmmSSsss", KR_time},
    {37, "YYYYMMDDhhmmSS", KR_time},
    {38, "YYYYMMDDhhmmSSsss", KR_time},
};

inline constexpr unsigned int s_cuiLastKeyword = 38;
inline constexpr unsigned int s_cuiLastKind = 15;

constexpr auto makeRow4Keyword()
{
    std::array<const tKeywordRow*, s_cuiLastKeyword + 1> rows{};
    for (const tKeywordRow& row : s_ctKeywords)
        rows[row.m_usIndex] = &row;
    return rows;
}

inline constexpr auto s_ctRow4Keyword = makeRow4Keyword();  // null for indexes that are reserved

/// The internal keyword of that index, or null.
constexpr const tKeywordRow* findKeyword(unsigned int index)
{
    return index <= s_cuiLastKeyword ? s_ctRow4Keyword[index] : nullptr;
}

/// The internal keyword of that name, or null; case counts.
constexpr const tKeywordRow* findKeyword(std::string_view name)
{
    for (const tKeywordRow& row : s_ctKeywords)
    {
        if (row.name() == name)
            return &row;
    }
    return nullptr;
}

/// Row of the part of the time that a name begins with; the number of rows for none.
constexpr std::size_t firstTimePart(std::string_view name)
{
    std::size_t row = 0;
    while (row < std::size(s_ctTimeParts) && !name.starts_with(s_ctTimeParts[row].m_strvLetters))
        ++row;
    return row;
}

inline constexpr std::size_t s_cnMostTimeParts = 7;

/// The parts that a time keyword consists of, in order.
struct tTimeParts
{
    const tTimePart* m_pPart[s_cnMostTimeParts] = {};
    std::size_t m_nCount = 0;
};

constexpr tTimeParts splitTimeName(std::string_view name)
{
    tTimeParts parts;
    for (std::size_t row = 0; !name.empty() && (row = firstTimePart(name)) < std::size(s_ctTimeParts);)
    {
        parts.m_pPart[parts.m_nCount++] = &s_ctTimeParts[row];
        name.remove_prefix(s_ctTimeParts[row].m_strvLetters.size());
    }
    return parts;
}

constexpr auto makeTimeParts4Keyword()
{
    std::array<tTimeParts, s_cuiLastKeyword + 1> parts{};
    for (const tKeywordRow& row : s_ctKeywords)
    {
        if (row.m_eRole == KR_time)
            parts[row.m_usIndex] = splitTimeName(row.name());
    }
    return parts;
}

inline constexpr auto s_ctTimeParts4Keyword = makeTimeParts4Keyword();

constexpr bool allTimeNamesAreUsedUp()
{
    for (const tKeywordRow& row : s_ctKeywords)
    {
        std::size_t letters = 0;
        const tTimeParts& parts = s_ctTimeParts4Keyword[row.m_usIndex];
        for (std::size_t i = 0; i < parts.m_nCount; ++i)
            letters += parts.m_pPart[i]->m_strvLetters.size();
        if (row.m_eRole == KR_time && letters != row.name().size())
            return false;
    }
    return true;
}

static_assert(allTimeNamesAreUsedUp(), "a time keyword has letters that mean no part of the time");
static_assert(findKeyword("YYYYMMDDhhmmSSsss")->m_usIndex == s_cuiLastKeyword);
static_assert(s_ctTimeParts4Keyword[38].m_nCount == s_cnMostTimeParts);

}  // namespace murv::detail
