// What the threads of an extraction share, and what each of them does: takes batches of entries
// that are adjacent in the archive, and restores one file after the other.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "common/dos_mask.h"
#include "platform/machine.h"
#include "zip/base/retry.h"
#include "zip/disks/archive_reader.h"
#include "zip/reader/archive_extractor.h"
#include "zip/reader/entry_data.h"
#include "zip/reader/entry_probe.h"
#include "zip/reader/extraction_plan.h"
#include "zip/reader/file_queue.h"
#include "zip/reader/target_file.h"
#include "zip/reader/target_folders.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

// One extraction. The thread that plans uses `planner`; everything else is for all threads.
struct Extraction {
    Extraction(const platform::Machine& seam, const ExtractOptions& wanted, RunContext& run,
               std::shared_ptr<const Directory> listed);

    const platform::Machine& machine;
    const ExtractOptions& options;
    RunContext& channel;
    const std::shared_ptr<const Directory> held;
    const Directory& directory;
    const int threads;
    const DosMask mask;
    ExtractionPlanner planner;
    const ExtractionPlan& plan;
    FolderMaker folders;
    FileQueue queue;
    HeldMemory memory;
    std::atomic<std::uint64_t> restored{0};
    std::atomic<std::int32_t> failed{0};  // besides those of the plan

    // Warns of something about an entry that is restored.
    void Warn(std::uint32_t index, const std::string& text) {
        channel.Report(EntryWarning(directory, index, 0, text));
    }
    // Reports that an entry was not restored, and counts it.
    void Fail(std::uint32_t index, const Error& error);
    // Restores with `step`. A destination that is full or gone is a question, and then tried again;
    // any other error is the entry's own. False when the entry was not restored.
    template <typename Step>
    bool Restore(std::uint32_t index, Step&& step);

    // The question when the destination is full.
    ComponentMessage DescribeFull(std::uint32_t index) const;
    // Whether an error concerns the complete destination, which is full or gone, and not one file.
    bool IsOfDestination(int number);
};

class ExtractWorker {
  public:
    explicit ExtractWorker(Extraction& run);

    // Restores files until none is left. Throws RunStopped.
    void Work();

  private:
    struct PlannedFile {
        std::uint32_t index = 0;  // in the directory
        StoredEntry entry;
        std::string path;  // below the destination
    };
    void RestoreFile(const PlannedFile& planned);
    void ReportFile(const PlannedFile& planned);
    void Restore(const PlannedFile& planned);
    void RestoreOnce(const PlannedFile& planned, const StoredEntry& entry);
    void VerifyOnce(const PlannedFile& planned, const StoredEntry& entry);
    std::optional<StoredEntry> ByLocalHeader(const StoredEntry& entry);
    std::optional<LocalRecord> ReadLocalRecord(const StoredEntry& entry);
    void KeepBroken(const PlannedFile& planned);
    void Count(std::uint64_t written, std::uint64_t size);
    // Makes the folder unless it exists, and opens it; at most for a batch, because an open folder
    // cannot be removed or renamed by others.
    void EnterFolder(std::string_view name);
    // Opens the target with this path below the destination, for `size` bytes, unless it is open.
    void Open(std::optional<TargetFile>& target, std::string_view path, std::uint64_t size);
    void LeaveFolder() { folder_.reset(); }
    void ReportRestored(const PlannedFile& planned, const std::string& path,
                        const std::string& disagreement);

    Extraction& run_;
    FileQueue::FileRange& range_;
    ArchiveReader source_;
    EntryData data_;
    std::unique_ptr<EntryProbe> probe_;  // when needed; one for all, which bounds what it reads
    std::string folder_name_;            // below the destination, of the last file
    std::string folder_path_;            // its full path; "" before the first
    std::unique_ptr<platform::Folder> folder_;
    std::uint64_t counted_ = 0;  // bytes of the current file that the progress includes
};

template <typename Step>
bool Extraction::Restore(std::uint32_t index, Step&& step) {
    const auto describe = [&](const Error& error) {
        if (!IsOfDestination(error.number())) {
            throw error;
        }
        if (error.number() == error_number::kDiskFull) {
            return DescribeFull(index);
        }
        return DescribeFailure("This cannot be restored", directory.entries[index].name)(error);
    };
    try {
        RetryOrAsk(channel, describe, step);
        ++restored;
        return true;
    } catch (const Error& error) {
        Fail(index, error);
        return false;
    }
}

}  // namespace vantrel::zip
