#include <atomic>
#include <chrono>

#include "tests/support/test_machine.h"

namespace vantrel::test {

namespace {

using namespace std::chrono;

constexpr platform::Ticks kTicksPerSecond = 10'000'000;
constexpr platform::Ticks kTicksPerMillisecond = 10'000;
constexpr sys_days kFirstDay = year{1601} / January / 1;

platform::Ticks TicksAt(int year_number, int month_number, int day_number, int hour, int minute,
                        int second) {
    const sys_days date = year{year_number} / month{static_cast<unsigned>(month_number)} /
                          day{static_cast<unsigned>(day_number)};
    const seconds since = (date - kFirstDay) + hours{hour} + minutes{minute} + seconds{second};
    return static_cast<platform::Ticks>(since.count()) * kTicksPerSecond;
}

}  // namespace

struct TestClock::State {
    mutable std::mutex mutex;
    platform::Ticks now = TicksAt(2026, 11, 15, 13, 5, 9);
    std::vector<std::chrono::milliseconds> waits;
};

TestClock::TestClock() : state_(std::make_unique<State>()) {}

TestClock::~TestClock() = default;

void TestClock::Set(int year, int month, int day, int hour, int minute, int second) {
    const std::lock_guard lock(state_->mutex);
    state_->now = TicksAt(year, month, day, hour, minute, second);
}

void TestClock::Advance(std::chrono::milliseconds time) {
    const std::lock_guard lock(state_->mutex);
    state_->now += static_cast<std::uint64_t>(time.count()) * kTicksPerMillisecond;
}

platform::LocalTime TestClock::Now() { return ToLocal(UtcNow()); }

platform::Ticks TestClock::UtcNow() {
    const std::lock_guard lock(state_->mutex);
    return state_->now;
}

platform::LocalTime TestClock::ToLocal(platform::Ticks utc) {
    const seconds since{static_cast<std::int64_t>(utc / kTicksPerSecond)};
    const sys_days date = kFirstDay + floor<days>(since);
    const year_month_day calendar{date};
    const hh_mm_ss time{since - floor<days>(since)};
    return {static_cast<int>(calendar.year()),
            static_cast<int>(static_cast<unsigned>(calendar.month())),
            static_cast<int>(static_cast<unsigned>(calendar.day())),
            static_cast<int>(time.hours().count()),
            static_cast<int>(time.minutes().count()),
            static_cast<int>(time.seconds().count())};
}

std::chrono::milliseconds TestClock::SteadyNow() {
    return milliseconds(static_cast<std::int64_t>(UtcNow() / kTicksPerMillisecond));
}

void TestClock::Sleep(std::chrono::milliseconds time) { Advance(time); }

void TestClock::Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
                     std::chrono::milliseconds time) {
    constexpr std::chrono::milliseconds kMoment{1};
    {
        const std::lock_guard state_lock(state_->mutex);
        state_->waits.push_back(time);
    }
    signal.wait_for(lock, std::min(time, kMoment));
    Advance(time);
}

std::vector<std::chrono::milliseconds> TestClock::Waits() const {
    const std::lock_guard lock(state_->mutex);
    return state_->waits;
}

}  // namespace vantrel::test
