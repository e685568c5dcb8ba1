#include "views/win32/window_view.h"

#include <utility>

#include "forms/controls.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

constexpr UINT kActivateMessage = WM_APP + 1;
constexpr UINT kHelpMessage = WM_APP + 2;

// Of a key message's lParam.
constexpr LPARAM kWithAlt = 1 << 29;
constexpr LPARAM kHeldDown = 1 << 30;

}  // namespace

void WindowView::Hide() { ShowWindow(window_, SW_HIDE); }

void WindowView::SetOwner(HWND owner) {
    SetWindowLongPtrW(window_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
}

void WindowView::Destroy() {
    if (!form_) {
        return;
    }
    RememberPlacement();
    annotations_.Clear();
    form_->Bind(nullptr);
    by_id_.clear();
    for (const auto& binder : binders_) {
        binder->Release();
    }
    form_ = nullptr;
    SetWindowLongPtrW(window_, DWLP_USER, 0);
    for (Page& page : pages_) {
        SetWindowLongPtrW(page.window, DWLP_USER, 0);
    }
    DestroyWindow(window_);
}

void WindowView::PostActivation() {
    if (activation_posted_) {
        return;
    }
    activation_posted_ = true;
    PostMessageW(window_, kActivateMessage, 0, 0);
}

void WindowView::Activate() {
    activation_posted_ = false;
    // Painting would wait for the first look at the message queue, and a run begins here.
    Changed(Aspect::kRedraw);
    manager_.RunActivation(*form_);
}

void WindowView::Changed(Aspect aspect) {
    switch (aspect) {
        case Aspect::kText:
            SetTextOf(window_, form_->Caption());
            break;
        case Aspect::kValue:
            InvalidateRect(window_, nullptr, TRUE);
            break;
        case Aspect::kRedraw:
            RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
            break;
        case Aspect::kTaskProgress:
            taskbar_.ShowProgress(GetAncestor(window_, GA_ROOTOWNER), form_->TaskProgress());
            break;
        default:
            break;
    }
}

void WindowView::PaintBoxes(HDC device) const {
    for (const forms::Form::FilledBox& box : form_->Boxes()) {
        const RECT area{PixelsOf(box.left, dpi_), PixelsOf(box.top, dpi_),
                        PixelsOf(box.right, dpi_), PixelsOf(box.bottom, dpi_)};
        SetDCBrushColor(device, RGB(box.red, box.green, box.blue));
        FillRect(device, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    }
}

INT_PTR CALLBACK WindowView::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lparam);
        return FALSE;
    }
    auto* view = reinterpret_cast<WindowView*>(GetWindowLongPtrW(window, DWLP_USER));
    return view ? view->Handle(window, message, wparam, lparam) : FALSE;
}

// What another program sends while a folder tree is read is handled after the reading.
bool WindowView::Defer(HWND window, UINT message, WPARAM wparam, LPARAM lparam) const {
    if (!manager_.OnlyPaints()) {
        return false;
    }
    switch (message) {
        case WM_COMMAND:
        case WM_CONTEXTMENU:
        case WM_HELP:
        case WM_SYSCOMMAND:
        case WM_CLOSE:
            return PostMessageW(window, message, wparam, lparam) != FALSE;
        default:
            return message == WM_NOTIFY;
    }
}

INT_PTR WindowView::Handle(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (Defer(window, message, wparam, lparam)) {
        return TRUE;
    }
    switch (message) {
        case WM_COMMAND:
            Command(LOWORD(wparam), HIWORD(wparam));
            return TRUE;
        case WM_NOTIFY: {
            const auto& header = *reinterpret_cast<const NMHDR*>(lparam);
            if (header.code == TVN_DELETEITEMW) {
                return FALSE;  // one for each node of a tree that is cleared
            }
            if (const HWND control = Tooltips::AskedFor(header)) {
                const Binder* binder = Find(GetDlgCtrlID(control));
                tooltips_.Answer(header, binder ? binder->Tip() : "");
                return FALSE;
            }
            TrackFocus();
            if (Binder* binder = Find(static_cast<int>(header.idFrom))) {
                manager_.RunGuarded([&] { binder->Notify(header); });
            }
            return FALSE;
        }
        case WM_DRAWITEM: {
            const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lparam);
            if (Binder* binder = Find(static_cast<int>(item.CtlID))) {
                binder->Draw(item);
            }
            return TRUE;
        }
        case WM_CONTEXTMENU:
            ContextMenu(reinterpret_cast<HWND>(wparam), lparam);
            return TRUE;
        case WM_CTLCOLORSTATIC:
            return Colors(reinterpret_cast<HDC>(wparam), reinterpret_cast<HWND>(lparam));
        case WM_HELP:  // F1 here, in a menu, or in a box in front of this window
            WantHelp();
            return TRUE;
        case WM_SETCURSOR:
            if (!ShowPointer(reinterpret_cast<HWND>(wparam), LOWORD(lparam))) {
                return FALSE;
            }
            SetWindowLongPtrW(window, DWLP_MSGRESULT, TRUE);
            return TRUE;
        case WM_NEXTDLGCTL:  // from a text view, which knows only its page
            if (window == window_) {
                return FALSE;
            }
            SendMessageW(window_, message, wparam, lparam);
            return TRUE;
        default:
            return window == window_ ? HandleForTop(message, wparam, lparam) : FALSE;
    }
}

