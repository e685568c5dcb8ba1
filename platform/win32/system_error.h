// Failures of system calls: their run-time error numbers, and the retries of calls that fail
// because another program holds the file. Any thread may call these functions.
#pragma once

#include <windows.h>

#include <functional>

#include "platform/machine_support.h"
#include "platform/win32/disk_path.h"

namespace vantrel::platform {

// The number for a system error code; 57 for a code that the table lacks.
int ErrorNumber(DWORD code, FileOperation operation);

// Raises the number for `code`. Something missing at `path` becomes 68 when its whole drive is
// missing and 71 when there is no disk in it.
[[noreturn]] void RaiseSystemError(DWORD code, FileOperation operation, const DiskPath& path);
// The same where no path is at hand: an open file.
[[noreturn]] void RaiseSystemError(DWORD code);

// Waits before the next try; the system's Sleep, unless a test has another.
using Pause = std::function<void(DWORD milliseconds)>;

// Runs `call`, a system call that returns whether it succeeded, again while it fails because the
// file is in use or access is denied: at most 6 times, with pauses of 0.3 s in all. Returns 0, or
// the code of the last failure. platform/retry.h says which calls are retried.
DWORD RetryWhileLocked(const std::function<bool()>& call, const Pause& pause = ::Sleep);

}  // namespace vantrel::platform
