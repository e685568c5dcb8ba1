// The screen: message boxes, windows that open and close, pending events, the mouse pointer. Used
// on the user-interface thread only. views/win32 implements it for Windows; host tests have one
// that a script answers.
#pragma once

#include <string>

namespace vantrel::forms {

class Form;

enum class Buttons { kOk, kYesNo, kRetryCancel, kRetryContinueCancel, kSearchCancel };
enum class Icon { kNone, kCritical, kQuestion, kExclamation, kInformation };
// kNotShown: the system could not show the box.
enum class Answer { kOk, kCancel, kRetry, kYes, kNo, kSearch, kContinue, kNotShown };
enum class Pointer { kDefault, kHourglass };

// A message box. An empty title means the program's name.
struct Box {
    std::string text{};
    Buttons buttons = Buttons::kOk;
    Icon icon = Icon::kNone;
    std::string title{};
    int default_button = 1;  // from 1
    bool right_aligned = false;
};

// The reason for an unload, passed to Form_QueryUnload.
enum class UnloadMode { kControlMenu = 0, kCode = 1, kSessionEnd = 2, kTaskManager = 3 };

class Desktop {
  public:
    virtual ~Desktop() = default;

    virtual Answer Show(const Box& box) = 0;
    // An input box with OK and Cancel; "" on Cancel.
    virtual std::string Input(const std::string& prompt, const std::string& title,
                              const std::string& default_text) = 0;

    // The system's dialog for choosing a file that exists. `filter` is "Name (*.ext)|*.ext";
    // `start` is the file chosen so far, "" for none. The chosen path, "" on Cancel.
    virtual std::string OpenFile(const std::string& title, const std::string& filter,
                                 const std::string& start) = 0;

    // Creates the window behind `form` and runs Form_Load; nothing when it is loaded.
    virtual void Load(Form& form) = 0;
    // Loads when needed and shows without waiting; Form_Activate comes from the message loop.
    virtual void ShowModeless(Form& form) = 0;
    // Loads when needed, shows, and returns when the form is hidden or unloaded and none of its
    // handlers is running any more.
    virtual void ShowModal(Form& form) = 0;
    virtual void Hide(Form& form) = 0;
    // Form_QueryUnload, then Form_Unload, then the window is gone. Nothing when it is not loaded.
    // A modal window of which handlers are running is only hidden; ShowModal unloads it, before it
    // returns.
    virtual void Unload(Form& form, UnloadMode mode = UnloadMode::kCode) = 0;

    // Handles all events in the message queue once.
    virtual void DoEvents() = 0;
    // For a long reading that nothing may interrupt: paints what waits to be painted and returns
    // whether Esc has been pressed. No handler runs; all other events stay for later. May be called
    // often: most calls do nothing.
    virtual bool PaintAndCheckEscape() = 0;
    // Waits, without using the processor, until the message queue has an event, and handles the
    // queue.
    virtual void WaitEvents() = 0;
    // Handles events until no window is left.
    virtual void Run() = 0;
    // For the entire program, until the next call.
    virtual void SetPointer(Pointer pointer) = 0;
};

// Shows the hourglass while it lives; then the default pointer, also when the work has failed.
class Hourglass {
  public:
    explicit Hourglass(Desktop& desktop) : desktop_(desktop) {
        desktop_.SetPointer(Pointer::kHourglass);
    }
    ~Hourglass() { desktop_.SetPointer(Pointer::kDefault); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

  private:
    Desktop& desktop_;
};

}  // namespace vantrel::forms
