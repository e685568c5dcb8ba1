// What the sweeps of backups have in common: what is there before, what the person in front of the
// window does, and what the set holds when it has worked.
#pragma once

#include <string>

#include "tests/faults/computer.h"

namespace vantrel::test {

// Where the set WEEKLY of a furnished computer puts its archive.
constexpr const char* kArchivePath = "C:\\Backups\\WEEKLY.zip";
// What stands in the archive's place before; not an archive, since it only has to stay.
constexpr const char* kEarlierArchive = "an earlier archive";

// A furnished computer that has an earlier archive. Remembers what is there.
void FurnishForBackup(Computer& computer);

// Queues what somebody does when the backup's window waits: reads how it ended, for
// Computer::outcome, and presses the button that is left.
void CloseWhenOver(Computer& computer);

// The set WEEKLY after a backup to `destination`, which ends in a backslash.
std::string SetAfterBackup(const std::string& destination, const std::string& multi_volume = "OFF");

}  // namespace vantrel::test
