// A desktop without a screen: message boxes are recorded and answered from a script, pending events
// are steps that a test has queued. A wait without a queued step fails the test.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "forms/window_manager.h"

namespace vantrel::test {

class ScriptedDesktop : public forms::WindowManager {
  public:
    // --- arranging ---
    // Answers to message boxes with more than one button, in order; none left: the default button.
    // kNotShown answers any box.
    std::deque<forms::Answer> answers;
    std::deque<std::string> inputs;  // answers to input boxes; none left: ""
    std::deque<std::string> files;   // answers to file dialogs; none left: ""
    // Runs at the next DoEvents (one step a call); `idle` steps run one by one while a modal window
    // or Run() waits for the user. A wait without an idle step left fails the test and ends.
    // A wait for events handles such a step, or lets the shortest enabled timer run out.
    // Windows that are due for it are activated before either: the shown one, and the one that is
    // in front again when another is gone.
    std::deque<std::function<void()>> on_events;
    std::deque<std::function<void()>> idle;
    // Called when a long reading paints; true: the user has pressed Esc.
    std::function<bool()> on_paint;
    // Called inside each box, e.g. to change the disk before the answer.
    std::function<void(const forms::Box&)> on_box;
    // Called at each step, before it is taken: what goes into `happened`, and "events", "pointer
    // hourglass", "pointer default" beside it.
    std::function<void(const std::string&)> on_step;

    // --- looking ---
    struct InputBox {
        std::string prompt, title, default_text;
        bool operator==(const InputBox&) const = default;
    };
    std::vector<forms::Box> boxes;
    struct FileDialog {
        std::string title, filter, start;
        bool operator==(const FileDialog&) const = default;
    };
    std::vector<InputBox> input_boxes;
    std::vector<FileDialog> file_dialogs;
    // "load Frm_Backup", "show ...", "activate ...", "hide ...", "unload ...".
    std::vector<std::string> happened;
    forms::Pointer pointer = forms::Pointer::kDefault;
    int do_events_calls = 0;
    std::chrono::milliseconds waited{0};  // the sum of all waits for a timer
    // The window that was loaded last and is still loaded.
    forms::Form* Front() const { return Windows().empty() ? nullptr : Windows().back(); }
    bool TakesInput(const forms::Form& form) const override;

    std::string Input(const std::string& prompt, const std::string& title,
                      const std::string& default_text) override;
    std::string OpenFile(const std::string& title, const std::string& filter,
                         const std::string& start) override;
    void DoEvents() override;
    void WaitEvents() override;

  protected:
    forms::Answer ShowBox(const forms::Box& box) override;
    void ShowPointer(forms::Pointer value) override;
    void CreateNative(forms::Form& form) override { Happens("load", form); }
    void DestroyNative(forms::Form& form) override;
    void ShowNative(forms::Form& form) override;
    void HideNative(forms::Form& form) override;
    void BringToFront(forms::Form&) override {}
    void SetOwner(forms::Form&, forms::Form&) override {}
    void SetTakesInput(forms::Form& form, bool takes_input) override;
    void ActivateNative(forms::Form& form) override;
    forms::Form* FrontWindow() const override;
    void RequestActivation(forms::Form& form) override;
    bool HandleNextEvent() override;
    void WakeLoops() override {}
    bool ServePainting() override { return on_paint && on_paint(); }
    void DismissBoxes() override {}

  private:
    void Step(const std::string& what);
    void Happens(const std::string& what, const forms::Form& form);
    void Leave(forms::Form& form);
    bool RunActivations();
    bool RunShortestTimer();

    std::vector<forms::Form*> shown_;  // the front one last
    std::vector<const forms::Form*> blocked_;
    std::deque<forms::Form*> to_activate_;
};

}  // namespace vantrel::test
