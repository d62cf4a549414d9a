// tools/sample_dates.cpp - days that exist, and times of a day.
#include <algorithm>
#include <iterator>

#include "tools/sample_values.h"

namespace murv::tool
{

namespace
{
enum E_DatePart
{
    DP_year,
    DP_shortYear,
    DP_month,
    DP_day,
    DP_dayOfYear,
    DP_dayOfWeek,
    DP_hour,
    DP_minute,
    DP_second,
    DP_milli,
    DP_count,
};

struct tDateRow
{
    std::string_view m_strvLetters;
    E_DatePart m_ePart;
    std::uint64_t m_ullLeast;
    std::uint64_t m_ullMost;
};

// Longer letters come before those that begin them.
constexpr tDateRow s_ctRows[] = {
    {"YYYY", DP_year, 1900, 2099}, {"YY", DP_shortYear, 1, 99}, {"MM", DP_month, 1, 12}, {"DOY", DP_dayOfYear, 1, 366},
    {"DOW", DP_dayOfWeek, 0, 6},   {"DD", DP_day, 1, 31},       {"hh", DP_hour, 0, 23},  {"mm", DP_minute, 0, 59},
    {"SS", DP_second, 0, 59},      {"sss", DP_milli, 0, 999},
};

const tDateRow* row4Letters(std::string_view letters)
{
    const auto* const row = std::find_if(std::begin(s_ctRows), std::end(s_ctRows), [&](const tDateRow& at) {
        return letters.substr(0, at.m_strvLetters.size()) == at.m_strvLetters;
    });
    return row == std::end(s_ctRows) ? nullptr : row;
}

std::uint64_t daysOf(std::uint64_t month, std::uint64_t year)
{
    constexpr std::uint64_t days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = year != 0 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && isLeap ? 29 : days[month - 1];
}
}  // namespace

std::string sampleDate(std::string_view letters, CSampleRandom& random)
{
    std::uint64_t values[DP_count] = {};
    for (const tDateRow& row : s_ctRows)
    {
        const std::uint64_t edge = random.chance(50) ? row.m_ullLeast : row.m_ullMost;
        values[row.m_ePart] = random.chance(20) ? edge : random.between(row.m_ullLeast, row.m_ullMost);
    }
    if (letters.find("MM") != std::string_view::npos)
    {
        const bool hasLongYear = letters.find("YYYY") != std::string_view::npos;
        const bool hasYear = letters.find("YY") != std::string_view::npos;
        const std::uint64_t year = hasLongYear ? values[DP_year] : hasYear ? values[DP_shortYear] : 0;
        values[DP_day] = std::min(values[DP_day], daysOf(values[DP_month], year));
    }
    std::string text;
    bool isDate = false;
    while (!letters.empty())
    {
        const tDateRow* const row = row4Letters(letters);
        if (row == nullptr)
        {
            text += letters.front();
            letters.remove_prefix(1);
            continue;
        }
        isDate = true;
        const std::string digits = std::to_string(values[row->m_ePart]);
        text += std::string(row->m_strvLetters.size() - digits.size(), '0') + digits;
        letters.remove_prefix(row->m_strvLetters.size());
    }
    return isDate ? text : std::string();
}

}  // namespace murv::tool
