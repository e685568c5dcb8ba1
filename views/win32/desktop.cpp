#include "views/win32/desktop.h"

#include <commctrl.h>

#include <algorithm>

#include "forms/controls.h"

namespace vantrel::views {

using forms::Form;
using forms::UnloadMode;

Win32Desktop::Win32Desktop() {
    const INITCOMMONCONTROLSEX classes{
        sizeof classes, ICC_TAB_CLASSES | ICC_TREEVIEW_CLASSES | ICC_BAR_CLASSES |
                            ICC_PROGRESS_CLASS | ICC_ANIMATE_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
}

Win32Desktop::~Win32Desktop() = default;

WindowView* Win32Desktop::ViewOf(const Form& form) const {
    for (const auto& view : views_)
        if (view->form() == &form) return view.get();
    return nullptr;
}

WindowView& Win32Desktop::LoadedView(Form& form) {
    if (WindowView* view = ViewOf(form)) return *view;
    views_.push_back(std::make_unique<WindowView>(*this, form));
    form.MarkLoaded(true);
    const forms::HandlerScope scope(form);
    form.Form_Load();
    return *views_.back();
}

void Win32Desktop::Load(Form& form) { LoadedView(form); }

void Win32Desktop::ShowView(WindowView& view) {
    if (view.form()->Visible()) {
        SetForegroundWindow(view.handle());
        return;
    }
    last_active_ = &view;  // being shown activates by itself, once
    view.Show();
}

void Win32Desktop::ShowModeless(Form& form) { ShowView(LoadedView(form)); }

void Win32Desktop::ShowModal(Form& form) {
    WindowView& view = LoadedView(form);
    const HWND window = view.handle();
    const HWND owner = FrontWindow();
    if (owner && owner != window) view.SetOwner(owner);
    std::vector<HWND> disabled;
    for (const auto& other : views_) {
        if (other.get() == &view || !IsWindowEnabled(other->handle())) continue;
        disabled.push_back(other->handle());
        EnableWindow(other->handle(), FALSE);
    }
    modal_.push_back({&form, form.running_handlers});
    ShowView(view);
    MSG message;
    while (form.Visible() && !session_ends_ && NextMessage(message)) Dispatch(message);
    form.MarkVisible(false);
    // The owner first, or Windows would give the keyboard to another program's window.
    for (HWND other : disabled) EnableWindow(other, TRUE);
    const auto unload = modal_.back().unload;
    modal_.pop_back();
    if (WindowView* still_there = ViewOf(form)) still_there->Hide();
    if (unload) Unload(form, *unload);
    if (owner && IsWindow(owner)) SetActiveWindow(owner);
}

// A run lets waiting events in: its window may be closed there, and is over only when the run is.
// Until then its owner stays disabled, or a second run could begin inside the first.
bool Win32Desktop::UnloadLater(const Form& form, UnloadMode mode) {
    if (session_ends_) return false;
    const auto shown = std::find_if(modal_.begin(), modal_.end(),
                                    [&](const Modal& each) { return each.form == &form; });
    if (shown == modal_.end() || form.running_handlers <= shown->handlers_before) return false;
    shown->unload = mode;
    return true;
}

void Win32Desktop::Hide(Form& form) {
    WindowView* view = ViewOf(form);
    if (!view) return;
    const bool modal = GetWindow(view->handle(), GW_OWNER) != nullptr;
    form.MarkVisible(false);
    if (!modal) view->Hide();  // a modal window goes when its handlers have ended
    WakeLoops();
}

void Win32Desktop::Unload(Form& form, UnloadMode mode) {
    if (!ViewOf(form)) return;
    if (UnloadLater(form, mode)) return Hide(form);
    {
        const forms::HandlerScope scope(form);
        form.Form_QueryUnload(mode);
        form.Form_Unload();
    }
    const auto found = std::find_if(views_.begin(), views_.end(),
                                    [&](const auto& view) { return view->form() == &form; });
    if (found == views_.end()) return;
    gone_.push_back(std::move(*found));
    views_.erase(found);
    WindowView& view = *gone_.back();
    form.MarkVisible(false);
    form.MarkLoaded(false);
    const HWND owner = GetWindow(view.handle(), GW_OWNER);
    if (owner) EnableWindow(owner, TRUE);
    // Windows would take owned windows along.
    for (const auto& other : views_)
        if (GetWindow(other->handle(), GW_OWNER) == view.handle()) other->SetOwner(nullptr);
    view.Destroy();
    WakeLoops();
}

// A message that another program sends is handled inside GetMessage, which goes on waiting then:
// the loops have to look again whether they are still wanted.
void Win32Desktop::WakeLoops() { PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); }

void Win32Desktop::Dispatch(MSG& message) {
    if (dispatching_ == 0) gone_.clear();
    ++dispatching_;
    const HWND root = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    WindowView* target = nullptr;
    for (const auto& view : views_)
        if (view->handle() == root) target = view.get();
    if (!target || !target->PreTranslate(message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (target) target->TrackFocus();
    --dispatching_;
    // A run that had to be cancelled first is over now.
    if (session_ends_ && dispatching_ == 0) LeaveSession();
}

void Win32Desktop::Flush() {
    for (const auto& view : views_) view->Flush();
}

bool Win32Desktop::NextMessage(MSG& message) {
    Flush();
    return GetMessageW(&message, nullptr, 0, 0) > 0;
}

void Win32Desktop::DoEvents() {
    Flush();
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
        Dispatch(message);
    }
}

void Win32Desktop::WaitEvents() {
    Flush();
    MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    DoEvents();
}

void Win32Desktop::Run() {
    MSG message;
    while (!views_.empty() && NextMessage(message)) Dispatch(message);
}

void Win32Desktop::SetPointer(forms::Pointer pointer) {
    pointer_ = pointer;
    SetCursor(LoadCursorW(nullptr, pointer == forms::Pointer::kHourglass ? IDC_WAIT : IDC_ARROW));
}

HWND Win32Desktop::FrontWindow() const {
    const HWND active = GetActiveWindow();
    HWND front = nullptr;
    for (const auto& view : views_) {
        if (!IsWindowVisible(view->handle()) || !IsWindowEnabled(view->handle())) continue;
        front = view->handle();
        if (front == active) return front;
    }
    return front;
}

void Win32Desktop::WindowActivated(WindowView& view) {
    if (last_active_ == &view) return;
    last_active_ = &view;
    if (view.form()->Visible()) view.PostActivation();
}

bool Win32Desktop::PressCancelOrOk(Form& form) {
    bool has_one = false;
    for (const char* name : {"Cmd_Cancel", "Cmd_Ok"}) {
        forms::Control* control = form.Find(name);
        if (!control || control->kind() != forms::Kind::kButton) continue;
        has_one = true;
        if (!control->Visible()) continue;
        Guarded([&] { static_cast<forms::Button*>(control)->UserPress(); });
        return true;
    }
    return has_one;
}

void Win32Desktop::Close(WindowView& view, UnloadMode mode) {
    if (!IsWindowEnabled(view.handle())) return;  // a modal window is in front of it
    Form& form = *view.form();
    if (!PressCancelOrOk(form)) Guarded([&] { Unload(form, mode); });
}

void Win32Desktop::Escape(WindowView& view) {
    if (IsWindowEnabled(view.handle())) PressCancelOrOk(*view.form());
}

void Win32Desktop::Help(WindowView& view) {
    forms::Form* const form = view.form();
    if (form && on_help && !session_ends_) Guarded([&] { on_help(*form); });
}

void Win32Desktop::EndSession() {
    if (session_ends_) return;
    session_ends_ = true;
    WakeLoops();
    std::vector<Form*> forms;
    for (const auto& view : views_) forms.push_back(view->form());
    bool waits_for_a_run = false;
    for (auto form = forms.rbegin(); form != forms.rend(); ++form)
        if (PressCancelOrOk(**form) && (*form)->Visible()) waits_for_a_run = true;
    DismissBoxes();
    if (!waits_for_a_run) LeaveSession();
}

// Whatever a box asks, nobody will answer it any more.
void Win32Desktop::DismissBoxes() {
    for (const auto& view : views_) {
        const HWND front = GetLastActivePopup(view->handle());
        const auto shows_it = [&](const auto& each) { return each->handle() == front; };
        if (std::any_of(views_.begin(), views_.end(), shows_it)) continue;
        for (const WPARAM answer : {IDCANCEL, IDNO}) PostMessageW(front, WM_COMMAND, answer, 0);
    }
}

void Win32Desktop::LeaveSession() {
    while (!views_.empty()) {
        Form& form = *views_.back()->form();
        Guarded([&] { Unload(form, UnloadMode::kSessionEnd); });
        if (form.Loaded()) return;  // an error ends the program its own way
    }
}

}  // namespace vantrel::views
