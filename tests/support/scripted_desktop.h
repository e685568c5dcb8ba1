// A desktop without a screen: message boxes are recorded and answered from a script, pending events
// are steps that a test has queued. What nobody answers fails the test.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/form.h"

namespace vantrel::test {

class ScriptedDesktop : public forms::Desktop {
  public:
    // --- arranging ---
    // Answers to message boxes with more than one button, in order; none left: the default button.
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
    // The window that was loaded last and is still there.
    forms::Form* Front() const { return loaded_.empty() ? nullptr : loaded_.back(); }

    forms::Answer Show(const forms::Box& box) override;
    std::string Input(const std::string& prompt, const std::string& title,
                      const std::string& default_text) override;
    std::string OpenFile(const std::string& title, const std::string& filter,
                         const std::string& start) override;
    void Load(forms::Form& form) override;
    void ShowModeless(forms::Form& form) override;
    void ShowModal(forms::Form& form) override;
    void Hide(forms::Form& form) override;
    void Unload(forms::Form& form, forms::UnloadMode mode = forms::UnloadMode::kCode) override;
    void DoEvents() override;
    void WaitEvents() override;
    void Run() override;
    void SetPointer(forms::Pointer value) override;

  private:
    struct Modal {
        forms::Form* form;
        int handlers_before;
        std::optional<forms::UnloadMode> unload{};
    };
    bool UnloadLater(const forms::Form& form, forms::UnloadMode mode);
    void Step(const std::string& what);
    void Happens(const std::string& what, const forms::Form& form);
    void FirstShow(forms::Form& form);
    void Leave(forms::Form& form);
    void RunActivations();
    bool RunShortestTimer();
    bool RunIdleStep(const std::string& who);

    std::vector<forms::Form*> loaded_;
    std::vector<forms::Form*> shown_;  // the front one last
    std::vector<forms::Form*> unloading_;
    std::vector<Modal> modal_;  // the front one last
    std::deque<forms::Form*> to_activate_;
};

}  // namespace vantrel::test
