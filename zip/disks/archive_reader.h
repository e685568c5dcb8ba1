// Random reading of an archive on disk, in one file or on several disks (a spanned archive). Asks
// for a disk when it is needed and not in the drive, and when the medium is gone. An object belongs
// to one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/machine.h"
#include "zip/base/bytes.h"
#include "zip/base/run_context.h"
#include "zip/records/directory_reader.h"
#include "zip/records/disk_identity.h"

namespace vantrel::zip {

// Asks whether to retry. False: the disk is missing; what is on it cannot be read, and it is not
// asked for again. Throws when the run is to end.
using AskForDisk = std::function<bool(const ComponentMessage& failure)>;
// Asks with the questions of a run.
AskForDisk AskWith(RunContext& channel);

// The disks of a spanned archive, which are inserted into one drive one after the other.
class DiskSet {
  public:
    // Bytes that a disk cannot read are a question, and a missing disk raises 71; or both raise 57.
    enum class Unreadable { kAsk, kRaise };
    // `identity` may still grow; it is consulted whenever a disk is inserted. With a clock, bytes
    // that a disk cannot read are retried briefly.
    DiskSet(platform::FileSystem& files, std::string path, const DiskIdentity& identity,
            AskForDisk ask, Unreadable unreadable, platform::Clock* clock = nullptr)
        : files_(files),
          path_(std::move(path)),
          identity_(identity),
          ask_(std::move(ask)),
          unreadable_(unreadable),
          clock_(clock) {}

    // As the members of ByteSource; offsets hold their disk.
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count);
    std::size_t ReadAhead(std::uint64_t offset, void* out, std::size_t count);
    std::uint64_t Available(std::uint64_t offset) const;

    // One disk of the set.
    struct Position {
        std::uint32_t disk = 0;
        std::uint64_t offset = 0;
    };
    std::size_t ReadOnDisk(Position at, char* out, std::size_t count);
    std::uint64_t SizeOf(std::uint32_t disk);
    bool IsMissing(std::uint32_t disk) const { return missing_.count(disk) > 0; }
    bool IsOpen(std::uint32_t disk) const { return file_ && disk_ == disk; }
    // What identifies the disks that were in the drive.
    std::map<std::uint32_t, DiskIdentity::Listed> SeenFiles() const;

  private:
    Position Find(std::uint64_t offset);
    void RequireDisk(std::uint32_t disk);
    [[noreturn]] void RaiseMissing(std::uint32_t disk) const;
    void Ask(int code, std::uint32_t disk, const std::string& note);
    std::string OpenDisk(std::uint32_t disk);
    struct Seen {
        DiskIdentity::Listed file;
        platform::Ticks modified = 0;
        bool operator==(const Seen&) const = default;
    };
    bool IsExpected(const platform::FileInfo& info, std::uint32_t disk);
    bool WasSeen(const Seen& here, std::uint32_t disk) const;

    platform::FileSystem& files_;
    std::string path_;
    const DiskIdentity& identity_;
    AskForDisk ask_;
    Unreadable unreadable_;
    platform::Clock* clock_;
    std::unique_ptr<platform::File> file_;  // of disk_
    std::uint32_t disk_ = 0;
    std::set<std::uint32_t> missing_;   // no longer asked for
    std::vector<std::uint64_t> sizes_;  // of disks that were in the drive, otherwise 0
    // Files that were in the drive, for disks that the directory does not identify.
    std::map<std::uint32_t, Seen> seen_;
};

class ArchiveReader : public ByteSource, public DiskChanger {
  public:
    ArchiveReader(platform::FileSystem& files, std::string path)
        : files_(files), path_(std::move(path)) {}

    // From now on a failure is a question, repeated until the read succeeds or the run stops. So is
    // an archive whose size differs from that of `directory`: another file has replaced the one
    // that was listed. Disks of a spanned archive are asked for. Only bytes that the medium cannot
    // read are none: they are retried briefly, then 57 is raised. The references are borrowed.
    void AskOn(RunContext& channel, const Directory& directory, platform::Clock& clock);

    // From now on the disks of a spanned archive are asked for, unless `ask` is empty. A file
    // without an end record is taken for one when it begins like one, or lies on a removable drive.
    void AskForDisks(platform::Drives& drives, AskForDisk ask);

    std::uint64_t Size() override;
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override;
    std::size_t ReadAhead(std::uint64_t offset, void* out, std::size_t count) override;
    std::uint64_t Available(std::uint64_t offset) const override {
        return set_ ? set_->Available(offset) : kUnknownSize;
    }
    LastDisk ChangeToLastDisk() override;
    bool OpenAsSpanned(const DiskIdentity& disks) override;

  private:
    template <typename Step>
    auto Try(Step step);
    platform::File& Opened();
    std::string Start();
    std::size_t ReadOnce(std::uint64_t offset, void* out, std::size_t count);

    platform::FileSystem& files_;
    std::string path_;
    RunContext* channel_ = nullptr;
    platform::Clock* clock_ = nullptr;
    std::uint64_t expected_size_ = 0;
    std::unique_ptr<platform::File> file_;
    std::uint64_t position_ = 0;
    AskForDisk ask_;
    bool removable_ = false;
    std::unique_ptr<DiskSet> set_;
};

}  // namespace vantrel::zip
