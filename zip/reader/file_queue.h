// The files of a plan that are still to be restored, distributed to threads while the plan grows.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <stop_token>

#include "zip/reader/extraction_plan.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

// May be used by several threads at once. Only the order of the files depends on the scheduling of
// the threads.
class FileQueue {
  public:
    // Both are borrowed; no file of `plan` is restored before SetPlanned. `stop` is the run's.
    FileQueue(const Directory& directory, const ExtractionPlan& plan, std::stop_token stop)
        : directory_(directory), plan_(plan), stop_(std::move(stop)) {}

    // The first `count` files of the plan may be restored from now on; `all`: it has no more.
    void SetPlanned(std::size_t count, bool all);

    // Files of the plan, from `begin` to before `end`, that are adjacent in the archive.
    struct Batch {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t bytes = 0;  // of the archive that hold them, 0 when they are read one by one
        bool IsEmpty() const { return begin == end; }
    };
    // A thread's range of files, kept in one folder because file creation is serialized per folder;
    // idle threads steal half.
    struct FileRange {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    // The range of one more thread, to be passed to Next; valid as long as the queue.
    FileRange& Join();
    // The next files for a thread. Waits until they are planned. Empty when none is left, or when
    // the run is to stop.
    Batch Next(FileRange& range);

  private:
    EntryList::Extent ExtentOf(std::size_t file) const {
        return directory_.entries.ExtentOf(plan_.files[file].index);
    }
    // Bytes of the archive from the local header of one file to the end of another one's data.
    std::uint64_t Reach(std::size_t first, std::size_t last) const;
    bool InOneFolder(std::size_t one, std::size_t other) const;
    FileRange NextRange();
    FileRange HalfOfLongest();

    const Directory& directory_;
    const ExtractionPlan& plan_;
    const std::stop_token stop_;

    std::mutex mutex_;  // guards the members below
    std::condition_variable more_planned_;
    std::size_t planned_ = 0;
    bool all_planned_ = false;
    std::size_t next_ = 0;          // first file that is in no range
    std::deque<FileRange> ranges_;  // one for each thread
};

}  // namespace vantrel::zip
