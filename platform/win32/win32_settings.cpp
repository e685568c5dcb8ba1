#include "platform/win32/win32_settings.h"

#include "common/product.h"
#include "platform/win32/handles.h"
#include "platform/win32/system_error.h"
#include "platform/win32/wide.h"

namespace vantrel::platform {

namespace {

std::wstring SectionKey(const std::string& section) {
    return L"Software\\" + Wide(product::kName) + L"\\" + Wide(section);
}

DWORD BytesOf(const std::wstring& text) {
    return static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
}

void Check(LSTATUS status) {
    if (status != ERROR_SUCCESS) RaiseSystemError(static_cast<DWORD>(status));
}

}  // namespace

std::optional<std::string> Win32Settings::Read(const std::string& section, const std::string& key) {
    const std::wstring place = SectionKey(section);
    const std::wstring name = Wide(key);
    std::wstring text(256, L'\0');
    for (;;) {
        auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, place.c_str(), name.c_str(),
                                            RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
        if (status == ERROR_SUCCESS) {
            text.resize(bytes / sizeof(wchar_t));
            return Narrow(text.c_str());
        }
        if (status != ERROR_MORE_DATA) return std::nullopt;
        // Another program may let the value grow between two calls: ask until it fits.
        text.resize(text.size() * 2);
    }
}

void Win32Settings::Write(const std::string& section, const std::string& key,
                          const std::string& value) {
    HKEY opened = nullptr;
    Check(RegCreateKeyExW(HKEY_CURRENT_USER, SectionKey(section).c_str(), 0, nullptr, 0,
                          KEY_SET_VALUE, nullptr, &opened, nullptr));
    const KeyHandle place(opened);
    const std::wstring text = Wide(value);
    Check(RegSetValueExW(place.Get(), Wide(key).c_str(), 0, REG_SZ,
                         reinterpret_cast<const BYTE*>(text.c_str()), BytesOf(text)));
}

}  // namespace vantrel::platform
