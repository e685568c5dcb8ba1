#include "views/win32/text.h"

#include "common/utf.h"

namespace vantrel::views {

std::wstring Wide(const std::string& utf8) {
    const std::u16string utf16 = utf::ToUtf16(utf8);
    return {utf16.begin(), utf16.end()};
}

std::string Utf8(const std::wstring& wide) {
    return utf::ToUtf8(std::u16string(wide.begin(), wide.end()));
}

std::string TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return Utf8(text);
}

void SetTextOf(HWND window, const std::string& text) {
    if (TextOf(window) != text) {
        SetWindowTextW(window, Wide(text).c_str());
    }
}

TextDevice::TextDevice(HWND window)
    : TextDevice(window, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0))) {}

TextDevice::TextDevice(HWND window, HFONT font)
    : window_(window), device_(GetDC(window)), font_before_(SelectObject(device_, font)) {}

TextDevice::~TextDevice() {
    SelectObject(device_, font_before_);
    ReleaseDC(window_, device_);
}

int TextDevice::WidthOf(const std::wstring& text) const {
    SIZE extent{};
    GetTextExtentPoint32W(device_, text.c_str(), static_cast<int>(text.size()), &extent);
    return static_cast<int>(extent.cx);
}

SIZE TextDevice::SizeInLines(const std::wstring& text, int width) const {
    RECT needed{0, 0, width, 0};
    DrawTextW(device_, text.c_str(), -1, &needed,
              DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX | DT_CALCRECT);
    return {needed.right, needed.bottom};
}

int TextDevice::LineHeight() const {
    TEXTMETRICW metrics{};
    GetTextMetricsW(device_, &metrics);
    return static_cast<int>(metrics.tmHeight);
}

}  // namespace vantrel::views
