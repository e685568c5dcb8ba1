// The files of a plan that are still to be restored, shared out among threads while the plan grows.
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

// May be used by several threads at once. Nothing but the order of the files depends on which
// thread comes first.
class FileQueue {
  public:
    // Both are borrowed; `plan` has nothing in it that may be restored yet. `stop` is the run's.
    FileQueue(const Directory& directory, const ExtractionPlan& plan, std::stop_token stop)
        : directory_(directory), plan_(plan), stop_(std::move(stop)) {}

    // The first `count` files of the plan may be restored from now on; `all`: it has no more.
    void SetPlanned(std::size_t count, bool all);

    // Files of the plan, from `begin` to before `end`, that lie together in the archive.
    struct Batch {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t bytes = 0;  // of the archive that hold them, 0 when they are read one by one
        bool IsEmpty() const { return begin == end; }
    };
    // What one thread has before it. It stays within its folder, for the system lets one thread at
    // a time make a file in a folder; where nothing else is left, others take their half of it.
    struct Turn {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    // A turn for one more thread, to be handed to Next; stays where it is.
    Turn& Join();
    // The next files for a thread. Waits while they are still to be planned. Empty when none is
    // left, or when the run is to stop.
    Batch Next(Turn& turn);

  private:
    const StoredEntry& Entry(std::size_t place) const {
        return directory_.entries[plan_.files[place].index];
    }
    // Bytes of the archive from the local header of one file to the end of another one's data.
    std::uint64_t Reach(std::size_t first, std::size_t last) const;
    bool InOneFolder(std::size_t one, std::size_t other) const;
    Turn NewTurn();
    Turn HalfOfTheLongest();

    const Directory& directory_;
    const ExtractionPlan& plan_;
    const std::stop_token stop_;

    std::mutex mutex_;  // guards what follows
    std::condition_variable more_planned_;
    std::size_t planned_ = 0;
    bool all_planned_ = false;
    std::size_t next_ = 0;    // first file that is in nobody's turn
    std::deque<Turn> turns_;  // one for each thread
};

}  // namespace vantrel::zip
