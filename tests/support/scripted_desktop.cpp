#include "tests/support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "forms/controls.h"

namespace vantrel::test {

using forms::Answer;
using forms::Buttons;
using forms::Form;

namespace {

bool Contains(const std::vector<Form*>& forms, const Form& form) {
    return std::find(forms.begin(), forms.end(), &form) != forms.end();
}

template <typename Forms>
void Remove(Forms& forms, const Form& form) {
    forms.erase(std::remove(forms.begin(), forms.end(), &form), forms.end());
}

Answer DefaultAnswer(const forms::Box& box) {
    const bool first = box.default_button == 1;
    switch (box.buttons) {
        case Buttons::kYesNo:
            return first ? Answer::kYes : Answer::kNo;
        case Buttons::kRetryCancel:
            return first ? Answer::kRetry : Answer::kCancel;
        case Buttons::kOk:
            break;
    }
    return Answer::kOk;
}

template <typename T>
T TakeFront(std::deque<T>& queue) {
    T front = std::move(queue.front());
    queue.pop_front();
    return front;
}

}  // namespace

Answer ScriptedDesktop::Show(const forms::Box& box) {
    boxes.push_back(box);
    if (on_box) on_box(box);
    if (box.buttons == Buttons::kOk || answers.empty()) return DefaultAnswer(box);
    return TakeFront(answers);
}

std::string ScriptedDesktop::Input(const std::string& prompt, const std::string& title,
                                   const std::string& default_text) {
    input_boxes.push_back({prompt, title, default_text});
    return inputs.empty() ? std::string() : TakeFront(inputs);
}

std::string ScriptedDesktop::OpenFile(const std::string& title, const std::string& filter,
                                      const std::string& start) {
    file_dialogs.push_back({title, filter, start});
    return files.empty() ? std::string() : TakeFront(files);
}

void ScriptedDesktop::Step(const std::string& what) {
    if (on_step) on_step(what);
}

void ScriptedDesktop::Happens(const std::string& what, const Form& form) {
    happened.push_back(what + " " + form.name());
    Step(happened.back());
}

void ScriptedDesktop::SetPointer(forms::Pointer value) {
    Step(value == forms::Pointer::kHourglass ? "pointer hourglass" : "pointer default");
    pointer = value;
}

void ScriptedDesktop::Load(Form& form) {
    if (form.Loaded()) return;
    form.MarkLoaded(true);
    loaded_.push_back(&form);
    Happens("load", form);
    const forms::HandlerScope scope(form);
    try {
        form.Form_Load();
    } catch (...) {
        // A window whose load handler fails was never there.
        Remove(loaded_, form);
        form.MarkLoaded(false);
        throw;
    }
}

void ScriptedDesktop::FirstShow(Form& form) {
    if (form.Visible()) return;
    form.MarkVisible(true);
    shown_.push_back(&form);
    to_activate_.push_back(&form);
    Happens("show", form);
}

void ScriptedDesktop::ShowModeless(Form& form) {
    Load(form);
    if (form.Loaded()) FirstShow(form);
}

void ScriptedDesktop::ShowModal(Form& form) {
    const int running_before = form.running_handlers;
    Load(form);
    if (!form.Loaded()) return;
    // Also when a handler's error ends it, which ends the program.
    struct Shown {
        std::vector<Modal>& modal;
        ~Shown() { modal.pop_back(); }
    };
    std::optional<forms::UnloadMode> unload;
    {
        modal_.push_back({&form, running_before});
        const Shown shown{modal_};
        FirstShow(form);
        while (form.Visible() || form.running_handlers > running_before) {
            RunActivations();
            if (form.Visible() && !RunIdleStep(form.name())) Hide(form);
        }
        unload = modal_.back().unload;
    }
    if (unload) Unload(form, *unload);
}

bool ScriptedDesktop::UnloadLater(const Form& form, forms::UnloadMode mode) {
    const auto shown = std::find_if(modal_.begin(), modal_.end(),
                                    [&](const Modal& each) { return each.form == &form; });
    if (shown == modal_.end() || form.running_handlers <= shown->handlers_before) return false;
    shown->unload = mode;
    return true;
}

// The user is back in the window behind, if it was in front of him that this one was.
void ScriptedDesktop::Leave(Form& form) {
    if (!form.Visible()) return;
    form.MarkVisible(false);
    const bool in_front = shown_.back() == &form;
    Remove(shown_, form);
    Remove(to_activate_, form);
    if (!in_front || shown_.empty()) return;
    Remove(to_activate_, *shown_.back());
    to_activate_.push_back(shown_.back());
}

void ScriptedDesktop::Hide(Form& form) {
    if (!form.Visible()) return;
    Happens("hide", form);
    Leave(form);
}

void ScriptedDesktop::Unload(Form& form, forms::UnloadMode mode) {
    if (!form.Loaded() || Contains(unloading_, form)) return;
    if (UnloadLater(form, mode)) return Hide(form);
    unloading_.push_back(&form);
    Happens("unload", form);
    try {
        const forms::HandlerScope scope(form);
        form.Form_QueryUnload(mode);
        form.Form_Unload();
    } catch (...) {
        Remove(unloading_, form);
        throw;
    }
    Leave(form);
    form.MarkLoaded(false);
    Remove(loaded_, form);
    Remove(unloading_, form);
}

void ScriptedDesktop::RunActivations() {
    while (!to_activate_.empty()) {
        Form& form = *TakeFront(to_activate_);
        Happens("activate", form);
        const forms::HandlerScope scope(form);
        form.Form_Activate();
    }
}

bool ScriptedDesktop::RunIdleStep(const std::string& who) {
    if (idle.empty()) {
        ADD_FAILURE() << who << " waits for a user who does nothing";
        return false;
    }
    TakeFront(idle)();
    return true;
}

void ScriptedDesktop::DoEvents() {
    ++do_events_calls;
    Step("events");
    RunActivations();
    if (!on_events.empty()) TakeFront(on_events)();
}

bool ScriptedDesktop::RunShortestTimer() {
    forms::Timer* shortest = nullptr;
    for (const Form* form : loaded_) {
        for (forms::Control* control : form->controls()) {
            if (control->kind() != forms::Kind::kTimer || !control->Enabled()) continue;
            auto* timer = static_cast<forms::Timer*>(control);
            if (!shortest || timer->Interval() < shortest->Interval()) shortest = timer;
        }
    }
    if (!shortest) return false;
    waited += shortest->Interval();
    shortest->Elapse();
    return true;
}

void ScriptedDesktop::WaitEvents() {
    if (!to_activate_.empty() || !on_events.empty()) return DoEvents();
    if (RunShortestTimer()) return;
    // Nothing will ever happen: a program that waits here hangs.
    throw std::logic_error("waits for events that nobody raises");
}

void ScriptedDesktop::Run() {
    while (!loaded_.empty()) {
        RunActivations();
        if (!loaded_.empty() && !RunIdleStep(loaded_.back()->name())) return;
    }
}

}  // namespace vantrel::test
