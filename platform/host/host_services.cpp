#include "platform/host/host_services.h"

#include <sched.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "platform/host/host_info.h"

namespace vantrel::platform {

LocalTime HostClock::Now() {
    struct timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return ToLocal(TicksOf(now.tv_sec, static_cast<std::uint32_t>(now.tv_nsec)));
}

LocalTime HostClock::ToLocal(Ticks utc) {
    const time_t seconds = SecondsOf(utc);
    struct tm local {};
    ::localtime_r(&seconds, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
            local.tm_hour,        local.tm_min,     local.tm_sec};
}

std::optional<std::string> HostSettings::Read(const std::string& section, const std::string& key) {
    const std::lock_guard lock(mutex_);
    const auto found = values_.find({section, key});
    if (found == values_.end()) {
        return std::nullopt;
    }
    return found->second;
}

void HostSettings::Write(const std::string& section, const std::string& key,
                         const std::string& value) {
    const std::lock_guard lock(mutex_);
    values_[{section, key}] = value;
}

int HostProcess::Processors() {
    cpu_set_t allowed;
    // Fails when the computer has more processors than the set can hold.
    if (::sched_getaffinity(0, sizeof allowed, &allowed) == 0) {
        return CPU_COUNT(&allowed);
    }
    return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
}

void HostProcess::End(int exit_code) { ::_exit(exit_code); }

}  // namespace vantrel::platform
