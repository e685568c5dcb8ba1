// The profile format: lines, sections in square brackets, "key=value", comments that start with
// ";". Works on the bytes of a file in any ASCII-compatible code page and accesses no file. The
// rules are those of the platform's private-profile functions.
//
// Section and key names are matched without regard to the case of ASCII letters, spaces and tabs
// around them aside; CR LF, CR and LF all end a line. Of two sections or keys of one name the first
// counts. A line without "=" is no key, and a key above the first section belongs to none.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantrel::profile {

// The value of a key without the spaces and tabs around it and without one pair of quotes (' or ");
// it ends at a NUL byte. Nothing when the section or the key is missing.
std::optional<std::string> FindValue(std::string_view text, std::string_view section,
                                     std::string_view key);

// The text with the key set. An existing value is replaced and every other byte kept. A missing
// key is added to the end of its section, before the empty lines there; a missing section to the
// end of the text. New lines end as the text's lines do, with CR LF in a text without any.
std::string SetValue(std::string_view text, std::string_view section, std::string_view key,
                     std::string_view value);

// Whether the format can hold the value: a line end or a NUL byte would end it early.
bool CanHold(std::string_view value);

}  // namespace vantrel::profile