INT_PTR WindowView::HandleForTop(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case kActivateMessage:
            Activate();
            return TRUE;
        case kHelpMessage:
            if (wparam > 0) {
                PostMessageW(window_, kHelpMessage, wparam - 1, 0);
            } else {
                help_wanted_ = false;
                manager_.Help(*form_);
            }
            return TRUE;
        case WM_ACTIVATE:
            help_key_held_ = false;
            if (LOWORD(wparam) == WA_INACTIVE) {
                focus_ = nullptr;
                MarkDefaultButton();
                return FALSE;
            }
            manager_.WindowActivated(*form_);
            return RestoreFocus();
        case WM_SETFOCUS:
            return RestoreFocus();
        case WM_TIMER:
            for (const auto& binder : binders_) {
                if (reinterpret_cast<WPARAM>(binder.get()) != wparam) {
                    continue;
                }
                manager_.RunGuarded([&] { binder->Tick(); });
                break;
            }
            return TRUE;
        case WM_SIZE:
            if (wparam == SIZE_MINIMIZED) {
                return TRUE;
            }
            if (!sizing_) {
                Arrange();
            }
            TrackPlacement();
            if (form_->Visible()) {
                Resized();
            }
            return TRUE;
        case WM_MOVE:
            TrackPlacement();
            return TRUE;
        case WM_GETMINMAXINFO:
            if (!IsResizable() || IsIconic(window_)) {
                return FALSE;
            }
            reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = MinSize();
            return TRUE;
        case WM_ERASEBKGND:
            if (!HasBoxes()) {
                return FALSE;
            }
            PaintBoxes(reinterpret_cast<HDC>(wparam));
            SetWindowLongPtrW(window_, DWLP_MSGRESULT, TRUE);
            return TRUE;
        case WM_SYSCOLORCHANGE:
            SystemColorsChanged();
            return TRUE;
        case WM_DPICHANGED:
            TakeDpi(LOWORD(wparam), reinterpret_cast<const RECT*>(lparam));
            return TRUE;
        case WM_SYSCOMMAND:
            if ((wparam & 0xFFF0) != SC_CLOSE) {
                return FALSE;
            }
            manager_.Close(*form_, forms::UnloadMode::kControlMenu);
            return TRUE;
        case WM_CLOSE:
            manager_.Close(*form_, forms::UnloadMode::kTaskManager);
            return TRUE;
        case WM_QUERYENDSESSION:
            SetWindowLongPtrW(window_, DWLP_MSGRESULT, TRUE);
            return TRUE;
        case WM_ENDSESSION:
            if (wparam) {
                manager_.EndSession();
            }
            return TRUE;
        default:
            return FALSE;
    }
}

void WindowView::Command(int id, WORD code) {
    if (id == IDCANCEL) {
        return manager_.Escape(*form_);
    }
    TrackFocus();  // a handler may ask for the active control
    if (Binder* binder = Find(id)) {
        manager_.RunGuarded([&] { binder->Command(code); });
    }
}

bool WindowView::ShowPointer(HWND over, WORD hit) {
    if (manager_.CurrentPointer() == forms::Pointer::kHourglass) {
        SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        return true;
    }
    const Binder* binder = hit == HTCLIENT ? Find(GetDlgCtrlID(over)) : nullptr;
    if (!binder || binder->control().kind() != forms::Kind::kLabel) {
        return false;
    }
    if (!static_cast<forms::Label&>(binder->control()).Click) {
        return false;
    }
    SetCursor(LoadCursorW(nullptr, IDC_HAND));
    return true;
}

INT_PTR WindowView::Colors(HDC device, HWND control) {
    Binder* binder = Find(GetDlgCtrlID(control));
    return binder ? reinterpret_cast<INT_PTR>(binder->Colors(device)) : 0;
}

// A held key opens the help once. One F1 can arrive twice: from a menu or a box, and from
// DefWindowProc of that window. The message is posted once more, so that both have arrived before
// the help opens.
void WindowView::WantHelp() {
    if (help_key_held_ || help_wanted_) {
        return;
    }
    constexpr WPARAM kRounds = 1;
    help_wanted_ = PostMessageW(window_, kHelpMessage, kRounds, 0) != FALSE;
}

bool WindowView::PreTranslate(MSG& message) {
    tooltips_.Relay(message);
    const bool control_key = GetKeyState(VK_CONTROL) < 0;
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB && control_key) {
        if (Binder* binder = Find(TAB_Backup)) {
            auto& tabs = static_cast<forms::Tabs&>(binder->control());
            const int count = static_cast<int>(tabs.Captions().size());
            const int step = GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1;
            manager_.RunGuarded([&] { tabs.SetTab((tabs.Tab() + step) % count); });
            return true;
        }
    }
    if (message.message == WM_SYSKEYDOWN && message.wParam == VK_F4) {
        // The combo boxes of some systems do not pass on keys with Alt.
        PostMessageW(window_, WM_SYSCOMMAND, SC_CLOSE, 0);
        return true;
    }
    const bool system_key = message.message == WM_SYSKEYDOWN;
    if (message.wParam == VK_F1 && (message.message == WM_KEYDOWN || system_key)) {
        help_key_held_ = (message.lParam & kHeldDown) != 0;
        // A window in which no control has the keyboard gets every key as a system key, and no
        // WM_HELP follows.
        if (system_key && !(message.lParam & kWithAlt)) {
            WantHelp();
        }
    }
    return IsDialogMessageW(window_, &message) != FALSE;
}

void WindowView::Flush() {
    for (const auto& binder : binders_) {
        binder->Flush();
    }
}

void WindowView::TrackFocus() {
    const HWND focus = GetFocus();
    if (!form_ || !focus || !IsChild(window_, focus)) {
        return;
    }
    if (std::exchange(focus_, focus) != focus) {
        MarkDefaultButton();
    }
    if (Binder* binder = Find(GetDlgCtrlID(focus))) {
        form_->MarkActive(&binder->control());
    }
}

Binder* WindowView::Find(int id) const {
    const auto found = by_id_.find(id);
    return found == by_id_.end() ? nullptr : found->second;
}

}  // namespace vantrel::views
