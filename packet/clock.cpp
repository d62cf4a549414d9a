// packet/clock.cpp - the one clock of the time keywords.
//
// Tests set the reading through the seam; the library reads the local time nowhere else.
#include "packet/clock.h"

#include <cerrno>
#include <chrono>
#include <ctime>

namespace murv::detail
{

namespace
{

bool toLocal(std::time_t seconds, std::tm& local)
{
#if defined(_WIN32)
    return localtime_s(&local, &seconds) == 0;
#else
    return localtime_r(&seconds, &local) != nullptr;
#endif
}

tClockReading readSystemClock()
{
    using namespace std::chrono;
    const auto now = time_point_cast<milliseconds>(system_clock::now());
    const auto second = floor<seconds>(now);
    const int errorBefore = errno;
    std::tm local{};
    const bool known = toLocal(system_clock::to_time_t(second), local);
    errno = errorBefore;
    if (!known)
        return {};
    tClockReading reading;
    reading.m_iYear = local.tm_year + 1900;
    reading.m_iMonth = local.tm_mon + 1;
    reading.m_iDay = local.tm_mday;
    reading.m_iHour = local.tm_hour;
    reading.m_iMinute = local.tm_min;
    reading.m_iSecond = local.tm_sec;
    reading.m_iMillisecond = static_cast<int>((now - second).count());
    reading.m_iDayOfYear = local.tm_yday + 1;
    reading.m_iDayOfWeek = local.tm_wday;
    return reading;
}

tClockFP s_pClock = &readSystemClock;

}  // namespace

tClockReading readClock()
{
    return s_pClock();
}

void setClock(tClockFP clock)
{
    s_pClock = clock == nullptr ? &readSystemClock : clock;
}

}  // namespace murv::detail
