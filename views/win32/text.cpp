#include "views/win32/text.h"

namespace vantrel::views {

std::wstring Wide(const std::string& utf8) {
    const int bytes = static_cast<int>(utf8.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0)),
        L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string Utf8(const std::wstring& wide) {
    const int count = static_cast<int>(wide.size());
    std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), count,
                                                                  nullptr, 0, nullptr, nullptr)),
                     '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), count, utf8.data(), static_cast<int>(utf8.size()),
                        nullptr, nullptr);
    return utf8;
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
