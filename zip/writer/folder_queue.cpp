#include "zip/writer/folder_queue.h"

#include <algorithm>
#include <utility>

#include "common/path.h"
#include "zip/base/run_context.h"

namespace vantrel::zip {

namespace {

using platform::FileInfo;

// Folders that are listed ahead of the scan.
constexpr std::size_t kMaxListedAhead = 64;
// Directory entries in listings that wait for the scan; no folder is listed ahead while there are
// more. Limits the memory to some megabytes.
constexpr std::size_t kMaxWaitingEntries = 20'000;
// Listings wait for each other inside the system: a third thread takes half as much processor time
// again and gains nothing (under Wine, on a file system in memory).
constexpr int kMaxListingThreads = 2;

}  // namespace

// Shared with the thread that lists it, which may finish after the folder has left the queue.
struct FolderQueue::QueuedFolder {
    enum class State { kUnlisted, kBeingListed, kListed, kFailed };

    FileInfo info;
    State state = State::kUnlisted;
    Listing listing{};
};

FolderQueue::FolderQueue(platform::FileSystem& files, std::string source, std::stop_token stop,
                         int threads)
    : files_(files), source_(std::move(source)), stop_(std::move(stop)) {
    for (int i = 1; i < std::min(threads, kMaxListingThreads); ++i) {
        helpers_.emplace_back([this] { HelperMain(); });
    }
}

FolderQueue::~FolderQueue() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

void FolderQueue::Add(std::vector<FileInfo> folders) {
    const std::lock_guard lock(mutex_);
    std::for_each(folders.rbegin(), folders.rend(), [this](FileInfo& folder) {
        queue_.push_back(std::make_shared<QueuedFolder>(QueuedFolder{.info = std::move(folder)}));
    });
    if (!folders.empty()) {
        changed_.notify_all();
    }
}

std::optional<FolderQueue::ListedFolder> FolderQueue::Next() {
    std::unique_lock lock(mutex_);
    if (queue_.empty()) {
        return std::nullopt;
    }
    const std::shared_ptr<QueuedFolder> folder = std::move(queue_.back());
    queue_.pop_back();
    while (folder->state == QueuedFolder::State::kBeingListed) {
        // List another folder instead of waiting.
        if (const auto other = FindUnlisted()) {
            ListAhead(other, lock);
        } else if (!WaitUntil(changed_, lock, stop_,
                              [&] { return folder->state != QueuedFolder::State::kBeingListed; })) {
            return std::nullopt;
        }
    }
    ListedFolder result{std::move(folder->info), std::nullopt};
    if (folder->state == QueuedFolder::State::kListed) {
        waiting_entries_ -= folder->listing.size();
        result.listing = std::move(folder->listing);
        changed_.notify_all();
    }
    return result;
}

FolderQueue::Listing FolderQueue::List(const std::string& folder) const {
    Listing found;
    files_.List(path::Join(source_, folder), [&](const FileInfo& info) {
        found.push_back(info);
        return !stop_.stop_requested();
    });
    std::sort(found.begin(), found.end(),
              [](const FileInfo& a, const FileInfo& b) { return a.name < b.name; });
    return found;
}

// With the mutex held.
std::shared_ptr<FolderQueue::QueuedFolder> FolderQueue::FindUnlisted() const {
    if (waiting_entries_ > kMaxWaitingEntries) {
        return nullptr;
    }
    const std::size_t ahead = std::min(kMaxListedAhead, queue_.size());
    const auto end = queue_.rbegin() + static_cast<std::ptrdiff_t>(ahead);
    const auto found = std::find_if(queue_.rbegin(), end, [](const auto& folder) {
        return folder->state == QueuedFolder::State::kUnlisted;
    });
    return found == end ? nullptr : *found;
}

void FolderQueue::ListAhead(const std::shared_ptr<QueuedFolder>& folder,
                            std::unique_lock<std::mutex>& lock) {
    folder->state = QueuedFolder::State::kBeingListed;
    const std::string name = folder->info.name;
    lock.unlock();
    std::optional<Listing> listing;
    try {
        listing = List(name);
    } catch (...) {
        // The scan lists the folder again and handles the error.
    }
    lock.lock();
    if (listing && !stop_.stop_requested()) {
        waiting_entries_ += listing->size();
        folder->listing = std::move(*listing);
        folder->state = QueuedFolder::State::kListed;
    } else {
        folder->state = QueuedFolder::State::kFailed;
    }
    changed_.notify_all();
}

void FolderQueue::HelperMain() {
    std::unique_lock lock(mutex_);
    std::shared_ptr<QueuedFolder> folder;
    const auto ended_or_found = [&] {
        folder = ended_ ? nullptr : FindUnlisted();
        return ended_ || folder;
    };
    while (WaitUntil(changed_, lock, stop_, ended_or_found) && folder && !stop_.stop_requested()) {
        ListAhead(folder, lock);
    }
}

}  // namespace vantrel::zip
