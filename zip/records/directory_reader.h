// The central directory of an archive as a list. Accepts any bytes: damage is reported, and nothing
// is guessed.
#pragma once

#include <cstdint>
#include <string>

#include "platform/machine.h"
#include "zip/base/bytes.h"
#include "zip/records/disk_identity.h"
#include "zip/records/entry_list.h"

namespace vantrel::zip {

// An entry that a search has found and that cannot be restored completely.
struct LostEntry {
    StoredEntry entry;
    std::string why;  // for the user
};

struct Directory {
    EntryList entries;               // in the archive's order
    std::uint64_t start = 0;         // of the directory; no entry's data reaches beyond it
    std::uint64_t archive_size = 0;  // of a spanned archive, the last disk's
    DiskIdentity disks;              // when IsSpanned, offsets hold their disk
    // Empty when the directory was read to its end; otherwise where and why it stops, for the user.
    std::string trouble;

    // After a search (reader/archive_search.h) `entries` are those that are intact.
    bool searched = false;
    std::vector<LostEntry> lost;
    std::uint64_t lost_unnamed = 0;  // more of them than `lost` names

    bool IsComplete() const { return trouble.empty(); }
};

// Finds the end record (APPNOTE 4.3.16) and reads the directory, on the caller's thread. Where
// several end records are found, one that leads to a directory wins, then one whose comment ends
// with the file, then one that needs no correction of offsets. Offsets are corrected by what
// precedes the archive (a self-extractor, say). Memory follows the bytes that exist, not the
// numbers that an archive states. Raises only when `source` or `changer` does.
//
// `changer` asks for the other disks of a spanned archive; with nullptr such an archive is reported
// as `trouble`. It keeps a reference to the result's `disks` while the directory is read.
Directory ReadDirectory(ByteSource& source, DiskChanger* changer, platform::CodePage& code_page,
                        platform::Clock& clock);
inline Directory ReadDirectory(ByteSource& source, platform::CodePage& code_page,
                               platform::Clock& clock) {
    return ReadDirectory(source, nullptr, code_page, clock);
}

}  // namespace vantrel::zip
