// What pops up over the program's windows, for the window driver: menus and tool tips.
#pragma once

#include "tests/end_to_end/driven_controls.h"

namespace vantrel::test {

inline Words Place(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return {std::to_string(area.left), std::to_string(area.top), std::to_string(area.right),
            std::to_string(area.bottom)};
}

// A pop-up menu that is open.
inline Words Menu() {
    const auto menus = WindowsWhere(
        nullptr, [](HWND each) { return ClassOf(each) == L"#32768" && IsWindowVisible(each); });
    return {menus.empty() ? "0" : "1"};
}

// Where it is.
inline Words MenuPlace() {
    const auto menus = WindowsWhere(
        nullptr, [](HWND each) { return ClassOf(each) == L"#32768" && IsWindowVisible(each); });
    if (menus.empty()) {
        throw std::runtime_error("no menu");
    }
    return Place(menus.front());
}

// Rests the mouse on a control, which may be disabled.
inline Words Hover(const Words& words) {
    const HWND control = Control(words.at(1));
    POINT at = MiddleOf(control);
    ClientToScreen(control, &at);
    SetCursorPos(at.x, at.y);
    mouse_event(MOUSEEVENTF_MOVE, 1, 0, 0, 0);
    return {};
}

// The tool tip that is shown.
inline Words Tip() {
    const auto tips = WindowsWhere(nullptr, [](HWND each) {
        return ClassOf(each) == TOOLTIPS_CLASSW && IsWindowVisible(each);
    });
    return {tips.empty() ? "" : Utf8(TextOf(tips.front()))};
}

}  // namespace vantrel::test
