// The times of a run: how long it has worked, how fast it is, and how long it will still take. All
// times are passed in (platform::Clock::SteadyNow), so that a test can replay a recorded clock.
// Allocates nothing. Window thread only.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "zip/base/component_events.h"

namespace vantrel {

class RunEstimate {
  public:
    using Time = std::chrono::milliseconds;

    // The run begins.
    void Start(Time now);
    // The time between these two does not count: a question waits for the user.
    void Pause(Time now);
    void Resume(Time now);
    // Takes a sample. Times never fall; samples at equal times are allowed.
    void Add(Time now, const zip::RunFigures& figures);

    // Time since Start without the pauses.
    Time Worked(Time now) const;
    // Bytes a second, 0 while unknown.
    std::uint64_t Speed() const;
    // Time to the end. Nothing while it would be a guess: in the first seconds, in the first
    // percents of the work, and when nothing has moved for some seconds.
    std::optional<Time> Remaining() const;

  private:
    // What was done in how many seconds, with older samples fading out.
    struct Rate {
        double amount = 0;
        double seconds = 0;
        void Add(double more, double elapsed, double memory);
        double PerSecond() const { return seconds > 0 ? amount / seconds : 0; }
    };

    void Measure(double elapsed, const zip::RunFigures& figures);
    void Predict(double elapsed, const zip::RunFigures& figures);

    Time started_{0};
    Time paused_at_{0};
    Time paused_{0};  // sum of all pauses
    bool pausing_ = false;

    bool measuring_ = false;  // `last_` is a sample to measure from
    Time last_{0};
    std::uint64_t last_bytes_ = 0;
    double last_cost_ = 0;
    Rate bytes_;
    Rate cost_;
    double measured_ = 0;  // seconds, of all samples
    double idle_ = 0;      // seconds since something moved
    double share_ = 0;     // of the work that is done, 0 to 1
    bool predicted_ = false;
    double remaining_ = 0;  // seconds, smoothed
};

}  // namespace vantrel
