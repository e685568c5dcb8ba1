// Waiting for other threads of a run, which ends when the run is to stop.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace vantrel::zip {

// Waits on `condition` until `done()`, which is asked with `lock` held; false when the run is to
// stop and it is not done. Nobody needs to tell `condition` of the stop, which is looked for
// instead. What the standard library has for that, std::condition_variable_any with a token, takes
// a call-back back in the end, and waits while that runs. With libstdc++ 12 on Windows the news
// that it has run can get lost, and then the wait never ends.
template <typename Done>
bool WaitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
               const std::stop_token& stop, Done done) {
    constexpr std::chrono::milliseconds kLook{20};
    while (!done()) {
        if (stop.stop_requested()) {
            return false;
        }
        condition.wait_for(lock, kLook);
    }
    return true;
}

}  // namespace vantrel::zip
