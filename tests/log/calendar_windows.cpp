#include "tests/log/calendar.h"

#include "tests/support/importedcall_windows.h"

#include <atomic>

#include <qt_windows.h>

namespace {

std::atomic<int> daysAhead = 0;

decltype(GetSystemTime) *systemsTime = nullptr;
decltype(GetLocalTime) *systemsLocalTime = nullptr;

void turn(SYSTEMTIME *time)
{
    constexpr qint64 day = 24LL * 3600 * 10'000'000; // in the file time's unit of 100 ns
    FILETIME parts;
    SystemTimeToFileTime(time, &parts);
    ULARGE_INTEGER count;
    count.LowPart = parts.dwLowDateTime;
    count.HighPart = parts.dwHighDateTime;
    count.QuadPart = static_cast<quint64>(static_cast<qint64>(count.QuadPart) + daysAhead * day);
    parts = {count.LowPart, count.HighPart};
    FileTimeToSystemTime(&parts, time);
}

void WINAPI turnedTime(SYSTEMTIME *time)
{
    systemsTime(time);
    turn(time);
}

void WINAPI turnedLocalTime(SYSTEMTIME *time)
{
    systemsLocalTime(time);
    turn(time);
}

} // namespace

void turnCalendar(int days)
{
    static const ImportedCall time("GetSystemTime", &turnedTime, systemsTime);
    static const ImportedCall localTime("GetLocalTime", &turnedLocalTime, systemsLocalTime);
    daysAhead = days;
}
