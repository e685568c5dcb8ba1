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

template <typename Forms>
bool Contains(const Forms& forms, const Form& form) {
    return std::find(forms.begin(), forms.end(), &form) != forms.end();
}

Answer DefaultAnswer(const forms::Box& box) {
    const bool first = box.default_button == 1;
    switch (box.buttons) {
        case Buttons::kYesNo:
            return first ? Answer::kYes : Answer::kNo;
        case Buttons::kRetryCancel:
        case Buttons::kRetryContinueCancel:
            return first ? Answer::kRetry : Answer::kCancel;
        case Buttons::kSearchCancel:
            return Answer::kCancel;
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

Answer ScriptedDesktop::ShowBox(const forms::Box& box) {
    boxes.push_back(box);
    if (on_box) {
        on_box(box);
    }
    const bool answered = !answers.empty() && (box.buttons != Buttons::kOk ||
                                               answers.front() == forms::Answer::kNotShown);
    return answered ? TakeFront(answers) : DefaultAnswer(box);
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
    if (on_step) {
        on_step(what);
    }
}

void ScriptedDesktop::Happens(const std::string& what, const Form& form) {
    happened.push_back(what + " " + form.name());
    Step(happened.back());
}

void ScriptedDesktop::ShowPointer(forms::Pointer value) {
    Step(value == forms::Pointer::kHourglass ? "pointer hourglass" : "pointer default");
    pointer = value;
}

void ScriptedDesktop::ShowNative(Form& form) {
    shown_.push_back(&form);
    Happens("show", form);
}

void ScriptedDesktop::HideNative(Form& form) {
    if (!Contains(shown_, form)) {
        return;
    }
    Happens("hide", form);
    Leave(form);
}

void ScriptedDesktop::DestroyNative(Form& form) {
    Happens("unload", form);
    Leave(form);
}

// When the front window goes, the system activates the one behind it.
void ScriptedDesktop::Leave(Form& form) {
    const bool in_front = !shown_.empty() && shown_.back() == &form;
    std::erase(shown_, &form);
    std::erase(blocked_, &form);
    std::erase(to_activate_, &form);
    if (in_front && !shown_.empty()) {
        WindowActivated(*shown_.back());
    }
}

bool ScriptedDesktop::TakesInput(const Form& form) const { return !Contains(blocked_, form); }

void ScriptedDesktop::SetTakesInput(Form& form, bool takes_input) {
    std::erase(blocked_, &form);
    if (!takes_input) {
        blocked_.push_back(&form);
    }
}

void ScriptedDesktop::ActivateNative(Form& form) {
    if (std::erase(shown_, &form) == 0) {
        return;
    }
    shown_.push_back(&form);
    WindowActivated(form);
}

Form* ScriptedDesktop::FrontWindow() const {
    const auto front = std::find_if(shown_.rbegin(), shown_.rend(),
                                    [this](const Form* each) { return TakesInput(*each); });
    return front == shown_.rend() ? nullptr : *front;
}

void ScriptedDesktop::RequestActivation(Form& form) {
    if (!Contains(to_activate_, form)) {
        to_activate_.push_back(&form);
    }
}

bool ScriptedDesktop::RunActivations() {
    if (to_activate_.empty()) {
        return false;
    }
    while (!to_activate_.empty()) {
        Form& form = *TakeFront(to_activate_);
        if (form.Visible()) {
            Happens("activate", form);
        }
        HandleEvent([&] { RunActivation(form); });
    }
    return true;
}

bool ScriptedDesktop::HandleNextEvent() {
    if (RunActivations()) {
        return true;
    }
    if (idle.empty()) {
        ADD_FAILURE() << Front()->name() << " waits for a user who does nothing";
        return false;
    }
    HandleEvent(TakeFront(idle));
    return true;
}

void ScriptedDesktop::DoEvents() {
    ++do_events_calls;
    Step("events");
    RunActivations();
    if (!on_events.empty()) {
        HandleEvent(TakeFront(on_events));
    }
}

bool ScriptedDesktop::RunShortestTimer() {
    forms::Timer* shortest = nullptr;
    for (const Form* form : Windows()) {
        for (forms::Control* control : form->controls()) {
            if (control->kind() != forms::Kind::kTimer || !control->Enabled()) {
                continue;
            }
            auto* timer = static_cast<forms::Timer*>(control);
            if (!shortest || timer->Interval() < shortest->Interval()) {
                shortest = timer;
            }
        }
    }
    if (!shortest) {
        return false;
    }
    waited += shortest->Interval();
    HandleEvent([shortest] { shortest->Elapse(); });
    return true;
}

void ScriptedDesktop::WaitEvents() {
    if (!to_activate_.empty() || !on_events.empty()) {
        return DoEvents();
    }
    if (RunShortestTimer()) {
        return;
    }
    // Nothing will ever happen: a program that waits here hangs.
    throw std::logic_error("waits for events that cannot occur");
}

}  // namespace vantrel::test
