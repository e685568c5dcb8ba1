// The real controls behind the objects, in this very process: finding them, reading them, and
// clicking where they are. Clicks go to the window that Windows finds at that point, so what stands
// in front of a control or disables it stops the mouse here, too.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "forms/control.h"
#include "forms/form.h"
#include "views/win32/text.h"
#include "views/win32/window_resources.h"

namespace vantrel::test {

inline LRESULT Send(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return SendMessageW(window, message, wparam, lparam);
}

inline std::wstring ClassOf(HWND window) {
    wchar_t name[64]{};
    GetClassNameW(window, name, 64);
    return name;
}

inline std::string FaceOf(HWND window) {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(Send(window, WM_GETFONT)), sizeof font, &font);
    return views::Utf8(font.lfFaceName);
}

// The first window that `wanted` takes, among `parent` and all that is in it, or among this
// thread's windows when there is no parent; nullptr when there is none.
inline HWND WindowWhere(HWND parent, const std::function<bool(HWND)>& wanted) {
    struct Search {
        const std::function<bool(HWND)>& wanted;
        HWND found = nullptr;
    } search{wanted};
    const auto visit = [](HWND window, LPARAM data) -> BOOL {
        auto& state = *reinterpret_cast<Search*>(data);
        if (!state.found && state.wanted(window)) {
            state.found = window;
        }
        return state.found == nullptr;
    };
    const auto data = reinterpret_cast<LPARAM>(&search);
    if (parent) {
        EnumChildWindows(parent, visit, data);
    } else {
        EnumThreadWindows(GetCurrentThreadId(), visit, data);
    }
    return search.found;
}

inline int IdOf(const forms::Control& control) {
    return views::ControlId(control.owner().name(), control.name());
}

// One window of each form at a time: a control's number names its real control.
inline HWND HandleOf(const forms::Control& control) {
    const int id = IdOf(control);
    HWND found = nullptr;
    WindowWhere(nullptr, [&](HWND top) {
        found = WindowWhere(top, [id](HWND each) { return GetDlgCtrlID(each) == id; });
        return found != nullptr;
    });
    if (!found) {
        throw std::runtime_error("no real control " + control.name());
    }
    return found;
}

// The window of a form, by one of its controls.
inline HWND TopOf(const forms::Form& form) {
    for (const forms::Control* control : form.controls()) {
        if (control->kind() != forms::Kind::kTimer && control->kind() != forms::Kind::kMenu) {
            return GetAncestor(HandleOf(*control), GA_ROOT);
        }
    }
    throw std::runtime_error("no window " + form.name());
}

