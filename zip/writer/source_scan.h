// The first step of a run: the list of what there is to store, from one listing of each folder.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "zip/base/run_context.h"
#include "zip/writer/record_list.h"

namespace vantrel::zip {

// A file to store, or an empty folder.
struct SourceItem {
    std::string name;  // path below the source folder, "\" between components
    std::uint32_t attributes = 0;
    std::uint64_t size = 0;  // as listed
    platform::FileTimes times;

    bool IsFolder() const { return (attributes & platform::attribute::kFolder) != 0; }
};

// The name of an item's entry: "/" between components, at the end of a folder's name too.
std::string StoredName(const SourceItem& item);

// An item as the bytes of a record in a RecordList, and back. Never leaves the process.
std::string EncodeItem(const SourceItem& item);
SourceItem DecodeItem(std::string_view record);

// What to store: the files in `folder` whose names match a DOS mask.
struct SourceSpec {
    std::string folder;
    std::string mask = "*.*";
    bool sub_folders = false;
};

// Splits the zip component's file specification, folder and mask in one text with or without double
// quotes: "C:\Data\*.txt" is folder "C:\Data", mask "*.txt". A root keeps its backslash; without a
// mask it is "*.*".
SourceSpec ParseFileSpec(std::string_view text);

struct SourceList {
    RecordList items;          // of EncodeItem, in the order of storing
    std::uint64_t files = 0;   // of the items; the others are empty folders
    std::uint64_t bytes = 0;   // sum of the listed sizes
    std::int32_t skipped = 0;  // unreadable folders, names too long for a header
};

// Files of the run itself, which are not stored.
struct OwnFiles {
    std::string archive;    // the archive to be replaced, if it exists
    std::string temporary;  // the archive being written
};

// Lists the source folder: names sorted within each folder, a folder's files before its
// sub-folders, so that the order does not depend on the disk. Opens no file. Hidden and system
// files are included; links, mount points and devices are not (a warning each). An unreadable
// sub-folder is a warning; an unreadable source folder is a question. Called on the run's
// background thread; up to `threads` folders are listed at the same time. Throws RunStopped.
SourceList ScanSource(const platform::Machine& machine, const SourceSpec& spec, const OwnFiles& own,
                      RunContext& channel, int threads);

}  // namespace vantrel::zip
