#include "platform/win32/win32_clock.h"

#include <windows.h>

#include <thread>

namespace vantrel::platform {

namespace {

Ticks Joined(const FILETIME& time) {
    return (static_cast<Ticks>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

SYSTEMTIME UtcFields(Ticks utc) {
    const FILETIME time{static_cast<DWORD>(utc), static_cast<DWORD>(utc >> 32)};
    SYSTEMTIME fields{};
    if (FileTimeToSystemTime(&time, &fields)) return fields;
    return UtcFields(0);  // beyond the calendar: its first day
}

// By the rules in force in the year of that date, not by today's.
SYSTEMTIME LocalFields(SYSTEMTIME utc) {
    DYNAMIC_TIME_ZONE_INFORMATION zone{};
    TIME_ZONE_INFORMATION rules{};
    SYSTEMTIME local{};
    if (GetDynamicTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID ||
        !GetTimeZoneInformationForYear(utc.wYear, &zone, &rules) ||
        !SystemTimeToTzSpecificLocalTime(&rules, &utc, &local)) {
        return utc;
    }
    return local;
}

}  // namespace

LocalTime Win32Clock::Now() { return ToLocal(UtcNow()); }

Ticks Win32Clock::UtcNow() {
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return Joined(now);
}

LocalTime Win32Clock::ToLocal(Ticks utc) {
    const SYSTEMTIME local = LocalFields(UtcFields(utc));
    return {local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond};
}

std::uint64_t Win32Clock::Milliseconds() {
    LARGE_INTEGER frequency{}, count{};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    const auto whole = static_cast<std::uint64_t>(count.QuadPart / frequency.QuadPart);
    const auto rest = static_cast<std::uint64_t>(count.QuadPart % frequency.QuadPart);
    return whole * 1000 + rest * 1000 / static_cast<std::uint64_t>(frequency.QuadPart);
}

void Win32Clock::Sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

void Win32Clock::Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
                      std::chrono::milliseconds time) {
    signal.wait_for(lock, time);
}

}  // namespace vantrel::platform
