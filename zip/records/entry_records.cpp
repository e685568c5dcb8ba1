#include "zip/records/entry_records.h"

#include <algorithm>
#include <optional>

#include "common/utf.h"
#include "zip/base/bytes.h"

namespace vantrel::zip {

namespace {

// High byte 0: attributes are those of DOS (APPNOTE 4.4.2).
constexpr std::uint16_t kMadeBy = kVersionZip64;

constexpr std::uint32_t kStoredAttributes =
    platform::attribute::kReadOnly | platform::attribute::kHidden | platform::attribute::kSystem |
    platform::attribute::kFolder | platform::attribute::kArchive;

std::uint16_t Flags(const Entry& entry) {
    return static_cast<std::uint16_t>((utf::IsAscii(entry.name) ? 0 : flag::kUtf8) |
                                      (entry.descriptor ? flag::kDescriptor : 0));
}

std::uint16_t VersionNeeded(const Entry& entry, bool zip64) {
    if (zip64) {
        return kVersionZip64;
    }
    const bool folder = (entry.attributes & platform::attribute::kFolder) != 0;
    return entry.method == Method::kDeflated || folder ? kVersionDeflated : kVersionStored;
}

std::uint32_t Saturate32(std::uint64_t value) {
    return static_cast<std::uint32_t>(std::min(value, kSaturated32));
}
std::uint16_t Saturate16(std::uint64_t value) {
    return static_cast<std::uint16_t>(std::min(value, kSaturated16));
}

void AppendField(std::string& out, std::uint16_t id, const std::string& body) {
    Put16(out, id);
    Put16(out, static_cast<std::uint16_t>(body.size()));
    out += body;
}

// Nothing when the time does not fit into the field's 32 bits.
void AppendUnixTime(std::string& out, platform::Ticks modified) {
    const std::int64_t seconds = static_cast<std::int64_t>(modified / kTicksPerSecond) - kUnixEpoch;
    if (modified == 0 || seconds < INT32_MIN || seconds > INT32_MAX) {
        return;
    }
    std::string body(1, static_cast<char>(kUnixHasModified));
    Put32(body, static_cast<std::uint32_t>(seconds));
    AppendField(out, kUnixTimeField, body);
}

void AppendNtfsTimes(std::string& out, const platform::FileTimes& times) {
    std::string body;
    Put32(body, 0);  // reserved
    Put16(body, 1);  // tag: times
    Put16(body, kNtfsLength - kNtfsTimes);
    Put64(body, times.modified);
    Put64(body, times.accessed);
    Put64(body, times.created);
    AppendField(out, kNtfsField, body);
}

// Some readers (unzip 6.0) take a flagged name for UTF-8 only where extra fields follow it. This
// one is the shortest that all readers know, and is empty: no bit set, no time.
void AppendEmptyField(std::string& out) { AppendField(out, kUnixTimeField, std::string(1, '\0')); }

// Unix tools that do not know field 000A look for the time in the local header, not in the
// directory.
std::string LocalExtra(const Entry& entry) {
    std::string extra;
    if (entry.zip64_sizes) {
        std::string sizes;  // both, as 4.5.3 demands of a local header
        Put64(sizes, entry.descriptor ? 0 : entry.size);
        Put64(sizes, entry.descriptor ? 0 : entry.packed_size);
        AppendField(extra, kZip64Field, sizes);
    }
    AppendUnixTime(extra, entry.times.modified);
    if (extra.empty() && !utf::IsAscii(entry.name)) {
        AppendEmptyField(extra);
    }
    return extra;
}

// Only the numbers whose short field is saturated, in this order (4.5.3).
std::string Zip64Numbers(const Entry& entry) {
    std::string numbers;
    for (const std::uint64_t value : {entry.size, entry.packed_size, entry.location.offset}) {
        if (value >= kSaturated32) {
            Put64(numbers, value);
        }
    }
    if (entry.location.disk >= kSaturated16) {
        Put32(numbers, entry.location.disk);
    }
    return numbers;
}

// Version, flags, method and time, which both headers have.
void AppendCommon(std::string& out, const Entry& entry, bool zip64) {
    Put16(out, VersionNeeded(entry, zip64));
    Put16(out, Flags(entry));
    Put16(out, static_cast<std::uint16_t>(entry.method));
    Put32(out, DosDateTime(entry.modified_local));
}

}  // namespace

std::uint32_t DosDateTime(const platform::LocalTime& local) {
    platform::LocalTime t = local;
    if (t.year < kDosFirstYear) {
        t = {kDosFirstYear, 1, 1, 0, 0, 0};
    } else if (t.year > kDosLastYear) {
        t = {kDosLastYear, 12, 31, 23, 59, 58};
    }
    const auto bits = [](int value, int shift) {
        return static_cast<std::uint32_t>(value) << shift;
    };
    // A leap second has no number of its own.
    return bits(t.year - kDosFirstYear, 25) | bits(t.month, 21) | bits(t.day, 16) |
           bits(t.hour, 11) | bits(t.minute, 5) | bits(std::min(t.second, 59) / 2, 0);
}

void AppendLocalHeader(std::string& out, const Entry& entry) {
    const std::string extra = LocalExtra(entry);
    Put32(out, kLocalSignature);
    AppendCommon(out, entry, entry.zip64_sizes);
    Put32(out, entry.descriptor ? 0 : entry.crc);
    for (const std::uint64_t size : {entry.packed_size, entry.size}) {
        const std::uint64_t stated = entry.descriptor ? 0 : size;
        Put32(out, static_cast<std::uint32_t>(entry.zip64_sizes ? kSaturated32 : stated));
    }
    Put16(out, static_cast<std::uint16_t>(entry.name.size()));
    Put16(out, static_cast<std::uint16_t>(extra.size()));
    out += entry.name;
    out += extra;
}

void AppendDescriptor(std::string& out, const Entry& entry) {
    Put32(out, kDescriptorSignature);
    Put32(out, entry.crc);
    for (const std::uint64_t size : {entry.packed_size, entry.size}) {
        // 8 bytes each exactly when the local header has the 64-bit field (4.3.9.2).
        Put32(out, static_cast<std::uint32_t>(size & kSaturated32));
        if (entry.zip64_sizes) {
            Put32(out, static_cast<std::uint32_t>(size >> 32));
        }
    }
}

void AppendCentralRecord(std::string& out, const Entry& entry) {
    const std::string numbers = Zip64Numbers(entry);
    std::string extra;
    if (!numbers.empty()) {
        AppendField(extra, kZip64Field, numbers);
    }
    AppendNtfsTimes(extra, entry.times);
    Put32(out, kCentralSignature);
    Put16(out, kMadeBy);
    AppendCommon(out, entry, !numbers.empty() || entry.zip64_sizes);
    Put32(out, entry.crc);
    Put32(out, Saturate32(entry.packed_size));
    Put32(out, Saturate32(entry.size));
    Put16(out, static_cast<std::uint16_t>(entry.name.size()));
    Put16(out, static_cast<std::uint16_t>(extra.size()));
    Put16(out, 0);  // comment
    Put16(out, Saturate16(entry.location.disk));
    Put16(out, 0);  // internal attributes
    Put32(out, entry.attributes & kStoredAttributes);
    Put32(out, Saturate32(entry.location.offset));
    out += entry.name;
    out += extra;
}

void AddExtraField(std::string& record, std::uint16_t id, const std::string& body) {
    const std::size_t length =
        GetNumber<std::uint16_t>(record, central_record::kExtraLength) + kFieldHeader + body.size();
    if (body.empty() || length > kSaturated16) {
        return;
    }
    AppendField(record, id, body);
    std::string number;
    Put16(number, static_cast<std::uint16_t>(length));
    record.replace(central_record::kExtraLength, number.size(), number);
}

void AppendDirectoryEnd(std::string& out, const DirectoryEnd& end) {
    const std::uint64_t entries_here = end.entries - end.entries_on_other_disks;
    if (end.entries >= kSaturated16 || end.size >= kSaturated32 || end.offset >= kSaturated32 ||
        end.disk >= kSaturated16) {
        Put32(out, kEnd64Signature);
        Put64(out, end64_record::kStatedSize);
        Put16(out, kMadeBy);
        Put16(out, kVersionZip64);
        Put32(out, end.disk);
        Put32(out, end.directory_disk);
        Put64(out, entries_here);
        Put64(out, end.entries);
        Put64(out, end.size);
        Put64(out, end.offset);
        Put32(out, kLocatorSignature);
        Put32(out, end.disk);  // of the Zip64 end record, which directly precedes
        Put64(out, end.end64_offset);
        Put32(out, end.disk + 1);  // disks in all
    }
    Put32(out, kEndSignature);
    Put16(out, Saturate16(end.disk));
    Put16(out, Saturate16(end.directory_disk));
    Put16(out, Saturate16(entries_here));
    Put16(out, Saturate16(end.entries));
    Put32(out, Saturate32(end.size));
    Put32(out, Saturate32(end.offset));
    Put16(out, 0);  // comment
}

}  // namespace vantrel::zip
