#include "platform/host/host_info.h"

#include <fcntl.h>
#include <sys/xattr.h>

#include <cerrno>
#include <charconv>
#include <optional>
#include <string_view>

#include "common/error.h"

namespace vantrel::platform {

namespace {

using namespace error_number;

int FileNumber(int code) {
    switch (code) {
        case ENOENT:
            return kFileNotFound;
        case ENOTDIR:
        case ELOOP:
            return kPathNotFound;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
        case ETXTBSY:
        case EBUSY:
        case ENXIO:  // a pipe or socket that no other process has open
            return kPermissionDenied;
        case EEXIST:
            return kFileExists;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return kDiskFull;
        case EXDEV:
            return kAcrossDrives;
        case ENAMETOOLONG:
        case EILSEQ:
            return kBadFileName;
        case ENOMEM:
            return kOutOfMemory;
        case ENODEV:
            return kDeviceUnavailable;
        case ENOMEDIUM:
            return kDiskNotReady;
        default:
            return kDeviceIo;
    }
}

constexpr const char* kStored = "user.DOSATTRIB";
constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kEpochTicks = 116'444'736'000'000'000;  // 1970-01-01 in ticks
constexpr std::uint32_t kStoredBits = attribute::kHidden | attribute::kSystem | attribute::kArchive;

std::uint32_t StoredBits(bool folder) {
    return folder ? kStoredBits | attribute::kReadOnly : kStoredBits;
}

// The attributes of a file without stored ones.
std::uint32_t DefaultBits(bool folder) { return folder ? 0 : attribute::kArchive; }

// Other programs may add bytes after the number.
std::optional<std::uint32_t> ParseStored(std::string_view text) {
    if (!text.starts_with("0x")) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    const auto result = std::from_chars(text.data() + 2, text.data() + text.size(), value, 16);
    if (result.ec != std::errc()) {
        return std::nullopt;
    }
    return value;
}

std::string FormatStored(std::uint32_t value) {
    char digits[8];
    const auto result = std::to_chars(digits, digits + sizeof digits, value, 16);
    return "0x" + std::string(digits, result.ptr);
}

void StoreMode(const HostLocation& location, unsigned mode, bool read_only) {
    if (IsReadOnlyMode(mode) == read_only) {
        return;
    }
    const unsigned wanted = read_only ? mode & ~0222u : mode | 0200u;
    CheckHost(::fchmodat(location.Folder(), location.Name(), wanted & 07777u, 0) == 0);
}

void StoreBits(const std::string& host_path, std::uint32_t bits, bool folder) {
    if (bits == DefaultBits(folder)) {
        // Nothing was stored, or nothing can be: both mean the default already.
        if (::removexattr(host_path.c_str(), kStored) == 0) {
            return;
        }
        if (errno == ENODATA || errno == EOPNOTSUPP) {
            return;
        }
    } else {
        const std::string text = FormatStored(bits);
        if (::setxattr(host_path.c_str(), kStored, text.data(), text.size(), 0) == 0) {
            return;
        }
    }
    RaiseError(errno == EOPNOTSUPP ? error_number::kPermissionDenied
                                   : HostErrorNumber(errno, FileOperation::kFile));
}

struct timespec HostTime(Ticks ticks) {
    if (ticks == 0) {
        return {0, UTIME_OMIT};
    }
    // The epoch is a whole number of seconds after the first tick.
    return {SecondsOf(ticks), static_cast<std::int64_t>(ticks % kTicksPerSecond) * 100};
}

}  // namespace

int HostErrorNumber(int code, FileOperation operation) {
    const bool of_a_file = operation == FileOperation::kFile;
    if (!of_a_file && (code == ENOTEMPTY || code == EINVAL)) {
        return kPathFileAccess;
    }
    return NumberFor(operation, FileNumber(code));
}

void RaiseHostError(int code, FileOperation operation) {
    RaiseError(HostErrorNumber(code, operation));
}

void CheckHost(bool succeeded, FileOperation operation) {
    if (!succeeded) {
        RaiseHostError(errno, operation);
    }
}

Ticks TicksOf(std::int64_t seconds, std::uint32_t nanoseconds) {
    const std::int64_t ticks = seconds * kTicksPerSecond + nanoseconds / 100 + kEpochTicks;
    return ticks < 0 ? 0 : static_cast<Ticks>(ticks);
}

std::int64_t SecondsOf(Ticks ticks) {
    return static_cast<std::int64_t>(ticks / kTicksPerSecond) - kEpochTicks / kTicksPerSecond;
}

bool IsReadOnlyMode(unsigned mode) { return (mode & 0222u) == 0; }

FileInfo InfoFromStatus(const std::string& name, const struct statx& status) {
    FileInfo info;
    info.name = name;
    const auto ticks = [](const statx_timestamp& time) {
        return TicksOf(time.tv_sec, time.tv_nsec);
    };
    info.times = {
        ticks(status.stx_mtime), ticks(status.stx_atime),
        ticks((status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime)};
    const unsigned mode = status.stx_mode;
    if (S_ISLNK(mode)) {
        info.is_link = true;
        info.attributes = attribute::kReparse;
    } else if (S_ISDIR(mode)) {
        info.attributes = attribute::kFolder;
    } else {
        info.size = status.stx_size;
        info.attributes = S_ISREG(mode) ? attribute::kArchive : attribute::kDevice;
        if (IsReadOnlyMode(mode)) {
            info.attributes |= attribute::kReadOnly;
        }
    }
    return info;
}

bool AddStoredAttributes(const std::string& host_path, FileInfo& info) {
    if (info.is_link || (info.attributes & attribute::kDevice) != 0) {
        return true;
    }
    char text[64];
    const ssize_t size = ::getxattr(host_path.c_str(), kStored, text, sizeof text);
    if (size < 0) {
        return errno != EOPNOTSUPP;
    }
    const auto value = ParseStored(std::string_view(text, static_cast<std::size_t>(size)));
    const std::uint32_t mask = StoredBits(info.IsFolder());
    if (value) {
        info.attributes = (info.attributes & ~mask) | (*value & mask);
    }
    return true;
}

void StoreAttributes(const HostLocation& location, std::uint32_t attributes) {
    struct stat status;
    CheckHost(::fstatat(location.Folder(), location.Name(), &status, AT_SYMLINK_NOFOLLOW) == 0);
    const bool folder = S_ISDIR(status.st_mode);
    // Attributes of links and devices are not changed.
    if (!folder && !S_ISREG(status.st_mode)) {
        RaiseError(error_number::kPermissionDenied);
    }
    // Writable while the extended attribute is set, which a read-only file's owner may not do.
    if (!folder) {
        StoreMode(location, status.st_mode, false);
    }
    StoreBits(location.Path(), attributes & StoredBits(folder), folder);
    if (!folder) {
        StoreMode(location, status.st_mode | 0200u, (attributes & attribute::kReadOnly) != 0);
    }
}

HostTimes::HostTimes(const FileTimes& times)
    : values{HostTime(times.accessed), HostTime(times.modified)} {}

}  // namespace vantrel::platform
