// One entry of an archive, as its directory describes it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/file_system.h"

namespace vantrel::zip {

// Methods of APPNOTE 4.4.5 that are read.
namespace method {
constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;
constexpr std::uint16_t kDeflated64 = 9;
}  // namespace method

// General purpose flags (4.4.4).
namespace flag {
constexpr std::uint16_t kEncrypted = 1u << 0;
constexpr std::uint16_t kDescriptor = 1u << 3;  // sizes and CRC follow the data
constexpr std::uint16_t kPatch = 1u << 5;
constexpr std::uint16_t kStrongEncryption = 1u << 6;
constexpr std::uint16_t kUtf8 = 1u << 11;
constexpr std::uint16_t kMaskedHeader = 1u << 13;
}  // namespace flag

struct StoredEntry {
    std::string name;      // UTF-8, as stored
    std::string raw_name;  // the name's bytes where they differ from `name`, otherwise ""
    std::uint64_t size = 0;
    std::uint64_t packed_size = 0;
    std::uint64_t offset = 0;  // of the local header, from the first byte of the file
    platform::FileTimes times;
    std::uint32_t crc = 0;
    std::uint32_t attributes = 0;
    std::uint16_t method = 0;
    std::uint16_t flags = 0;
    bool is_folder = false;
    bool is_link = false;

    const std::string& RawName() const { return raw_name.empty() ? name : raw_name; }
};

}  // namespace vantrel::zip
