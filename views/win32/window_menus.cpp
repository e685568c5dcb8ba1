// The menus of a window: its bar, and those that open over a list or a tree.
#include <windows.h>
// Needs the types of windows.h.
#include <windowsx.h>

#include "views/win32/text.h"
#include "views/win32/window_resources.h"
#include "views/win32/window_view.h"

namespace vantrel::views {

void WindowView::LoadMenus() {
    for (const forms::Control* control : form_->controls()) {
        if (control->kind() != forms::Kind::kMenu) {
            continue;
        }
        const int id = ControlId(form_->name(), control->name());
        OwnedMenu menu(id ? LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id)) : nullptr);
        if (menu) {
            pop_ups_[id] = std::move(menu);
        }
    }
}

// From the keyboard the menu opens at what it acts on, otherwise where the button was released.
void WindowView::ContextMenu(HWND control, LPARAM where) {
    Binder* binder = Find(GetDlgCtrlID(control));
    if (!binder) {
        return;
    }
    constexpr LPARAM kFromKeyboard = -1;
    POINT at{GET_X_LPARAM(where), GET_Y_LPARAM(where)};
    if (where == kFromKeyboard) {
        at = binder->MenuPosition();
        ClientToScreen(control, &at);
    }
    menu_at_ = at;
    manager_.RunGuarded([&] { binder->RightClick(); });
    menu_at_.reset();
}

void WindowView::SetMenuText(int id, const std::string& text) {
    std::wstring wide = Wide(text);
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_STRING;
    item.dwTypeData = wide.data();
    SetMenuItemInfoW(GetMenu(window_), static_cast<UINT>(id), FALSE, &item);
    for (const auto& [menu_id, menu] : pop_ups_) {
        SetMenuItemInfoW(menu.get(), static_cast<UINT>(id), FALSE, &item);
    }
}

void WindowView::EnableMenuEntry(int id, bool enabled) {
    const UINT how = MF_BYCOMMAND | static_cast<UINT>(enabled ? MF_ENABLED : MF_GRAYED);
    EnableMenuItem(GetMenu(window_), static_cast<UINT>(id), how);
    for (const auto& [menu_id, menu] : pop_ups_) {
        EnableMenuItem(menu.get(), static_cast<UINT>(id), how);
    }
}

void WindowView::PopUpMenu(int id) {
    const auto found = pop_ups_.find(id);
    if (found == pop_ups_.end()) {
        return;
    }
    POINT at{};
    GetCursorPos(&at);
    at = menu_at_.value_or(at);
    const int chosen =
        TrackPopupMenuEx(GetSubMenu(found->second.get(), 0), TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x,
                         at.y, window_, nullptr);
    // The handler that opened the menu gets the errors of what was chosen.
    if (Binder* binder = chosen ? Find(chosen) : nullptr) {
        binder->Command(0);
    }
}

}  // namespace vantrel::views
