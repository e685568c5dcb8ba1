// Texts for people to read: names that may hold anything, and numbers of things.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantrel {

// `text` with its control characters made visible: U+0000 to U+001F and U+007F become "\x00" with
// two hexadecimal digits, U+0080 to U+009F "\u0085" with four. A byte that is no UTF-8 becomes
// "\x9b": a terminal may take it for a control character. A backslash stays as it is, since paths
// are full of them, so the result is for reading only and does not give the name back. Doing it
// twice changes nothing more.
std::string EscapeControls(std::string_view text);

// "1 file", "2 files", "0 files".
std::string Counted(std::uint64_t count, std::string_view one, std::string_view many);

// How the user writes numbers (platform::Settings::Numbers).
struct NumberFormat {
    std::string decimal = ".";
    std::string group = ",";
    // Digits of the last group before the decimal mark, and of each group before that; 0: the rest
    // is one group.
    int last_group = 3;
    int other_groups = 3;
};

// "16,909".
std::string NumberText(std::uint64_t number, const NumberFormat& format);
// "1 byte", "512 bytes", "4.7 KB", "287 MB". A KB has 1,024 bytes. One decimal below ten.
std::string SizeText(std::uint64_t bytes, const NumberFormat& format);

}  // namespace vantrel
