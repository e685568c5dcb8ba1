#include "platform/win32/wide.h"

#include "common/utf.h"

namespace vantrel::platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the system's characters are UTF-16 units");

std::wstring Wide(std::string_view utf8) {
    const std::u16string utf16 = utf::ToUtf16(utf8);
    return {utf16.begin(), utf16.end()};
}

std::string Narrow(std::wstring_view utf16) {
    return utf::ToUtf8(std::u16string(utf16.begin(), utf16.end()));
}

}  // namespace vantrel::platform
