#include "views/win32/win32_desktop.h"

#include <commctrl.h>

#include <algorithm>
#include <new>

namespace vantrel::views {

using forms::Form;

Win32Desktop::Win32Desktop() {
    const INITCOMMONCONTROLSEX classes{
        sizeof classes, ICC_TAB_CLASSES | ICC_TREEVIEW_CLASSES | ICC_BAR_CLASSES |
                            ICC_PROGRESS_CLASS | ICC_ANIMATE_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
}

Win32Desktop::~Win32Desktop() = default;

void Win32Desktop::RunGuarded(const std::function<void()>& body) {
    try {
        body();
    } catch (const Error& error) {
        if (on_unhandled) {
            on_unhandled(error);
        }
    } catch (const std::bad_alloc&) {
        const int number = error_number::kOutOfMemory;
        if (on_unhandled) {
            on_unhandled(Error(number, "Win32Desktop", ErrorText(number)));
        }
    }
}

WindowView* Win32Desktop::ViewOf(const Form& form) const {
    for (const auto& view : views_) {
        if (view->form() == &form) {
            return view.get();
        }
    }
    return nullptr;
}

void Win32Desktop::CreateNative(Form& form) {
    views_.push_back(std::make_unique<WindowView>(*this, taskbar_, form));
}

void Win32Desktop::DestroyNative(Form& form) {
    const auto found = std::find_if(views_.begin(), views_.end(),
                                    [&](const auto& view) { return view->form() == &form; });
    destroyed_.push_back(std::move(*found));
    views_.erase(found);
    WindowView& view = *destroyed_.back();
    if (const HWND owner = GetWindow(view.handle(), GW_OWNER)) {
        EnableWindow(owner, TRUE);
    }
    // Windows destroys owned windows together with their owner.
    for (const auto& other : views_) {
        if (GetWindow(other->handle(), GW_OWNER) == view.handle()) {
            other->SetOwner(nullptr);
        }
    }
    view.Destroy();
}

void Win32Desktop::BringToFront(Form& form) { SetForegroundWindow(ViewOf(form)->handle()); }

void Win32Desktop::SetOwner(Form& form, Form& owner) {
    ViewOf(form)->SetOwner(ViewOf(owner)->handle());
}

bool Win32Desktop::TakesInput(const Form& form) const {
    return IsWindowEnabled(ViewOf(form)->handle()) != FALSE;
}

void Win32Desktop::SetTakesInput(Form& form, bool takes_input) {
    EnableWindow(ViewOf(form)->handle(), takes_input);
}

void Win32Desktop::ActivateNative(Form& form) { SetActiveWindow(ViewOf(form)->handle()); }

Form* Win32Desktop::FrontWindow() const {
    const HWND active = GetActiveWindow();
    Form* front = nullptr;
    for (const auto& view : views_) {
        if (!IsWindowVisible(view->handle()) || !IsWindowEnabled(view->handle())) {
            continue;
        }
        front = view->form();
        if (view->handle() == active) {
            return front;
        }
    }
    return front;
}

HWND Win32Desktop::BoxOwner() const {
    const Form* const front = FrontWindow();
    return front ? ViewOf(*front)->handle() : nullptr;
}

// A message that another program sends is handled inside GetMessage, which then continues to wait.
// A posted message makes it return.
void Win32Desktop::WakeLoops() { PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); }

void Win32Desktop::Dispatch(MSG& message) {
    if (!HandlesEvent()) {
        destroyed_.clear();
    }
    HandleEvent([&] {
        const HWND root = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
        const auto found =
            std::ranges::find(views_, root, [](const auto& each) { return each->handle(); });
        WindowView* const target = found == views_.end() ? nullptr : found->get();
        if (!target || !target->PreTranslate(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (target) {
            target->TrackFocus();
        }
    });
}

void Win32Desktop::Flush() {
    for (const auto& view : views_) {
        view->Flush();
    }
}

bool Win32Desktop::HandleNextEvent() {
    Flush();
    MSG message;
    if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
        return false;
    }
    Dispatch(message);
    return true;
}

void Win32Desktop::DoEvents() {
    Flush();
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            return PostQuitMessage(static_cast<int>(message.wParam));
        }
        Dispatch(message);
    }
}

void Win32Desktop::WaitEvents() {
    Flush();
    MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    DoEvents();
}

// Called for each entry of a folder, so most calls only look at the time.
bool Win32Desktop::ServePainting() {
    constexpr ULONGLONG kInterval = 20;  // milliseconds
    const ULONGLONG now = GetTickCount64();
    if (now - painted_at_ < kInterval) {
        return false;
    }
    painted_at_ = now;
    MSG message;
    while (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
    return TakeEscape();
}

// Looks no further than the first other key that is pressed: taken out and posted again, it would
// lose the state of Ctrl and Shift. Behind it Esc is seen while it is held down.
bool Win32Desktop::TakeEscape() {
    std::vector<MSG> others;  // releases, and characters of keys that were handled before
    bool escape = false;
    bool waits = false;
    MSG message;
    while (!waits && PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE)) {
        const bool is_press = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
        const bool is_escape = is_press && message.wParam == VK_ESCAPE;
        waits = is_press && !is_escape;
        if (!waits && PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE) &&
            !is_escape) {
            others.push_back(message);
        }
        escape = escape || is_escape;
    }
    for (const MSG& each : others) {
        PostMessageW(each.hwnd, each.message, each.wParam, each.lParam);
    }
    return escape || (waits && GetAsyncKeyState(VK_ESCAPE) < 0);
}

void Win32Desktop::ShowPointer(forms::Pointer pointer) {
    SetCursor(LoadCursorW(nullptr, pointer == forms::Pointer::kHourglass ? IDC_WAIT : IDC_ARROW));
}

void Win32Desktop::DismissBoxes() {
    for (const auto& view : views_) {
        const HWND front = GetLastActivePopup(view->handle());
        const auto shows_it = [&](const auto& each) { return each->handle() == front; };
        if (std::any_of(views_.begin(), views_.end(), shows_it)) {
            continue;
        }
        for (const WPARAM answer : {IDCANCEL, IDNO}) {
            PostMessageW(front, WM_COMMAND, answer, 0);
        }
    }
}

}  // namespace vantrel::views
