// Measures text as a window draws it.
#pragma once

#include <windows.h>

#include <string>

namespace vantrel::views {

// A window's drawing surface with a font in it, both given back at the end.
class TextDevice {
  public:
    // With the window's own font.
    explicit TextDevice(HWND window);
    // nullptr stands for the screen.
    TextDevice(HWND window, HFONT font);
    ~TextDevice();
    TextDevice(const TextDevice&) = delete;
    TextDevice& operator=(const TextDevice&) = delete;

    // Pixels.
    int WidthOf(const std::wstring& text) const;
    int LineHeight() const;

  private:
    HWND window_;
    HDC device_;
    HGDIOBJ font_before_;
};

}  // namespace vantrel::views
