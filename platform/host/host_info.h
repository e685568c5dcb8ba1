// The host's metadata of a file in Windows' terms, and the host's errors as run-time numbers.
// Read-only is a file without any write bit in its mode; hidden, system and archive are kept in the
// extended attribute user.DOSATTRIB as the text "0x22", where other programs expect them too. A
// folder keeps its read-only bit there as well, because its mode's write bits mean something else.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>

#include "platform/file_system.h"
#include "platform/host/host_path.h"
#include "platform/machine_support.h"

namespace vantrel::platform {

constexpr unsigned kHostMask = STATX_BASIC_STATS | STATX_BTIME;

// Everything except the attributes in the extended attribute.
FileInfo InfoFromStatus(const std::string& name, const struct statx& status);

// Adds the attributes stored in the extended attribute of the file at the host path. False when the
// file system there has no such attributes, so that a listing need not ask again.
bool AddStoredAttributes(const std::string& host_path, FileInfo& info);

// Brings the mode and the extended attribute of a file or folder to `attributes`. Raises 70.
void StoreAttributes(const HostLocation& location, std::uint32_t attributes);

// Whether a file of this mode is read-only.
bool IsReadOnlyMode(unsigned mode);

// The two times that a host can set, for utimensat: accessed, modified. 0 leaves a time as it is.
struct HostTimes {
    explicit HostTimes(const FileTimes& times);
    struct timespec values[2];
};

// From and to the host's time, seconds since 1970.
Ticks TicksOf(std::int64_t seconds, std::uint32_t nanoseconds);
std::int64_t SecondsOf(Ticks ticks);  // rounded down

// The run-time error number for an errno value.
int HostErrorNumber(int code, FileOperation operation);

[[noreturn]] void RaiseHostError(int code, FileOperation operation);
// Raises the error of errno unless the call before has succeeded.
void CheckHost(bool succeeded, FileOperation operation = FileOperation::kFile);

}  // namespace vantrel::platform
