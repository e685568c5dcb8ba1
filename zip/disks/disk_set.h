// The bytes of an archive on several disks that are put into one drive one after the other. Asks
// for a disk when it is needed and not there. Used by one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "zip/base/run_channel.h"
#include "zip/records/disk_signs.h"

namespace vantrel::zip {

// Puts a question; returns when it shall be tried again, throws otherwise.
using AskForDisk = std::function<void(const StepFailure& failure)>;

class DiskSet {
  public:
    // `signs` may still grow and is looked at whenever a disk is put in.
    DiskSet(platform::FileSystem& files, std::string path, const DiskSigns& signs, AskForDisk ask);

    // As the members of ByteSource; offsets hold their disk.
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count);
    std::size_t ReadAhead(std::uint64_t offset, void* out, std::size_t count);

  private:
    struct Position {
        std::uint32_t disk = 0;
        std::uint64_t offset = 0;
    };
    Position Find(std::uint64_t offset);
    std::size_t ReadHere(Position at, char* out, std::size_t count);
    void Need(std::uint32_t disk);
    std::string WhyNot(std::uint32_t disk);
    bool IsAnother(const platform::FileInfo& info, std::uint32_t disk);

    platform::FileSystem& files_;
    std::string path_;
    const DiskSigns& signs_;
    AskForDisk ask_;
    std::unique_ptr<platform::File> file_;  // of disk_
    std::uint32_t disk_ = 0;
    std::vector<std::uint64_t> sizes_;  // of disks that were in the drive, otherwise 0
    // Files that were in the drive, as they are recognised where the directory says nothing.
    struct Seen {
        DiskSigns::Listed file;
        platform::Ticks modified = 0;
        bool operator==(const Seen&) const = default;
    };
    std::map<std::uint32_t, Seen> seen_;
};

}  // namespace vantrel::zip
