// Finds the records of an archive by their signatures, for a search that no directory guides. An
// object belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "zip/base/bytes.h"

namespace vantrel::zip {

class RecordScanner {
  public:
    // `check_stop` is called before each read of a window, and may throw.
    RecordScanner(ByteSource& source, std::function<void()> check_stop)
        : source_(source), check_stop_(std::move(check_stop)) {}

    struct Hit {
        std::uint64_t at = 0;
        std::uint32_t signature = 0;
    };
    // The first local header, central record, end record or descriptor that begins at `from` or
    // later; nothing when there is none. Signatures inside of data are found as well.
    std::optional<Hit> Next(std::uint64_t from);

    // The bytes at `at`: `count`, or fewer at the end of the archive or of a disk, where no record
    // is split. Valid until the next call. Cheap for bytes near the last hit.
    std::string_view Peek(std::uint64_t at, std::size_t count);

    // Whether a record, or the end of the archive or of the disk in the drive, is at `at`. False
    // for what is on another disk.
    bool IsRecordAt(std::uint64_t at);

  private:
    void Load(std::uint64_t at);

    ByteSource& source_;
    std::function<void()> check_stop_;
    Buffer window_;
    std::uint64_t window_at_ = 0;
};

}  // namespace vantrel::zip
