// Text of windows: UTF-8 inside the program, UTF-16 in Windows. Measures text as a window draws it.
#pragma once

#include <windows.h>

#include <string>

namespace vantrel::views {

std::wstring Wide(const std::string& utf8);
std::string Utf8(const std::wstring& wide);
// The text of a window.
std::string TextOf(HWND window);
// Sets it, unless it is that text already: no flicker, and the caret stays.
void SetTextOf(HWND window, const std::string& text);

// A window's device context with a selected font; releases both.
class TextDevice {
  public:
    // With the window's own font.
    explicit TextDevice(HWND window);
    // nullptr means the screen.
    TextDevice(HWND window, HFONT font);
    ~TextDevice();
    TextDevice(const TextDevice&) = delete;
    TextDevice& operator=(const TextDevice&) = delete;

    // Pixels.
    int WidthOf(const std::wstring& text) const;
    // Of the text in lines that are broken between words to be at most `width` wide, as far as
    // single words allow it.
    SIZE SizeInLines(const std::wstring& text, int width) const;
    int LineHeight() const;

  private:
    HWND window_;
    HDC device_;
    HGDIOBJ font_before_;
};

}  // namespace vantrel::views
