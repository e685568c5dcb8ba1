#include "common/error.h"

#include <algorithm>
#include <iterator>

#include "common/product.h"

namespace vantrel {

namespace {

struct StandardText {
    int number;
    const char* words;
};

constexpr StandardText kTexts[] = {
    {error_number::kOverflow, "Overflow"},
    {error_number::kOutOfMemory, "Out of memory"},
    {error_number::kBadFileName, "Bad file name or number"},
    {error_number::kFileNotFound, "File not found"},
    {error_number::kFileAlreadyOpen, "File already open"},
    {error_number::kDeviceIo, "Device I/O error"},
    {error_number::kFileExists, "File already exists"},
    {error_number::kDiskFull, "Disk full"},
    {error_number::kPastEnd, "Input past end of file"},
    {error_number::kDeviceUnavailable, "Device unavailable"},
    {error_number::kPermissionDenied, "Permission denied"},
    {error_number::kDiskNotReady, "Disk not ready"},
    {error_number::kAcrossDrives, "Can't rename with different drive"},
    {error_number::kPathFileAccess, "Path/File access error"},
    {error_number::kPathNotFound, "Path not found"},
    {error_number::kInvalidPropertyValue, "Invalid property value"},
    {error_number::kTextReadOnly, "'Text' property is read-only"},
};

}  // namespace

std::string ErrorText(int number) {
    const auto* const found = std::ranges::find(kTexts, number, &StandardText::number);
    return found == std::end(kTexts) ? "Application-defined or object-defined error" : found->words;
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
