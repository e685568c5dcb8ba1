#include "platform/host/host_error.h"

#include <cerrno>

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
        case ENXIO:  // a pipe or socket with nobody at its other end
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

}  // namespace

int HostErrorNumber(int code, HostDeed deed) {
    const int number = FileNumber(code);
    if (deed == HostDeed::kFile) return number;
    if (code == ENOTEMPTY || code == EINVAL) return kPathFileAccess;
    if (number == kFileNotFound) return kPathNotFound;
    if (deed == HostDeed::kList && number == kBadFileName) return kPathNotFound;
    const bool refused =
        number == kPermissionDenied || number == kFileExists || number == kBadFileName;
    return refused ? kPathFileAccess : number;
}

void RaiseHostError(int code, HostDeed deed) { RaiseError(HostErrorNumber(code, deed)); }

}  // namespace vantrel::platform
