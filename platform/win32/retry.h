// Brief patience with files that somebody else holds for a moment: virus scanners and indexers open
// a file right after it was written, and to write on, rename or remove it then fails for some
// milliseconds.
#pragma once

#include <windows.h>

#include <functional>

namespace vantrel::platform {

// Waits before the next try; the system's Sleep, unless a test has another.
using Pause = std::function<void(DWORD milliseconds)>;

// Runs `call`, a system call that answers whether it succeeded, again while it fails because the
// file is in use or access is denied, for about a third of a second in all. Returns 0, or the code
// of the last failure.
DWORD RunPatiently(const std::function<bool()>& call, const Pause& pause = ::Sleep);

}  // namespace vantrel::platform
