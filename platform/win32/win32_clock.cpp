#include "platform/win32/win32_clock.h"

#include <windows.h>

#include <map>
#include <mutex>
#include <optional>
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

}  // namespace

// The user's time zone. Asking the system for its rules takes dozens of calls, under Wine more than
// reading a small file does, and a backup asks for each file; so an answer counts for a second.
class Win32Clock::Zone {
  public:
    // By the rules in force in the year of that date, not by today's.
    SYSTEMTIME LocalFields(const SYSTEMTIME& utc) {
        const auto rules = RulesOf(utc.wYear);
        SYSTEMTIME local{};
        return rules && SystemTimeToTzSpecificLocalTime(&*rules, &utc, &local) ? local : utc;
    }

  private:
    static constexpr ULONGLONG kFresh = 1000;  // milliseconds
    using Rules = std::optional<TIME_ZONE_INFORMATION>;

    Rules RulesOf(WORD year) {
        const std::lock_guard lock(mutex_);
        const ULONGLONG now = GetTickCount64();
        if (now - asked_at_ >= kFresh) {
            rules_.clear();
            asked_at_ = now;
        }
        const auto known = rules_.find(year);
        return known != rules_.end() ? known->second : rules_[year] = Ask(year);
    }

    static Rules Ask(WORD year) {
        DYNAMIC_TIME_ZONE_INFORMATION zone{};
        TIME_ZONE_INFORMATION rules{};
        if (GetDynamicTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID ||
            !GetTimeZoneInformationForYear(year, &zone, &rules)) {
            return std::nullopt;
        }
        return rules;
    }

    std::mutex mutex_;
    ULONGLONG asked_at_ = 0;
    std::map<WORD, Rules> rules_;
};

Win32Clock::Win32Clock() : zone_(std::make_unique<Zone>()) {}
Win32Clock::~Win32Clock() = default;

LocalTime Win32Clock::Now() { return ToLocal(UtcNow()); }

Ticks Win32Clock::UtcNow() {
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return Joined(now);
}

LocalTime Win32Clock::ToLocal(Ticks utc) {
    const SYSTEMTIME local = zone_->LocalFields(UtcFields(utc));
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
