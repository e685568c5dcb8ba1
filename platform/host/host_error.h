// From the host's error codes to the error numbers that the seam promises.
#pragma once

namespace vantrel::platform {

// What was attempted; a folder's failures have other numbers than a file's.
enum class HostDeed { kFile, kFolder, kList };

// The run-time error number for an errno value.
int HostErrorNumber(int code, HostDeed deed);

[[noreturn]] void RaiseHostError(int code, HostDeed deed);

}  // namespace vantrel::platform
