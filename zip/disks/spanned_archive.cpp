#include "zip/disks/spanned_archive.h"

#include <algorithm>
#include <utility>

#include "common/display_text.h"
#include "common/path.h"
#include "zip/base/bytes.h"
#include "zip/disks/disk_prompt.h"
#include "zip/records/format.h"

namespace vantrel::zip {

namespace {

std::string Marker(std::uint32_t number) {
    std::string bytes;
    Put32(bytes, number);
    return bytes;
}

// The largest end up to `limit` that divides no record.
std::size_t UnsplitEnd(std::span<const UnsplitRecord> records, std::size_t limit) {
    for (const UnsplitRecord& record : records) {
        if (record.at < limit && record.at + record.size > limit) {
            return record.at;
        }
    }
    return limit;
}

}  // namespace

SpannedArchive::SpannedArchive(const platform::Machine& machine, RunContext& channel,
                               const std::string& archive)
    : machine_(machine), channel_(channel), target_(machine, channel, archive) {}

void SpannedArchive::Open() {
    const std::string marker = Marker(kSpannedMarker);
    RequireDisk(marker.size(), TryDisk(marker.size()));
    WriteUnsplit(marker);
}

void SpannedArchive::Write(std::string_view bytes, std::span<UnsplitRecord> records) {
    std::size_t done = 0;
    for (;;) {
        const std::size_t end = WriteOnDisk(bytes, done, records);
        while (!records.empty() && records.front().at < end) {
            UnsplitRecord& record = records.front();
            record.place = {disk_, volume_->Size() - (end - record.at)};
            records = records.subspan(1);
        }
        done = end;
        if (done == bytes.size()) {
            return;
        }
        const bool record_next = !records.empty() && records.front().at == done;
        NextDisk(record_next ? records.front().size : 1);
    }
}

// Writes the bytes from `done` that fit on this disk; returns their end.
std::size_t SpannedArchive::WriteOnDisk(std::string_view bytes, std::size_t done,
                                        std::span<UnsplitRecord> records) {
    const std::size_t left = bytes.size() - done;
    const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(left, capacity_));
    const std::size_t end = UnsplitEnd(records, done + most);
    if (end == done) {
        return end;
    }
    if (!records.empty()) {
        volume_->Mark();
        marked_ = Next();
    }
    const std::string_view part = bytes.substr(done, end - done);
    const std::size_t taken = volume_->Offer(part);
    const std::size_t kept_end = taken == part.size() ? end : UnsplitEnd(records, done + taken);
    volume_->Keep(part, kept_end - done);
    capacity_ = taken == part.size() ? capacity_ - taken : 0;
    return kept_end;
}

void SpannedArchive::NextDisk(std::size_t needed) {
    if (volume_->Size() > 0) {
        FinishDisk();
        ++disk_;
    } else {
        // It stated free space and accepted nothing.
        volume_.reset();
        target_.Abandon(true);
    }
    RequireDisk(needed, FreeSpaceNote(target_.FreeBytes()));
}

// Asks until the disk in the drive is suitable.
void SpannedArchive::RequireDisk(std::size_t needed, std::string why_not) {
    while (!why_not.empty()) {
        Ask(disk_, why_not);
        why_not = TryDisk(needed);
    }
    previous_.reset();
}

std::string SpannedArchive::TryDisk(std::size_t needed) {
    channel_.CheckStop();
    try {
        if (std::string why = Obstacle(); !why.empty()) {
            return why;
        }
    } catch (const Error& error) {
        return ErrorNote(error);
    }
    target_.ForgetFolders();
    std::string why;
    try {
        why = Begin(needed);
    } catch (const Error& error) {
        why = ErrorNote(error);
    }
    if (!why.empty()) {
        const bool created = volume_ != nullptr;
        volume_.reset();
        target_.Abandon(created);
    }
    return why;
}

std::string SpannedArchive::Obstacle() {
    if (!machine_.files.Find(path::Root(target_.Archive()))) {
        return NoDiskNote();
    }
    // The first disk of this archive may still have its temporary name.
    for (const std::string& path :
         {target_.Archive(), previous_ ? previous_->path : target_.Archive()}) {
        if (disk_ > 0 && machine_.files.Find(path)) {
            return HoldsArchiveNote(path);
        }
    }
    return "";
}

