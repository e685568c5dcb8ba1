#include "forms/controls.h"

#include <algorithm>

#include "common/error.h"
#include "forms/form.h"

namespace vantrel::forms {

HandlerScope::HandlerScope(Form& form) : form_(form) { ++form_.running_handlers; }

HandlerScope::~HandlerScope() { --form_.running_handlers; }

Control::Control(Form& owner, Kind kind, std::string name)
    : owner_(owner), kind_(kind), name_(std::move(name)) {
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

void Control::SetEnabled(bool enabled) {
    if (enabled_ == enabled) {
        return;
    }
    enabled_ = enabled;
    Notify(Aspect::kEnabled);
}

void Control::SetVisible(bool visible) {
    if (visible_ == visible) {
        return;
    }
    visible_ = visible;
    Notify(Aspect::kVisible);
}

void Control::SetCaption(const std::string& caption) {
    if (caption_ == caption) {
        return;
    }
    caption_ = caption;
    Notify(Aspect::kText);
}

void Control::SetFocus() {
    owner_.MarkActive(this);
    Notify(Aspect::kFocus);
}

Label::Label(Form& owner, std::string name, const std::string& caption)
    : Control(owner, Kind::kLabel, std::move(name)) {
    SetCaption(caption);
}

void Label::UserClick() {
    if (Enabled() && Visible()) {
        Raise(Click);
    }
}

void Label::SetForeColor(Color color) {
    if (color_ == color) {
        return;
    }
    color_ = color;
    Notify(Aspect::kColor);
}

Button::Button(Form& owner, std::string name, const std::string& caption)
    : Control(owner, Kind::kButton, std::move(name)) {
    SetCaption(caption);
}

void Button::UserPress() {
    if (Enabled() && Visible()) {
        Raise(Click);
    }
}

CheckBox::CheckBox(Form& owner, std::string name, const std::string& caption)
    : Control(owner, Kind::kCheckBox, std::move(name)) {
    SetCaption(caption);
}

void CheckBox::SetChecked(bool checked) {
    if (checked_ == checked) {
        return;
    }
    checked_ = checked;
    Notify(Aspect::kValue);
    Raise(Click);
}

void CheckBox::UserToggle() {
    if (Enabled() && Visible()) {
        SetChecked(!checked_);
    }
}

TextBox::TextBox(Form& owner, std::string name, bool multi_line, bool read_only)
    : Control(owner, Kind::kTextBox, std::move(name)),
      multi_line_(multi_line),
      read_only_(read_only) {}

void TextBox::SetText(const std::string& text) {
    if (text_ == text) {
        return;
    }
    text_ = text;
    Notify(Aspect::kText);
    Raise(Change);
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

Frame::Frame(Form& owner, std::string name, const std::string& caption)
    : Control(owner, Kind::kFrame, std::move(name)) {
    SetCaption(caption);
}

Picture::Picture(Form& owner, std::string name) : Control(owner, Kind::kPicture, std::move(name)) {}

StatusBar::StatusBar(Form& owner, std::string name)
    : Control(owner, Kind::kStatusBar, std::move(name)) {}

void StatusBar::SetLine(const std::string& text, const std::string& path) {
    path_ = path;
    SetCaption(text);
}

void StatusBar::SetNote(const std::string& note) {
    note_ = note;
    Notify(Aspect::kText);
}

ProgressBar::ProgressBar(Form& owner, std::string name)
    : Control(owner, Kind::kProgressBar, std::move(name)) {}

void ProgressBar::SetValue(int value) {
    value = std::clamp(value, 0, 100);
    if (value_ == value) {
        return;
    }
    value_ = value;
    Notify(Aspect::kValue);
}

Panel::Panel(Form& owner, std::string name, const std::string& caption)
    : Control(owner, Kind::kPanel, std::move(name)) {
    SetCaption(caption);
}

void Panel::SetFloodPercent(double percent) {
    percent = std::clamp(percent, 0.0, 100.0);
    if (percent_ == percent) {
        return;
    }
    percent_ = percent;
    Notify(Aspect::kValue);
}

Animation::Animation(Form& owner, std::string name)
    : Control(owner, Kind::kAnimation, std::move(name)) {}

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

MenuItem::MenuItem(Form& owner, std::string name, const std::string& caption)
    : Control(owner, Kind::kMenu, std::move(name)) {
    SetCaption(caption);
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
