// What an extraction will do: which entries, under which paths, in which order. Decided without
// access to any disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/dos_mask.h"
#include "platform/machine.h"
#include "zip/base/component_events.h"
#include "zip/reader/target_folders.h"
#include "zip/records/directory_reader.h"
#include "zip/records/entry_name.h"

namespace vantrel::zip {

// The path of a planned entry is not kept: see ExtractionPlanner::PathOf.
struct PlannedEntry {
    std::uint32_t index = 0;    // in the directory
    std::uint32_t folder = 0;   // number of the folder that it is in; 0 is the destination
    std::uint32_t renamed = 0;  // 0: its path is the safe form of its name
};

struct ExtractionPlan {
    std::vector<PlannedEntry> files;    // in the order of their data in the archive
    std::vector<PlannedEntry> folders;  // in the archive's order
    std::uint64_t bytes = 0;            // of all files together, at most what 64 bits hold
    std::int32_t failed = 0;            // selected entries that will not be restored
};

// Makes names safe, numbers later ones of the same path, and refuses what cannot be or must not be
// written: links, names that lead out of the destination, overlapping data, files with the name of
// a folder. Plans in portions, so that the first files can be restored while later ones are
// planned. Used by one thread, except for Plan.
class ExtractionPlanner {
  public:
    using Report = std::function<void(ComponentMessage)>;

    // `report` gets a warning for each refused entry, and for each that is restored under another
    // name. `verify_only`: as in ExtractOptions. The others are borrowed.
    ExtractionPlanner(const Directory& directory, const DosMask& mask,
                      platform::CodePage& code_page, Report report, bool verify_only = false);
    ExtractionPlanner(const ExtractionPlanner&) = delete;
    ExtractionPlanner& operator=(const ExtractionPlanner&) = delete;

    // Decides about the next `count` entries; about all when they are not in the order of their
    // data. False when the last of them is planned.
    bool PlanMore(std::size_t count);
    void PlanAll();

    // The path below the destination of a planned entry, whose stored name is `name`. May be called
    // from any thread.
    std::string PathOf(const PlannedEntry& planned, const std::string& name) const;
    std::string PathOf(const PlannedEntry& planned) const {
        return PathOf(planned, directory_.entries[planned.index].name);
    }

    // What is planned so far. A planned file never moves, so that other threads may read it while
    // PlanMore runs.
    const ExtractionPlan& Plan() const { return plan_; }

  private:
    void SortFiles();
    void Add(std::uint32_t index);
    void AddFolder(const StoredEntry& entry, std::uint32_t index, const SafeName& name);
    void AddFile(const StoredEntry& entry, std::uint32_t index, SafeName name);
    std::string KeyOf(std::uint32_t owner) const;
    std::uint32_t TakeForNextFile(std::uint32_t folder, std::string_view name);
    std::string FreePath(std::uint32_t folder, const std::string& path, std::uint32_t owner);
    std::uint32_t KeepRenamed(std::string path);
    std::optional<std::uint32_t> TakeFolders(std::string_view path);
    void WarnOfChanges(std::uint32_t index, const SafeName& name);
    void Warn(std::uint32_t index, const std::string& what);
    void Refuse(std::uint32_t index, const std::string& why);

    const Directory& directory_;
    const DosMask& mask_;
    platform::CodePage& code_page_;
    Report report_;
    const bool verify_only_;
    std::vector<bool> overlaps_;  // by index: shares bytes with another entry or the directory
    bool in_order_ = false;
    ExtractionPlan plan_;
    std::uint32_t next_ = 0;  // entry to decide about
    // Files are owners of their names by their position in the plan, folders by their number.
    TakenNames names_;
    std::vector<std::string> folder_keys_;                 // by the number of the folder, from 1
    std::unordered_map<std::uint32_t, int> next_numbers_;  // by owner of a name that others want
    mutable std::mutex mutex_;                             // guards renamed_
    std::vector<std::string> renamed_;
    std::string last_folder_;
    std::uint32_t last_number_ = 0;
};

// Whether entries share bytes of the archive with each other, or reach into the directory.
bool HasOverlaps(const Directory& directory);

// A warning about entry `index` of the directory (numbered from 1 for the user).
ComponentMessage EntryWarning(const Directory& directory, std::uint32_t index, int code,
                              const std::string& text);

// "a.txt is not restored: its checksum is wrong."; of a run that only verifies, "a.txt cannot be
// restored: its checksum is wrong."
std::string NotRestored(const std::string& name, const std::string& why, bool verify_only);
// The same as a warning about entry `index`, which is missing in the result because of `error`.
ComponentMessage NotRestoredWarning(const Directory& directory, std::uint32_t index,
                                    const Error& error, bool verify_only);

}  // namespace vantrel::zip
