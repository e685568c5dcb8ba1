#include "views/win32/tooltips.h"

#include "views/win32/text.h"

namespace vantrel::views {

void Tooltips::Attach(HWND window) {
    tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                            WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                            CW_USEDEFAULT, CW_USEDEFAULT, window, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
    SetWindowSubclass(tips_, FindDisabled, 0, reinterpret_cast<DWORD_PTR>(this));
}

void Tooltips::Add(HWND control) {
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = GetParent(control);
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    controls_.push_back(control);
}

void Tooltips::SetWidth(int pixels) const { SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, pixels); }

HWND Tooltips::AskedFor(const NMHDR& notification) {
    return notification.code == TTN_GETDISPINFOW ? reinterpret_cast<HWND>(notification.idFrom)
                                                 : nullptr;
}

void Tooltips::Answer(const NMHDR& notification, const std::string& text) {
    text_ = Wide(text);
    auto& question =
        const_cast<NMTTDISPINFOW&>(reinterpret_cast<const NMTTDISPINFOW&>(notification));
    question.lpszText = text_.data();
}

void Tooltips::Relay(const MSG& message) const {
    if (message.message < WM_MOUSEFIRST || message.message > WM_MOUSELAST) {
        return;
    }
    MSG relayed = message;
    if (const HWND disabled = DisabledAt(message.hwnd, message.pt)) {
        relayed.hwnd = disabled;
        POINT at = message.pt;
        ScreenToClient(disabled, &at);
        relayed.lParam = MAKELPARAM(at.x, at.y);
    }
    SendMessageW(tips_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

// The tips look for the control under the pointer before they appear.
LRESULT CALLBACK Tooltips::FindDisabled(HWND tips, UINT message, WPARAM wparam, LPARAM lparam,
                                        UINT_PTR, DWORD_PTR self) {
    if (message == TTM_WINDOWFROMPOINT) {
        const POINT at = *reinterpret_cast<const POINT*>(lparam);
        const HWND found =
            reinterpret_cast<const Tooltips*>(self)->DisabledAt(WindowFromPoint(at), at);
        if (found) {
            return reinterpret_cast<LRESULT>(found);
        }
    }
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(tips, FindDisabled, 0);
    }
    return DefSubclassProc(tips, message, wparam, lparam);
}

HWND Tooltips::DisabledAt(HWND parent, POINT at) const {
    for (const HWND control : controls_) {
        RECT area{};
        if (GetParent(control) == parent && !IsWindowEnabled(control) && IsWindowVisible(control) &&
            GetWindowRect(control, &area) && PtInRect(&area, at)) {
            return control;
        }
    }
    return nullptr;
}

}  // namespace vantrel::views
