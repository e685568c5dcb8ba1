// All retries of the engine. Opening and reading a file that another process holds is retried after
// a pause (platform/retry.h has the policy); any other failure that stops the run is a question,
// and the step is retried when the user chooses Retry (RetryOrAsk).
#pragma once

#include <string>
#include <utility>

#include "common/error.h"
#include "platform/machine.h"
#include "platform/retry.h"
#include "zip/base/folders.h"
#include "zip/base/run_context.h"

namespace vantrel::zip {

// Runs `step` until it succeeds, and asks whether to go on after each failure. `describe` makes the
// question, a ComponentMessage, from the Error; it may raise an error that is not to
// be asked about. Throws RunStopped when the answer is no, or when the run is to end.
template <typename Describe, typename Step>
auto RetryOrAsk(RunContext& channel, Describe&& describe, Step&& step) -> decltype(step()) {
    for (;;) {
        channel.CheckStop();
        try {
            return step();
        } catch (const Error& error) {
            channel.AskRetryOrStop(describe(error));
        }
    }
}

// The usual question: `what` states what could not be done with `path`.
inline auto DescribeFailure(std::string what, std::string path) {
    return [what = std::move(what), path = std::move(path)](const Error& error) {
        return Failure(error.number(), path, FailureText(what, path, error));
    };
}

// The folder to back up, whose files are read with retries. May be used by several threads at once.
class SourceFolder {
  public:
    SourceFolder(const platform::Machine& machine, RunContext& channel, std::string folder)
        : machine_(machine), channel_(channel), folder_(std::move(folder)) {}

    const platform::Machine& machine() const { return machine_; }
    const std::string& folder() const { return folder_; }

    // Runs `step`, which opens or reads a file of the source; again while the file is locked, and
    // when the whole source was gone and the user wants to retry: one question then replaces a
    // warning for every file. Raises what `step` raises otherwise: this one file cannot be read.
    template <typename Step>
    auto Attempt(Step&& step) -> decltype(step()) {
        const auto describe = [this](const Error& error) {
            if (!IsGone()) {
                throw error;
            }
            return Describe(error);
        };
        return RetryOrAsk(channel_, describe, [&] {
            return platform::RetryWhileLocked(machine_.clock, [&] {
                channel_.CheckStop();
                return step();
            });
        });
    }

    // Whether the source folder itself is missing; false also when that cannot be determined.
    bool IsGone() const { return !MayExist(machine_.files, folder_); }
    // Asks whether to retry after the source failed with `error`. Throws RunStopped if not.
    void AskForSource(const Error& error) { channel_.AskRetryOrStop(Describe(error)); }

  private:
    ComponentMessage Describe(const Error& error) const {
        return DescribeFailure("The folder to back up cannot be read", folder_)(error);
    }

    const platform::Machine& machine_;
    RunContext& channel_;
    std::string folder_;
};

}  // namespace vantrel::zip
