// What the threads of an extraction share, and what each of them does: takes batches of entries
// that lie together in the archive, and restores one file after the other.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/machine.h"
#include "zip/base/run_channel.h"
#include "zip/reader/archive_source.h"
#include "zip/reader/entry_data.h"
#include "zip/reader/extraction_plan.h"
#include "zip/reader/file_queue.h"
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
          channel(its_channel),
          queue(directory, plan, channel.Token()) {}

    platform::Machine machine;
    const std::string archive;
    const Directory& directory;
    const ExtractionPlan& plan;
    FolderMaker& folders;
    RunChannel& channel;
    FileQueue queue;
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
};

class ExtractWorker {
  public:
    explicit ExtractWorker(Extraction& run);

    // Works until nothing is left. Throws RunStopped.
    void Work();

  private:
    void RestoreFile(const PlannedEntry& planned);
    void RestoreOnce(const PlannedEntry& planned);
    // Makes it unless it is there. For a batch at most, so that a folder is not held for long.
    void EnterFolder(std::string_view name);
    void LeaveFolder() { folder_.reset(); }
    void TellRestored(const PlannedEntry& planned, const std::string& path,
                      const std::string& disagreement);

    Extraction& run_;
    FileQueue::Turn& turn_;
    ArchiveSource source_;
    EntryData data_;
    std::string folder_name_;  // below the destination, the last that was asked for
    std::string folder_path_;  // where it is; "" before the first
    std::unique_ptr<platform::Folder> folder_;
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
