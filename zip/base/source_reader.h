// Reading the files to store, patiently: what is locked is tried again, and a source that has gone
// as a whole is a question rather than a warning for every file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/error.h"
#include "platform/machine.h"
#include "platform/retry.h"
#include "zip/base/buffer.h"
#include "zip/base/run_channel.h"

namespace vantrel::zip {

// May be used by several threads at once.
class SourceReader {
  public:
    SourceReader(const platform::Machine& machine, RunChannel& channel, std::string folder)
        : machine_(machine), channel_(channel), folder_(std::move(folder)) {}

    platform::Machine& machine() { return machine_; }
    const std::string& folder() const { return folder_; }

    // Runs `step`, which opens or reads a file of the source; again when the file is locked for a
    // moment, and when the whole source had gone and the user says it is back. Raises what `step`
    // raised otherwise: this one file cannot be read.
    template <typename Step>
    auto Attempt(Step&& step) -> decltype(step()) {
        for (;;) {
            channel_.CheckStop();
            try {
                return platform::RetryWhileLocked(machine_.clock, [&] {
                    channel_.CheckStop();
                    return step();
                });
            } catch (const Error& error) {
                if (!IsGone()) {
                    throw;
                }
                AskForSource(error);
            }
        }
    }

    // Whether the source folder itself is missing; false also when that cannot be told.
    bool IsGone();
    // Asks whether to try the source again, which has failed with `error`: returns when yes, throws
    // RunStopped otherwise.
    void AskForSource(const Error& error);

  private:
    platform::Machine machine_;
    RunChannel& channel_;
    std::string folder_;
};

// Reads until `count` bytes or the end of the file; returns how many.
std::size_t ReadFully(platform::File& file, std::uint8_t* out, std::size_t count);

}  // namespace vantrel::zip
