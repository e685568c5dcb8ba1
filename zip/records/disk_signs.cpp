#include "zip/records/disk_signs.h"

#include <algorithm>

#include "zip/base/little_endian.h"
#include "zip/base/source_reader.h"
#include "zip/deflate/deflate.h"
#include "zip/records/entry_records.h"

namespace vantrel::zip {

namespace {

constexpr std::size_t kLocalSize = 30;

std::string BytesAt(platform::File& file, std::uint64_t offset, std::size_t count) {
    std::string bytes(count, '\0');
    file.Seek(offset);
    bytes.resize(ReadFully(file, reinterpret_cast<std::uint8_t*>(bytes.data()), count));
    return bytes;
}

bool StartsWith(std::string_view bytes, std::uint32_t signature) {
    return bytes.size() >= 4 && GetNumber<std::uint32_t>(bytes, 0) == signature;
}

std::uint32_t CrcOf(std::string_view head) {
    return Crc32(reinterpret_cast<const std::uint8_t*>(head.data()), head.size());
}

bool LooksLikeTheFirst(platform::File& file) {
    const std::string start = BytesAt(file, 0, 8);
    return start.size() == 8 && StartsWith(start, kSpannedMarker) &&
           StartsWith(std::string_view(start).substr(4), kLocalSignature);
}

}  // namespace

void DiskSigns::ReadList(std::string_view field) {
    for (std::uint32_t disk = 0; field.size() >= kDiskListItem; ++disk) {
        listed[disk] = {GetNumber<std::uint64_t>(field, 0), GetNumber<std::uint32_t>(field, 8)};
        field.remove_prefix(kDiskListItem);
    }
}

std::uint32_t DiskSigns::HeadCrc(platform::File& file) {
    return CrcOf(BytesAt(file, 0, kDiskHead));
}

void DiskSigns::ListLast(std::uint64_t size, std::string_view head) {
    listed[disks - 1] = {size, CrcOf(head)};
}

bool DiskSigns::Knows(std::uint32_t disk) const {
    const auto sign = signs.find(disk);
    return listed.count(disk) > 0 || (sign != signs.end() && !sign->second.central);
}

bool DiskSigns::Fits(platform::File& file, std::uint32_t disk) const {
    const std::uint64_t size = file.Size();
    if (const auto item = listed.find(disk); item != listed.end()) {
        return size == item->second.size && HeadCrc(file) == item->second.head_crc;
    }
    if (const auto sign = signs.find(disk); sign != signs.end()) {
        return SignFits(file, sign->second);
    }
    if (disk > directory_disk) {
        return SignFits(file, {0, "", 0, true});
    }
    // Nothing but the middle of one file's data: no more can be said than that it is not another.
    return (disk == 0 || !LooksLikeTheFirst(file)) && size > 0 &&
           std::none_of(signs.begin(), signs.end(),
                        [&](const auto& other) { return SignFits(file, other.second); });
}

bool DiskSigns::SignFits(platform::File& file, const DiskSign& sign) const {
    const std::string bytes = BytesAt(file, sign.offset, kLocalSize + sign.name.size());
    if (sign.central) {
        return StartsWith(bytes, kCentralSignature);
    }
    return bytes.size() == kLocalSize + sign.name.size() && StartsWith(bytes, kLocalSignature) &&
           GetNumber<std::uint32_t>(bytes, 10) == sign.dos_time &&
           bytes.compare(kLocalSize, sign.name.size(), sign.name) == 0;
}

}  // namespace vantrel::zip
