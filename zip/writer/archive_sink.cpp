#include "zip/writer/archive_sink.h"

#include <algorithm>
#include <utility>

#include "zip/base/paths.h"
#include "zip/base/run_context.h"
#include "zip/deflate/deflate.h"
#include "zip/records/disk_identity.h"

namespace vantrel::zip {

namespace {

// Central records are written together, so many bytes or a little more at a time.
constexpr std::size_t kDirectoryPortion = 256 * 1024;

Place PlaceOf(const Entry& entry) { return {entry.disk, entry.offset}; }

void SetPlace(Entry& entry, const Place& place) {
    entry.disk = place.disk;
    entry.offset = place.offset;
}

}  // namespace

ArchiveSink::ArchiveSink(ArchiveOutput& archive, RunChannel& channel, std::size_t window,
                         std::uint64_t total)
    : archive_(archive), channel_(channel), window_(window), total_(total) {}

void ArchiveSink::WaitForRoom(std::uint64_t sequence) {
    std::unique_lock lock(mutex_);
    WaitUntil(changed_, lock, channel_.Token(), [&] { return sequence < written_ + window_; });
    lock.unlock();
    channel_.CheckStop();
}

void ArchiveSink::WaitUntilWritten(std::uint64_t count) {
    std::unique_lock lock(mutex_);
    WaitUntil(changed_, lock, channel_.Token(), [&] { return written_ == count; });
    lock.unlock();
    channel_.CheckStop();
}

Buffer ArchiveSink::Room() {
    const std::lock_guard lock(mutex_);
    if (written_buffers_.empty()) {
        return {};
    }
    Buffer room = std::move(written_buffers_.back());
    written_buffers_.pop_back();
    return room;
}

void ArchiveSink::Deliver(std::uint64_t sequence, PackedJob job) {
    std::unique_lock lock(mutex_);
    ready_.emplace(sequence, std::move(job));
    if (writing_) {
        return;
    }
    writing_ = true;
    while (!ready_.empty() && ready_.begin()->first == written_) {
        PackedJob next = std::move(ready_.begin()->second);
        ready_.erase(ready_.begin());
        lock.unlock();
        // When this throws the run is over, and nobody writes any more.
        Write(next);
        lock.lock();
        written_buffers_.push_back(std::move(next.bytes));
        ++written_;
        changed_.notify_all();
    }
    writing_ = false;
}

void ArchiveSink::Write(PackedJob& job) {
    channel_.CheckStop();
    if (job.piece) {
        WritePiece(job);
    } else {
        WriteBatch(job);
    }
}

void ArchiveSink::WriteBatch(PackedJob& job) {
    whole_.clear();
    for (const PackedItem& item : job.items) {
        if (item.stored) {
            whole_.push_back({static_cast<std::size_t>(item.entry.offset), item.header_size, {}});
        }
    }
    archive_.Write(job.bytes.View(), whole_);
    auto header = whole_.cbegin();
    for (PackedItem& item : job.items) {
        if (item.stored) {
            SetPlace(item.entry, header++->place);
            AddToDirectory(item.entry);
            TellAdded(item.path);
        } else if (!item.moved) {
            ++skipped_;
        }
        TellTrouble(item.trouble);
        channel_.AddDone(item.moved ? 0 : item.listed_size);
    }
    channel_.SetFilePercent(100);
}

void ArchiveSink::WritePiece(PackedJob& job) {
    Piece& piece = *job.piece;
    if (piece.first) {
        StartFile(job);
    }
    archive_.Write(job.bytes.View());
    file_.crc = CombineCrc32(file_.crc, job.crc, job.raw_size);
    file_.size += job.raw_size;
    file_.packed_size += job.bytes.size();
    const std::uint64_t done = piece.last ? file_left_ : std::min(file_left_, job.raw_size);
    file_left_ -= done;
    channel_.AddDone(done);
    const double size = static_cast<double>(std::max<std::uint64_t>(piece.file_size, 1));
    channel_.SetFilePercent(
        std::min(static_cast<int>(static_cast<double>(file_.size) / size * 100), 100));
    if (piece.abandoned) {
        if (!piece.first) {
            archive_.CutBack(PlaceOf(file_));
        }
        ++skipped_;
    } else if (piece.last) {
        FinishFile(job);
    }
    TellTrouble(piece.trouble);
}

void ArchiveSink::StartFile(PackedJob& job) {
    const Piece& piece = *job.piece;
    file_ = std::move(job.entry);
    file_left_ = piece.again ? 0 : job.file.size;
    if (piece.abandoned) {
        return;
    }
    if (!archive_.CanPatch()) {
        file_.descriptor = true;
        // It may grow under compression and stays so: at most some bytes for each of its blocks.
        file_.wide_local =
            NeedsWideSizes(piece.file_size, piece.file_size + piece.file_size / 1024);
    }
    record_.clear();
    AppendLocalHeader(record_, file_);
    SetPlace(file_, archive_.WriteWhole(record_));
    if (!piece.again) {
        TellAdded(job.path);
    }
}

void ArchiveSink::FinishFile(const PackedJob& job) {
    record_.clear();
    if (file_.descriptor) {
        AppendDescriptor(record_, file_);
        archive_.WriteWhole(record_);
    } else if (file_.method == Method::kDeflated && file_.packed_size >= file_.size) {
        archive_.CutBack(PlaceOf(file_));
        on_not_smaller(job.file);
        return;
    } else {
        AppendLocalHeader(record_, file_);
        archive_.Patch(PlaceOf(file_), record_);
    }
    AddToDirectory(file_);
}

void ArchiveSink::AddToDirectory(const Entry& entry) {
    record_.clear();
    AppendCentralRecord(record_, entry);
    directory_.Append(record_);
}

void ArchiveSink::TellAdded(const std::string& path) {
    ++told_;
    if (channel_.WantsEachFile()) {
        channel_.Tell({MessageKind::kInformation, 0, told_, path, "Adding " + path,
                       static_cast<std::int32_t>(std::min<std::uint64_t>(total_, INT32_MAX))});
    }
}

void ArchiveSink::TellTrouble(std::optional<ComponentMessage>& trouble) {
    if (trouble) {
        channel_.Tell(std::move(*trouble));
    }
}

void ArchiveSink::WriteDirectory() {
    DirectoryEnd end;
    end.entries = directory_.Count();
    WriteCentralRecords(end);
    // The end records state their own disk, and on which it is shows only when they are written.
    for (Place place = archive_.Next();;) {
        DirectoryEnd here = end;
        here.disk = place.disk;
        here.end64_offset = place.offset;
        here.entries_on_other_disks =
            place.disk == last_central_disk_ ? end.entries_on_other_disks : end.entries;
        record_.clear();
        AppendDirectoryEnd(record_, here);
        const Place written = archive_.WriteWhole(record_);
        if (written == place) {
            return;
        }
        archive_.CutBack(written);
        place = written;
    }
}

void ArchiveSink::WriteCentralRecords(DirectoryEnd& end) {
    std::string record;
    record_.clear();
    whole_.clear();
    while (directory_.Take(record)) {
        if (end.size == 0) {
            AddExtraField(record, kDiskListField, archive_.DiskList());
        }
        end.size += record.size();
        whole_.push_back({record_.size(), record.size(), {}});
        record_ += record;
        if (record_.size() >= kDirectoryPortion) {
            FlushCentralRecords(end);
        }
    }
    FlushCentralRecords(end);
}

void ArchiveSink::FlushCentralRecords(DirectoryEnd& end) {
    channel_.CheckStop();
    archive_.Write(record_, whole_);
    for (const WholeRecord& record : whole_) {
        if (central_records_ == 0) {
            end.offset = record.place.offset;
            end.directory_disk = record.place.disk;
        }
        if (record.place.disk != last_central_disk_) {
            last_central_disk_ = record.place.disk;
            end.entries_on_other_disks = central_records_;
        }
        ++central_records_;
    }
    record_.clear();
    whole_.clear();
}

}  // namespace vantrel::zip
