// The profile format, as pure text: lines, sections in square brackets, "key=value", comments that
// start with ";". Works on the bytes of a file, whatever their code page, and touches no file.
//
// Section and key names are matched without regard to the case of ASCII letters, blanks around them
// aside; CR LF, CR and LF all end a line. Of two sections or keys of one name the first counts. A
// line without "=" is no key, and a key above the first section belongs to none.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantrel::profile {

// The value of a key without the blanks around it and without one pair of quotes (' or "); it ends
// at a NUL byte. Nothing when the section or the key is missing.
std::optional<std::string> FindValue(std::string_view text, std::string_view section,
                                     std::string_view key);

// The text with the key set. An existing value is exchanged and every other byte kept; a missing
// key goes to the end of its section, in front of the blank lines there; a missing section to the
// end of the text. New lines end as the lines of the text do, CR LF where it has none.
std::string SetValue(std::string_view text, std::string_view section, std::string_view key,
                     std::string_view value);

// Whether the format can hold the value at all: a line end or a NUL byte would cut it in two.
bool CanHold(std::string_view value);

}  // namespace vantrel::profile
