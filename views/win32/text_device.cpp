#include "views/win32/text_device.h"

namespace vantrel::views {

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

int TextDevice::LineHeight() const {
    TEXTMETRICW metrics{};
    GetTextMetricsW(device_, &metrics);
    return static_cast<int>(metrics.tmHeight);
}

}  // namespace vantrel::views
