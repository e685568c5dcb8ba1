#include "zip/writer/archive_sink.h"

#include <algorithm>
#include <utility>

#include "zip/base/run_context.h"
#include "zip/deflate/deflate.h"
#include "zip/records/disk_identity.h"

namespace vantrel::zip {

namespace {

// Bytes of central records per write, exceeded by less than one record.
constexpr std::size_t kDirectoryWriteSize = 256 * 1024;

}  // namespace

ArchiveSink::ArchiveSink(ArchiveOutput& archive, RunContext& channel, std::size_t max_jobs,
                         std::uint64_t total)
    : archive_(archive), channel_(channel), max_jobs_(max_jobs), total_(total) {}

void ArchiveSink::WaitForSlot(std::uint64_t sequence) {
    std::unique_lock lock(mutex_);
    WaitUntil(changed_, lock, channel_.Token(), [&] { return sequence < written_ + max_jobs_; });
    lock.unlock();
    channel_.CheckStop();
}

std::vector<DeferredFile> ArchiveSink::WaitForDeferred(std::uint64_t count) {
    std::unique_lock lock(mutex_);
    WaitUntil(changed_, lock, channel_.Token(), [&] { return written_ == count; });
    lock.unlock();
    channel_.CheckStop();
    // No thread is writing now, and the mutex has made what they wrote visible.
    std::sort(deferred_.begin(), deferred_.end(), [](const DeferredFile& a, const DeferredFile& b) {
        return a.item.name < b.item.name;
    });
    return std::exchange(deferred_, {});
}

Buffer ArchiveSink::RecycledBuffer() {
    const std::lock_guard lock(mutex_);
    if (recycled_.empty()) {
        return {};
    }
    Buffer buffer = std::move(recycled_.back());
    recycled_.pop_back();
    return buffer;
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
        // An exception ends the run; `writing_` stays set, so that nothing more is written.
        Write(next);
        lock.lock();
        recycled_.push_back(std::move(next.bytes));
        ++written_;
        changed_.notify_all();
    }
    writing_ = false;
}

void ArchiveSink::Write(PackedJob& job) {
    channel_.CheckStop();
    if (job.chunk) {
        WriteChunk(job);
    } else {
        WriteBatch(job);
    }
}

void ArchiveSink::WriteBatch(PackedJob& job) {
    unsplit_.clear();
    for (const PackedEntry& item : job.entries) {
        if (item.stored) {
            unsplit_.push_back(
                {static_cast<std::size_t>(item.entry.location.offset), item.header_size, {}});
        }
    }
    archive_.Write(job.bytes.View(), unsplit_);
    auto header = unsplit_.cbegin();
    for (PackedEntry& item : job.entries) {
        if (item.stored) {
            item.entry.location = header++->place;
            AddToDirectory(item.entry);
            AddData(item.entry.size, item.reused);
            ReportAdded(item.path);
            channel_.AddDone(item.listed_size);
        } else if (!item.deferred) {
            ++skipped_;
            channel_.LeaveOut(item.listed_size, 0);
        }
        ReportWarning(item.warning);
        if (item.deferred) {
            deferred_.push_back({std::move(*item.deferred), false});
        }
    }
    channel_.SetFilePercent(100);
}

void ArchiveSink::WriteChunk(PackedJob& job) {
    Chunk& chunk = *job.chunk;
    if (chunk.first) {
        StartFile(job);
    }
    archive_.Write(job.bytes.View());
    file_.crc = CombineCrc32(file_.crc, job.crc, job.raw_size);
    file_.size += job.raw_size;
    file_.packed_size += job.bytes.size();
    chunk_index_.Add({job.bytes.size(), job.check});
    AddData(job.raw_size, job.reused);
    ReportProgress(job);
    if (chunk.unreadable) {
        if (!chunk.first) {
            archive_.TruncateTo(file_.location);
        }
        ++skipped_;
        channel_.LeaveOut(job.file.size, job.file.size);  // all of it was reported as done
    } else if (chunk.last) {
        FinishFile(job);
    }
    ReportWarning(chunk.warning);
}

