// The system's clock, in the user's time zone.
#pragma once

#include <memory>

#include "platform/machine.h"

namespace vantrel::platform {

class Win32Clock final : public Clock {
  public:
    Win32Clock();
    ~Win32Clock() override;
    LocalTime Now() override;
    Ticks UtcNow() override;
    LocalTime ToLocal(Ticks utc) override;
    std::uint64_t Milliseconds() override;
    void Sleep(std::chrono::milliseconds time) override;
    void Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
              std::chrono::milliseconds time) override;

  private:
    class Zone;
    std::unique_ptr<Zone> zone_;
};

}  // namespace vantrel::platform
