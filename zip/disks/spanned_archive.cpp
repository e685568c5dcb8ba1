#include "zip/disks/spanned_archive.h"

#include <algorithm>
#include <utility>

#include "common/display_text.h"
#include "zip/base/little_endian.h"
#include "zip/base/paths.h"
#include "zip/disks/disk_prompt.h"
#include "zip/records/disk_signs.h"
#include "zip/records/entry_records.h"

namespace vantrel::zip {

namespace {

std::string Marker(std::uint32_t number) {
    std::string bytes;
    Put32(bytes, number);
    return bytes;
}

// The end of the longest part of bytes `from` to `limit` that divides no record.
std::size_t WholeEnd(std::span<const WholeRecord> records, std::size_t limit) {
    for (const WholeRecord& record : records) {
        if (record.at < limit && record.at + record.size > limit) {
            return record.at;
        }
    }
    return limit;
}

}  // namespace

SpannedArchive::SpannedArchive(const platform::Machine& machine, RunChannel& channel,
                               const std::string& archive)
    : machine_(machine), channel_(channel), place_(machine, channel, archive) {}

void SpannedArchive::Open() {
    const std::string marker = Marker(kSpannedMarker);
    UseDisk(marker.size(), WhyNot(marker.size()));
    WriteWhole(marker);
}

void SpannedArchive::Write(std::string_view bytes, std::span<WholeRecord> records) {
    std::size_t done = 0;
    for (;;) {
        const std::size_t end = WriteHere(bytes, done, records);
        while (!records.empty() && records.front().at < end) {
            WholeRecord& record = records.front();
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

// Writes what fits on this disk of the bytes from `done` on; returns where it ends.
std::size_t SpannedArchive::WriteHere(std::string_view bytes, std::size_t done,
                                      std::span<WholeRecord> records) {
    const std::size_t left = bytes.size() - done;
    const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(left, room_));
    const std::size_t end = WholeEnd(records, done + most);
    if (end == done) {
        return end;
    }
    if (!records.empty()) {
        volume_->Mark();
        marked_ = Next();
    }
    const std::string_view part = bytes.substr(done, end - done);
    const std::size_t taken = volume_->Offer(part);
    const std::size_t kept_end = taken == part.size() ? end : WholeEnd(records, done + taken);
    volume_->Keep(part, kept_end - done);
    room_ = taken == part.size() ? room_ - taken : 0;
    return kept_end;
}

void SpannedArchive::NextDisk(std::size_t needed) {
    if (volume_->Size() > 0) {
        LeaveDisk();
        ++disk_;
    } else {
        // It promised room and took nothing.
        volume_.reset();
        place_.Abandon(true);
    }
    UseDisk(needed, FreeSpaceNote(FreeBytes()));
}

// Asks until there is a disk without a reason why not.
void SpannedArchive::UseDisk(std::size_t needed, std::string why_not) {
    while (!why_not.empty()) {
        Ask(disk_, why_not);
        why_not = WhyNot(needed);
    }
    left_.reset();
}

std::string SpannedArchive::WhyNot(std::size_t needed) {
    channel_.CheckStop();
    try {
        if (std::string why = Unsuitable(); !why.empty()) {
            return why;
        }
    } catch (const Error& error) {
        return ErrorNote(error);
    }
    place_.ForgetFolders();
    std::string why;
    try {
        why = Begin(needed);
    } catch (const Error& error) {
        why = ErrorNote(error);
    }
    if (!why.empty()) {
        const bool created = volume_ != nullptr;
        volume_.reset();
        place_.Abandon(created);
    }
    return why;
}

std::string SpannedArchive::Unsuitable() {
    if (!machine_.files.Find(RootOf(place_.Archive()))) {
        return NoDiskNote();
    }
    // The first disk of this archive may stand under its temporary name still.
    for (const std::string& path : {place_.Archive(), left_ ? left_->path : place_.Archive()}) {
        if (disk_ > 0 && machine_.files.Find(path)) {
            return HoldsArchiveNote(path);
        }
    }
    return "";
}

// Begins the file on the disk in the drive, or says why that cannot be.
std::string SpannedArchive::Begin(std::size_t needed) {
    place_.RemoveLeftovers();
    place_.TryMakeFolders();
    volume_ = std::make_unique<Volume>(machine_.files, channel_, place_.Temporary());
    room_ = FreeBytes();
    return room_ < needed ? FullNote(room_) : "";
}

void SpannedArchive::LeaveDisk() {
    volume_->Close();
    volume_->ReadBack();
    if (disk_ < kDiskListLimit) {
        Put64(disk_list_, volume_->Size());
        Put32(disk_list_, volume_->HeadCrc());
    }
    smallest_ = std::min(smallest_, volume_->Size());
    if (disk_ == 0 && machine_.files.Find(place_.Archive())) {
        waiting_ = left_ = Found(place_.Temporary());
    } else {
        place_.Commit();
        left_ = Found(place_.Archive());
    }
    ++finished_disks_;
    volume_.reset();
}

void SpannedArchive::Ask(std::uint32_t disk, const std::string& note) {
    const std::string number = std::to_string(disk + 1);
    channel_.RetryOrStop({error_number::kDiskFull, place_.Archive(),
                          PromptToWrite(disk + 1, place_.Archive(), note),
                          "The archive needs disk " + number +
                              ", and nobody is there to insert it: " + place_.Archive() + "."});
}

std::uint64_t SpannedArchive::FreeBytes() {
    return machine_.drives.FreeBytes(ParentOf(place_.Archive()));
}

// It stands in one record, which must fit onto a disk.
std::string SpannedArchive::DiskList() const {
    return disk_list_.size() <= smallest_ / 4 ? disk_list_ : "";
}

SpannedArchive::Finished SpannedArchive::Found(const std::string& path) {
    const auto info = machine_.files.Find(path);
    return info ? Finished{path, info->size, info->times.modified} : Finished{path, 0, 0};
}

void SpannedArchive::Patch(const Place&, std::string_view) { RaiseError(error_number::kDeviceIo); }

void SpannedArchive::CutBack(const Place& place) {
    if (place == marked_) {
        room_ += volume_->Size() - place.offset;
        volume_->CutBack();
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
    place_.Commit();
    ++finished_disks_;
    volume_.reset();
    if (waiting_) {
        left_ = Found(place_.Archive());
        ReplaceOnFirstDisk();
    }
}

void SpannedArchive::ReplaceOnFirstDisk() {
    std::string note = "The archive is complete, and is to replace the earlier one on that disk.";
    while (Found(waiting_->path).size != waiting_->size) {
        Ask(0, note);
        note = "The disk in the drive is not disk 1 of this archive.";
    }
    place_.Commit();
}

// Whether the disk that was left is still in the drive. Some disks keep times in steps of 2 s.
bool SpannedArchive::IsLeftThere() {
    constexpr platform::Ticks kTolerance = 20'000'000;
    try {
        const Finished found = Found(left_->path);
        const auto earlier = std::min(found.modified, left_->modified);
        const auto later = std::max(found.modified, left_->modified);
        return found.size == left_->size && later - earlier <= kTolerance;
    } catch (const Error&) {
        return false;
    }
}

void SpannedArchive::Abandon() {
    const bool open = volume_ != nullptr;
    volume_.reset();
    if (!open && left_ && IsLeftThere() && place_.RemoveFile(left_->path)) {
        --finished_disks_;
    }
    place_.Abandon(open);
    if (finished_disks_ > 0) {
        channel_.Tell(Warning(place_.Archive(),
                              Counted(finished_disks_, "disk holds a part", "disks hold parts") +
                                  " of an archive that was not finished: " + place_.Archive()));
    }
}

}  // namespace vantrel::zip
