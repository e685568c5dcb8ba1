// The back end of the packing threads: writes packed jobs into the archive, in their order.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "zip/base/run_context.h"
#include "zip/disks/archive_output.h"
#include "zip/records/chunk_index.h"
#include "zip/writer/jobs.h"
#include "zip/writer/record_list.h"

namespace vantrel::zip {

// Collects jobs, which arrive in any order, and writes each when all before it are written. There
// is no writer thread: the worker that delivers the next job in order writes it, and all that
// directly follow it. Also keeps the central directory, and the files that have to be stored again.
//
// All members but the constructor and those marked otherwise may be called from any worker thread.
// They throw RunStopped when the run ends. A failed write is a question (ArchiveOutput).
class ArchiveSink {
  public:
    // At most `max_jobs` jobs are in progress (produced, but not written) at any time, which limits
    // the memory. `total`: number of items to store, for the messages.
    ArchiveSink(ArchiveOutput& archive, RunContext& channel, std::size_t max_jobs,
                std::uint64_t total);

    // Blocks until the job `sequence` may be produced. Calls for rising numbers only.
    void WaitForSlot(std::uint64_t sequence);

    // Blocks until `count` jobs, all that have been produced, are written. Returns and forgets the
    // files that were deferred by them, sorted by name: their order must not depend on the threads.
    std::vector<DeferredFile> WaitForDeferred(std::uint64_t count);

    // Returns the buffer of a job that has been written, or a new one. Reuse matters: touching
    // fresh pages costs more than copying the data.
    Buffer RecycledBuffer();

    // Takes a packed job. May write it and others before it returns, or leave it to the thread that
    // is writing.
    void Deliver(std::uint64_t sequence, PackedJob job);

    // Writes the central directory and the end records (APPNOTE 4.3.12 to 4.3.16), with `mark` as
    // the body of kCompressorField, none when it is "". Called once, when no worker is running any
    // more; so are those below.
    void WriteDirectory(const std::string& mark);

    std::uint64_t Entries() const { return directory_.Count(); }
    // Files that could not be read.
    std::int32_t Skipped() const { return skipped_; }
    // Bytes of the files' data, and those whose compressed form the earlier archive had.
    std::uint64_t RawBytes() const { return raw_bytes_; }
    std::uint64_t ReusedBytes() const { return reused_bytes_; }

  private:
    void Write(PackedJob& job);
    void WriteBatch(PackedJob& job);
    void WriteChunk(PackedJob& job);
    void StartFile(PackedJob& job);
    void FinishFile(const PackedJob& job);
    void AddToDirectory(const Entry& entry, const std::string& chunk_index = "");
    void AddData(std::uint64_t size, bool reused);
    void WriteCentralRecords(DirectoryEnd& end, const std::string& mark);
    void FlushCentralRecords(DirectoryEnd& end);
    void ReportProgress(const PackedJob& job);
    void ReportAdded(const std::string& path);
    void ReportWarning(std::optional<ComponentMessage>& warning);

    ArchiveOutput& archive_;
    RunContext& channel_;
    const std::size_t max_jobs_;
    const std::uint64_t total_;

    std::mutex mutex_;  // guards the members of this paragraph
    std::condition_variable changed_;
    std::map<std::uint64_t, PackedJob> ready_;  // delivered, not yet written
    std::vector<Buffer> recycled_;
    std::uint64_t written_ = 0;  // jobs
    bool writing_ = false;       // a thread is in Write

    // Used by the thread that is in Write, and after the last Write.
    RecordList directory_;  // central records
    std::vector<DeferredFile> deferred_;
    std::string record_;
    std::vector<UnsplitRecord> unsplit_;   // of the bytes that are written next
    Entry file_;                           // the big file in progress
    ChunkIndexBuilder chunk_index_{0};     // of that file
    std::uint64_t file_bytes_left_ = 0;    // of its listed size, not yet reported as done
    std::uint64_t central_records_ = 0;    // written
    std::uint32_t last_central_disk_ = 0;  // disk of the last written one
    std::int32_t added_ = 0;               // files and folders reported as added
    std::int32_t skipped_ = 0;
    std::uint64_t raw_bytes_ = 0;
    std::uint64_t reused_bytes_ = 0;
};

}  // namespace vantrel::zip
