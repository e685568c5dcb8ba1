#include "zip/reader/found_entries.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace vantrel::zip {

namespace {

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
        if (damaged_ > limits_.lost || name_bytes_ > limits_.name_bytes) {
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
    if ((!run_is_open_ || runs_.back().end_record != 0) && runs_.size() < limits_.directories) {
        runs_.emplace_back();
        runs_.back().start = at;
        run_is_open_ = true;
    }
    return runs_.back();
}

void FoundEntries::AddCentral(StoredEntry entry, std::uint64_t at, std::uint64_t length) {
    Run& run = CurrentRun(at);
    run.end = at + length;
    ++run.records;
    const auto number = static_cast<std::uint32_t>(runs_.size());
    if (Found* const found = Match(entry, run); found != nullptr) {
        found->run = number;
        return Describe(*found, std::move(entry));
    }
    name_bytes_ += entry.name.size();
    if (orphans_.size() == limits_.lost || name_bytes_ > limits_.name_bytes) {
        ++orphans_unnamed_;
        return;
    }
    orphans_.push_back({std::move(entry), number});
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
    const std::size_t hash = HashOfName(described);
    auto next = by_name_.find(hash);  // equal_range would count all
    for (int tries = limits_.same_name; next != by_name_.end() && next->first == hash && tries > 0;
         ++next, --tries) {
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
void FoundEntries::Describe(Found& found, StoredEntry entry) {
    entry.offset = found.entry.offset;
    if (!found.why.empty()) {
        LocalRecord record{std::move(entry), found.data_at, true};
        const ProbeResult result = CheckDescribed(record);
        if (result.IsIntact()) {
            found.why.clear();
            found.end = result.end;
        }
        found.entry = std::move(record.entry);
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

// Reads nothing when the bytes that the directory states cannot be read.
ProbeResult FoundEntries::CheckDescribed(LocalRecord& record) {
    const std::uint64_t size = std::min(record.entry.packed_size, ~record.data_at);
    ProbeResult result;
    result.why = source_.WhyUnreadable(record.data_at, record.data_at + size);
    return result.IsIntact() ? probe_.Check(record, false) : result;
}

// A directory that other records follow is that of an archive inside this one, unless it describes
// the archive from its first byte on (then others were appended to it).
void FoundEntries::FindNested() {
    const std::uint64_t last_local = found_.empty() ? 0 : found_.back().entry.offset;
    std::vector<Range> nested;
    bool directory_follows = false;
    for (std::size_t i = runs_.size(); i-- > 0;) {
        Run& run = runs_[i];
        const bool followed = i + 1 < runs_.size() || run.end < last_local;
        run.nested =
            followed && (directory_follows || (run.end_record != 0 && run.base.value_or(0) != 0));
        directory_follows |= run.IsIntact();
        if (run.nested) {
            nested.push_back(run.Contents());
        }
    }
    DropInside(std::move(nested));
    if (!runs_.empty() && LastIsNested()) {
        runs_.back().nested = true;
        DropInside({runs_.back().Contents()});
    }
    DropContentOfDamaged();
    DropContentOfOrphans();
}

// Whether the data of an entry contains the last directory: its end, or that of the archive, is
// lost. So it is as well when it describes none of the entries before it.
bool FoundEntries::LastIsNested() const {
    const Run& last = runs_.back();
    const std::uint64_t base = last.Contents().begin;
    return std::any_of(found_.begin(), found_.end(), [&](const Found& found) {
        if (found.entry.offset >= base || found.dropped || found.run == runs_.size()) {
            return false;
        }
        const bool contains =
            found.states_sizes
                ? found.data_at <= base && last.end - found.data_at <= found.entry.packed_size
                : found.data_at == base || found.data_at + kStoredBlockHeader == base;
        return contains || last.IsIntact();
    });
}

// Drops what no directory of this archive describes.
void FoundEntries::DropInside(std::vector<Range> ranges) {
    std::sort(ranges.begin(), ranges.end(),
              [](const Range& one, const Range& other) { return one.begin < other.begin; });
    auto next = ranges.begin();
    std::uint64_t end = 0;
    for (Found& found : found_) {
        for (; next != ranges.end() && next->begin <= found.entry.offset; ++next) {
            end = std::max(end, next->end);
        }
        found.dropped |= found.entry.offset < end && IsUndescribed(found);
    }
}

bool FoundEntries::IsUndescribed(const Found& found) const {
    return found.run == 0 || runs_[found.run - 1].nested;
}

// Whether the content of a damaged file is that of an archive: an intact directory describes the
// file and not its content, or the data begins with a local header.
bool FoundEntries::IsArchive(const Found& found, const Found& next) const {
    const std::uint64_t start = next.entry.offset - found.data_at;
    const bool begins_like_one =
        next.run == 0 &&
        (start == 0 || (start == kStoredBlockHeader && found.entry.method != Method::kStored));
    return begins_like_one || (found.run != 0 && found.run == runs_.size() &&
                               !runs_.back().nested && runs_.back().IsIntact());
}

// What a damaged file contains is dropped up to its stated end, or to that of the directory of the
// archive that it is.
void FoundEntries::DropContentOfDamaged() {
    std::vector<Range> nested;  // directories; they do not overlap
    for (const Run& run : runs_) {
        if (run.nested) {
            nested.push_back({run.start, run.end});
        }
    }
    std::uint64_t drop_end = 0;
    for (std::size_t i = 0; i < found_.size(); ++i) {
        Found& found = found_[i];
        found.dropped |= found.entry.offset < drop_end && IsUndescribed(found);
        if (found.why.empty() || found.dropped || !found.states_sizes || i + 1 == found_.size() ||
            !IsArchive(found, found_[i + 1])) {
            continue;
        }
        const std::uint64_t stated_end =
            found.data_at + std::min(found.entry.packed_size, ~found.data_at);
        const auto own = std::lower_bound(
            nested.begin(), nested.end(), found.data_at,
            [](const Range& one, std::uint64_t offset) { return one.begin < offset; });
        const bool has_own = own != nested.end() && own->end <= stated_end;
        drop_end = std::max(drop_end, has_own ? own->end : stated_end);
    }
}

// The same for files of which the local header is lost.
void FoundEntries::DropContentOfOrphans() {
    std::vector<Range> contents;
    for (const Orphan& orphan : orphans_) {
        const Run& run = runs_[orphan.run - 1];
        if (run.nested || !run.IsIntact() || orphan.run != runs_.size() || !run.base) {
            continue;
        }
        const StoredEntry& entry = orphan.entry;
        const std::uint64_t end = entry.offset + std::min(entry.packed_size, ~entry.offset);
        contents.push_back({Shifted(entry.offset, *run.base), Shifted(end, *run.base)});
    }
    DropInside(std::move(contents));
}

// The position of the first record behind `position`, or the end of the archive.
std::uint64_t FoundEntries::NextRecord(std::uint64_t position) const {
    const auto found = std::upper_bound(
        found_.begin(), found_.end(), position,
        [](std::uint64_t offset, const Found& one) { return offset < one.entry.offset; });
    const auto run =
        std::upper_bound(runs_.begin(), runs_.end(), position,
                         [](std::uint64_t offset, const Run& one) { return offset < one.start; });
    return std::min(found == found_.end() ? source_.Size() : found->entry.offset,
                    run == runs_.end() ? source_.Size() : run->start);
}

// Looks for the data of an entry whose local header is damaged: behind a header of the usual
// length, or before the next record. Returns why it is lost, "" when it is intact.
std::string FoundEntries::Recover(StoredEntry& entry, std::int64_t base) {
    const std::uint64_t position = Shifted(entry.offset, base);
    if (base < 0 && position == 0) {
        return "the archive's beginning is missing";
    }
    if (position >= source_.Size()) {
        return "the archive ends before its data";
    }
    const std::uint64_t data_at = position + local_header::kFixedSize + entry.RawName().size();
    const std::uint64_t next = NextRecord(position);
    std::vector<std::uint64_t> starts = {data_at};
    for (const std::uint64_t descriptor : kDescriptorLengths) {
        const std::uint64_t length = std::min(entry.packed_size, source_.Size()) + descriptor;
        if (next >= length && next - length >= data_at) {
            starts.push_back(next - length);
        }
    }
    entry.offset = position;
    entry.flags &= static_cast<std::uint16_t>(~flag::kDescriptor);
    for (const std::uint64_t start : starts) {
        LocalRecord record{entry, start, true};
        const ProbeResult result = CheckDescribed(record);
        if (result.IsIntact()) {
            entry = std::move(record.entry);
            entry.data_at = entry.offset = start;
            return "";
        }
    }
    const std::string unreadable = source_.WhyUnreadable(position, data_at + 1);
    return unreadable.empty() ? "its local header is damaged" : unreadable;
}

void FoundEntries::AddOrphans(Entries& intact, Directory& directory) {
    for (Orphan& orphan : orphans_) {
        const Run& run = runs_[orphan.run - 1];
        const std::int64_t base = run.base.value_or(0);
        if (run.nested || At(Shifted(orphan.entry.offset, base)) != nullptr) {
            continue;  // the local header there is another's, or has its own name
        }
        Add(orphan.entry, Recover(orphan.entry, base), intact, directory);
    }
}

void FoundEntries::Add(StoredEntry& entry, std::string why, Entries& intact, Directory& directory) {
    if (why.empty()) {
        intact.push_back(&entry);
        return;
    }
    entry.offset = source_.AddressOf(entry.offset);
    directory.lost.push_back({std::move(entry), std::move(why)});
}

void FoundEntries::Finish(Directory& directory) {
    FindNested();
    Entries intact;
    AddOrphans(intact, directory);
    for (Found& found : found_) {
        if (!found.dropped) {
            Add(found.entry, std::move(found.why), intact, directory);
        }
    }
    std::stable_sort(intact.begin(), intact.end(), [](const StoredEntry* a, const StoredEntry* b) {
        return a->offset < b->offset;
    });
    directory.entries = {};
    for (StoredEntry* const entry : intact) {
        entry->offset = source_.AddressOf(entry->offset);
        entry->data_at = entry->data_at == 0 ? 0 : source_.AddressOf(entry->data_at);
        directory.entries.Append(*entry);
    }
    orphans_.clear();
    found_.clear();
    directory.lost_unnamed = orphans_unnamed_;
    directory.start = source_.AddressOf(source_.Size());
    directory.searched = true;
}

}  // namespace vantrel::zip
