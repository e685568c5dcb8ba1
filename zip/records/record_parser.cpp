#include "zip/records/record_parser.h"

#include <algorithm>
#include <chrono>

#include "common/utf.h"
#include "zip/base/bytes.h"

namespace vantrel::zip {

namespace {

using platform::LocalTime;
using platform::Ticks;
namespace attribute = platform::attribute;

// The system refuses file times from here on.
constexpr Ticks kEndOfTime = Ticks{1} << 63;

constexpr std::uint32_t kDosBits =
    attribute::kReadOnly | attribute::kHidden | attribute::kSystem | attribute::kArchive;

// The body of the first extra field with this id, cut off at the end of `extra`.
std::optional<std::string_view> FindField(std::string_view extra, std::uint16_t id) {
    while (extra.size() >= kFieldHeader) {
        const auto field = GetNumber<std::uint16_t>(extra, 0);
        const std::size_t length = GetNumber<std::uint16_t>(extra, sizeof field);
        if (length > extra.size() - kFieldHeader) {
            break;
        }
        if (field == id) {
            return extra.substr(kFieldHeader, length);
        }
        extra.remove_prefix(kFieldHeader + length);
    }
    return std::nullopt;
}

// Of one complete central record.
std::string_view ExtraFields(std::string_view record) {
    using namespace central_record;
    return record.substr(kFixedSize + GetNumber<std::uint16_t>(record, kNameLength),
                         GetNumber<std::uint16_t>(record, kExtraLength));
}

// The numbers of a Zip64 field, in their order.
class Zip64Values {
  public:
    explicit Zip64Values(std::optional<std::string_view> field) : rest_(field.value_or("")) {}

    template <typename Number>
    void TakeIf(bool saturated, auto& value) {
        if (!saturated || rest_.size() < sizeof(Number)) {
            return;
        }
        value = GetNumber<Number>(rest_, 0);
        rest_.remove_prefix(sizeof(Number));
    }

  private:
    std::string_view rest_;
};

void ReadZip64Sizes(Zip64Values& values, StoredEntry& entry) {
    values.TakeIf<std::uint64_t>(entry.size == kSaturated32, entry.size);
    values.TakeIf<std::uint64_t>(entry.packed_size == kSaturated32, entry.packed_size);
}

void ReadZip64(std::string_view extra, CentralRecord& record) {
    Zip64Values values(FindField(extra, kZip64Field));
    StoredEntry& entry = record.entry;
    ReadZip64Sizes(values, entry);
    values.TakeIf<std::uint64_t>(entry.offset == kSaturated32, entry.offset);
    values.TakeIf<std::uint32_t>(record.disk == kSaturated16, record.disk);
}

bool ReadNtfsTimes(std::string_view extra, platform::FileTimes& times) {
    const auto field = FindField(extra, kNtfsField);
    if (!field || field->size() != kNtfsLength || GetNumber<std::uint16_t>(*field, kNtfsTag) != 1 ||
        GetNumber<std::uint16_t>(*field, kNtfsSize) != kNtfsLength - kNtfsTimes) {
        return false;
    }
    times.modified = GetNumber<Ticks>(*field, kNtfsTimes);
    times.accessed = GetNumber<Ticks>(*field, kNtfsTimes + sizeof(Ticks));
    times.created = GetNumber<Ticks>(*field, kNtfsTimes + 2 * sizeof(Ticks));
    return times.modified != 0 &&
           std::max({times.modified, times.accessed, times.created}) < kEndOfTime;
}

bool ReadUnixTime(std::string_view extra, platform::FileTimes& times) {
    const auto field = FindField(extra, kUnixTimeField);
    if (!field || field->size() < kUnixTimeLength || ((*field)[0] & kUnixHasModified) == 0) {
        return false;
    }
    const std::int64_t seconds = GetNumber<std::int32_t>(*field, kUnixModified) + kUnixEpoch;
    times = {static_cast<Ticks>(seconds * kTicksPerSecond), 0, 0};
    return true;
}

void ReadUnixMode(std::uint32_t mode, StoredEntry& entry) {
    constexpr std::uint32_t kTypeMask = 0170000;
    constexpr std::uint32_t kTypeFolder = 0040000;
    constexpr std::uint32_t kTypeLink = 0120000;
    constexpr std::uint32_t kAnyWrite = 0222;
    entry.is_folder |= (mode & kTypeMask) == kTypeFolder;
    entry.is_link = (mode & kTypeMask) == kTypeLink;
    entry.attributes = entry.is_folder ? 0 : attribute::kArchive;
    // A folder without it refuses new files; a folder with the DOS attribute does not.
    if ((mode & kAnyWrite) == 0 && !entry.is_folder) {
        entry.attributes |= attribute::kReadOnly;
    }
}

void ReadAttributes(int host, std::uint32_t external, StoredEntry& entry) {
    entry.is_folder = entry.name.ends_with('/') || entry.name.ends_with('\\');
    const std::uint32_t mode = external >> 16;
    if ((host == kHostUnix || host == kHostDarwin) && mode != 0) {
        ReadUnixMode(mode, entry);
    } else if (host == kHostDos || host == kHostNtfs || host == kHostVfat) {
        // Some writers set the folder bit on files, too.
        entry.is_folder |= (external & attribute::kFolder) != 0 && entry.size == 0;
        entry.is_link = (external & attribute::kReparse) != 0;
        entry.attributes = external & kDosBits;
    } else {
        entry.attributes = entry.is_folder ? 0 : attribute::kArchive;
    }
    if (entry.is_folder) {
        entry.attributes |= attribute::kFolder;
    }
}

bool IsUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t start = i;
        if (utf::Next(text, i) == utf::kReplacement && i - start == 1) {
            return false;
        }
    }
    return true;
}

