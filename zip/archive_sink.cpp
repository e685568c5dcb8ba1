#include "zip/archive_sink.h"

#include <algorithm>
#include <utility>

#include "zip/deflate.h"
#include "zip/paths.h"

namespace vantrel::zip {

ArchiveSink::ArchiveSink(ArchiveFile& archive, RunChannel& channel, std::size_t window,
                         std::uint64_t total)
    : archive_(archive), channel_(channel), window_(window), total_(total) {}

void ArchiveSink::WaitForRoom(std::uint64_t sequence) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, channel_.Token(), [&] { return sequence < written_ + window_; });
    lock.unlock();
    channel_.CheckStop();
}

void ArchiveSink::WaitUntilWritten(std::uint64_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, channel_.Token(), [&] { return written_ == count; });
    lock.unlock();
    channel_.CheckStop();
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
    const std::uint64_t start = archive_.Position();
    archive_.Append(job.bytes.View());
    for (PackedItem& item : job.items) {
        if (item.stored) {
            item.entry.offset += start;
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
        file_ = std::move(job.entry);
        file_.offset = archive_.Position();
        file_left_ = piece.again ? 0 : job.file.size;
        if (!piece.abandoned) {
            record_.clear();
            AppendLocalHeader(record_, file_);
            archive_.Append(record_);
            if (!piece.again) {
                TellAdded(job.path);
            }
        }
    }
    archive_.Append(job.bytes.View());
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
        archive_.CutBack(file_.offset);
        ++skipped_;
    } else if (piece.last) {
        FinishFile(job);
    }
    TellTrouble(piece.trouble);
}

void ArchiveSink::FinishFile(const PackedJob& job) {
    if (file_.method == Method::kDeflated && file_.packed_size >= file_.size) {
        archive_.CutBack(file_.offset);
        on_not_smaller(job.file);
        return;
    }
    record_.clear();
    AppendLocalHeader(record_, file_);
    archive_.Patch(file_.offset, record_);
    AddToDirectory(file_);
}

void ArchiveSink::AddToDirectory(const Entry& entry) {
    record_.clear();
    AppendCentralRecord(record_, entry);
    directory_.Append(record_);
}

void ArchiveSink::TellAdded(const std::string& path) {
    ++told_;
    channel_.Tell({MessageKind::kInformation, 0, told_, path, "Adding " + path,
                   static_cast<std::int32_t>(std::min<std::uint64_t>(total_, INT32_MAX))});
}

void ArchiveSink::TellTrouble(std::optional<ComponentMessage>& trouble) {
    if (trouble) {
        channel_.Tell(std::move(*trouble));
    }
}

void ArchiveSink::WriteDirectory() {
    DirectoryEnd end;
    end.entries = directory_.Count();
    end.size = directory_.Bytes();
    end.offset = archive_.Position();
    while (directory_.Take(record_)) {
        channel_.CheckStop();
        archive_.Append(record_);
    }
    end.end64_offset = archive_.Position();
    record_.clear();
    AppendDirectoryEnd(record_, end);
    archive_.Append(record_);
}

}  // namespace vantrel::zip
