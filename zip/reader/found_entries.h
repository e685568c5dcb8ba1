// The records that a search has found, and what they are together: entries of the archive, entries
// of an archive that is stored in it, or entries of which something is lost. Used by one thread.
//
// Central records are joined with the local headers that they describe: by the distance between
// the stated and the real offset, which is the same for all records of one directory unless bytes
// are missing from the archive, otherwise by name and checksum. An archive that is stored inside
// this one is recognised by its own directory: more records follow it, or a file's data contains
// it. Its local headers are no entries.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "zip/reader/archive_search.h"
#include "zip/reader/entry_probe.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

class FoundEntries {
  public:
    // The first two are borrowed.
    FoundEntries(EntryProbe& probe, ByteSource& source, const SearchLimits& limits)
        : probe_(probe), source_(source), limits_(limits) {}

    // Records in the order of their positions. A local header comes with its check; a central
    // record with its position and length.
    void AddLocal(LocalRecord record, ProbeResult result);
    void AddCentral(StoredEntry entry, std::uint64_t at, std::uint64_t length);
    // An end record that states this many entries and this offset of the directory.
    void AddEnd(std::uint64_t at, std::uint64_t entries, std::uint64_t directory_offset);

    // Fills in the entries, those that are lost, and why.
    void Finish(Directory& directory);

  private:
    struct Found {
        StoredEntry entry;
        std::uint64_t data_at = 0;
        std::uint64_t end = 0;
        std::string why;
        std::uint32_t run = 0;  // number and 1 of the directory that describes it
        bool states_sizes = false;
        bool dropped = false;  // of an archive inside of this one
    };
    struct Range {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
    };
    // Central records that follow each other: a directory, or what is left of one.
    struct Run {
        std::uint64_t start = 0;
        std::uint64_t end = 0;
        std::uint64_t records = 0;
        std::uint64_t stated = 0;
        std::uint64_t end_record = 0;      // its position, 0 when there is none
        std::optional<std::int64_t> base;  // real offset minus stated one
        bool nested = false;
        bool IsIntact() const { return end_record != 0 && (records & 0xFFFF) == (stated & 0xFFFF); }
        // The archive of which this is the directory.
        Range Contents() const {
            return {static_cast<std::uint64_t>(std::max<std::int64_t>(base.value_or(0), 0)),
                    std::max(end_record, end)};
        }
    };
    struct Orphan {  // a central record without a local header
        StoredEntry entry;
        std::uint32_t run = 0;
    };

    using Entries = std::vector<StoredEntry*>;

    Run& CurrentRun(std::uint64_t at);
    Found* Match(const StoredEntry& described, Run& run);
    Found* At(std::uint64_t position);
    Found* ByName(const StoredEntry& described);
    void Describe(Found& found, StoredEntry entry);
    ProbeResult CheckDescribed(LocalRecord& record);
    void FindNested();
    bool LastIsNested() const;
    void DropInside(std::vector<Range> ranges);
    bool IsUndescribed(const Found& found) const;
    bool IsArchive(const Found& found, const Found& next) const;
    void DropContentOfDamaged();
    void DropContentOfOrphans();
    std::string Recover(StoredEntry& entry, std::int64_t base);
    std::uint64_t NextRecord(std::uint64_t position) const;
    void AddOrphans(Entries& intact, Directory& directory);
    // To the intact entries, or to those that are lost.
    void Add(StoredEntry& entry, std::string why, Entries& intact, Directory& directory);

    EntryProbe& probe_;
    ByteSource& source_;
    const SearchLimits limits_;
    std::vector<Found> found_;  // by position
    std::vector<Run> runs_;
    std::vector<Orphan> orphans_;
    std::uint64_t orphans_unnamed_ = 0;
    std::uint64_t damaged_ = 0;
    std::uint64_t name_bytes_ = 0;  // of everything that is lost
    bool run_is_open_ = false;
    std::unordered_multimap<std::size_t, std::uint32_t> by_name_;
    std::size_t named_ = 0;  // of found_, in by_name_
};

}  // namespace vantrel::zip