// A stored name as UTF-8: flagged as such; else from `unicode_path`, the body of a field 7075 (""
// if there is none), when it is valid; else unchanged when it is ASCII or valid UTF-8; else from
// the OEM code page.
std::string DecodeName(std::string_view raw, bool utf8_flag, std::string_view unicode_path,
                       platform::CodePage& code_page) {
    if (!utf8_flag && unicode_path.size() > kUnicodePathText && unicode_path[0] == 1) {
        const auto crc = GetNumber<std::uint32_t>(unicode_path, kUnicodePathCrc);
        const std::string_view path = unicode_path.substr(kUnicodePathText);
        if (crc == Crc32(raw) && IsUtf8(path)) {
            return std::string(path);
        }
    }
    if (utf::IsAscii(raw) || IsUtf8(raw)) {
        return std::string(raw);
    }
    return utf8_flag ? utf::ToUtf8(utf::ToUtf16(raw)) : code_page.DecodeOem(std::string(raw));
}

// Name and times of an entry, which both of its headers have.
void ReadNameAndTimes(std::string_view raw, std::string_view extra, std::uint32_t dos_time,
                      platform::CodePage& code_page, platform::Clock& clock, StoredEntry& entry) {
    entry.name = DecodeName(raw, (entry.flags & flag::kUtf8) != 0,
                            FindField(extra, kUnicodePathField).value_or(""), code_page);
    if (entry.name != raw) {
        entry.raw_name = raw;
    }
    if (!ReadNtfsTimes(extra, entry.times) && !ReadUnixTime(extra, entry.times)) {
        entry.times = {TicksOfDosTime(dos_time, clock), 0, 0};
    }
}

// Of the versions needed (APPNOTE 4.4.3.2) and methods (4.4.5) that exist.
bool Exists(int version, int method) {
    constexpr int kLastVersion = 63;
    constexpr int kLastOldMethod = 20;
    constexpr int kFirstNewMethod = 93;
    constexpr int kLastMethod = 99;
    return version <= kLastVersion &&
           (method <= kLastOldMethod || (method >= kFirstNewMethod && method <= kLastMethod));
}

Ticks TicksOf(const LocalTime& time) {
    using namespace std::chrono;
    const sys_days day = year(time.year) / time.month / time.day;
    const auto seconds = day.time_since_epoch() + hours(time.hour) + minutes(time.minute) +
                         std::chrono::seconds(time.second);
    const auto since_1601 = duration_cast<std::chrono::seconds>(seconds).count() + kUnixEpoch;
    return static_cast<Ticks>(since_1601) * static_cast<Ticks>(kTicksPerSecond);
}

LocalTime FromDos(std::uint32_t date_time) {
    const auto bits = [date_time](int shift, int count) {
        return static_cast<int>((date_time >> shift) & ((1u << count) - 1));
    };
    LocalTime time;
    time.year = kDosFirstYear + bits(25, 7);
    time.month = std::clamp(bits(21, 4), 1, 12);
    const std::chrono::year_month_day_last last(
        std::chrono::year(time.year),
        std::chrono::month_day_last(std::chrono::month(static_cast<unsigned>(time.month))));
    time.day = std::clamp(bits(16, 5), 1, static_cast<int>(static_cast<unsigned>(last.day())));
    time.hour = std::min(bits(11, 5), 23);
    time.minute = std::min(bits(5, 6), 59);
    time.second = std::min(bits(0, 5) * 2, 59);
    return time;
}

// A central record has the numbers of a local header, at positions that are higher by this.
constexpr std::size_t kCentralShift = central_record::kFlags - local_header::kFlags;
static_assert(central_record::kExtraLength - local_header::kExtraLength == kCentralShift);

