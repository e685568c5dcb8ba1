// A window of the program: its controls are members under their given names, with one handler for
// each event. A plain object: a view shows it, and tests use it without a screen. Used on the
// user-interface thread only.
#pragma once

#include <string>
#include <vector>

#include "forms/control.h"
#include "forms/desktop.h"
#include "forms/program.h"

namespace vantrel::forms {

class Form {
  public:
    Form(Program& program, std::string name);
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    Program& program() const { return program_; }
    // The given name, "Frm_Backup"; the view finds its dialog resource by it.
    const std::string& name() const { return name_; }
    const std::vector<Control*>& controls() const { return controls_; }
    Control* Find(const std::string& control_name) const;  // nullptr when there is none

    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption);
    bool Loaded() const { return loaded_; }
    bool Visible() const { return visible_; }
    // The control that has the keyboard, nullptr for none.
    Control* ActiveControl() const { return active_; }

    // Outer size in twips (1,440 an inch).
    int Width() const { return width_; }
    int Height() const { return height_; }
    // Filled boxes behind the controls, in twips from the upper left corner inside the frame, later
    // ones on top. The colour is red, green and blue, 0 to 255 each.
    struct FilledBox {
        int left, top, right, bottom;
        int red, green, blue;
    };
    void DrawBox(const FilledBox& box);
    void ClearBoxes();
    const std::vector<FilledBox>& Boxes() const { return boxes_; }
    // Progress of a long run, 0 to 100, for the window's button on the taskbar.
    static constexpr int kNoTaskProgress = -1;
    int TaskProgress() const { return task_progress_; }
    void SetTaskProgress(int percent);
    // Paints the window and its controls now.
    void Refresh();

    // The window's own handlers.
    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual void Form_Resize() {}
    virtual void Form_QueryUnload(UnloadMode) {}
    virtual void Form_Unload() {}
    // Called after an event of one of its controls, when no handler of this window is running any
    // more; not after a handler that has raised an error.
    virtual void AfterEvent() {}

    // For Desktop implementations and views only.
    void MarkLoaded(bool loaded) { loaded_ = loaded; }
    void MarkVisible(bool visible) { visible_ = visible; }
    void MarkActive(Control* control) { active_ = control; }
    void MarkSize(int width, int height);
    void Bind(ControlView* view) { view_ = view; }
    int running_handlers = 0;

  private:
    friend class Control;
    void Notify(Aspect aspect);

    Program& program_;
    std::string name_;
    std::string caption_;
    std::vector<Control*> controls_;
    std::vector<FilledBox> boxes_;
    Control* active_ = nullptr;
    int width_ = 0;
    int height_ = 0;
    int task_progress_ = kNoTaskProgress;
    ControlView* view_ = nullptr;
    bool loaded_ = false;
    bool visible_ = false;
};

}  // namespace vantrel::forms
