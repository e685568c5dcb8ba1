#include "zip/reader/file_queue.h"

#include <algorithm>

#include "zip/base/run_context.h"

namespace vantrel::zip {

namespace {

// Small entries are read together, up to these limits: fewer reads, and still frequent checks for a
// cancel. More bytes gain nothing (docs/performance.md) and take memory on each thread
// (HeldMemory::kOfEachThread).
constexpr std::uint64_t kBatchBytes = std::uint64_t{1} << 18;
constexpr std::size_t kBatchEntries = 64;
// Usual extra fields of a local header.
constexpr std::uint64_t kExtraBytes = 512;
// A thread stays in a folder for this many bytes of the archive. More would move threads far apart
// in it, which costs seeks on a rotating disk, and gain nothing where files are large.
constexpr std::uint64_t kRangeBytes = std::uint64_t{32} << 20;

}  // namespace

void FileQueue::SetPlanned(std::size_t count, bool all) {
    const std::lock_guard lock(mutex_);
    planned_ = count;
    all_planned_ = all;
    more_planned_.notify_all();
}

FileQueue::FileRange& FileQueue::Join() {
    const std::lock_guard lock(mutex_);
    return ranges_.emplace_back();
}

FileQueue::Batch FileQueue::Next(FileRange& range) {
    std::unique_lock lock(mutex_);
    if (range.begin == range.end) {
        const auto known = [this] { return next_ < planned_ || all_planned_; };
        if (!WaitUntil(more_planned_, lock, stop_, known)) {
            return {};
        }
        range = next_ < planned_ ? NextRange() : HalfOfLongest();
    }
    Batch batch{range.begin, range.begin, 0};
    while (batch.end < range.end && batch.end - batch.begin < kBatchEntries) {
        const std::uint64_t bytes = Reach(batch.begin, batch.end);
        if (bytes > kBatchBytes) {
            break;
        }
        batch.bytes = static_cast<std::size_t>(bytes);
        ++batch.end;
    }
    if (batch.IsEmpty() && batch.end < range.end) {
        ++batch.end;  // a large one, alone
    }
    range.begin = batch.end;
    return batch;
}

std::uint64_t FileQueue::Reach(std::size_t first, std::size_t last) const {
    const EntryList::Extent entry = ExtentOf(last);
    return entry.offset - ExtentOf(first).offset + kExtraBytes + entry.header_length +
           entry.packed_size;
}

bool FileQueue::InOneFolder(std::size_t one, std::size_t other) const {
    return plan_.files[one].folder == plan_.files[other].folder;
}

FileQueue::FileRange FileQueue::NextRange() {
    FileRange range{next_, next_ + 1};
    while (range.end < planned_ && Reach(range.begin, range.end) <= kRangeBytes &&
           (range.end - range.begin < kBatchEntries || InOneFolder(range.end - 1, range.end))) {
        ++range.end;
    }
    next_ = range.end;
    return range;
}

// Steals the later half of what another thread has left.
FileQueue::FileRange FileQueue::HalfOfLongest() {
    if (ranges_.empty()) {
        return {};
    }
    FileRange& longest = *std::max_element(
        ranges_.begin(), ranges_.end(),
        [](const FileRange& a, const FileRange& b) { return a.end - a.begin < b.end - b.begin; });
    const FileRange half{longest.begin + (longest.end - longest.begin) / 2, longest.end};
    longest.end = half.begin;
    return half;
}

}  // namespace vantrel::zip