void ArchiveSink::StartFile(PackedJob& job) {
    const Chunk& chunk = *job.chunk;
    file_ = std::move(job.entry);
    // On several disks nothing is reused, and a long record would leave disks partly empty.
    const bool indexed = file_.method == Method::kDeflated && archive_.CanPatch();
    chunk_index_ = ChunkIndexBuilder(indexed ? MaxChunkIndexItems(file_.name.size()) : 0);
    file_bytes_left_ = chunk.store_only ? 0 : job.file.size;
    if (chunk.unreadable) {
        return;
    }
    if (!archive_.CanPatch()) {
        file_.descriptor = true;
        // Data that grows under compression stays so: by at most some bytes for each block.
        file_.zip64_sizes =
            NeedsWideSizes(chunk.file_size, chunk.file_size + chunk.file_size / 1024);
    }
    record_.clear();
    AppendLocalHeader(record_, file_);
    file_.location = archive_.WriteUnsplit(record_);
    if (!chunk.store_only) {
        ReportAdded(job.path);
    }
}

void ArchiveSink::FinishFile(const PackedJob& job) {
    record_.clear();
    if (file_.descriptor) {
        AppendDescriptor(record_, file_);
        archive_.WriteUnsplit(record_);
    } else if (file_.method == Method::kDeflated && file_.packed_size >= file_.size) {
        archive_.TruncateTo(file_.location);
        deferred_.push_back({job.file, true});
        return;
    } else {
        AppendLocalHeader(record_, file_);
        archive_.Patch(file_.location, record_);
    }
    AddToDirectory(file_, chunk_index_.Body());
}

void ArchiveSink::ReportProgress(const PackedJob& job) {
    const Chunk& chunk = *job.chunk;
    const std::uint64_t done =
        chunk.last ? file_bytes_left_ : std::min(file_bytes_left_, job.raw_size);
    file_bytes_left_ -= done;
    channel_.AddDone(done);
    const double size = static_cast<double>(std::max<std::uint64_t>(chunk.file_size, 1));
    channel_.SetFilePercent(
        std::min(static_cast<int>(static_cast<double>(file_.size) / size * 100), 100));
}

void ArchiveSink::AddData(std::uint64_t size, bool reused) {
    raw_bytes_ += size;
    reused_bytes_ += reused ? size : 0;
}

void ArchiveSink::AddToDirectory(const Entry& entry, const std::string& chunk_index) {
    record_.clear();
    AppendCentralRecord(record_, entry);
    AddExtraField(record_, kChunkIndexField, chunk_index);
    directory_.Append(record_);
    if (!entry.name.ends_with('/')) {
        channel_.AddFile();
    }
}

void ArchiveSink::ReportAdded(const std::string& path) {
    ++added_;
    if (channel_.WantsEachFile()) {
        channel_.Report({MessageKind::kInformation, 0, added_, path, "Adding " + path,
                         static_cast<std::int32_t>(std::min<std::uint64_t>(total_, INT32_MAX))});
    }
}

void ArchiveSink::ReportWarning(std::optional<ComponentMessage>& warning) {
    if (warning) {
        channel_.Report(std::move(*warning));
    }
}

void ArchiveSink::WriteDirectory(const std::string& mark) {
    DirectoryEnd end;
    end.entries = directory_.Count();
    WriteCentralRecords(end, mark);
    // The end records state their own disk, which is known only when they have been written: when
    // they did not fit on the expected disk they are removed and written again.
    for (RecordLocation place = archive_.Next();;) {
        DirectoryEnd here = end;
        here.disk = place.disk;
        here.end64_offset = place.offset;
        here.entries_on_other_disks =
            place.disk == last_central_disk_ ? end.entries_on_other_disks : end.entries;
        record_.clear();
        AppendDirectoryEnd(record_, here);
        const RecordLocation written = archive_.WriteUnsplit(record_);
        if (written == place) {
            return;
        }
        archive_.TruncateTo(written);
        place = written;
    }
}

void ArchiveSink::WriteCentralRecords(DirectoryEnd& end, const std::string& mark) {
    record_.clear();
    unsplit_.clear();
    while (auto record = directory_.Take()) {
        if (end.size == 0) {
            AddExtraField(*record, kCompressorField, mark);
            AddExtraField(*record, kDiskListField, archive_.DiskList());
        }
        end.size += record->size();
        unsplit_.push_back({record_.size(), record->size(), {}});
        record_ += *record;
        if (record_.size() >= kDirectoryWriteSize) {
            FlushCentralRecords(end);
        }
    }
    FlushCentralRecords(end);
}

void ArchiveSink::FlushCentralRecords(DirectoryEnd& end) {
    channel_.CheckStop();
    archive_.Write(record_, unsplit_);
    for (const UnsplitRecord& record : unsplit_) {
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
    unsplit_.clear();
}

}  // namespace vantrel::zip
