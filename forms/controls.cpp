#include "forms/controls.h"

#include "common/error.h"
#include "forms/form.h"

namespace vantrel::forms {

HandlerScope::HandlerScope(Form& form) : form_(form) { ++form_.running_handlers; }

HandlerScope::~HandlerScope() { --form_.running_handlers; }

Control::Control(Form& owner, Kind kind, std::string name, std::string caption)
    : owner_(owner), kind_(kind), name_(std::move(name)), caption_(std::move(caption)) {
    owner_.controls_.push_back(this);
}

void Control::Notify(Aspect aspect) {
    if (view_) {
        view_->Changed(aspect);
    }
}

void Control::Handled() {
    if (owner_.running_handlers == 0) {
        owner_.AfterEvent();
    }
}

void Control::SetFocus() {
    owner_.MarkActive(this);
    Notify(Aspect::kFocus);
}

void Label::UserClick() {
    if (Enabled() && Visible()) {
        Raise(Click);
    }
}

void Button::UserPress() {
    if (Enabled() && Visible()) {
        Raise(Click);
    }
}

void CheckBox::SetChecked(bool checked) {
    if (Update(checked_, checked, Aspect::kValue)) {
        Raise(Click);
    }
}

void CheckBox::UserToggle() {
    if (Enabled() && Visible()) {
        SetChecked(!checked_);
    }
}

void TextBox::SetText(const std::string& text) {
    if (Update(text_, text, Aspect::kText)) {
        Raise(Change);
    }
}

void TextBox::Append(const std::string& text) {
    if (text.empty()) {
        return;
    }
    text_ += text;
    Notify(Aspect::kAppended);
    Raise(Change);
}

void TextBox::UserType(const std::string& text) {
    if (read_only_ || !Enabled() || text_ == text) {
        return;
    }
    text_ = text;
    Raise(Change);
}

void TextBox::ScrollLines(int lines) {
    scrolled_lines_ = lines;
    Notify(Aspect::kScroll);
}

void StatusBar::SetLine(const std::string& text, const std::string& path) {
    path_ = path;
    SetCaption(text);
}

void StatusBar::SetNote(const std::string& note) {
    note_ = note;
    Notify(Aspect::kText);
}

void Animation::Open(const std::string& path) {
    path_ = path;
    playing_ = !path.empty();
    Notify(Aspect::kValue);
}

void Animation::Stop() {
    playing_ = false;
    Notify(Aspect::kValue);
}

Timer::Timer(Form& owner, std::string name, std::chrono::milliseconds interval)
    : Control(owner, Kind::kTimer, std::move(name)), interval_(interval) {
    SetEnabled(false);
}

void Timer::Elapse() {
    if (Enabled()) {
        Raise(Tick);
    }
}

void MenuItem::UserChoose() {
    if (Enabled()) {
        Raise(Click);
    }
}

void MenuItem::PopUp() {
    ++pop_ups_;
    Notify(Aspect::kPopUp);
}

Tabs::Tabs(Form& owner, std::string name, std::vector<std::string> captions)
    : Control(owner, Kind::kTabs, std::move(name)), captions_(std::move(captions)) {}

void Tabs::SetTab(int tab) {
    if (tab < 0 || tab >= static_cast<int>(captions_.size())) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    if (tab == tab_) {
        return;
    }
    const int previous = std::exchange(tab_, tab);
    Notify(Aspect::kSelection);
    Raise(Click, previous);
}

}  // namespace vantrel::forms
