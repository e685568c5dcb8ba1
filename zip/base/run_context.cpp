#include "zip/base/run_context.h"

#include <algorithm>
#include <exception>
#include <thread>
#include <utility>

#include "common/display_text.h"

namespace vantrel::zip {

namespace {

// Longest time between two events, and so between the user's cancel and its effect.
constexpr std::chrono::milliseconds kTick{50};
// Queued messages. A window handles them more slowly than files are stored: with a longer queue the
// figures of the run would be thousands of files ahead of the newest message.
constexpr std::size_t kMaxMessages = 1024;
// This many queued messages wake the caller's thread before its tick ends.
constexpr std::size_t kManyMessages = kMaxMessages / 2;
// Messages raised between two progress events when many are queued.
constexpr std::size_t kMessagesPerEvent = 256;

}  // namespace

std::string FailureText(const std::string& what, const std::string& path, const Error& error) {
    const std::string reason = " (" + error.description() + ").";
    return EscapeControls(path.empty() ? what + reason : what + ": " + path + reason);
}

struct RunContext::PendingEvents {
    std::vector<ComponentMessage> messages;
    std::optional<std::string> question;
    bool may_continue = false;
    bool last_event = false;
    bool finished = false;
};

RunOutcome RunContext::Run(platform::Clock& clock, RunEvents& events,
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
        PendingEvents pending = WaitForEvents(clock);
        over = pending.finished;
        if (thrown) {
            continue;
        }
        try {
            Serve(events, pending);
        } catch (...) {
            thrown = std::current_exception();
            Cancel();
        }
    }
    background.join();
    if (thrown) {
        std::rethrow_exception(thrown);
    }
    events.OnFigures(Figures());
    const RunOutcome outcome = Outcome();
    if (outcome == RunOutcome::kFailed) {
        events.OnMessage(*failure_);
    }
    return outcome;
}

void RunContext::FailOnError(const std::function<void()>& body) {
    try {
        body();
    } catch (const RunStopped&) {
        // The reason is recorded already.
    } catch (const Error& error) {
        Fail(Failure(error.number(), "", error.description()));
    } catch (const std::exception& error) {
        Fail(Failure(error_number::kOutOfMemory, "", error.what()));
    }
}

RunOutcome RunContext::Outcome() {
    const std::lock_guard lock(mutex_);
    return failure_     ? RunOutcome::kFailed
           : cancelled_ ? RunOutcome::kCancelled
                        : RunOutcome::kComplete;
}

void RunContext::CheckStop() const {
    if (stop_.stop_requested()) {
        throw RunStopped{};
    }
}

void RunContext::Report(ComponentMessage message) {
    message.text = EscapeControls(message.text);
    left_out_ += message.left_out ? 1 : 0;
    std::unique_lock lock(mutex_);
    WaitUntil(background_, lock, Token(), [this] { return messages_.size() < kMaxMessages; });
    messages_.push_back(std::move(message));
    if (messages_.size() == kManyMessages) {
        caller_.notify_one();
    }
}

void RunContext::AskRetryOrStop(const ComponentMessage& failure, const std::string& unattended) {
    AskOrStop(failure, false, unattended);
}

bool RunContext::AskForDiskOrStop(const ComponentMessage& failure) {
    return AskOrStop(failure, true, "");
}

bool RunContext::AskOrStop(const ComponentMessage& failure, bool may_continue,
                           const std::string& unattended) {
    const std::lock_guard one_at_a_time(asking_);
    CheckStop();
    std::unique_lock lock(mutex_);
    question_ = failure.text;
    asked_disk_ = failure.disk;
    may_continue_ = may_continue;
    answer_.reset();
    caller_.notify_one();
    WaitUntil(background_, lock, Token(), [this] { return answer_.has_value(); });
    const std::optional<Answer> answer = std::exchange(answer_, std::nullopt);
    question_.reset();
    asked_disk_ = 0;
    lock.unlock();
    if (answer == Answer::kUnattended) {
        Fail(Failure(failure.code, failure.path, unattended.empty() ? failure.text : unattended));
    }
    if (answer != Answer::kRetry && answer != Answer::kContinue) {
        throw RunStopped{};
    }
    return answer == Answer::kRetry;
}

void RunContext::RaiseLastEvent() {
    std::unique_lock lock(mutex_);
    last_event_ = LastEvent::kWanted;
    caller_.notify_one();
    WaitUntil(background_, lock, Token(), [this] { return last_event_ == LastEvent::kRaised; });
    lock.unlock();
    CheckStop();
}

void RunContext::Fail(const ComponentMessage& failure) {
    {
        const std::lock_guard lock(mutex_);
        if (!failure_ && !cancelled_) {
            failure_ = failure;
        }
    }
    stop_.request_stop();
}

void RunContext::Cancel() {
    {
        const std::lock_guard lock(mutex_);
        cancelled_ = true;
    }
    stop_.request_stop();
}

