#include "platform/host/host_drives.h"

#include <sys/statvfs.h>

#include <algorithm>
#include <limits>

#include "common/error.h"
#include "platform/host/host_path.h"
#include "platform/machine_support.h"

namespace vantrel::platform {

namespace {

std::optional<HostDrive> DriveOf(const HostDriveMap& drives, const std::string& root) {
    try {
        return drives.Get(HostPath(root).letter);
    } catch (const Error&) {
        return std::nullopt;
    }
}

std::uint32_t Clamped(std::uint64_t value) {
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(value, std::numeric_limits<std::uint32_t>::max()));
}

DiskSpace TrueSpace(const struct statvfs& volume) {
    constexpr std::uint64_t kSector = 512;  // bytes; block sizes of the host are multiples of it
    DiskSpace space;
    space.bytes_per_sector = static_cast<std::uint32_t>(kSector);
    space.sectors_per_cluster = Clamped(std::max<std::uint64_t>(volume.f_frsize / kSector, 1));
    space.free_clusters = Clamped(volume.f_bavail);
    space.total_clusters = Clamped(volume.f_blocks);
    return space;
}

std::optional<std::uint64_t> FreeAt(const HostDriveMap& drives, const HostPath& path) {
    HostLocation location(drives, path);
    struct statvfs volume;
    if (::statvfs(location.Path().c_str(), &volume) != 0) {
        if (!location.Respell() || ::statvfs(location.Path().c_str(), &volume) != 0) {
            return std::nullopt;
        }
    }
    return std::uint64_t{volume.f_bavail} * volume.f_frsize;
}

// Nothing when the folder is not there.
std::optional<std::uint64_t> FreeIfThere(const HostDriveMap& drives, const HostPath& path) {
    try {
        return FreeAt(drives, path);
    } catch (const Error& error) {
        if (error.number() == error_number::kPathNotFound) {
            return std::nullopt;
        }
        throw;
    }
}

}  // namespace

std::optional<HostDrive> HostDriveMap::Get(char letter) const {
    const std::lock_guard lock(mutex_);
    const auto found = drives_.find(letter);
    if (found == drives_.end()) {
        return std::nullopt;
    }
    return found->second;
}

void HostDriveMap::Set(char letter, HostDrive drive) {
    const std::lock_guard lock(mutex_);
    drives_[letter] = std::move(drive);
}

int HostDrives::Type(const std::string& root) {
    const auto drive = DriveOf(drives_, root);
    return drive ? drive->type : drive_type::kNoRoot;
}

DiskSpace HostDrives::Space(const std::string& root) {
    const auto drive = DriveOf(drives_, root);
    struct statvfs volume;
    if (!drive || !drive->ready || ::statvfs(drive->folder.c_str(), &volume) != 0) {
        return {};
    }
    return ClassicDiskSpace(TrueSpace(volume));
}

std::uint64_t HostDrives::FreeBytes(const std::string& folder) {
    try {
        // A folder that is still to be made lies where its nearest parent does.
        for (HostPath path(folder);; path.GoUp()) {
            if (const auto bytes = FreeIfThere(drives_, path)) {
                return *bytes;
            }
            if (path.IsRoot()) {
                return 0;
            }
        }
    } catch (const Error&) {
        return 0;
    }
}

std::string HostDrives::Label(const std::string& root) {
    const auto drive = DriveOf(drives_, root);
    return drive && drive->ready ? drive->label : std::string();
}

}  // namespace vantrel::platform
