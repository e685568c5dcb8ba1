#include "zip/records/disk_identity.h"

#include <algorithm>

#include "zip/base/bytes.h"
#include "zip/records/record_parser.h"

namespace vantrel::zip {

namespace {

std::string BytesAt(platform::File& file, std::uint64_t offset, std::size_t count) {
    std::string bytes(count, '\0');
    file.Seek(offset);
    bytes.resize(ReadFully(file, reinterpret_cast<std::uint8_t*>(bytes.data()), count));
    return bytes;
}

// A spanned archive begins with the marker, and the first local header follows (APPNOTE 8.5.4).
bool IsLikeDiskOne(platform::File& file) {
    const std::string start = BytesAt(file, 0, 2 * kSignatureSize);
    return HasSignature(start, kSpannedMarker) &&
           HasSignature(std::string_view(start).substr(kSignatureSize), kLocalSignature);
}

bool HasRecord(platform::File& file, const DiskRecord& record) {
    const std::string bytes =
        BytesAt(file, record.offset, local_header::kFixedSize + record.name.size());
    if (record.central) {
        return HasSignature(bytes, kCentralSignature);
    }
    const auto header = ParseLocalHeader(bytes);
    return header && header->dos_time == record.dos_time &&
           std::string_view(bytes).substr(local_header::kFixedSize) == record.name;
}

}  // namespace

void DiskIdentity::ReadList(std::string_view field) {
    for (std::uint32_t disk = 0; field.size() >= kDiskListItem; ++disk) {
        listed[disk] = {GetNumber<std::uint64_t>(field, 0),
                        GetNumber<std::uint32_t>(field, kDiskListCrc)};
        field.remove_prefix(kDiskListItem);
    }
}

std::uint32_t DiskIdentity::HeadCrc(platform::File& file) {
    return Crc32(BytesAt(file, 0, kDiskHead));
}

void DiskIdentity::ListLast(std::uint64_t size, std::string_view head) {
    listed[disks - 1] = {size, Crc32(head)};
}

bool DiskIdentity::CanVerify(std::uint32_t disk) const {
    const auto record = records.find(disk);
    return listed.count(disk) > 0 || (record != records.end() && !record->second.central);
}

bool DiskIdentity::Matches(platform::File& file, std::uint32_t disk) const {
    const std::uint64_t size = file.Size();
    if (const auto item = listed.find(disk); item != listed.end()) {
        return size == item->second.size && HeadCrc(file) == item->second.head_crc;
    }
    if (const auto record = records.find(disk); record != records.end()) {
        return HasRecord(file, record->second);
    }
    if (disk > directory_disk) {
        return HasRecord(file, {0, "", 0, true});
    }
    // Nothing but the middle of one file's data, or nothing is known of the set: it can only be
    // shown to be no other disk.
    return (disk == 0) == IsLikeDiskOne(file) && size > 0 &&
           std::none_of(records.begin(), records.end(),
                        [&](const auto& other) { return HasRecord(file, other.second); });
}

}  // namespace vantrel::zip
