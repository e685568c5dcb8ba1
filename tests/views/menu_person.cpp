#include "tests/views/menu_person.h"

#include "tests/views/real_controls.h"

namespace vantrel::test {

namespace {

constexpr UINT kLookEvery = 10;  // milliseconds
constexpr UINT kMenuOfWindow = 0x01E1;
MenuPerson* g_person = nullptr;

}  // namespace

MenuPerson::MenuPerson(HWND owner, int id)
    : owner_(owner), id_(id), timer_(SetTimer(nullptr, 0, kLookEvery, Look)) {
    g_person = this;
}

MenuPerson::~MenuPerson() {
    KillTimer(nullptr, timer_);
    g_person = nullptr;
}

void CALLBACK MenuPerson::Look(HWND, UINT, UINT_PTR, DWORD) {
    if (g_person) {
        g_person->PressNext();
    }
}

HMENU MenuPerson::OpenMenu() {
    const HWND window = WindowWhere(
        nullptr, [](HWND each) { return ClassOf(each) == L"#32768" && IsWindowVisible(each); });
    return window ? reinterpret_cast<HMENU>(Send(window, kMenuOfWindow)) : nullptr;
}

void MenuPerson::PressNext() {
    const HMENU menu = OpenMenu();
    MSG waiting;
    // One key at a time: what comes next depends on what it does.
    if (!menu || PeekMessageW(&waiting, owner_, WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE)) {
        return;
    }
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[200]{};
        GetMenuStringW(menu, static_cast<UINT>(i), text, 200, MF_BYPOSITION);
        const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
        seen_[static_cast<int>(GetMenuItemID(menu, i))] = {
            views::Utf8(text), (state & (MF_GRAYED | MF_DISABLED)) == 0};
    }
    const UINT state = GetMenuState(menu, static_cast<UINT>(id_), MF_BYCOMMAND);
    const bool there = state != static_cast<UINT>(-1) && (state & MF_HILITE);
    // Enter first also where the entry is disabled: what comes of it is the menu's to say.
    WPARAM key = there ? VK_RETURN : VK_DOWN;
    if (there && pressed_) {
        key = VK_ESCAPE;
    }
    pressed_ = pressed_ || there;
    PressKey(owner_, key);
}

}  // namespace vantrel::test
