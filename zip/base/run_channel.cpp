#include "zip/base/run_channel.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "common/display_text.h"
#include "zip/base/stoppable_wait.h"

namespace vantrel::zip {

namespace {

// Longest time between two events, and so between the user's cancel and its effect.
constexpr std::chrono::milliseconds kTick{50};
// Messages that may wait to be raised; a longer queue would let memory grow with the number of
// files.
constexpr std::size_t kMostMessages = 8192;
// So many waiting messages wake the caller's thread before its tick is over.
constexpr std::size_t kManyMessages = kMostMessages / 2;
// Messages raised between two progress events when many are waiting.
constexpr std::size_t kMessagesPerEvent = 256;

}  // namespace

std::string Sentence(const std::string& what, const std::string& path, const Error& error) {
    const std::string reason = " (" + error.description() + ").";
    return EscapeControls(path.empty() ? what + reason : what + ": " + path + reason);
}

struct RunChannel::Turn {
    std::vector<ComponentMessage> messages;
    std::optional<std::string> question;
    bool last_event = false;
    bool finished = false;
};

RunOutcome RunChannel::Run(platform::Clock& clock, RunEvents& events,
                           const std::function<void()>& body) {
    wants_each_file_ = events.WantsEachFile();
    std::thread background([this, &body] {
        FailOnError(body);
        const std::lock_guard lock(mutex_);
        finished_ = true;
        caller_.notify_one();
    });
    std::exception_ptr thrown;
    for (bool over = false; !over;) {
        Turn turn = NextTurn(clock);
        over = turn.finished;
        if (thrown) {
            continue;
        }
        try {
            Serve(events, turn);
        } catch (...) {
            thrown = std::current_exception();
            Cancel();
        }
    }
    background.join();
    if (thrown) {
        std::rethrow_exception(thrown);
    }
    const RunOutcome outcome = Outcome();
    if (outcome == RunOutcome::kFailed) {
        events.Told({MessageKind::kError, failure_->number, 0, failure_->path, failure_->text, 0});
    }
    return outcome;
}

void RunChannel::FailOnError(const std::function<void()>& body) {
    try {
        body();
    } catch (const RunStopped&) {
        // The reason is known already.
    } catch (const Error& error) {
        Fail({error.number(), "", error.description()});
    } catch (const std::exception& error) {
        Fail({error_number::kOutOfMemory, "", error.what()});
    }
}

RunOutcome RunChannel::Outcome() {
    const std::lock_guard lock(mutex_);
    return failure_     ? RunOutcome::kFailed
           : cancelled_ ? RunOutcome::kCancelled
                        : RunOutcome::kComplete;
}

void RunChannel::CheckStop() const {
    if (stop_.stop_requested()) {
        throw RunStopped{};
    }
}

void RunChannel::Tell(ComponentMessage message) {
    message.text = EscapeControls(message.text);
    std::unique_lock lock(mutex_);
    WaitUntil(background_, lock, Token(), [this] { return messages_.size() < kMostMessages; });
    messages_.push_back(std::move(message));
    if (messages_.size() == kManyMessages) {
        caller_.notify_one();
    }
}

void RunChannel::RetryOrStop(const StepFailure& failure) {
    const std::lock_guard one_at_a_time(asking_);
    CheckStop();
    std::unique_lock lock(mutex_);
    question_ = failure.text;
    answer_.reset();
    caller_.notify_one();
    WaitUntil(background_, lock, Token(), [this] { return answer_.has_value(); });
    const std::optional<Answer> answer = std::exchange(answer_, std::nullopt);
    question_.reset();
    lock.unlock();
    if (answer == Answer::kNobody) {
        const std::string& unattended = failure.text_unattended;
        Fail({failure.number, failure.path, unattended.empty() ? failure.text : unattended, {}});
    }
    if (answer != Answer::kRetry) {
        throw RunStopped{};
    }
}

void RunChannel::RaiseLastEvent() {
    std::unique_lock lock(mutex_);
    last_event_ = LastEvent::kWanted;
    caller_.notify_one();
    WaitUntil(background_, lock, Token(), [this] { return last_event_ == LastEvent::kRaised; });
    lock.unlock();
    CheckStop();
}

void RunChannel::Fail(const StepFailure& failure) {
    {
        const std::lock_guard lock(mutex_);
        if (!failure_ && !cancelled_) {
            failure_ = failure;
        }
    }
    stop_.request_stop();
}

void RunChannel::Cancel() {
    {
        const std::lock_guard lock(mutex_);
        cancelled_ = true;
    }
    stop_.request_stop();
}

RunChannel::Turn RunChannel::NextTurn(platform::Clock& clock) {
    std::unique_lock lock(mutex_);
    const bool answered = answer_.has_value();
    const bool wanted = last_event_ == LastEvent::kWanted;
    if (messages_.empty() && (!question_ || answered) && !wanted && !finished_) {
        clock.Wait(caller_, lock, kTick);
    }
    Turn turn;
    turn.messages.swap(messages_);
    if (!answer_) {
        turn.question = question_;
    }
    turn.last_event = last_event_ == LastEvent::kWanted;
    turn.finished = finished_;
    background_.notify_all();
    return turn;
}

void RunChannel::Serve(RunEvents& events, Turn& turn) {
    std::size_t raised = 0;
    for (const ComponentMessage& message : turn.messages) {
        events.Told(message);
        if (++raised % kMessagesPerEvent == 0) {
            RaiseProgress(events);
        }
    }
    if (turn.finished) {
        return;
    }
    if (turn.last_event) {
        RaiseLast(events);
    } else {
        RaiseProgress(events);
    }
    if (turn.question) {
        AnswerQuestion(events, *turn.question);
    }
}

int RunChannel::Percent() const {
    const std::uint64_t total = total_;
    const std::uint64_t done = std::min<std::uint64_t>(done_, total);
    // 100 is the last event's; in floating point because the product may not fit into 64 bits.
    const double share = total == 0 ? 0 : static_cast<double>(done) / static_cast<double>(total);
    return std::min(static_cast<int>(share * 100), 99);
}

void RunChannel::RaiseProgress(RunEvents& events) {
    if (silent_) {
        return;
    }
    events.OfFile(file_percent_);
    RaiseOverall(events, Percent());
}

void RunChannel::RaiseOverall(RunEvents& events, int percent) {
    shown_percent_ = std::max(shown_percent_, percent);
    bool cancel = false;
    events.Overall(shown_percent_, cancel);
    if (cancel) {
        Cancel();
    }
}

void RunChannel::RaiseLast(RunEvents& events) {
    events.OfFile(100);
    RaiseOverall(events, 100);
    silent_ = true;
    const std::lock_guard lock(mutex_);
    last_event_ = LastEvent::kRaised;
    background_.notify_all();
}

// A run that is to stop asks nothing: a step may fail just before its thread notices the cancel.
void RunChannel::AnswerQuestion(RunEvents& events, const std::string& text) {
    const Answer answer = stop_.stop_requested() ? Answer::kCancel : Ask(events, text);
    const std::lock_guard lock(mutex_);
    answer_ = answer;
    background_.notify_all();
}

RunChannel::Answer RunChannel::Ask(RunEvents& events, const std::string& text) {
    Questions* const questions = events.Answers();
    if (questions == nullptr) {
        return Answer::kNobody;
    }
    if (questions->AskRetry(text)) {
        return Answer::kRetry;
    }
    RaiseOverall(events, shown_percent_);
    Cancel();
    return Answer::kCancel;
}

}  // namespace vantrel::zip
