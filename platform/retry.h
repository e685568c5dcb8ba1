// The retry policy for files that another program holds for a moment: virus scanners and indexers
// open a file right after it was written, and the next call then fails for some milliseconds.
//
// Each call is retried by one loop only, because nested loops multiply their tries:
// - To open for writing or appending, to rename, replace, and remove: by the Windows file system
//   itself, 6 tries in about 0.3 s (platform/win32/system_error.h). Callers do not retry these.
// - To open for reading, and to read: by the engine with the function below, 4 tries in 0.3 s. Only
//   the engine knows whether the run was stopped or the source folder is gone.
// - Everything else is tried once: create a new file, list and find, make a folder, set attributes
//   or times. A failure there is not caused by a scanner or is answered by a question.
#pragma once

#include <chrono>

#include "common/error.h"
#include "platform/machine.h"

namespace vantrel::platform {

constexpr int kTriesWhenLocked = 4;
constexpr std::chrono::milliseconds kPauseWhenLocked{100};

// Runs `step` again after a pause while it raises error `number`.
template <typename Step>
auto RetryOn(int number, Clock& clock, Step&& step) -> decltype(step()) {
    for (int tries_left = kTriesWhenLocked - 1;; --tries_left) {
        try {
            return step();
        } catch (const Error& error) {
            if (error.number() != number || tries_left == 0) {
                throw;
            }
        }
        clock.Sleep(kPauseWhenLocked);
    }
}

// Runs `step` again after a pause while it raises 70 (locked or denied). The last error is raised
// on. Any thread may call this.
template <typename Step>
auto RetryWhileLocked(Clock& clock, Step&& step) -> decltype(step()) {
    return RetryOn(error_number::kPermissionDenied, clock, step);
}

// The same while it raises 57: a medium that fails to read a sector may succeed later.
template <typename Step>
auto RetryReading(Clock& clock, Step&& step) -> decltype(step()) {
    return RetryOn(error_number::kDeviceIo, clock, step);
}

}  // namespace vantrel::platform
