#include "common/dated_folder.h"

#include <algorithm>
#include <cstdio>

namespace vantrel {

namespace {
constexpr std::size_t kUnderscore = 8;  // its position
}  // namespace

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
