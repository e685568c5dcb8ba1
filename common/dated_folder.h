// Names of the folders that hold one dated backup each: "YYYYMMDD_HHNNSS", local time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantrel {

constexpr std::size_t kDatedFolderNameLength = 15;  // characters, all of them ASCII

// Arguments as on a calendar and a 24-hour clock: month and day from 1, hour from 0.
std::string DatedFolderName(int year, int month, int day, int hour, int minute, int second);

// Whether `name` has the form of such a name; its digits may be no real date.
bool IsDatedFolderName(std::string_view name);

}  // namespace vantrel
