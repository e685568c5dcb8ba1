// Names of files and folders: the rules of Windows, on any file system, and the names of dated
// backups.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace vantrel {

// UTF-16 units; the limit of every Windows file system.
constexpr std::size_t kMaxFileNameLength = 255;

// By ASCII code.
constexpr std::array<bool, 128> kForbiddenInNames = [] {
    std::array<bool, 128> table{};
    std::fill(table.begin(), table.begin() + ' ', true);
    for (const char c : std::string_view("<>:\"|?*")) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();

// Whether no name may hold this byte of UTF-8 or unit of UTF-16: control characters and
// < > : " | ? *. The slashes are not among them: they never get into a name, since they end it.
constexpr auto IsForbiddenInName = [](auto unit) {
    const auto code = static_cast<std::make_unsigned_t<decltype(unit)>>(unit);
    return code < kForbiddenInNames.size() && kForbiddenInNames[code];
};

// Whether the system takes this name for one of its own devices, in whatever letter case and with
// whatever extension: "CON", "nul.txt", "COM1", "LPT9 .ini".
bool IsDeviceName(std::string_view name);

// Whether a file or folder can have this name and every program can reach it under it: 1 to 255
// UTF-16 units, no forbidden character and no slash, no device's name, no dot or space at the end.
// UTF-8.
bool IsValidFileName(std::string_view name);

// Each dated backup has a folder of its own, named by the local time of its start:
// "YYYYMMDD_HHNNSS".
constexpr std::size_t kDatedFolderNameLength = 15;  // characters, all of them ASCII

// Arguments as on a calendar and a 24-hour clock: month and day from 1, hour from 0.
std::string DatedFolderName(int year, int month, int day, int hour, int minute, int second);

// Whether `name` has the form of such a name; its digits may be no real date.
bool IsDatedFolderName(std::string_view name);

}  // namespace vantrel
