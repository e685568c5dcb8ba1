#include "zip/reader/found_entries.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace vantrel::zip {

namespace {

// Bounds for archives that are made to waste memory: lost entries that are named, the bytes of
// their names, local headers of one name that a central record is compared with, directories.
constexpr std::size_t kMaxLost = std::size_t{1} << 20;
constexpr std::uint64_t kMaxNameBytes = std::uint64_t{32} << 20;
constexpr int kMaxSameName = 64;
constexpr std::size_t kMaxRuns = std::size_t{1} << 16;
// Before the data of a file that a deflate stream holds uncompressed (RFC 1951, 3.2.4).
constexpr std::uint64_t kStoredBlockHeader = 5;

// None, with and without a signature, with sizes of 4 and of 8 bytes (APPNOTE 4.3.9).
constexpr std::uint64_t kDescriptorLengths[] = {0, 16, 12, 24, 20};

// The offset `base` bytes behind `offset`; 0 before the archive, the highest number behind all.
std::uint64_t Shifted(std::uint64_t offset, std::int64_t base) {
    const auto distance = static_cast<std::uint64_t>(base);
    if (base < 0) {
        return offset - std::min(offset, ~distance + 1);
    }
    return offset + std::min(distance, ~offset);
}

std::size_t HashOfName(const StoredEntry& entry) {
    return std::hash<std::string>()(entry.RawName());
}

}  // namespace

void FoundEntries::AddLocal(LocalRecord record, ProbeResult result) {
    run_is_open_ = false;
    if (!result.IsIntact()) {
        name_bytes_ += record.entry.name.size();
        ++damaged_;
        if (damaged_ > kMaxLost || name_bytes_ > kMaxNameBytes) {
            ++orphans_unnamed_;
            return;
        }
    }
    Found found;
    found.entry = std::move(record.entry);
    found.data_at = record.data_at;
    found.end = result.end;
    found.why = std::move(result.why);
    found.states_sizes = record.states_sizes;
    found_.push_back(std::move(found));
}

FoundEntries::Run& FoundEntries::CurrentRun(std::uint64_t at) {
    if ((!run_is_open_ || runs_.back().end_record != 0) && runs_.size() < kMaxRuns) {
        runs_.emplace_back();
        runs_.back().start = at;
        run_is_open_ = true;
    }
    return runs_.back();
}

void FoundEntries::AddCentral(CentralRecord record, std::uint64_t at, std::uint64_t length) {
    Run& run = CurrentRun(at);
    run.end = at + length;
    ++run.records;
    const auto number = static_cast<std::uint32_t>(runs_.size());
    if (Found* const found = Match(record.entry, run); found != nullptr) {
        found->run = number;
        return Describe(*found, record.entry);
    }
    name_bytes_ += record.entry.name.size();
    if (orphans_.size() == kMaxLost || name_bytes_ > kMaxNameBytes) {
        ++orphans_unnamed_;
        return;
    }
    orphans_.push_back({std::move(record.entry), number});
}

void FoundEntries::AddEnd(std::uint64_t at, std::uint64_t entries, std::uint64_t directory_offset) {
    if (!run_is_open_) {
        return;
    }
    Run& run = runs_.back();
    run.end_record = at;
    run.stated = entries;
    if (!run.base && run.IsIntact()) {
        run.base = static_cast<std::int64_t>(run.start - directory_offset);
    }
    run_is_open_ = false;
}

FoundEntries::Found* FoundEntries::At(std::uint64_t position) {
    const auto found = std::lower_bound(
        found_.begin(), found_.end(), position,
        [](const Found& one, std::uint64_t offset) { return one.entry.offset < offset; });
    return found != found_.end() && found->entry.offset == position ? &*found : nullptr;
}

FoundEntries::Found* FoundEntries::Match(const StoredEntry& described, Run& run) {
    Found* found = At(Shifted(described.offset, run.base.value_or(0)));
    const auto agrees = [&](const Found& one) {
        return one.entry.RawName() == described.RawName() ||
               (one.entry.crc == described.crc && described.crc != 0);
    };
    if (found == nullptr || !agrees(*found)) {
        found = ByName(described);
    }
    if (found != nullptr && !run.base) {
        run.base = static_cast<std::int64_t>(found->entry.offset - described.offset);
    }
    return found;
}

