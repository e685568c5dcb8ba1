// The first step of a run: what there is to store, from one listing of each folder.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "zip/base/run_context.h"
#include "zip/deflate/block_store.h"

namespace vantrel::zip {

// A file to store, or an empty folder.
struct SourceItem {
    std::string name;  // below the source folder, "\" between components
    std::uint32_t attributes = 0;
    std::uint64_t size = 0;  // as listed
    platform::FileTimes times;

    bool IsFolder() const { return (attributes & platform::attribute::kFolder) != 0; }
};

// An item as the bytes of a record in a BlockStore, and back.
std::string PackItem(const SourceItem& item);
SourceItem UnpackItem(std::string_view record);

struct SourceSpec {
    std::string folder;
    std::string mask = "*.*";
    bool sub_folders = false;
};

struct SourceList {
    BlockStore items;          // of PackItem records, in the order of storing
    std::uint64_t bytes = 0;   // sum of the listed sizes
    std::int32_t skipped = 0;  // unreadable folders, names too long for a header
};

// The files that belong to the run itself and must not be stored.
struct OwnFiles {
    std::string archive;    // the archive to be replaced, if it exists
    std::string temporary;  // the archive being written
};

// Lists the source folder: names sorted within each folder, a folder's files before its
// sub-folders, so that the order does not depend on the disk. Opens nothing. Hidden and system
// files belong to it; links, mount points and devices do not (a warning each). An unreadable
// sub-folder is a warning; an unreadable source folder is a question. Up to `threads` folders are
// listed at the same time.
SourceList ScanSource(const platform::Machine& machine, const SourceSpec& spec, const OwnFiles& own,
                      RunChannel& channel, int threads);

}  // namespace vantrel::zip
