// Reading the files to store, patiently: what is locked is tried again, and a source that has gone
// as a whole is a question rather than a warning for every file.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "common/error.h"
#include "platform/machine.h"
#include "zip/base/buffer.h"
#include "zip/base/run_channel.h"

namespace vantrel::zip {

// A virus scanner or an indexer holds a file for moments; after three more tries it is in real use.
constexpr int kTriesWhenLocked = 4;
constexpr std::chrono::milliseconds kPause{100};

// Runs `step`, and again after a pause when it fails with 70 (locked or denied).
template <typename Step>
auto WithPatience(platform::Clock& clock, Step&& step) -> decltype(step()) {
    for (int tries_left = kTriesWhenLocked - 1;; --tries_left) {
        try {
            return step();
        } catch (const Error& error) {
            if (error.number() != error_number::kPermissionDenied || tries_left == 0) {
                throw;
            }
        }
        clock.Sleep(kPause);
    }
}

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
                return WithPatience(machine_.clock, [&] {
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
