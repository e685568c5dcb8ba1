#include "platform/win32/system_error.h"

#include "common/error.h"

namespace vantrel::platform {

namespace {

using namespace error_number;

// Codes that not every compiler's system headers name.
constexpr DWORD kVirusInfected = 225;
constexpr DWORD kNoSuchDevice = 433;
constexpr DWORD kQuotaExceeded = 1295;

struct Row {
    DWORD code;
    int number;
};

constexpr Row kTable[] = {
    {ERROR_FILE_NOT_FOUND, kFileNotFound},
    {ERROR_PATH_NOT_FOUND, kPathNotFound},
    {ERROR_DIRECTORY, kPathNotFound},
    {ERROR_BAD_NETPATH, kPathNotFound},
    {ERROR_BAD_NET_NAME, kPathNotFound},
    {ERROR_NETNAME_DELETED, kPathNotFound},
    {ERROR_INVALID_NAME, kBadFileName},
    {ERROR_BAD_PATHNAME, kBadFileName},
    {ERROR_FILENAME_EXCED_RANGE, kBadFileName},
    {ERROR_ACCESS_DENIED, kPermissionDenied},
    {ERROR_SHARING_VIOLATION, kPermissionDenied},
    {ERROR_LOCK_VIOLATION, kPermissionDenied},
    {ERROR_WRITE_PROTECT, kPermissionDenied},
    {ERROR_DELETE_PENDING, kPermissionDenied},
    {ERROR_USER_MAPPED_FILE, kPermissionDenied},
    {kVirusInfected, kPermissionDenied},
    {ERROR_PRIVILEGE_NOT_HELD, kPermissionDenied},
    {ERROR_FILE_EXISTS, kFileExists},
    {ERROR_ALREADY_EXISTS, kFileExists},
    {ERROR_NOT_SAME_DEVICE, kAcrossDrives},
    {ERROR_DISK_FULL, kDiskFull},
    {ERROR_HANDLE_DISK_FULL, kDiskFull},
    {kQuotaExceeded, kDiskFull},
    {ERROR_FILE_TOO_LARGE, kDiskFull},  // the volume cannot take more of this file: 4 GB on FAT
    {ERROR_INVALID_DRIVE, kDeviceUnavailable},
    {ERROR_BAD_UNIT, kDeviceUnavailable},
    {ERROR_DEV_NOT_EXIST, kDeviceUnavailable},
    {kNoSuchDevice, kDeviceUnavailable},
    {ERROR_DEVICE_NOT_CONNECTED, kDeviceUnavailable},
    {ERROR_NOT_READY, kDiskNotReady},
    {ERROR_NO_MEDIA_IN_DRIVE, kDiskNotReady},
    {ERROR_MEDIA_CHANGED, kDiskNotReady},
    {ERROR_WRONG_DISK, kDiskNotReady},
    {ERROR_UNRECOGNIZED_MEDIA, kDiskNotReady},
    {ERROR_UNRECOGNIZED_VOLUME, kDiskNotReady},
    {ERROR_DIR_NOT_EMPTY, kPathFileAccess},
    {ERROR_CURRENT_DIRECTORY, kPathFileAccess},
    {ERROR_CANNOT_MAKE, kPathFileAccess},
    {ERROR_NOT_ENOUGH_MEMORY, kOutOfMemory},
    {ERROR_OUTOFMEMORY, kOutOfMemory},
};

constexpr DWORD kPauses[] = {10, 20, 40, 80, 160};  // milliseconds before the next try

bool IsLocked(DWORD code) {
    return code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION ||
           code == ERROR_ACCESS_DENIED || code == ERROR_DELETE_PENDING ||
           code == ERROR_USER_MAPPED_FILE;
}

int TableNumber(DWORD code) {
    for (const Row& row : kTable) {
        if (row.code == code) {
            return row.number;
        }
    }
    return kDeviceIo;
}

// 68 or 71 when a missing name is really a missing drive or disk; else 0.
int DriveFault(const DiskPath& path) {
    const std::wstring root = path.PlainRoot();
    if (root.starts_with(L"\\\\")) {
        return 0;
    }
    const UINT type = GetDriveTypeW(root.c_str());
    if (type == DRIVE_NO_ROOT_DIR || type == DRIVE_UNKNOWN) {
        return kDeviceUnavailable;
    }
    if (GetFileAttributesW(path.Root().c_str()) != INVALID_FILE_ATTRIBUTES) {
        return 0;
    }
    return GetLastError() == ERROR_ACCESS_DENIED ? 0 : kDiskNotReady;
}

}  // namespace

int ErrorNumber(DWORD code, FileOperation operation) {
    // The code of some systems for a folder that would become part of itself.
    const bool of_a_file = operation == FileOperation::kFile;
    if (!of_a_file && code == ERROR_INVALID_PARAMETER) {
        return kPathFileAccess;
    }
    return NumberFor(operation, TableNumber(code));
}

void RaiseSystemError(DWORD code, FileOperation operation, const DiskPath& path) {
    const int number = ErrorNumber(code, operation);
    if (number == kFileNotFound || number == kPathNotFound) {
        if (const int fault = DriveFault(path)) {
            RaiseError(fault);
        }
    }
    RaiseError(number);
}

void RaiseSystemError(DWORD code) { RaiseError(ErrorNumber(code, FileOperation::kFile)); }

DWORD RetryWhileLocked(const std::function<bool()>& call, const Pause& pause) {
    if (call()) {
        return ERROR_SUCCESS;
    }
    DWORD code = GetLastError();
    for (const DWORD milliseconds : kPauses) {
        if (!IsLocked(code)) {
            break;
        }
        pause(milliseconds);
        if (call()) {
            return ERROR_SUCCESS;
        }
        code = GetLastError();
    }
    return code;
}

}  // namespace vantrel::platform
