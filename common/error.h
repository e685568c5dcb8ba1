// The program's only error type: a number, its source, and a description for the user. Thrown by
// the platform and by every class, trapped only where a rule says so, and otherwise caught at the
// window procedure, at the entry point and at the top of every thread.
#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace vantrel {

// Run-time error numbers, as users of classic desktop programs know them.
namespace error_number {
constexpr int kOverflow = 6;
constexpr int kOutOfMemory = 7;
constexpr int kBadFileName = 52;
constexpr int kFileNotFound = 53;
constexpr int kFileAlreadyOpen = 55;
constexpr int kDeviceIo = 57;
constexpr int kFileExists = 58;
constexpr int kDiskFull = 61;
constexpr int kPastEnd = 62;
constexpr int kDeviceUnavailable = 68;
constexpr int kPermissionDenied = 70;
constexpr int kDiskNotReady = 71;
constexpr int kAcrossDrives = 74;
constexpr int kPathFileAccess = 75;
constexpr int kPathNotFound = 76;
constexpr int kInvalidPropertyValue = 380;
constexpr int kTextReadOnly = 383;
// Added to a number that an object raises by itself.
constexpr int kObjectBase = -2147221504;
// What the shared reporter adds to kObjectBase for every error that it passes on.
constexpr int kReported = 9999;
}  // namespace error_number

class Error : public std::exception {
  public:
    Error(int number, std::string source, std::string description)
        : number_(number), source_(std::move(source)), description_(std::move(description)) {}

    int number() const { return number_; }
    const std::string& source() const { return source_; }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

  private:
    int number_;
    std::string source_;
    std::string description_;
};

// The standard words for a run-time error number; "Application-defined or object-defined error" for
// a number that has none.
std::string ErrorText(int number);

// Raises the run-time error `number` with its standard words; the program is its source.
[[noreturn]] void RaiseError(int number);

// The same for an error that a path causes: the standard words, ": " and the path as it was given,
// e.g. "Path not found: S:\NOTHERE".
[[noreturn]] void RaiseError(int number, const std::string& path);

// The shared error reporter: raises to the caller an error numbered kObjectBase + kReported whose
// source is `label` ("clsLog:LogFile Method") and whose description is that of `trapped`.
[[noreturn]] void ReportError(std::string_view label, const Error& trapped);

// Runs `body`; an error in it goes through the shared error reporter under `label`.
template <typename Body>
auto Reported(std::string_view label, Body&& body) -> decltype(body()) {
    try {
        return body();
    } catch (const Error& trapped) {
        ReportError(label, trapped);
    }
}

}  // namespace vantrel
