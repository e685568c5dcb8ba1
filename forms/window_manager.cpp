#include "forms/window_manager.h"

#include <algorithm>

#include "forms/controls.h"

namespace vantrel::forms {

bool WindowManager::IsLoaded(const Form* form) const {
    return std::find(windows_.begin(), windows_.end(), form) != windows_.end();
}

Answer WindowManager::Show(const Box& box) {
    if (session_ends_) {
        return box.buttons == Buttons::kYesNo ? Answer::kNo : Answer::kCancel;
    }
    for (Form* form : windows_) {
        form->AfterEvent();  // the box is inside a handler; the windows behind it show their state
    }
    return ShowBox(box);
}

void WindowManager::SetPointer(Pointer pointer) {
    pointer_ = pointer;
    ShowPointer(pointer);
}

void WindowManager::Load(Form& form) {
    if (form.Loaded()) {
        return;
    }
    windows_.push_back(&form);
    try {
        CreateNative(form);
    } catch (...) {
        windows_.pop_back();
        throw;
    }
    form.MarkLoaded(true);
    const HandlerScope scope(form);
    try {
        form.Form_Load();
    } catch (...) {
        // A caller that traps the error may destroy the form.
        Remove(form);
        throw;
    }
}

void WindowManager::ShowLoaded(Form& form) {
    if (form.Visible()) {
        return BringToFront(form);
    }
    last_active_ = &form;  // showing activates once, without WindowActivated
    form.MarkVisible(true);
    RequestActivation(form);
    ShowNative(form);
}

void WindowManager::ShowModeless(Form& form) {
    Load(form);
    if (form.Loaded()) {
        ShowLoaded(form);
    }
}

void WindowManager::BeginModal(Form& form) {
    modal_.push_back({&form, form.running_handlers});
    for (Form* other : windows_) {
        if (other == &form || !TakesInput(*other)) {
            continue;
        }
        modal_.back().blocked.push_back(other);
        SetTakesInput(*other, false);
    }
}

std::optional<UnloadMode> WindowManager::EndModal() {
    const ModalWindow ended = std::move(modal_.back());
    modal_.pop_back();
    for (Form* other : ended.blocked) {
        if (IsLoaded(other)) {
            SetTakesInput(*other, true);
        }
    }
    return ended.unload;
}

void WindowManager::ShowModal(Form& form) {
    Load(form);
    if (!form.Loaded()) {
        return;  // Form_Load has unloaded it
    }
    Form* const owner = FrontWindow();
    if (owner && owner != &form) {
        SetOwner(form, *owner);
    }
    BeginModal(form);
    try {
        ShowLoaded(form);
        while (form.Visible() && !session_ends_ && HandleNextEvent()) {
            continue;
        }
    } catch (...) {
        EndModal();
        Remove(form);  // as in Load
        throw;
    }
    form.MarkVisible(false);
    // The owner takes input before the window goes, or Windows would give the keyboard to another
    // program's window.
    const auto unload = EndModal();
    if (form.Loaded()) {
        HideNative(form);
    }
    if (unload) {
        Unload(form, *unload);
    }
    if (IsLoaded(owner)) {
        ActivateNative(*owner);
    }
}

void WindowManager::Hide(Form& form) {
    if (!form.Loaded()) {
        return;
    }
    form.MarkVisible(false);
    if (!FindModal(form)) {
        HideNative(form);  // ShowModal hides a modal window when it returns
    }
    WakeLoops();
}

WindowManager::ModalWindow* WindowManager::FindModal(const Form& form) {
    const auto found = std::find_if(modal_.begin(), modal_.end(),
                                    [&](const ModalWindow& each) { return each.form == &form; });
    return found == modal_.end() ? nullptr : &*found;
}

// A run handles waiting events, so its window can be closed inside the run. The owner is blocked
// until the run has ended, or a second run could begin inside the first.
bool WindowManager::DeferUnload(const Form& form, UnloadMode mode) {
    ModalWindow* const modal = session_ends_ ? nullptr : FindModal(form);
    if (!modal || form.running_handlers <= modal->handlers_before) {
        return false;
    }
    modal->unload = mode;
    return true;
}

void WindowManager::Unload(Form& form, UnloadMode mode) {
    const auto is_unloading = std::find(unloading_.begin(), unloading_.end(), &form);
    if (!form.Loaded() || (is_unloading != unloading_.end() && !session_ends_)) {
        return;
    }
    if (DeferUnload(form, mode)) {
        return Hide(form);
    }
    unloading_.push_back(&form);
    try {
        const HandlerScope scope(form);
        form.Form_QueryUnload(mode);
        form.Form_Unload();
    } catch (...) {
        unloading_.pop_back();
        throw;
    }
    unloading_.pop_back();
    Remove(form);
}

void WindowManager::Remove(Form& form) {
    if (std::erase(windows_, &form) == 0) {
        return;  // a handler has unloaded it
    }
    form.MarkVisible(false);
    form.MarkLoaded(false);
    if (last_active_ == &form) {
        last_active_ = nullptr;
    }
    DestroyNative(form);
    WakeLoops();
}

void WindowManager::Run() {
    while (!windows_.empty() && HandleNextEvent()) {
        continue;
    }
}

// The end of the session may come meanwhile; it stops the reading, too.
bool WindowManager::PaintAndCheckEscape() {
    only_paints_ = true;
    const bool escape = ServePainting();
    only_paints_ = false;
    return escape || session_ends_;
}

void WindowManager::HandleEvent(const std::function<void()>& event) {
    ++running_events_;
    try {
        event();
    } catch (...) {
        --running_events_;
        throw;
    }
    --running_events_;
    // The session's end has waited for a run to be cancelled.
    if (session_ends_ && running_events_ == 0) {
        LeaveSession();
    }
}

void WindowManager::WindowActivated(Form& form) {
    if (last_active_ == &form) {
        return;
    }
    last_active_ = &form;
    if (form.Visible()) {
        RequestActivation(form);
    }
}

void WindowManager::RunActivation(Form& form) {
    if (!form.Visible()) {
        return;
    }
    RunGuarded([&form] {
        const HandlerScope scope(form);
        form.Form_Activate();
    });
}

bool WindowManager::PressCancelOrOk(Form& form) {
    bool has_one = false;
    for (const char* name : {"Cmd_Cancel", "Cmd_Ok"}) {
        Control* control = form.Find(name);
        if (!control || control->kind() != Kind::kButton) {
            continue;
        }
        has_one = true;
        if (!control->Visible()) {
            continue;
        }
        RunGuarded([&] { static_cast<Button*>(control)->UserPress(); });
        return true;
    }
    return has_one;
}

void WindowManager::Close(Form& form, UnloadMode mode) {
    if (!TakesInput(form) || PressCancelOrOk(form)) {
        return;
    }
    RunGuarded([&] { Unload(form, mode); });
}

void WindowManager::Escape(Form& form) {
    if (TakesInput(form)) {
        PressCancelOrOk(form);
    }
}

void WindowManager::Help(Form& form) {
    if (on_help && !session_ends_) {
        RunGuarded([&] { on_help(form); });
    }
}

void WindowManager::EndSession() {
    if (session_ends_) {
        return;
    }
    session_ends_ = true;
    WakeLoops();
    if (only_paints_) {
        return;  // HandleEvent leaves when the reading has ended
    }
    const std::vector<Form*> forms(windows_.rbegin(), windows_.rend());
    bool waits_for_a_run = false;
    for (Form* form : forms) {
        if (PressCancelOrOk(*form) && form->Visible()) {
            waits_for_a_run = true;
        }
    }
    DismissBoxes();
    if (!waits_for_a_run) {
        LeaveSession();
    }
}

void WindowManager::LeaveSession() {
    while (!windows_.empty()) {
        Form& form = *windows_.back();
        RunGuarded([&] { Unload(form, UnloadMode::kSessionEnd); });
        if (form.Loaded()) {
            return;  // an error ends the program its own way
        }
    }
}

}  // namespace vantrel::forms
