// Between the caller's thread, which raises events and does nothing that can block, and the
// background threads, which do the work: progress, messages, questions, cancel and the end.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "common/error.h"
#include "platform/machine.h"
#include "zip/base/component_events.h"

namespace vantrel::zip {

// Receives the events of a run, on the caller's thread. What a member throws ends the run and comes
// out of RunChannel::Run.
class RunEvents {
  public:
    virtual ~RunEvents() = default;
    // `percent` 0 to 100, never less than before. Setting `cancel` stops the run.
    virtual void Overall(int percent, bool& cancel) = 0;
    virtual void OfFile(int percent) = 0;
    virtual void Told(const ComponentMessage& message) = 0;
    // Whether each file is to be told of; otherwise only what went wrong is.
    virtual bool WantsEachFile() const { return true; }
    // Who answers questions; nullptr when nobody is there.
    virtual Questions* Answers() = 0;
};

enum class RunOutcome { kComplete, kCancelled, kFailed };

// Why a step without which there is no correct result did not work.
struct StepFailure {
    int number = 0;  // run-time error number
    std::string path;
    std::string text;  // for the user
    // What is said instead when nobody is there to be asked; "" is `text`.
    std::string text_unattended{};
};

// Unwinds a background thread when the run was cancelled or has failed; never leaves the engine.
struct RunStopped {};

// "What could not be done: PATH (reason).", with control characters made visible.
std::string Sentence(const std::string& what, const std::string& path, const Error& error);

class RunChannel {
  public:
    // Runs `body` on a thread of its own and raises events until it is over, at least every 50 ms.
    // A failed run has raised an error message at its end.
    RunOutcome Run(platform::Clock& clock, RunEvents& events, const std::function<void()>& body);

    // --- for background threads ---

    std::stop_token Token() const { return stop_.get_token(); }
    // Throws RunStopped when the run is to end.
    void CheckStop() const;

    // Hands a message over, its text with control characters made visible: a line break in a name
    // must not begin a new line of a log. Waits while thousands of messages are waiting to be
    // raised.
    void Tell(ComponentMessage message);

    // Asks whether to try again. Returns when it shall be tried; throws RunStopped otherwise
    // (nobody is there: the run has failed; the answer was no: it is cancelled). Of a run that is
    // cancelled already nothing is asked.
    void RetryOrStop(const StepFailure& failure);

    // Ends the run for a reason that no second try can mend.
    void Fail(const StepFailure& failure);

    // Whether anybody listens to what is said of each file.
    bool WantsEachFile() const { return wants_each_file_; }

    // Runs `body` to its end on this thread; an error that it throws fails the run. Throws nothing.
    void FailOnError(const std::function<void()>& body);

    void SetTotal(std::uint64_t bytes) { total_ = bytes; }
    // More of the total is done; an excess over it (a file that grew) is harmless.
    void AddDone(std::uint64_t bytes) { done_ += bytes; }
    void SetFilePercent(int percent) { file_percent_ = percent; }

    // Raises the last overall-progress event, 100, and waits until it has been raised. Throws
    // RunStopped when it hands a cancel over.
    void RaiseLastEvent();

  private:
    enum class Answer { kRetry, kCancel, kNobody };
    enum class LastEvent { kNotYet, kWanted, kRaised };
    struct Turn;  // what one round of the caller's loop has to do

    void Cancel();
    Turn NextTurn(platform::Clock& clock);
    void Serve(RunEvents& events, Turn& turn);
    void RaiseProgress(RunEvents& events);
    void RaiseOverall(RunEvents& events, int percent);
    void RaiseLast(RunEvents& events);
    void AnswerQuestion(RunEvents& events, const std::string& text);
    Answer Ask(RunEvents& events, const std::string& text);
    int Percent() const;
    RunOutcome Outcome();

    std::stop_source stop_;
    bool wants_each_file_ = true;  // from before the background thread begins
    std::atomic<std::uint64_t> total_{0};
    std::atomic<std::uint64_t> done_{0};
    std::atomic<int> file_percent_{0};

    std::mutex mutex_;  // guards what follows
    std::condition_variable caller_;
    std::condition_variable background_;
    std::vector<ComponentMessage> messages_;
    std::optional<std::string> question_;
    std::optional<Answer> answer_;
    LastEvent last_event_ = LastEvent::kNotYet;
    bool finished_ = false;
    bool cancelled_ = false;
    std::optional<StepFailure> failure_;

    std::mutex asking_;  // one question at a time

    // Of the caller's thread alone.
    int shown_percent_ = 0;
    bool silent_ = false;  // the last event has been raised, or an event handler threw
};

// Runs `step` until it works; between tries asks whether to go on. `failure` makes the question, a
// StepFailure, from the error.
template <typename Describe, typename Step>
auto UntilItWorks(RunChannel& channel, Describe&& failure, Step&& step) -> decltype(step()) {
    for (;;) {
        try {
            return step();
        } catch (const Error& error) {
            channel.RetryOrStop(failure(error));
        }
    }
}

// The usual question: `what` says what could not be done with `path`.
inline auto Cannot(std::string what, std::string path) {
    return [what = std::move(what), path = std::move(path)](const Error& error) {
        return StepFailure{error.number(), path, Sentence(what, path, error)};
    };
}

}  // namespace vantrel::zip
