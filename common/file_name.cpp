#include "common/file_name.h"

#include <string>

#include "common/utf.h"

namespace vantrel {

namespace {

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

}  // namespace vantrel
