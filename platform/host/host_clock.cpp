#include "platform/host/host_clock.h"

#include <time.h>

#include <thread>

#include "platform/host/host_info.h"

namespace vantrel::platform {

LocalTime HostClock::Now() { return ToLocal(UtcNow()); }

Ticks HostClock::UtcNow() {
    struct timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return TicksOf(now.tv_sec, static_cast<std::uint32_t>(now.tv_nsec));
}

LocalTime HostClock::ToLocal(Ticks utc) {
    const time_t seconds = SecondsOf(utc);
    struct tm local {};
    ::localtime_r(&seconds, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
            local.tm_hour,        local.tm_min,     local.tm_sec};
}

std::uint64_t HostClock::Milliseconds() {
    struct timespec now {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000 +
           static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
}

void HostClock::Sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

void HostClock::Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
                     std::chrono::milliseconds time) {
    signal.wait_for(lock, time);
}

}  // namespace vantrel::platform