// The last local header of this name that no directory describes yet, one with the same checksum
// if there is one.
FoundEntries::Found* FoundEntries::ByName(const StoredEntry& described) {
    for (; named_ < found_.size(); ++named_) {
        by_name_.emplace(HashOfName(found_[named_].entry), static_cast<std::uint32_t>(named_));
    }
    Found* best = nullptr;
    auto [next, end] = by_name_.equal_range(HashOfName(described));
    for (int tries = kMaxSameName; next != end && tries > 0; ++next, --tries) {
        Found& one = found_[next->second];
        const bool same = one.entry.crc == described.crc && one.entry.size == described.size;
        const bool fits = one.run == 0 && one.entry.RawName() == described.RawName() &&
                          (same || !one.why.empty());
        if (fits && (best == nullptr || best->entry.offset < one.entry.offset)) {
            best = &one;
        }
    }
    return best;
}

// The directory's data is kept. Where the data did not agree with the local header it is compared
// with the directory as well.
void FoundEntries::Describe(Found& found, const StoredEntry& described) {
    StoredEntry entry = described;
    entry.offset = found.entry.offset;
    if (!found.why.empty()) {
        LocalRecord record{entry, found.data_at, true};
        const ProbeResult result = probe_.Check(record, false);
        if (result.IsIntact()) {
            found.why.clear();
            found.end = result.end;
            found.entry = std::move(record.entry);
        } else {
            found.entry = std::move(entry);
        }
        found.states_sizes = true;
        return;
    }
    if (entry.RawName() != found.entry.RawName()) {
        return;  // one of them is damaged, and the data agrees with the local header
    }
    found.entry.name = std::move(entry.name);
    found.entry.raw_name = std::move(entry.raw_name);
    found.entry.times = entry.times;
    found.entry.attributes = entry.attributes;
    found.entry.is_folder = entry.is_folder;
    found.entry.is_link = entry.is_link;
}

// A directory that other records follow is that of an archive inside this one, unless it describes
// the archive from its first byte on (then others were appended to it).
void FoundEntries::FindNested() {
    const std::uint64_t last_local = found_.empty() ? 0 : found_.back().entry.offset;
    for (std::size_t i = 0; i < runs_.size(); ++i) {
        Run& run = runs_[i];
        const bool followed = i + 1 < runs_.size() || run.end < last_local;
        const bool directory_follows =
            std::any_of(runs_.begin() + static_cast<std::ptrdiff_t>(i) + 1, runs_.end(),
                        [](const Run& later) { return later.IsIntact(); });
        run.nested =
            followed && (directory_follows || (run.end_record != 0 && run.base.value_or(0) != 0));
    }
    for (const Run& run : runs_) {
        if (run.nested) {
            DropInside(static_cast<std::uint64_t>(std::max<std::int64_t>(run.base.value_or(0), 0)),
                       std::max(run.end_record, run.end));
        }
    }
    if (!runs_.empty() && LastIsNested()) {
        Run& last = runs_.back();
        last.nested = true;
        DropInside(static_cast<std::uint64_t>(std::max<std::int64_t>(last.base.value_or(0), 0)),
                   last.end);
    }
    DropContentOfDamaged();
    DropContentOfOrphans();
}

// Whether the data of an entry contains the last directory: its end, or that of the archive, is
// lost. So it is as well when it describes none of the entries before it.
bool FoundEntries::LastIsNested() const {
    const Run& last = runs_.back();
    if (last.base.value_or(0) <= 0) {
        return false;
    }
    const auto base = static_cast<std::uint64_t>(*last.base);
    const auto number = static_cast<std::uint32_t>(runs_.size());
    for (const Found& found : found_) {
        if (found.entry.offset >= base) {
            break;
        }
        if (found.dropped || found.run == number) {
            continue;
        }
        const bool contains =
            found.states_sizes
                ? found.data_at <= base && last.end - found.data_at <= found.entry.packed_size
                : found.data_at == base || found.data_at + kStoredBlockHeader == base;
        if (contains || last.IsIntact()) {
            return true;
        }
    }
    return false;
}

// Drops what no directory of this archive describes.
void FoundEntries::DropInside(std::uint64_t begin, std::uint64_t end) {
    auto found = std::lower_bound(
        found_.begin(), found_.end(), begin,
        [](const Found& one, std::uint64_t offset) { return one.entry.offset < offset; });
    for (; found != found_.end() && found->entry.offset < end; ++found) {
        found->dropped |= found->run == 0 || runs_[found->run - 1].nested;
    }
}

