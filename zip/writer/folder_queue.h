// The folders that a scan still has to read. While the scan handles one, helper threads list those
// that follow: most of the time of a listing is waiting for the system.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "platform/file_system.h"

namespace vantrel::zip {

// A stack of folders in the order of the scan (depth first). All public members are called from the
// scan's thread. The order of the results does not depend on the number of threads.
class FolderQueue {
  public:
    using Listing = std::vector<platform::FileInfo>;  // sorted by name

    // Lists folders below `source` on up to `threads` threads, the scan's included; at most two are
    // used. `stop` is the run's token.
    FolderQueue(platform::FileSystem& files, std::string source, std::stop_token stop, int threads);
    // Waits for listings in progress.
    ~FolderQueue();
    FolderQueue(const FolderQueue&) = delete;
    FolderQueue& operator=(const FolderQueue&) = delete;

    // Adds folders before all others in the queue, the first of `folders` first. Their names are
    // paths below the source.
    void Add(std::vector<platform::FileInfo> folders);

    struct ListedFolder {
        platform::FileInfo folder;
        // Empty when not listed yet or when listing failed; the caller then lists the folder and
        // may ask the user.
        std::optional<Listing> listing;
    };
    // Removes and returns the next folder; nothing when the queue is empty or the run is to stop.
    // Waits when the folder is being listed, and lists others meanwhile.
    std::optional<ListedFolder> Next();

    // Lists a folder on the calling thread. Raises what FileSystem::List raises; incomplete when
    // the run is to stop.
    Listing List(const std::string& folder) const;

  private:
    struct QueuedFolder;

    std::shared_ptr<QueuedFolder> FindUnlisted() const;
    void ListAhead(const std::shared_ptr<QueuedFolder>& folder, std::unique_lock<std::mutex>& lock);
    void HelperMain();

    platform::FileSystem& files_;
    const std::string source_;
    const std::stop_token stop_;

    std::mutex mutex_;  // guards the members of this paragraph
    std::condition_variable changed_;
    std::vector<std::shared_ptr<QueuedFolder>> queue_;  // in reverse order: the next one is last
    std::size_t waiting_entries_ = 0;                   // entries of finished listings in the queue
    bool ended_ = false;

    std::vector<std::jthread> helpers_;  // last: joined before the other members are destroyed
};

}  // namespace vantrel::zip
