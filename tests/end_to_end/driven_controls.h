// How the window driver works single controls: finding them by their numbers, clicking, choosing.
// Clicks are posted to the control, so nothing depends on what stands in front of the window.
#pragma once

#include <optional>

#include "tests/end_to_end/other_process.h"

namespace vantrel::test {

using Words = std::vector<std::string>;

inline int Number(const std::string& word) { return std::stoi(word); }

inline bool IsDialog(HWND window) { return ClassOf(window) == L"#32770"; }

inline bool IsOwnDialog(HWND window) { return IsDialog(window) && IsProgramsOwn(window); }

inline HWND FindControl(int id) {
    for (const HWND top : WindowsWhere(nullptr, IsOwnDialog)) {
        const auto found = WindowsWhere(top, [id](HWND each) { return GetDlgCtrlID(each) == id; });
        if (!found.empty()) {
            return found.front();
        }
    }
    return nullptr;
}

inline HWND Control(const std::string& id) {
    const HWND control = FindControl(Number(id));
    if (!control) {
        throw std::runtime_error("no such control");
    }
    return control;
}

inline HWND Top(HWND window) { return GetAncestor(window, GA_ROOT); }

inline HWND Usable(HWND control) {
    if (!IsWindowVisible(control)) {
        throw std::runtime_error("the control is not to be seen");
    }
    if (!IsWindowEnabled(control)) {
        throw std::runtime_error("the control is disabled");
    }
    if (!IsWindowEnabled(Top(control))) {
        throw std::runtime_error("the window is disabled");
    }
    return control;
}

inline POINT Middle(const RECT& rect) {
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

inline void Click(HWND window, POINT at, UINT down = WM_LBUTTONDOWN, UINT up = WM_LBUTTONUP,
                  WPARAM button = MK_LBUTTON) {
    const LPARAM place = MAKELPARAM(at.x, at.y);
    PostMessageW(window, down, button, place);
    PostMessageW(window, up, 0, place);
}

inline POINT MiddleOf(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return Middle(area);
}

inline void PressKey(HWND window, WPARAM key) {
    PostMessageW(window, WM_KEYDOWN, key, 1);
    PostMessageW(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001u));
}

// Lists and combos

inline bool IsCombo(HWND window) { return ClassOf(window) == L"ComboBox"; }

// Nothing for an entry that is not there.
inline std::optional<std::string> ItemAt(HWND list, WPARAM index) {
    const bool combo = IsCombo(list);
    const LRESULT length = Send(list, combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, index);
    if (length < 0) {
        return std::nullopt;
    }
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    Send(list, combo ? CB_GETLBTEXT : LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return Utf8(text);
}

// Nothing when the list got shorter while it was read.
inline std::optional<Words> ItemsAtOnce(HWND list) {
    Words items;
    const LRESULT count = Send(list, IsCombo(list) ? CB_GETCOUNT : LB_GETCOUNT);
    for (LRESULT i = 0; i < count; ++i) {
        const auto item = ItemAt(list, static_cast<WPARAM>(i));
        if (!item) {
            return std::nullopt;
        }
        items.push_back(*item);
    }
    return items;
}

// A list may be filled anew while it is looked at: then it is looked at again.
inline Words Items(HWND list) {
    constexpr int kLooks = 50;
    for (int look = 0; look < kLooks; ++look) {
        if (const auto items = ItemsAtOnce(list)) {
            return *items;
        }
    }
    throw std::runtime_error("the list never stands still");
}

inline int IndexOf(HWND list, const std::string& text) {
    const Words items = Items(list);
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items[i] == text) {
            return static_cast<int>(i);
        }
    }
    throw std::runtime_error("no such entry");
}

inline LRESULT SelectedIndex(HWND list) {
    return Send(list, IsCombo(list) ? CB_GETCURSEL : LB_GETCURSEL);
}
inline LRESULT ItemCount(HWND list) {
    return Send(list, IsCombo(list) ? CB_GETCOUNT : LB_GETCOUNT);
}

// One key press does the choosing, so that the combo itself reports it.
inline Words Choose(const Words& words) {
    const HWND combo = Usable(Control(words.at(1)));
    const int index = IndexOf(combo, words.at(2));
    const bool up = index == 0;
    const LRESULT count = Send(combo, CB_GETCOUNT);
    Send(combo, CB_SETCURSEL, static_cast<WPARAM>(up && count > 1 ? 1 : index - 1));
    PressKey(combo, up && count > 1 ? VK_UP : VK_DOWN);
    return {};
}

inline Words ClickEntry(const Words& words, bool twice) {
    const HWND list = Usable(Control(words.at(1)));
    const auto index = static_cast<WPARAM>(IndexOf(list, words.at(2)));
    Send(list, LB_SETTOPINDEX, index);
    RECT area{};
    Send(list, LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&area));
    const POINT middle = Middle(area);
    Click(list, middle);
    if (twice) {
        Click(list, middle, WM_LBUTTONDBLCLK);
    }
    return {};
}

// Trees

inline Words TreeLines(HWND tree) {
    Words lines;
    for (const TreeEntry& entry : RemoteTree(tree).Entries()) {
        lines.push_back(std::to_string(entry.level) + " " + std::to_string(entry.image) + " " +
                        Utf8(entry.text));
    }
    return lines;
}

// `path` is the entry's texts from the root, apart by "|".
inline HTREEITEM FindEntry(const RemoteTree& tree, const std::string& path) {
    std::vector<std::string> now;
    for (const TreeEntry& entry : tree.Entries()) {
        now.resize(static_cast<std::size_t>(entry.level));
        now.push_back(Utf8(entry.text));
        std::string joined;
        for (const std::string& each : now) {
            joined += (joined.empty() ? "" : "|") + each;
        }
        if (joined == path) {
            return entry.item;
        }
    }
    throw std::runtime_error("no such tree entry");
}

// Where an entry is on the screen: left, top, right, bottom.
inline Words TreePlace(const Words& words) {
    const HWND window = Control(words.at(1));
    const RemoteTree tree(window);
    RECT area = tree.Place(FindEntry(tree, words.at(2)));
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&area), 2);
    return {std::to_string(area.left), std::to_string(area.top), std::to_string(area.right),
            std::to_string(area.bottom)};
}

inline Words ClickTree(const Words& words, bool right) {
    const HWND window = Usable(Control(words.at(1)));
    const RemoteTree tree(window);
    const POINT at = Middle(tree.Place(FindEntry(tree, words.at(2))));
    if (right) {
        Click(window, at, WM_RBUTTONDOWN, WM_RBUTTONUP, MK_RBUTTON);
    } else {
        Click(window, at);
    }
    return {};
}

}  // namespace vantrel::test
