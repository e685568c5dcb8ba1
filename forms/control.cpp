#include "forms/control.h"

#include "forms/form.h"

namespace vantrel::forms {

HandlerScope::HandlerScope(Form& form) : form_(form) { ++form_.running_handlers; }

HandlerScope::~HandlerScope() { --form_.running_handlers; }

Control::Control(Form& owner, Kind kind, std::string name)
    : owner_(owner), kind_(kind), name_(std::move(name)) {
    owner_.controls_.push_back(this);
}

void Control::Notify(Aspect aspect) {
    if (view_) view_->Changed(aspect);
}

void Control::SetEnabled(bool enabled) {
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    Notify(Aspect::kEnabled);
}

void Control::SetVisible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    Notify(Aspect::kVisible);
}

void Control::SetCaption(const std::string& caption) {
    if (caption_ == caption) return;
    caption_ = caption;
    Notify(Aspect::kText);
}

void Control::SetFocus() {
    owner_.MarkActive(this);
    Notify(Aspect::kFocus);
}

}  // namespace vantrel::forms
