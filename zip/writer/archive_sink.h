// Writes packed jobs into the archive, in their order whatever order they arrive in, and keeps the
// central directory. Workers call it; whichever completes the next job in order writes it.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "zip/base/run_context.h"
#include "zip/deflate/block_store.h"
#include "zip/disks/archive_output.h"
#include "zip/writer/jobs.h"

namespace vantrel::zip {

class ArchiveSink {
  public:
    // `window`: jobs that may be under way, from the one to be written next. `total`: items to
    // store, for the messages.
    ArchiveSink(ArchiveOutput& archive, RunChannel& channel, std::size_t window,
                std::uint64_t total);

    // Called with a file that was compressed without becoming smaller, and taken out again.
    std::function<void(SourceItem item)> on_not_smaller;

    // Returns when the job `sequence` may be begun. Throws RunStopped.
    void WaitForRoom(std::uint64_t sequence);
    // Returns when `count` jobs have been written. Throws RunStopped.
    void WaitUntilWritten(std::uint64_t count);
    // A buffer for the bytes of a job, with the room of one that has been written: to get fresh
    // memory of the system for each of them costs more than to copy them.
    Buffer Room();
    // Hands over a job; may write it and others before it returns.
    void Deliver(std::uint64_t sequence, PackedJob job);

    // Writes the central directory and the end records. After all jobs.
    void WriteDirectory();

    std::uint64_t Entries() const { return directory_.Count(); }
    std::int32_t Skipped() const { return skipped_; }

  private:
    void Write(PackedJob& job);
    void WriteBatch(PackedJob& job);
    void WritePiece(PackedJob& job);
    void FinishFile(const PackedJob& job);
    void StartFile(PackedJob& job);
    void AddToDirectory(const Entry& entry);
    void WriteCentralRecords(DirectoryEnd& end);
    void FlushCentralRecords(DirectoryEnd& end);
    void TellAdded(const std::string& path);
    void TellTrouble(std::optional<ComponentMessage>& trouble);

    ArchiveOutput& archive_;
    RunChannel& channel_;
    const std::size_t window_;
    const std::uint64_t total_;

    std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    std::map<std::uint64_t, PackedJob> ready_;
    std::vector<Buffer> written_buffers_;
    std::uint64_t written_ = 0;
    bool writing_ = false;

    // Of the thread that is writing.
    BlockStore directory_;
    std::string record_;
    std::vector<WholeRecord> whole_;       // of the bytes that are written next
    Entry file_;                           // the big file under way
    std::uint64_t file_left_ = 0;          // of its listed size, not yet counted as done
    std::uint64_t central_records_ = 0;    // written
    std::uint32_t last_central_disk_ = 0;  // of the last of them
    std::int32_t told_ = 0;
    std::int32_t skipped_ = 0;
};

}  // namespace vantrel::zip
