#include "zip/writer/folder_queue.h"

#include <algorithm>
#include <utility>

#include "zip/base/paths.h"
#include "zip/base/run_context.h"

namespace vantrel::zip {

namespace {

using platform::FileInfo;

// So many of the folders that come next are listed before their turn, and no more while so many
// entries wait for theirs: some megabytes.
constexpr std::size_t kMostAhead = 64;
constexpr std::size_t kMostHeld = 20'000;
// More wait for each other inside the system: a third takes half as much processor time again and
// gains nothing (under Wine, on a file system in memory).
constexpr int kMostThreads = 2;

}  // namespace

// Shared with the thread that lists it, which may be at it still when the scan has ended.
struct FolderQueue::Place {
    enum class State { kUnlisted, kBeingListed, kListed, kFailed };

    FileInfo folder;
    State state = State::kUnlisted;
    Listing listing{};
};

FolderQueue::FolderQueue(platform::FileSystem& files, std::string source, std::stop_token stop,
                         int threads)
    : files_(files), source_(std::move(source)), stop_(std::move(stop)) {
    for (int i = 1; i < std::min(threads, kMostThreads); ++i) {
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
        places_.push_back(std::make_shared<Place>(Place{.folder = std::move(folder)}));
    });
    if (!folders.empty()) {
        changed_.notify_all();
    }
}

std::optional<FolderQueue::Turn> FolderQueue::Next() {
    std::unique_lock lock(mutex_);
    if (places_.empty()) {
        return std::nullopt;
    }
    const std::shared_ptr<Place> place = std::move(places_.back());
    places_.pop_back();
    while (place->state == Place::State::kBeingListed) {
        // Rather another one than to wait.
        if (const auto other = FindUnlisted()) {
            ListAhead(other, lock);
        } else if (!WaitUntil(changed_, lock, stop_,
                              [&] { return place->state != Place::State::kBeingListed; })) {
            return std::nullopt;
        }
    }
    Turn turn{std::move(place->folder), std::nullopt};
    if (place->state == Place::State::kListed) {
        held_ -= place->listing.size();
        turn.listing = std::move(place->listing);
        changed_.notify_all();
    }
    return turn;
}

FolderQueue::Listing FolderQueue::List(const std::string& folder) const {
    Listing found;
    files_.List(JoinPath(source_, folder), [&](const FileInfo& info) {
        found.push_back(info);
        return !stop_.stop_requested();
    });
    std::sort(found.begin(), found.end(),
              [](const FileInfo& a, const FileInfo& b) { return a.name < b.name; });
    return found;
}

// With the mutex held.
std::shared_ptr<FolderQueue::Place> FolderQueue::FindUnlisted() const {
    if (held_ > kMostHeld) {
        return nullptr;
    }
    const std::size_t ahead = std::min(kMostAhead, places_.size());
    const auto end = places_.rbegin() + static_cast<std::ptrdiff_t>(ahead);
    const auto found = std::find_if(places_.rbegin(), end, [](const auto& place) {
        return place->state == Place::State::kUnlisted;
    });
    return found == end ? nullptr : *found;
}

void FolderQueue::ListAhead(const std::shared_ptr<Place>& place,
                            std::unique_lock<std::mutex>& lock) {
    place->state = Place::State::kBeingListed;
    const std::string name = place->folder.name;
    lock.unlock();
    std::optional<Listing> listing;
    try {
        listing = List(name);
    } catch (...) {
        // Met again when its turn has come.
    }
    lock.lock();
    if (listing && !stop_.stop_requested()) {
        held_ += listing->size();
        place->listing = std::move(*listing);
        place->state = Place::State::kListed;
    } else {
        place->state = Place::State::kFailed;
    }
    changed_.notify_all();
}

void FolderQueue::HelperMain() {
    std::unique_lock lock(mutex_);
    std::shared_ptr<Place> place;
    const auto ended_or_found = [&] {
        place = ended_ ? nullptr : FindUnlisted();
        return ended_ || place;
    };
    while (WaitUntil(changed_, lock, stop_, ended_or_found) && place && !stop_.stop_requested()) {
        ListAhead(place, lock);
    }
}

}  // namespace vantrel::zip
