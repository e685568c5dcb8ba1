#include "forms/form.h"

namespace vantrel::forms {

Form::Form(Program& program, std::string name) : program_(program), name_(std::move(name)) {}

Control* Form::Find(const std::string& control_name) const {
    for (Control* control : controls_) {
        if (control->name() == control_name) {
            return control;
        }
    }
    return nullptr;
}

void Form::Notify(Aspect aspect) {
    if (view_) {
        view_->Changed(aspect);
    }
}

void Form::SetCaption(const std::string& caption) {
    caption_ = caption;
    Notify(Aspect::kText);
}

void Form::DrawBox(const FilledBox& box) {
    boxes_.push_back(box);
    Notify(Aspect::kValue);
}

void Form::SetTaskProgress(int percent) {
    if (percent == task_progress_) {
        return;
    }
    task_progress_ = percent;
    Notify(Aspect::kTaskProgress);
}

void Form::ClearBoxes() {
    boxes_.clear();
    Notify(Aspect::kValue);
}

void Form::Refresh() { Notify(Aspect::kRedraw); }

void Form::MarkSize(int width, int height) {
    width_ = width;
    height_ = height;
}

}  // namespace vantrel::forms