// Of a local header, or of the bytes of a central record from kCentralShift on.
LocalHeader ParseHeaderNumbers(std::string_view bytes) {
    using namespace local_header;
    LocalHeader header;
    header.method = static_cast<Method>(GetNumber<std::uint16_t>(bytes, kMethod));
    header.flags = GetNumber<std::uint16_t>(bytes, kFlags);
    header.dos_time = GetNumber<std::uint32_t>(bytes, kDosTime);
    header.crc = GetNumber<std::uint32_t>(bytes, kCrc);
    header.packed_size = GetNumber<std::uint32_t>(bytes, kPackedSize);
    header.size = GetNumber<std::uint32_t>(bytes, kSize);
    header.name_length = GetNumber<std::uint16_t>(bytes, kNameLength);
    header.extra_length = GetNumber<std::uint16_t>(bytes, kExtraLength);
    return header;
}

void SetNumbers(const LocalHeader& header, StoredEntry& entry) {
    entry.method = header.method;
    entry.flags = header.flags;
    entry.crc = header.crc;
    entry.size = header.size;
    entry.packed_size = header.packed_size;
}

}  // namespace

Ticks TicksOfDosTime(std::uint32_t date_time, platform::Clock& clock) {
    const Ticks local = TicksOf(FromDos(date_time));
    Ticks utc = local;
    // The second round counts where the zone's offset changes between the two.
    for (int round = 0; round < 2; ++round) {
        utc += local - TicksOf(clock.ToLocal(utc));
    }
    return utc;
}

std::optional<LocalHeader> ParseLocalHeader(std::string_view bytes) {
    if (bytes.size() < local_header::kFixedSize || !HasSignature(bytes, kLocalSignature)) {
        return std::nullopt;
    }
    return ParseHeaderNumbers(bytes);
}

std::optional<LocalRecord> ParseLocalRecord(std::string_view bytes, std::uint64_t offset,
                                            platform::CodePage& code_page, platform::Clock& clock) {
    const auto header = ParseLocalHeader(bytes);
    if (!header || header->name_length == 0 || bytes.size() < header->Length() ||
        !Exists(static_cast<unsigned char>(bytes[local_header::kVersionNeeded]),
                static_cast<int>(header->method))) {
        return std::nullopt;
    }
    LocalRecord record;
    StoredEntry& entry = record.entry;
    SetNumbers(*header, entry);
    entry.offset = offset;
    const std::string_view raw = bytes.substr(local_header::kFixedSize, header->name_length);
    const std::string_view extra =
        bytes.substr(local_header::kFixedSize + raw.size(), header->extra_length);
    Zip64Values sizes(FindField(extra, kZip64Field));
    ReadZip64Sizes(sizes, entry);
    ReadNameAndTimes(raw, extra, header->dos_time, code_page, clock, entry);
    entry.is_folder = entry.name.ends_with('/') || entry.name.ends_with('\\');
    entry.attributes = entry.is_folder ? attribute::kFolder : attribute::kArchive;
    record.data_at = offset + header->Length();
    // Some writers set the flag and state the sizes all the same.
    record.states_sizes =
        (entry.flags & flag::kDescriptor) == 0 || (entry.crc != 0 && entry.packed_size != 0);
    return record;
}

CentralRecord ParseCentralNumbers(std::string_view record) {
    using namespace central_record;
    CentralRecord result;
    StoredEntry& entry = result.entry;
    const LocalHeader numbers = ParseHeaderNumbers(record.substr(kCentralShift));
    SetNumbers(numbers, entry);
    result.dos_time = numbers.dos_time;
    result.disk = GetNumber<std::uint16_t>(record, kDisk);
    entry.offset = GetNumber<std::uint32_t>(record, kOffset);
    result.raw_name = record.substr(kFixedSize, numbers.name_length);
    const std::string_view extra = ExtraFields(record);
    ReadZip64(extra, result);
    result.disk_list = FindField(extra, kDiskListField).value_or("");
    result.chunk_index = FindField(extra, kChunkIndexField).value_or("");
    result.compressor = FindField(extra, kCompressorField).value_or("");
    return result;
}

CentralRecord ParseCentralRecord(std::string_view record, platform::CodePage& code_page,
                                 platform::Clock& clock) {
    using namespace central_record;
    CentralRecord result = ParseCentralNumbers(record);
    StoredEntry& entry = result.entry;
    ReadNameAndTimes(result.raw_name, ExtraFields(record), result.dos_time, code_page, clock,
                     entry);
    ReadAttributes(static_cast<unsigned char>(record[kHost]),
                   GetNumber<std::uint32_t>(record, kAttributes), entry);
    return result;
}

}  // namespace vantrel::zip