inline POINT MiddleOf(const RECT& area) {
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

inline RECT ClientOf(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return area;
}

// As when the window comes to a screen of this dpi.
inline void ChangeDpi(HWND top, int dpi) {
    RECT suggested = ClientOf(top);
    Send(top, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
}

enum class Mouse { kLeft, kRight, kTwice };

// Posts what the mouse does at a point of `window`; nothing when that point is not to be reached.
inline void ClickAt(HWND window, POINT at, Mouse how = Mouse::kLeft) {
    ClientToScreen(window, &at);
    const HWND target = WindowFromPoint(at);
    if (!target || !IsWindowEnabled(target)) {
        return;
    }
    ScreenToClient(target, &at);
    const LPARAM place = MAKELPARAM(at.x, at.y);
    const bool right = how == Mouse::kRight;
    const UINT up = right ? WM_RBUTTONUP : WM_LBUTTONUP;
    PostMessageW(target, right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, right ? MK_RBUTTON : MK_LBUTTON,
                 place);
    PostMessageW(target, up, 0, place);
    if (how != Mouse::kTwice) {
        return;
    }
    PostMessageW(target, WM_LBUTTONDBLCLK, MK_LBUTTON, place);
    PostMessageW(target, up, 0, place);
}

inline void PressKey(HWND window, WPARAM key) {
    constexpr LPARAM kDown = 1;
    constexpr auto kUp = static_cast<LPARAM>(0xC0000001u);
    PostMessageW(window, WM_KEYDOWN, key, kDown);
    PostMessageW(window, WM_KEYUP, key, kUp);
}

// The Shift key, for the messages that this thread handles from now on.
inline void HoldShift(bool down) {
    BYTE keys[256]{};
    GetKeyboardState(keys);
    keys[VK_SHIFT] = down ? 0x80 : 0;
    SetKeyboardState(keys);
}

// The messages of the two real lists.
struct ListMessages {
    UINT count, selection, length, text;
};
inline const ListMessages& MessagesOf(HWND list) {
    static constexpr ListMessages kCombo{CB_GETCOUNT, CB_GETCURSEL, CB_GETLBTEXTLEN, CB_GETLBTEXT};
    static constexpr ListMessages kListBox{LB_GETCOUNT, LB_GETCURSEL, LB_GETTEXTLEN, LB_GETTEXT};
    return ClassOf(list) == L"ComboBox" ? kCombo : kListBox;
}

inline std::vector<std::string> ItemsOf(HWND list) {
    const ListMessages& messages = MessagesOf(list);
    std::vector<std::string> items;
    const LRESULT count = Send(list, messages.count);
    for (LRESULT i = 0; i < count; ++i) {
        const auto index = static_cast<WPARAM>(i);
        const auto length = static_cast<std::size_t>(Send(list, messages.length, index));
        std::wstring text(length + 1, L'\0');
        Send(list, messages.text, index, reinterpret_cast<LPARAM>(text.data()));
        text.resize(length);
        items.push_back(views::Utf8(text));
    }
    return items;
}

// The pixels of a part of `window`, row by row. One copy of all of them: each GetPixel would ask
// the screen.
inline std::vector<COLORREF> PixelsIn(HWND window, const RECT& part) {
    const LONG width = part.right - part.left;
    const LONG height = part.bottom - part.top;
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    const HDC device = GetDC(window);
    const HDC copy = CreateCompatibleDC(device);
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(copy, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(copy, bitmap);
    BitBlt(copy, 0, 0, width, height, device, part.left, part.top, SRCCOPY);
    GdiFlush();
    std::vector<COLORREF> pixels;
    const auto* const quads = static_cast<const RGBQUAD*>(bits);
    for (LONG i = 0; i < width * height; ++i) {
        pixels.push_back(RGB(quads[i].rgbRed, quads[i].rgbGreen, quads[i].rgbBlue));
    }
    SelectObject(copy, before);
    DeleteObject(bitmap);
    DeleteDC(copy);
    ReleaseDC(window, device);
    return pixels;
}

// How many of them have this colour.
inline int PixelsOf(HWND window, const RECT& part, COLORREF color) {
    const std::vector<COLORREF> pixels = PixelsIn(window, part);
    return static_cast<int>(std::count(pixels.begin(), pixels.end(), color));
}

// A tree's items from top to bottom, as (level, item).
struct TreeItem {
    int level;
    HTREEITEM item;
};
inline void CollectItems(HWND tree, HTREEITEM first, int level, std::vector<TreeItem>& items) {
    for (HTREEITEM item = first; item; item = TreeView_GetNextSibling(tree, item)) {
        items.push_back({level, item});
        CollectItems(tree, TreeView_GetChild(tree, item), level + 1, items);
    }
}
inline std::vector<TreeItem> ItemsOfTree(HWND tree) {
    std::vector<TreeItem> items;
    CollectItems(tree, TreeView_GetRoot(tree), 0, items);
    return items;
}
inline TVITEMW LookAt(HWND tree, HTREEITEM item, UINT mask, std::wstring& text) {
    text.assign(300, L'\0');
    TVITEMW look{};
    look.mask = TVIF_HANDLE | mask;
    look.hItem = item;
    look.pszText = text.data();
    look.cchTextMax = static_cast<int>(text.size());
    Send(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&look));
    text.assign(text.c_str());
    return look;
}

}  // namespace vantrel::test