RunContext::PendingEvents RunContext::WaitForEvents(platform::Clock& clock) {
    std::unique_lock lock(mutex_);
    const bool answered = answer_.has_value();
    const bool wanted = last_event_ == LastEvent::kWanted;
    if (messages_.empty() && (!question_ || answered) && !wanted && !finished_) {
        clock.Wait(caller_, lock, kTick);
    }
    PendingEvents pending;
    pending.messages.swap(messages_);
    if (!answer_) {
        pending.question = question_;
        pending.may_continue = may_continue_;
    }
    pending.last_event = last_event_ == LastEvent::kWanted;
    pending.finished = finished_;
    background_.notify_all();
    return pending;
}

void RunContext::Serve(RunEvents& events, PendingEvents& pending) {
    std::size_t raised = 0;
    for (const ComponentMessage& message : pending.messages) {
        events.OnMessage(message);
        if (++raised % kMessagesPerEvent == 0) {
            RaiseProgress(events);
        }
    }
    if (pending.finished) {
        return;
    }
    if (pending.last_event) {
        RaiseLast(events);
    } else {
        RaiseProgress(events);
    }
    if (pending.question) {
        AnswerQuestion(events, *pending.question, pending.may_continue);
    }
}

void RunContext::SetTotal(std::uint64_t files, std::uint64_t bytes) {
    bytes_total_ = bytes;
    files_total_ = files;
}

void RunContext::LeaveOut(std::uint64_t size, std::uint64_t counted) {
    bytes_done_ -= counted;
    bytes_left_out_ += size;
}

void RunContext::RestartFigures() {
    for (auto* const figure : {&files_found_, &files_total_, &bytes_total_, &files_done_,
                               &bytes_done_, &left_out_, &bytes_left_out_}) {
        *figure = 0;
    }
}

RunFigures RunContext::Figures() {
    RunFigures figures;
    figures.files_found = files_found_;
    figures.files_total = files_total_;
    figures.bytes_total = bytes_total_;
    figures.files_done = files_done_;
    figures.bytes_done = bytes_done_;
    figures.left_out = left_out_;
    figures.bytes_left_out = bytes_left_out_;
    figures.file_cost = file_cost_;
    figures.archive_bytes = archive_bytes_;
    figures.finishing = finishing_;
    const std::lock_guard lock(mutex_);
    figures.disk = asked_disk_;
    return figures;
}

double RunContext::ShareDone() const {
    const std::uint64_t total = bytes_total_;
    const std::uint64_t done = std::min<std::uint64_t>(bytes_done_, total);
    return total == 0 ? 0 : static_cast<double>(done) / static_cast<double>(total);
}

void RunContext::RaiseProgress(RunEvents& events) {
    if (silent_) {
        return;
    }
    const RunFigures figures = Figures();
    events.OnFigures(figures);
    events.OnFileProgress(file_percent_);
    const double total = figures.CostTotal();
    const double share = total > 0 ? figures.CostDone() / total : 0;
    RaiseOverall(events, std::min(static_cast<int>(share * 100), 99));  // 100 is the last event's
}

void RunContext::RaiseOverall(RunEvents& events, int percent) {
    shown_percent_ = std::max(shown_percent_, percent);
    bool cancel = false;
    events.OnProgress(shown_percent_, cancel);
    if (cancel) {
        Cancel();
    }
}

void RunContext::RaiseLast(RunEvents& events) {
    events.OnFileProgress(100);
    RaiseOverall(events, 100);
    silent_ = true;
    const std::lock_guard lock(mutex_);
    last_event_ = LastEvent::kRaised;
    background_.notify_all();
}

// A stopping run asks nothing: a step may fail just before its thread notices the cancel.
void RunContext::AnswerQuestion(RunEvents& events, const std::string& text, bool may_continue) {
    const Answer answer =
        stop_.stop_requested() ? Answer::kCancel : Ask(events, text, may_continue);
    const std::lock_guard lock(mutex_);
    answer_ = answer;
    background_.notify_all();
}

RunContext::Answer RunContext::Ask(RunEvents& events, const std::string& text, bool may_continue) {
    Questions* const questions = events.QuestionHandler();
    if (questions == nullptr) {
        return Answer::kUnattended;
    }
    using DiskAnswer = Questions::DiskAnswer;
    const DiskAnswer answer = may_continue                ? questions->AskForDisk(text)
                              : questions->AskRetry(text) ? DiskAnswer::kRetry
                                                          : DiskAnswer::kCancel;
    if (answer != DiskAnswer::kCancel) {
        return answer == DiskAnswer::kRetry ? Answer::kRetry : Answer::kContinue;
    }
    RaiseOverall(events, shown_percent_);
    Cancel();
    return Answer::kCancel;
}

}  // namespace vantrel::zip
