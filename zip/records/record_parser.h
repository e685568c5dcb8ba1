// The records of an archive as values: what a local header or a central record states. Pure
// functions that accept any bytes; entry_records.h is the opposite direction.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "zip/base/bytes.h"
#include "zip/records/format.h"

namespace vantrel::zip {

// One entry of an archive, as its directory describes it.
struct StoredEntry {
    std::string name;      // UTF-8, as stored
    std::string raw_name;  // the name's bytes where they differ from `name`, otherwise ""
    std::uint64_t size = 0;
    std::uint64_t packed_size = 0;
    std::uint64_t offset = 0;  // of the local header, from the first byte of the file
    // Of the data, where the local header is damaged and cannot be followed; otherwise 0.
    std::uint64_t data_at = 0;
    platform::FileTimes times;
    std::uint32_t crc = 0;
    std::uint32_t attributes = 0;
    Method method = Method::kStored;  // any number
    std::uint16_t flags = 0;
    bool is_folder = false;
    bool is_link = false;

    const std::string& RawName() const { return raw_name.empty() ? name : raw_name; }
};

// The fixed part of a local header (APPNOTE 4.3.7). With flag::kDescriptor, CRC and sizes follow
// the data.
struct LocalHeader {
    Method method = Method::kStored;
    std::uint16_t flags = 0;
    std::uint32_t dos_time = 0;
    std::uint32_t crc = 0;
    std::uint32_t packed_size = 0;
    std::uint32_t size = 0;
    std::size_t name_length = 0;
    std::size_t extra_length = 0;

    // Of the complete header; the data follows.
    std::size_t Length() const { return local_header::kFixedSize + name_length + extra_length; }
};
// Of bytes that begin with a local header; nothing when they do not, or are fewer than its fixed
// part.
std::optional<LocalHeader> ParseLocalHeader(std::string_view bytes);

// A local header with its name and extra fields, as an entry. It has no attributes.
struct LocalRecord {
    StoredEntry entry;
    std::uint64_t data_at = 0;  // where the data begins
    bool states_sizes = false;  // CRC and sizes stand in the header, not behind the data
};
// Of one complete header at `offset`; nothing when these bytes cannot be one: no signature, no
// name, a method or version that nothing uses.
std::optional<LocalRecord> ParseLocalRecord(std::string_view bytes, std::uint64_t offset,
                                            platform::CodePage& code_page, platform::Clock& clock);

// The complete central record at the position of which `peek` returns so many bytes, or as many as
// there are; "" when there is none, or when it is cut off.
template <typename Peek>
std::string_view PeekCentralRecord(Peek&& peek) {
    using namespace central_record;
    const std::string_view fixed = peek(kFixedSize);
    if (fixed.size() < kFixedSize || !HasSignature(fixed, kCentralSignature)) {
        return {};
    }
    std::size_t length = kFixedSize;
    for (const std::size_t part : {kNameLength, kExtraLength, kCommentLength}) {
        length += GetNumber<std::uint16_t>(fixed, part);
    }
    const std::string_view record = peek(length);
    return record.size() == length ? record : std::string_view();
}

// Of one complete record (APPNOTE 4.3.12). Extra fields of a wrong length are ignored. Times come
// from field 000A, else from 5455, else from the DOS time, which is local. Offset and disk are as
// stored.
struct CentralRecord {
    StoredEntry entry;
    std::uint32_t disk = 0;
    std::uint32_t dos_time = 0;
    // Of the record: the name's bytes, and the bodies of fields of our own, "" if there is none.
    std::string_view raw_name;
    std::string_view disk_list;
    std::string_view chunk_index;
    std::string_view compressor;
};
CentralRecord ParseCentralRecord(std::string_view record, platform::CodePage& code_page,
                                 platform::Clock& clock);
// The same without the entry's decoded name, times and attributes, for a reader that needs none of
// them.
CentralRecord ParseCentralNumbers(std::string_view record);

// The time of a DOS date (high half) and time (APPNOTE 4.4.6), both local. A date that does not
// exist becomes the nearest that does.
platform::Ticks TicksOfDosTime(std::uint32_t date_time, platform::Clock& clock);

}  // namespace vantrel::zip
