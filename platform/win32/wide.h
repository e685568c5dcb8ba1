// Between the program's UTF-8 and the system's UTF-16. Both ways keep lone surrogates, which names
// on disk may hold, so that every name comes back as it was.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::platform {

std::wstring Wide(std::string_view utf8);
std::string Narrow(std::wstring_view utf16);

}  // namespace vantrel::platform
