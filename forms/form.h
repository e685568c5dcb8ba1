// A window of the program: its controls as members under their given names, one handler an event.
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

    // The window's own handlers.
    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual void Form_Resize() {}
    virtual void Form_QueryUnload(UnloadMode) {}
    virtual void Form_Unload() {}

    // For Desktop implementations and views only.
    void MarkLoaded(bool loaded) { loaded_ = loaded; }
    void MarkVisible(bool visible) { visible_ = visible; }
    void Bind(ControlView* view) { view_ = view; }
    int running_handlers = 0;

  private:
    friend class Control;
    Program& program_;
    std::string name_;
    std::string caption_;
    std::vector<Control*> controls_;
    ControlView* view_ = nullptr;
    bool loaded_ = false;
    bool visible_ = false;
};

}  // namespace vantrel::forms
