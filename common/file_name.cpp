#include "common/file_name.h"

#include <cstdio>
#include <string>

#include "common/utf.h"

namespace vantrel {

namespace {

constexpr std::size_t kUnderscore = 8;  // its position in the name of a dated folder

std::string UpperAscii(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return upper;
}

// "COM0" to "COM9", "LPT0" to "LPT9", and the superscript digits 1 to 3, which count as digits.
bool IsPortName(std::string_view base) {
    if (!base.starts_with("COM") && !base.starts_with("LPT")) {
        return false;
    }
    const std::string_view number = base.substr(3);
    if (number.size() == 1) {
        return number[0] >= '0' && number[0] <= '9';
    }
    return number == "\xC2\xB9" || number == "\xC2\xB2" || number == "\xC2\xB3";
}

}  // namespace

bool IsDeviceName(std::string_view name) {
    static constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN",    "AUX",
                                                                 "NUL", "CONIN$", "CONOUT$"};
    constexpr std::size_t kMinLength = 3;
    constexpr std::size_t kMaxLength = 7;
    // Decides quickly for most names.
    constexpr std::string_view kFirstLetters = "CLPANclpan";
    if (name.empty() || kFirstLetters.find(name.front()) == std::string_view::npos) {
        return false;
    }
    std::string_view stem = name.substr(0, name.find('.'));
    while (stem.ends_with(' ')) {
        stem.remove_suffix(1);
    }
    if (stem.size() < kMinLength || stem.size() > kMaxLength) {
        return false;
    }
    const std::string base = UpperAscii(stem);
    return IsPortName(base) || std::find(kDevices.begin(), kDevices.end(), base) != kDevices.end();
}

bool IsValidFileName(std::string_view name) {
    if (name.empty() || name.back() == '.' || name.back() == ' ') {
        return false;
    }
    return std::none_of(name.begin(), name.end(), IsForbiddenInName) &&
           name.find_first_of("\\/") == std::string_view::npos && !IsDeviceName(name) &&
           !utf::IsLongerThan(name, kMaxFileNameLength);
}

std::string DatedFolderName(int year, int month, int day, int hour, int minute, int second) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d%02d%02d_%02d%02d%02d", year, month, day, hour, minute,
                  second);
    return text;
}

bool IsDatedFolderName(std::string_view name) {
    if (name.size() != kDatedFolderNameLength || name[kUnderscore] != '_') {
        return false;
    }
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    return std::count_if(name.begin(), name.end(), is_digit) == kDatedFolderNameLength - 1;
}

}  // namespace vantrel
