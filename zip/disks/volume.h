// One disk's file of an archive on several disks, while it is being written, and read back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "zip/base/run_channel.h"

namespace vantrel::zip {

class Volume {
  public:
    // Creates the file, which must not exist. Raises what that fails with.
    Volume(platform::FileSystem& files, RunChannel& channel, std::string path);

    std::uint64_t Size() const { return state_.size; }

    // Writes at the end, and returns how many of the bytes the disk has taken, which is fewer when
    // it is full. They belong to the volume only when Keep has said so.
    std::size_t Offer(std::string_view bytes);
    // The first `count` bytes of what was offered stay, the others go.
    void Keep(std::string_view offered, std::size_t count);

    // Where CutBack can lead: the end as it is now.
    void Mark() { mark_ = state_; }
    void CutBack();
    // Overwrites bytes of the first kDiskHead.
    void PatchHead(std::string_view bytes);

    // Returns when all of it is on the medium and the file is closed.
    void Close();
    // Reads all of it again and compares its checksum.
    void ReadBack();
    // CRC-32 of the first kDiskHead bytes.
    std::uint32_t HeadCrc() const;

  private:
    struct State {
        std::uint64_t size = 0;
        std::string head;            // the first kDiskHead bytes
        std::uint32_t rest_crc = 0;  // CRC-32 of all others
    };

    std::size_t WriteWhatFits(std::string_view bytes);
    void Cut(std::uint64_t size);
    void Compare();

    platform::FileSystem& files_;
    RunChannel& channel_;
    std::string path_;
    std::unique_ptr<platform::File> file_;
    State state_;
    State mark_;
};

}  // namespace vantrel::zip
