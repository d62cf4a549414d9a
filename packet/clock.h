// packet/clock.h - the local time that date and time keywords are filled with.
//
// All of the library's clock readings go through here, so that tests can set the time.
#pragma once

namespace murv::detail
{

/// One reading of the clock.
struct tClockReading
{
    int m_iYear = 0;         // such as 2024
    int m_iMonth = 0;        // 1..12
    int m_iDay = 0;          // 1..31
    int m_iHour = 0;         // 0..23
    int m_iMinute = 0;       // 0..59
    int m_iSecond = 0;       // 0..60
    int m_iMillisecond = 0;  // 0..999
    int m_iDayOfYear = 0;    // 1..366
    int m_iDayOfWeek = 0;    // 0 (Sunday) .. 6
};

using tClockFP = tClockReading (*)();

/// The local time of the system; leaves errno alone.
tClockReading readClock();

/// Replaces the system's clock, for tests; null brings it back.
void setClock(tClockFP clock);

}  // namespace murv::detail
