// The link between the caller's thread, which raises events and does nothing that can block, and
// the background threads, which do the work: progress, messages, questions, cancel and the end.
//
// The caller's thread stays inside RunContext::Run for the whole run. It wakes every 50 ms, or when
// a background thread has a question or many messages; it raises what is pending, and the events
// may run a message loop. All other members are for background threads, which may be several.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/component_events.h"

namespace vantrel::zip {

// Unwinds a background thread when the run was cancelled or has failed; never leaves the engine.
struct RunStopped {};

// Waits on `condition` until `done()`, which is called with `lock` held; false when `stop` was
// requested and it is not done. Polls `stop`: libstdc++ 12 on Windows can lose a stop-callback
// wake-up in condition_variable_any, and hang.
template <typename Done>
bool WaitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
               const std::stop_token& stop, Done done) {
    constexpr std::chrono::milliseconds kPoll{20};
    while (!done()) {
        if (stop.stop_requested()) {
            return false;
        }
        condition.wait_for(lock, kPoll);
    }
    return true;
}

class RunContext {
  public:
    // `file_cost`: RunFigures::file_cost.
    explicit RunContext(std::uint64_t file_cost = 0) : file_cost_(file_cost) {}

    // Runs `body` on a thread of its own and raises events until it has ended, at least every
    // 50 ms. A failed run has raised an error message at its end.
    RunOutcome Run(platform::Clock& clock, RunEvents& events, const std::function<void()>& body);

    std::stop_token Token() const { return stop_.get_token(); }
    // Throws RunStopped when the run is to end.
    void CheckStop() const;

    // Queues a message, its text with control characters made visible: a line break in a name must
    // not begin a new line of a log. Blocks while many messages are queued.
    void Report(ComponentMessage message);

    // Asks whether to repeat a step that failed. Returns when it is to be repeated; throws
    // RunStopped otherwise: an unattended run has failed, with `unattended` as the text if it is
    // not ""; an attended one is cancelled. A run that is stopping asks nothing.
    void AskRetryOrStop(const ComponentMessage& failure, const std::string& unattended = "");
    // The same for a disk without which the run can continue: false when it is to do so.
    bool AskForDiskOrStop(const ComponentMessage& failure);

    // Ends the run for a reason that no retry can change. The first failure counts.
    void Fail(const ComponentMessage& failure);

    // Whether per-file messages are wanted; warnings and errors are always delivered.
    bool WantsEachFile() const { return wants_each_file_; }

    // Runs `body` to its end on this thread; an error that it throws fails the run. Throws nothing.
    void FailOnError(const std::function<void()>& body);

    // Figures of the run (RunFigures), sampled by the caller's thread. Adding allocates nothing.
    void SetFound(std::uint64_t files) { files_found_ = files; }
    void SetTotal(std::uint64_t files, std::uint64_t bytes);
    // Adds bytes of the file in progress; an excess over the total (a file that grew) is harmless.
    void AddDone(std::uint64_t bytes) { bytes_done_ += bytes; }
    void AddFile() { ++files_done_; }
    // A file of `size` bytes is missing in the result, of which `counted` were added before. The
    // message that reports it (ComponentMessage::left_out) counts the file.
    void LeaveOut(std::uint64_t size, std::uint64_t counted);
    void SetArchiveSize(std::uint64_t bytes) { archive_bytes_ = bytes; }
    // All files are done.
    void SetFinishing() { finishing_ = true; }
    // Forgets what was done: the run begins again.
    void RestartFigures();
    // Of the bytes of the run, 0 to 1; 0 while the total is unknown.
    double ShareDone() const;
    void SetFilePercent(int percent) { file_percent_ = percent; }

    // Raises the last overall-progress event, 100, and waits until it has been raised. Throws
    // RunStopped when that event cancels.
    void RaiseLastEvent();

  private:
    enum class Answer { kRetry, kContinue, kCancel, kUnattended };
    enum class LastEvent { kNotYet, kWanted, kRaised };
    struct PendingEvents;  // of one round of the caller's loop

    void Cancel();
    PendingEvents WaitForEvents(platform::Clock& clock);
    void Serve(RunEvents& events, PendingEvents& pending);
    void RaiseProgress(RunEvents& events);
    void RaiseOverall(RunEvents& events, int percent);
    void RaiseLast(RunEvents& events);
    bool AskOrStop(const ComponentMessage& failure, bool may_continue,
                   const std::string& unattended);
    void AnswerQuestion(RunEvents& events, const std::string& text, bool may_continue);
    Answer Ask(RunEvents& events, const std::string& text, bool may_continue);
    RunFigures Figures();
    RunOutcome Outcome();

    std::stop_source stop_;
    bool wants_each_file_ = true;  // set before the background thread starts
    const std::uint64_t file_cost_;
    std::atomic<std::uint64_t> files_found_{0};
    std::atomic<std::uint64_t> files_total_{0};
    std::atomic<std::uint64_t> bytes_total_{0};
    std::atomic<std::uint64_t> files_done_{0};
    std::atomic<std::uint64_t> bytes_done_{0};
    std::atomic<std::uint64_t> left_out_{0};
    std::atomic<std::uint64_t> bytes_left_out_{0};
    std::atomic<std::uint64_t> archive_bytes_{0};
    std::atomic<bool> finishing_{false};
    std::atomic<int> file_percent_{0};

    std::mutex mutex_;  // guards the members below
    std::condition_variable caller_;
    std::condition_variable background_;
    std::vector<ComponentMessage> messages_;
    std::optional<std::string> question_;
    std::uint32_t asked_disk_ = 0;  // of question_
    bool may_continue_ = false;     // of question_
    std::optional<Answer> answer_;
    LastEvent last_event_ = LastEvent::kNotYet;
    bool finished_ = false;
    bool cancelled_ = false;
    std::optional<ComponentMessage> failure_;

    std::mutex asking_;  // one question at a time

    // Used by the caller's thread only.
    int shown_percent_ = 0;
    bool silent_ = false;  // the last event has been raised, or an event handler threw
};

}  // namespace vantrel::zip
