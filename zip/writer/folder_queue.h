// The folders that a scan still has to look into, in the order of their turns. While the scan is
// busy with one, threads of the queue list those that come next: most of the time of a listing is
// waiting for the system.
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

// Used by one thread, that of the scan.
class FolderQueue {
  public:
    using Listing = std::vector<platform::FileInfo>;  // sorted by name

    // Lists folders below `source` on up to `threads` threads, that of the scan among them; two are
    // the most that pay. `stop` is that of the run.
    FolderQueue(platform::FileSystem& files, std::string source, std::stop_token stop, int threads);
    ~FolderQueue();
    FolderQueue(const FolderQueue&) = delete;
    FolderQueue& operator=(const FolderQueue&) = delete;

    // Folders whose turn comes before that of all others, the first of them first. Their names are
    // paths below the source.
    void Add(std::vector<platform::FileInfo> folders);

    struct Turn {
        platform::FileInfo folder;
        // Nothing when it is still to be listed: nobody has, or it did not work and has to be tried
        // again by who can ask about it.
        std::optional<Listing> listing;
    };
    // The next folder; nothing when none is left, or when the run is to stop.
    std::optional<Turn> Next();

    // All entries of a folder. Raises what FileSystem::List does; cut short when the run is to
    // stop.
    Listing List(const std::string& folder) const;

  private:
    struct Place;

    std::shared_ptr<Place> FindUnlisted() const;
    void ListAhead(const std::shared_ptr<Place>& place, std::unique_lock<std::mutex>& lock);
    void HelperMain();

    platform::FileSystem& files_;
    const std::string source_;
    const std::stop_token stop_;

    std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    std::vector<std::shared_ptr<Place>> places_;  // the next one last
    std::size_t held_ = 0;                        // entries of listings whose turn has not come
    bool ended_ = false;

    std::vector<std::jthread> helpers_;  // last, so that they end before what they use
};

}  // namespace vantrel::zip
