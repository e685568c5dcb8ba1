// Text at the border to the window system: UTF-8 inside the program, UTF-16 in Windows.
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

}  // namespace vantrel::views