// Creates the file on the disk in the drive; returns why that is impossible, "" on success.
std::string SpannedArchive::Begin(std::size_t needed) {
    target_.RemoveLeftovers();
    target_.TryMakeFolders();
    volume_ = std::make_unique<Volume>(machine_.files, channel_, target_.Temporary());
    capacity_ = target_.FreeBytes();
    return capacity_ < needed ? FullNote(capacity_) : "";
}

void SpannedArchive::FinishDisk() {
    volume_->Close();
    volume_->ReadBack();
    if (disk_ < kDiskListLimit) {
        Put64(disk_list_, volume_->Size());
        Put32(disk_list_, volume_->HeadCrc());
    }
    smallest_ = std::min(smallest_, volume_->Size());
    finished_bytes_ += volume_->Size();
    if (disk_ == 0 && machine_.files.Find(target_.Archive())) {
        pending_ = previous_ = InfoOf(target_.Temporary());
    } else {
        target_.Commit();
        previous_ = InfoOf(target_.Archive());
    }
    ++finished_disks_;
    volume_.reset();
}

void SpannedArchive::Ask(std::uint32_t disk, const std::string& note) {
    const std::string number = std::to_string(disk + 1);
    ComponentMessage question = Failure(error_number::kDiskFull, target_.Archive(),
                                        PromptForDisk(disk + 1, 0, target_.Archive(), note));
    question.disk = disk + 1;
    channel_.AskRetryOrStop(
        question, "The archive needs disk " + number +
                      ", which an unattended run cannot ask for: " + target_.Archive() + ".");
}

// The list is part of one record, which must fit on a disk.
std::string SpannedArchive::DiskList() const {
    return disk_list_.size() <= smallest_ / 4 ? disk_list_ : "";
}

SpannedArchive::Finished SpannedArchive::InfoOf(const std::string& path) {
    const auto info = machine_.files.Find(path);
    return info ? Finished{path, info->size, info->times.modified} : Finished{path, 0, 0};
}

void SpannedArchive::Patch(const RecordLocation&, std::string_view) {
    RaiseError(error_number::kDeviceIo);
}

void SpannedArchive::TruncateTo(const RecordLocation& place) {
    if (place == marked_) {
        capacity_ += volume_->Size() - place.offset;
        volume_->TruncateTo();
    }
}

void SpannedArchive::Finish() {
    if (disk_ == 0) {
        volume_->PatchHead(Marker(kOneDiskMarker));
    }
    volume_->Close();
    volume_->ReadBack();
}

void SpannedArchive::Commit() {
    target_.Commit();
    ++finished_disks_;
    volume_.reset();
    if (pending_) {
        previous_ = InfoOf(target_.Archive());
        ReplaceOnDiskOne();
    }
}

void SpannedArchive::ReplaceOnDiskOne() {
    std::string note = "The archive is complete, and is to replace the earlier one on that disk.";
    while (InfoOf(pending_->path).size != pending_->size) {
        Ask(0, note);
        note = "The disk in the drive is not disk 1 of this archive.";
    }
    target_.Commit();
}

// Whether the disk that was finished last is still in the drive. FAT keeps times in steps of 2 s.
bool SpannedArchive::IsPreviousInserted() {
    constexpr platform::Ticks kTolerance = 20'000'000;
    try {
        const Finished found = InfoOf(previous_->path);
        const auto earlier = std::min(found.modified, previous_->modified);
        const auto later = std::max(found.modified, previous_->modified);
        return found.size == previous_->size && later - earlier <= kTolerance;
    } catch (const Error&) {
        return false;
    }
}

void SpannedArchive::Abandon() {
    const bool open = volume_ != nullptr;
    volume_.reset();
    if (!open && previous_ && IsPreviousInserted() && target_.RemoveFile(previous_->path)) {
        --finished_disks_;
    }
    target_.Abandon(open);
    if (finished_disks_ > 0) {
        channel_.Report(Warning(target_.Archive(),
                                Counted(finished_disks_, "disk holds a part", "disks hold parts") +
                                    " of an archive that was not finished: " + target_.Archive()));
    }
}

}  // namespace vantrel::zip
