#include "common/error.h"

#include "common/product.h"

namespace vantrel {

std::string ErrorText(int number) {
    switch (number) {
        case error_number::kOverflow:
            return "Overflow";
        case error_number::kOutOfMemory:
            return "Out of memory";
        case error_number::kBadFileName:
            return "Bad file name or number";
        case error_number::kFileNotFound:
            return "File not found";
        case error_number::kFileAlreadyOpen:
            return "File already open";
        case error_number::kDeviceIo:
            return "Device I/O error";
        case error_number::kFileExists:
            return "File already exists";
        case error_number::kDiskFull:
            return "Disk full";
        case error_number::kPastEnd:
            return "Input past end of file";
        case error_number::kDeviceUnavailable:
            return "Device unavailable";
        case error_number::kPermissionDenied:
            return "Permission denied";
        case error_number::kDiskNotReady:
            return "Disk not ready";
        case error_number::kAcrossDrives:
            return "Can't rename with different drive";
        case error_number::kPathFileAccess:
            return "Path/File access error";
        case error_number::kPathNotFound:
            return "Path not found";
        case error_number::kInvalidPropertyValue:
            return "Invalid property value";
        case error_number::kTextReadOnly:
            return "'Text' property is read-only";
        default:
            return "Application-defined or object-defined error";
    }
}

void RaiseError(int number) { throw Error(number, product::kName, ErrorText(number)); }

void RaiseError(int number, const std::string& path) {
    throw Error(number, product::kName, ErrorText(number) + ": " + path);
}

void ReportError(std::string_view label, const Error& trapped) {
    throw Error(error_number::kObjectBase + error_number::kReported, std::string(label),
                trapped.description());
}

}  // namespace vantrel
