#include "progress/run_estimate.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

namespace {

// All in seconds. Speed and remaining time remember so much of the past: the first follows what the
// disk does now, the second must not jump when a folder of small files comes.
constexpr double kSpeedMemory = 3;
constexpr double kCostMemory = 20;
// The prediction follows a new rate with this delay.
constexpr double kSmoothing = 3;
// A prediction needs samples of so much time, and so much of the work or of time.
constexpr double kMinMeasured = 2;
constexpr double kEnoughMeasured = 15;
constexpr double kMinShare = 0.02;
// After so long without progress nothing is known about the end.
constexpr double kMaxIdle = 5;
// A speed from less would be that of the first buffer.
constexpr double kMinForSpeed = 1;

double Seconds(RunEstimate::Time time) { return static_cast<double>(time.count()) / 1000; }

}  // namespace

// The mean of the past, weighted by e^(-age / memory). Until as much as `memory` has passed it is
// nearly the plain mean, so it needs no special beginning.
void RunEstimate::Rate::Add(double more, double elapsed, double memory) {
    const double fade = std::exp(-elapsed / memory);
    amount = amount * fade + more;
    seconds = seconds * fade + elapsed;
}

void RunEstimate::Start(Time now) {
    *this = RunEstimate();
    started_ = now;
}

void RunEstimate::Pause(Time now) {
    pausing_ = true;
    paused_at_ = now;
}

// What other threads did during the pause took no time that counts: measure and predict anew from
// the next sample.
void RunEstimate::Resume(Time now) {
    pausing_ = false;
    paused_ += now - paused_at_;
    measuring_ = false;
    predicted_ = false;
}

RunEstimate::Time RunEstimate::Worked(Time now) const {
    return (pausing_ ? paused_at_ : now) - started_ - paused_;
}

void RunEstimate::Add(Time now, const zip::RunFigures& figures) {
    if (figures.CostTotal() <= 0) {
        return;
    }
    const double elapsed = Seconds(now - last_);
    if (measuring_ && elapsed > 0) {
        Measure(elapsed, figures);
        Predict(elapsed, figures);
    }
    if (!measuring_ || elapsed > 0) {
        measuring_ = true;
        last_ = now;
        last_bytes_ = figures.bytes_done;
        last_cost_ = figures.CostDone();
    }
}

void RunEstimate::Measure(double elapsed, const zip::RunFigures& figures) {
    const double cost = std::max(figures.CostDone() - last_cost_, 0.0);
    const std::uint64_t bytes = figures.bytes_done - std::min(last_bytes_, figures.bytes_done);
    bytes_.Add(static_cast<double>(bytes), elapsed, kSpeedMemory);
    cost_.Add(cost, elapsed, kCostMemory);
    measured_ += elapsed;
    idle_ = cost > 0 ? 0 : idle_ + elapsed;
    share_ = figures.CostDone() / figures.CostTotal();
}

// The prediction counts down with the clock and turns slowly towards what the rate says.
void RunEstimate::Predict(double elapsed, const zip::RunFigures& figures) {
    const double rate = cost_.PerSecond();
    if (measured_ < kMinMeasured || rate <= 0) {
        return;
    }
    const double fresh = std::max(figures.CostTotal() - figures.CostDone(), 0.0) / rate;
    const double expected = predicted_ ? std::max(remaining_ - elapsed, 0.0) : fresh;
    remaining_ = expected + (fresh - expected) * (1 - std::exp(-elapsed / kSmoothing));
    predicted_ = true;
}

std::uint64_t RunEstimate::Speed() const {
    return measured_ < kMinForSpeed ? 0 : static_cast<std::uint64_t>(bytes_.PerSecond());
}

std::optional<RunEstimate::Time> RunEstimate::Remaining() const {
    const bool enough = share_ >= kMinShare || measured_ >= kEnoughMeasured;
    if (!predicted_ || !enough || idle_ > kMaxIdle) {
        return std::nullopt;
    }
    return Time(std::llround(remaining_ * 1000));
}

}  // namespace vantrel
