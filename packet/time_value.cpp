// packet/time_value.cpp - date and time keywords as numbers and back.
//
// Composite keywords are sequences of parts from the keyword table; ranges are tested part by part.
#include "packet/time_value.h"

namespace murv::detail
{

namespace
{

constexpr int s_cnFebruary = 2;
constexpr int s_caiDays[] = {0, 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

unsigned long long scale4(const tTimePart& part)
{
    unsigned long long scale = 1;
    for (std::size_t i = 0; i < part.m_strvLetters.size(); ++i)
        scale *= 10;
    return scale;
}

/// Takes the last decimal places off a number. Their counts are written out, as dividing by a constant is faster: by a
/// variable, checking a time takes 1.3 times as long.
unsigned long long takeLast(unsigned long long& number, std::size_t places)
{
    const unsigned long long before = number;
    switch (places)
    {
    case 2: number /= 100; return before - number * 100;
    case 3: number /= 1000; return before - number * 1000;
    default: number /= 10000; return before - number * 10000;
    }
}

bool isLeapYear(int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

/// Of a year without century, 00 may be a leap year.
int daysInMonth(const tClockReading& reading, bool yearKnown, bool centuryKnown)
{
    if (reading.m_iMonth != s_cnFebruary || !yearKnown)
        return s_caiDays[reading.m_iMonth];
    const bool leap = centuryKnown ? isLeapYear(reading.m_iYear) : reading.m_iYear % 4 == 0;
    return leap ? 29 : 28;
}

}  // namespace

unsigned long long makeTimeValue(const tKeywordRow& row, const tClockReading& reading)
{
    unsigned long long number = 0;
    const tTimeParts& parts = s_ctTimeParts4Keyword[row.m_usIndex];
    for (std::size_t i = 0; i < parts.m_nCount; ++i)
    {
        const tTimePart& part = *parts.m_pPart[i];
        const int value = reading.*part.m_pValue;
        number =
            number * scale4(part) + static_cast<unsigned long long>(part.m_iModulo ? value % part.m_iModulo : value);
    }
    return number;
}

bool isTimeValue(const tKeywordRow& row, unsigned long long number)
{
    return isTimeValue(s_ctTimeParts4Keyword[row.m_usIndex], number);
}

bool isTimeValue(const tTimeParts& parts, unsigned long long number)
{
    tClockReading reading;
    bool yearKnown = false;
    bool centuryKnown = false;
    for (std::size_t i = parts.m_nCount; i-- > 0;)
    {
        const tTimePart& part = *parts.m_pPart[i];
        const unsigned long long value = i == 0 ? number : takeLast(number, part.m_strvLetters.size());
        if (value > static_cast<unsigned long long>(part.m_iMax) || static_cast<int>(value) < part.m_iMin)
            return false;
        reading.*part.m_pValue = static_cast<int>(value);
        yearKnown = yearKnown || part.m_pValue == &tClockReading::m_iYear;
        centuryKnown = centuryKnown || (part.m_pValue == &tClockReading::m_iYear && part.m_iModulo == 0);
    }
    return reading.m_iMonth == 0 || reading.m_iDay <= daysInMonth(reading, yearKnown, centuryKnown);
}

}  // namespace murv::detail
