#include <algorithm>

#include "tests/views/win32_user.h"

namespace vantrel::test {

namespace {

// A test that hangs has failed; nothing is measured by it.
constexpr UINT kHangLimit = 60000;  // milliseconds
constexpr UINT kPoll = 10;          // milliseconds; a clip, for one, sends nothing
bool g_hanging = false;
int g_ticks = 0;

void CALLBACK Hang(HWND, UINT, UINT_PTR, DWORD) { g_hanging = true; }
void CALLBACK Wake(HWND, UINT, UINT_PTR, DWORD) {}
void CALLBACK CountTick(HWND, UINT, UINT_PTR, DWORD) { ++g_ticks; }

UINT LongestInterval(const forms::Form& form) {
    std::chrono::milliseconds longest{1};
    for (const forms::Control* control : form.controls()) {
        if (control->kind() == forms::Kind::kTimer) {
            longest = std::max(longest, static_cast<const forms::Timer*>(control)->Interval());
        }
    }
    return static_cast<UINT>(longest.count());
}

}  // namespace

HWND Win32User::Settled(const forms::Control& control) {
    desktop_.DoEvents();
    return HandleOf(control);
}

void Win32User::WaitUntil(const std::function<bool()>& done) {
    g_hanging = false;
    const UINT_PTR limit = SetTimer(nullptr, 0, kHangLimit, Hang);
    const UINT_PTR poll = SetTimer(nullptr, 0, kPoll, Wake);
    while (!done() && !g_hanging) {
        desktop_.WaitEvents();
    }
    KillTimer(nullptr, poll);
    KillTimer(nullptr, limit);
    if (!done()) {
        throw std::runtime_error("waited in vain");
    }
}

void Win32User::Click(const forms::Control& control, POINT at, Mouse how) {
    ClickAt(Settled(control), at, how);
    desktop_.DoEvents();
}

void Win32User::Click(forms::Control& control) {
    Click(control, MiddleOf(ClientOf(Settled(control))), Mouse::kLeft);
}

void Win32User::ClickTwice(forms::Control& control) {
    Click(control, MiddleOf(ClientOf(Settled(control))), Mouse::kTwice);
}

void Win32User::RightClick(forms::Control& control) {
    Click(control, MiddleOf(ClientOf(Settled(control))), Mouse::kRight);
}

POINT Win32User::PlaceOf(HWND list, int index) {
    const auto entry = static_cast<WPARAM>(index);
    RECT area{};
    Send(list, LB_GETITEMRECT, entry, reinterpret_cast<LPARAM>(&area));
    if (area.top < 0 || area.bottom > ClientOf(list).bottom) {
        Send(list, LB_SETTOPINDEX, entry);
        Send(list, LB_GETITEMRECT, entry, reinterpret_cast<LPARAM>(&area));
    }
    return MiddleOf(area);
}

void Win32User::Choose(forms::Control& list, int index) {
    HWND window = Settled(list);
    if (ClassOf(window) != L"ComboBox") {
        return Click(list, PlaceOf(window, index), Mouse::kLeft);
    }
    Click(list);
    COMBOBOXINFO combo{};
    combo.cbSize = sizeof combo;
    GetComboBoxInfo(window, &combo);
    if (!IsWindowVisible(combo.hwndList)) {
        return;  // it did not open
    }
    ClickAt(combo.hwndList, PlaceOf(combo.hwndList, index));
    desktop_.DoEvents();
}

void Win32User::DoubleClick(forms::FolderList& list, int index) {
    Click(list, PlaceOf(Settled(list), index), Mouse::kTwice);
}

void Win32User::Press(forms::Control& control, Key key) {
    const HWND window = Settled(control);
    SetFocus(window);
    if (GetFocus() != window) {
        return;
    }
    PressKey(window, key == Key::kBlank ? VK_SPACE : key == Key::kEnter ? VK_RETURN : VK_DOWN);
    desktop_.DoEvents();
}

void Win32User::ChooseNode(forms::Tree& tree, int node) {
    const HWND window = Settled(tree);
    for (const TreeItem& each : ItemsOfTree(window)) {
        std::wstring text;
        if (LookAt(window, each.item, TVIF_PARAM, text).lParam != node) {
            continue;
        }
        TreeView_EnsureVisible(window, each.item);
        RECT area{};
        TreeView_GetItemRect(window, each.item, &area, TRUE);
        return Click(tree, MiddleOf(area), Mouse::kLeft);
    }
    throw std::runtime_error("no such node");
}

void Win32User::Type(forms::TextBox& box, const std::string& keys) {
    Click(box);
    const HWND window = Settled(box);
    if (GetFocus() != window) {
        return;
    }
    const auto end = static_cast<WPARAM>(GetWindowTextLengthW(window));
    Send(window, EM_SETSEL, end, static_cast<LPARAM>(end));
    for (const wchar_t key : views::Wide(keys)) {
        if (key == L'\r') {
            PressKey(window, VK_RETURN);
        } else {
            PostMessageW(window, WM_CHAR, key, 1);
        }
        desktop_.DoEvents();
    }
}

void Win32User::ClickTab(forms::Tabs& tabs, int tab) {
    RECT area{};
    Send(Settled(tabs), TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&area));
    Click(tabs, MiddleOf(area), Mouse::kLeft);
}

void Win32User::ChooseInMenuBar(forms::MenuItem& entry) {
    const HWND top = TopOf(entry.owner());
    MenuPerson person(top, IdOf(entry));
    PostMessageW(top, WM_SYSCOMMAND, SC_KEYMENU, L'f');
    WaitUntil([&] { return person.Done(); });
    desktop_.DoEvents();
}

void Win32User::ChooseInPopUp(forms::MenuItem& entry, const forms::Event& open) {
    MenuPerson person(TopOf(entry.owner()), IdOf(entry));
    desktop_.RunGuarded(open);
    WaitUntil([&] { return person.Done(); });
    for (const auto& [id, seen] : person.Seen()) {
        in_pop_ups_[id] = seen;
    }
}

void Win32User::LetTimePass(forms::Form& form) {
    // Windows hands out timers in the order in which they are due: a clock of twice the interval
    // that has gone off twice leaves no timer behind that has not.
    g_ticks = 0;
    const UINT_PTR clock = SetTimer(nullptr, 0, 2 * LongestInterval(form), CountTick);
    WaitUntil([] { return g_ticks >= 2; });
    KillTimer(nullptr, clock);
}

std::unique_ptr<ControlUser> NewControlUser() { return std::make_unique<Win32User>(); }

}  // namespace vantrel::test
