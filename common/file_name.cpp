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

// "COM1" to "COM9", "COM0", and the superscript digits that the system takes for digits.
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
    constexpr std::size_t kShortest = 3;
    constexpr std::size_t kLongest = 7;
    // How all of them begin, and few other names do.
    constexpr std::string_view kFirstLetters = "CLPANclpan";
    if (name.empty() || kFirstLetters.find(name.front()) == std::string_view::npos) {
        return false;
    }
    std::string_view stem = name.substr(0, name.find('.'));
    while (stem.ends_with(' ')) {
        stem.remove_suffix(1);
    }
    if (stem.size() < kShortest || stem.size() > kLongest) {
        return false;
    }
    const std::string base = UpperAscii(stem);
    return IsPortName(base) || std::find(kDevices.begin(), kDevices.end(), base) != kDevices.end();
}

bool IsValidFileName(std::string_view name) {
    if (name.empty() || name.back() == '.' || name.back() == ' ') return false;
    return std::none_of(name.begin(), name.end(), IsForbiddenInName) &&
           name.find_first_of("\\/") == std::string_view::npos && !IsDeviceName(name) &&
           !utf::IsLongerThan(name, kLongestFileName);
}

}  // namespace vantrel
