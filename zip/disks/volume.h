// The file of a spanned archive on one disk, while it is written and read back. Failures are
// questions. Used by one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "zip/base/run_context.h"

namespace vantrel::zip {

class Volume {
  public:
    // Creates the file, which must not exist. Raises what the file system raises.
    Volume(platform::FileSystem& files, RunContext& channel, std::string path);

    std::uint64_t Size() const { return state_.size; }

    // Writes at the end, and returns how many of the bytes were written, which is fewer when the
    // disk is full. They belong to the volume only after Keep.
    std::size_t Offer(std::string_view bytes);
    // Adds the first `count` bytes that were offered to the volume, and truncates the others.
    void Keep(std::string_view offered, std::size_t count);

    // Sets the end that TruncateTo returns to.
    void Mark() { mark_ = state_; }
    void TruncateTo();
    // Overwrites bytes of the first kDiskHead.
    void PatchHead(std::string_view bytes);

    // Returns when the file is on the medium and closed.
    void Close();
    // Reads the file again and compares its checksum.
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
    void Truncate(std::uint64_t size);
    void Compare();

    platform::FileSystem& files_;
    RunContext& channel_;
    std::string path_;
    std::unique_ptr<platform::File> file_;
    State state_;
    State mark_;
};

}  // namespace vantrel::zip