// What a damaged file contains is dropped up to its stated end: where an intact directory
// describes the file and not its content, and where the data begins with a local header, because
// the file is an archive then. The directory of that archive ends it earlier.
void FoundEntries::DropContentOfDamaged() {
    const bool has_directory = !runs_.empty() && !runs_.back().nested && runs_.back().IsIntact();
    for (std::size_t i = 0; i + 1 < found_.size(); ++i) {
        const Found& found = found_[i];
        if (found.why.empty() || found.dropped || !found.states_sizes) {
            continue;
        }
        const Found& next = found_[i + 1];
        const std::uint64_t start = next.entry.offset - found.data_at;
        const bool is_archive =
            next.run == 0 &&
            (start == 0 || (start == kStoredBlockHeader && found.entry.method != Method::kStored));
        if (!is_archive && !(has_directory && found.run == runs_.size())) {
            continue;
        }
        const std::uint64_t stated_end =
            found.data_at + std::min(found.entry.packed_size, ~found.data_at);
        const auto own = std::find_if(runs_.begin(), runs_.end(), [&](const Run& run) {
            return run.nested && run.start >= found.data_at && run.end <= stated_end;
        });
        DropInside(found.data_at, own == runs_.end() ? stated_end : own->end);
    }
}

// The same for files of which the local header is lost.
void FoundEntries::DropContentOfOrphans() {
    for (const Orphan& orphan : orphans_) {
        const Run& run = runs_[orphan.run - 1];
        if (run.nested || !run.IsIntact() || orphan.run != runs_.size() || !run.base) {
            continue;
        }
        const StoredEntry& entry = orphan.entry;
        const std::uint64_t end = entry.offset + std::min(entry.packed_size, ~entry.offset);
        DropInside(Shifted(entry.offset, *run.base), Shifted(end, *run.base));
    }
}

std::uint64_t FoundEntries::NextRecord(std::uint64_t position) const {
    const auto found = std::upper_bound(
        found_.begin(), found_.end(), position,
        [](std::uint64_t offset, const Found& one) { return offset < one.entry.offset; });
    std::uint64_t next = found == found_.end() ? size_ : found->entry.offset;
    for (const Run& run : runs_) {
        if (run.start > position) {
            return std::min(next, run.start);
        }
    }
    return next;
}

// Looks for the data of an entry whose local header is damaged: behind a header of the usual
// length, or before the next record. True when it is intact.
bool FoundEntries::Recover(StoredEntry& entry, std::int64_t base, std::string& why) {
    const std::uint64_t position = Shifted(entry.offset, base);
    if (base < 0 && position == 0) {
        why = "the archive's beginning is missing";
        return false;
    }
    if (position >= size_) {
        why = "the archive ends before its data";
        return false;
    }
    why = "its local header is damaged";
    const std::uint64_t header = local_header::kFixedSize + entry.RawName().size();
    const std::uint64_t next = NextRecord(position);
    std::vector<std::uint64_t> starts = {position + header};
    for (const std::uint64_t descriptor : kDescriptorLengths) {
        const std::uint64_t length = std::min(entry.packed_size, size_) + descriptor;
        if (next >= length && next - length >= position + header) {
            starts.push_back(next - length);
        }
    }
    for (const std::uint64_t start : starts) {
        LocalRecord record{entry, start, true};
        record.entry.offset = position;
        record.entry.flags &= static_cast<std::uint16_t>(~flag::kDescriptor);
        const ProbeResult result = probe_.Check(record, false);
        if (result.IsIntact()) {
            entry = std::move(record.entry);
            entry.data_at = entry.offset = start;
            return true;
        }
    }
    return false;
}

void FoundEntries::AddLost(Directory& directory, StoredEntry entry, std::string why) {
    directory.lost.push_back({std::move(entry), std::move(why)});
}

void FoundEntries::Finish(Directory& directory) {
    FindNested();
    std::vector<const StoredEntry*> intact;
    for (Orphan& orphan : orphans_) {
        const Run& run = runs_[orphan.run - 1];
        if (run.nested || At(Shifted(orphan.entry.offset, run.base.value_or(0))) != nullptr) {
            continue;  // the local header there is another's, or has its own name
        }
        std::string why;
        if (Recover(orphan.entry, run.base.value_or(0), why)) {
            intact.push_back(&orphan.entry);
        } else {
            AddLost(directory, std::move(orphan.entry), std::move(why));
        }
    }
    for (Found& found : found_) {
        if (found.dropped) {
            continue;
        }
        if (found.why.empty()) {
            intact.push_back(&found.entry);
        } else {
            AddLost(directory, std::move(found.entry), std::move(found.why));
        }
    }
    std::stable_sort(intact.begin(), intact.end(), [](const StoredEntry* a, const StoredEntry* b) {
        return a->offset < b->offset;
    });
    directory.entries = {};
    for (const StoredEntry* entry : intact) {
        directory.entries.Append(*entry);
    }
    orphans_.clear();
    found_.clear();
    directory.lost_unnamed = orphans_unnamed_;
    directory.start = size_;
    directory.searched = true;
}

}  // namespace vantrel::zip
