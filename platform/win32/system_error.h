// From the system's error codes to run-time error numbers, in one table.
#pragma once

#include <windows.h>

#include "platform/win32/disk_path.h"

namespace vantrel::platform {

// What was being done; the same code means different numbers to a file and to a folder.
enum class Deed {
    kFile,    // opening, reading, writing, renaming, removing a file
    kFolder,  // making, renaming or removing a folder: what is not allowed is 75
    kList,    // reading a folder: a name that is no folder is 76, one that may not be read 75
};

// The number for a system error code; 57 for a code that the table lacks.
int ErrorNumber(DWORD code, Deed deed);

// Raises the number for `code`. Something missing at `path` becomes 68 when its whole drive is
// missing and 71 when there is no disk in it.
[[noreturn]] void RaiseSystemError(DWORD code, Deed deed, const DiskPath& path);
// The same where no path is at hand: an open file.
[[noreturn]] void RaiseSystemError(DWORD code);

}  // namespace vantrel::platform
