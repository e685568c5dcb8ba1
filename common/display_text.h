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

}  // namespace vantrel
