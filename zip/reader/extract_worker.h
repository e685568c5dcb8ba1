// What the threads of an extraction share, and what each of them does: takes batches of entries
// that lie together in the archive, and restores one file after the other.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "platform/machine.h"
#include "zip/base/run_channel.h"
#include "zip/reader/archive_source.h"
#include "zip/reader/entry_data.h"
#include "zip/reader/extraction_plan.h"
#include "zip/reader/folder_maker.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

class Extraction {
  public:
    Extraction(const platform::Machine& its_machine, std::string its_archive,
               const Directory& its_directory, const ExtractionPlan& its_plan,
               FolderMaker& its_folders, RunChannel& its_channel)
        : machine(its_machine),
          archive(std::move(its_archive)),
          directory(its_directory),
          plan(its_plan),
          folders(its_folders),
          channel(its_channel) {}

    platform::Machine machine;
    const std::string archive;
    const Directory& directory;
    const ExtractionPlan& plan;
    FolderMaker& folders;
    RunChannel& channel;
    std::atomic<std::uint64_t> restored{0};
    std::atomic<std::int32_t> failed{0};

    // Says that an entry was not restored, and counts it.
    void Fail(std::uint32_t index, const Error& error);
    // Restores with `step`. A destination that is full or gone is a question, and then tried again;
    // any other error is the entry's own.
    template <typename Step>
    void Restore(std::uint32_t index, Step&& step);

    // Whether an error is about the whole destination, which is full or gone, and not about one
    // file.
    bool IsOfDestination(int number);

    // The first `count` files of the plan may be restored from now on; `all`: it has no more.
    void SetPlanned(std::size_t count, bool all);

    // Entries of plan.files from `begin` to before `end`; empty when none is left, or when
    // the run is to stop.
    struct Batch {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t bytes = 0;  // of the archive that hold them, 0 when they are read one by one
    };
    // Waits while the next files are still to be planned.
    Batch NextBatch();

  private:
    const StoredEntry& File(std::size_t place) const {
        return directory.entries[plan.files[place].index];
    }
    Batch TakeBatch();

    std::mutex mutex_;  // guards what follows
    std::condition_variable_any more_planned_;
    std::size_t planned_ = 0;
    bool all_planned_ = false;
    std::size_t next_ = 0;
};

class ExtractWorker {
  public:
    explicit ExtractWorker(Extraction& run);

    // Works until nothing is left. Throws RunStopped.
    void Work();

  private:
    void RestoreFile(const PlannedEntry& planned);
    void RestoreOnce(const PlannedEntry& planned);
    const std::string& Folder(std::string_view folder);
    void TellRestored(const PlannedEntry& planned, const std::string& path,
                      const std::string& disagreement);

    Extraction& run_;
    ArchiveSource source_;
    EntryData data_;
    std::string folder_;         // below the destination, the last that was asked for
    std::string folder_path_;    // where it is; "" before the first
    std::uint64_t counted_ = 0;  // bytes of the current file that are in the progress already
};

template <typename Step>
void Extraction::Restore(std::uint32_t index, Step&& step) {
    for (;;) {
        channel.CheckStop();
        try {
            step();
            ++restored;
            return;
        } catch (const Error& error) {
            if (!IsOfDestination(error.number())) {
                return Fail(index, error);
            }
            const int number = error.number();
            const std::string& name = directory.entries[index].name;
            channel.RetryOrStop({number, name, Sentence("This cannot be restored", name, error)});
        }
    }
}

}  // namespace vantrel::zip
