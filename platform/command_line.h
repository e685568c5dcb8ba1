// What a program was started with, taken from the whole line that the system hands over.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::platform {

// The text after the executable's name. The name ends at the first blank or tab outside quotation
// marks. Blanks before the first other character separate it from the text and are dropped; of a
// text of blanks only exactly one is dropped (a shell appends one even without a parameter).
// Nothing else is trimmed, and quotation marks in the text stay.
std::string ParameterText(std::string_view whole_line);

}  // namespace vantrel::platform
