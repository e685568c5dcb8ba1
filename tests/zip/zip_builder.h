// Builds archives byte by byte, valid ones and damaged ones.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "zip/base/bytes.h"

namespace vantrel::test {

struct BuiltEntry {
    std::string name{};
    std::string content{};
    std::uint16_t method = 0;  // 0 and 8 are really made; of others the data is the content
    std::uint16_t flags = 0;
    std::uint8_t host = 0;
    std::uint32_t external = 0x20;
    std::uint32_t dos_time = 0x5B6F68A0;  // 2025-11-15 13:05:00
    std::string central_extra{};
    std::string local_extra{};
    // Wrong numbers, in the directory only; negative: the right one.
    std::int64_t size = -1;
    std::int64_t packed_size = -1;
    std::int64_t crc = -1;
    std::int64_t offset = -1;
    std::string local_name{};  // "" is `name`
};

// Files with these names that hold "x".
std::vector<BuiltEntry> EntriesNamed(const std::vector<std::string>& names);

struct BuiltArchive {
    std::string prefix;  // before the archive; offsets do not count it
    std::vector<BuiltEntry> entries;
    std::string comment;
    std::string junk;  // behind everything
    std::int64_t entries_stated = -1;
    std::int64_t comment_length = -1;
    bool zip64 = false;       // with Zip64 end record and locator
    bool zip64_marks = true;  // the short fields are saturated then

    std::string Bytes() const;
};

// Numbers as they stand in a record.
std::string Number16(std::uint16_t value);
std::string Number32(std::uint32_t value);
std::string Number64(std::uint64_t value);
// `bytes` with `value` put over what stands `at`.
std::string Over(std::string bytes, std::size_t at, const std::string& value);
// An extra field with its header.
std::string ExtraField(std::uint16_t id, const std::string& body);
// A complete raw deflate stream.
std::string RawDeflate(const std::string& content);

class StringSource : public zip::ByteSource {
  public:
    explicit StringSource(std::string bytes) : bytes_(std::move(bytes)) {}
    std::uint64_t Size() override { return bytes_.size(); }
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override;
    std::uint64_t bytes_read = 0;

  private:
    std::string bytes_;
};

}  // namespace vantrel::test
