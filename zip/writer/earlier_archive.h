// The archive of an earlier run, whose compressed data is reused where it is proved equal to what
// is to be stored (earlier_data.h). It may be damaged, or made to do harm: nothing that it states
// is trusted, and no failure in it is a failure of the run.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/run_context.h"
#include "zip/records/compact_directory.h"

namespace vantrel::zip {

// Where the chunks of one file lie in the earlier archive. Used by all threads that pack chunks of
// this file.
//
// An index item of several chunks states only where its first chunk begins. Each of the others
// begins where the one before ends, so it waits until that one has been settled, and is reused only
// if that one was.
class EarlierChunks {
  public:
    EarlierChunks(std::uint64_t data_at, const ChunkedData& data);

    struct Location {
        std::uint64_t offset = 0;
        std::uint64_t max_size = 0;
        bool is_exact = false;    // `max_size` is the size
        bool is_checked = false;  // the index has promised this data by its CRC-32
    };
    // Where the data of a chunk may be: `check` is that of the index, and the chunk is, or is not,
    // the last one in both archives. May wait for the chunk before; nothing when `stop` ends that.
    std::optional<Location> Find(std::uint64_t number, bool last, std::uint32_t check,
                                 const std::stop_token& stop);
    // To be called once for every chunk, whether it was looked for or not: `end`, where its data
    // ends in the earlier archive, or nothing when it is not reused.
    void Settle(std::uint64_t number, std::optional<std::uint64_t> end);

  private:
    bool IsFollowed(std::uint64_t number) const;

    const std::uint64_t chunks_in_item_;
    const std::uint64_t chunks_;
    std::vector<std::uint64_t> starts_;  // of each item, and the end of the last
    std::vector<std::uint32_t> checks_;

    std::mutex mutex_;  // guards the members below
    std::condition_variable changed_;
    std::map<std::uint64_t, std::optional<std::uint64_t>> ends_;  // of settled chunks
};

// Open and Close are called by the thread that runs the backup, everything else by any thread
// between them. No member raises anything.
class EarlierArchive {
  public:
    explicit EarlierArchive(RunContext& context);
    ~EarlierArchive();

    // Opens the archive at `path` if `mark` stands in it, and keeps it open: others may read,
    // rename and remove it, but not write. Reports one line when it is not used.
    void Open(platform::FileSystem& files, const std::string& path, const std::string& mark);
    // Reports why an archive is not used.
    void ReportUnused(const std::string& path, const std::string& why);
    void Close();

    // False also after several failures in it.
    bool IsUsable() const { return usable_; }

    std::optional<UnsplitData> FindUnsplit(std::uint64_t size, std::uint32_t crc) const;
    // Null when the file of this name is not there or has no index.
    std::unique_ptr<EarlierChunks> FindChunks(const std::string& name);

    // Reads at most `count` bytes of the data of entries; fewer at its end, none after a failure.
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count);
    // Counts data that cannot be read or is not as the directory states.
    void AddFailure();

  private:
    class Source;

    std::string OpenAndRead(platform::FileSystem& files, const platform::FileInfo& before,
                            const std::string& mark);
    std::optional<std::uint64_t> FindDataAt(const ChunkedData& data);

    RunContext& context_;
    std::string path_;
    CompactDirectory directory_;
    std::atomic<bool> usable_{false};
    std::atomic<int> failures_{0};

    std::mutex mutex_;  // guards the file
    std::unique_ptr<Source> source_;
};

}  // namespace vantrel::zip
