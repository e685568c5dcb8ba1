#include "zip/reader/file_queue.h"

#include <algorithm>

#include "zip/base/paths.h"
#include "zip/base/stoppable_wait.h"

namespace vantrel::zip {

namespace {

// Small entries are read together, up to so many bytes and entries: less often asked of the disk,
// and still often enough looked at for a cancel.
constexpr std::uint64_t kBatchBytes = std::uint64_t{1} << 20;
constexpr std::size_t kBatchEntries = 64;
constexpr std::uint64_t kHeaderRoom = 30 + 512;  // local header and usual extra fields
// A thread stays in a folder for so many bytes of the archive. More would take threads far apart
// in it, which a disk with a moving head pays for, and gain nothing where files are large.
constexpr std::uint64_t kTurnBytes = std::uint64_t{32} << 20;

}  // namespace

void FileQueue::SetPlanned(std::size_t count, bool all) {
    const std::lock_guard lock(mutex_);
    planned_ = count;
    all_planned_ = all;
    more_planned_.notify_all();
}

FileQueue::Turn& FileQueue::Join() {
    const std::lock_guard lock(mutex_);
    return turns_.emplace_back();
}

FileQueue::Batch FileQueue::Next(Turn& turn) {
    std::unique_lock lock(mutex_);
    if (turn.begin == turn.end) {
        const auto known = [this] { return next_ < planned_ || all_planned_; };
        if (!WaitUntil(more_planned_, lock, stop_, known)) {
            return {};
        }
        turn = next_ < planned_ ? NewTurn() : HalfOfTheLongest();
    }
    Batch batch{turn.begin, turn.begin, 0};
    while (batch.end < turn.end && batch.end - batch.begin < kBatchEntries) {
        const std::uint64_t bytes = Reach(batch.begin, batch.end);
        if (bytes > kBatchBytes) {
            break;
        }
        batch.bytes = static_cast<std::size_t>(bytes);
        ++batch.end;
    }
    if (batch.IsEmpty() && batch.end < turn.end) {
        ++batch.end;  // a large one, alone
    }
    turn.begin = batch.end;
    return batch;
}

std::uint64_t FileQueue::Reach(std::size_t first, std::size_t last) const {
    const StoredEntry& entry = Entry(last);
    return entry.offset - Entry(first).offset + kHeaderRoom + entry.RawName().size() +
           entry.packed_size;
}

bool FileQueue::InOneFolder(std::size_t one, std::size_t other) const {
    return Cut(plan_.files[one].path).folder == Cut(plan_.files[other].path).folder;
}

FileQueue::Turn FileQueue::NewTurn() {
    Turn turn{next_, next_ + 1};
    while (turn.end < planned_ && Reach(turn.begin, turn.end) <= kTurnBytes &&
           (turn.end - turn.begin < kBatchEntries || InOneFolder(turn.end - 1, turn.end))) {
        ++turn.end;
    }
    next_ = turn.end;
    return turn;
}

// The later half of what another thread still has before it.
FileQueue::Turn FileQueue::HalfOfTheLongest() {
    if (turns_.empty()) {
        return {};
    }
    Turn& longest = *std::max_element(
        turns_.begin(), turns_.end(),
        [](const Turn& a, const Turn& b) { return a.end - a.begin < b.end - b.begin; });
    const Turn half{longest.begin + (longest.end - longest.begin) / 2, longest.end};
    longest.end = half.begin;
    return half;
}

}  // namespace vantrel::zip
