// The host's clocks, in the host's time zone.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

class HostClock : public Clock {
  public:
    LocalTime Now() override;
    Ticks UtcNow() override;
    LocalTime ToLocal(Ticks utc) override;
    std::uint64_t Milliseconds() override;
    void Sleep(std::chrono::milliseconds time) override;
    void Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
              std::chrono::milliseconds time) override;
};

}  // namespace vantrel::platform
