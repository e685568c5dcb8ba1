// The real screen: windows from dialog resources, message boxes, the message loop. Made once, on
// the thread that owns the windows, and used there only.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <vector>

#include "common/error.h"
#include "forms/desktop.h"
#include "forms/form.h"
#include "views/win32/taskbar.h"
#include "views/win32/window_view.h"

namespace vantrel::views {

class Win32Desktop : public forms::Desktop {
  public:
    Win32Desktop();
    ~Win32Desktop() override;

    // What happens to an error that a handler did not trap. It is called inside the window
    // procedure, through which no error may travel, and is expected to end the program.
    std::function<void(const Error&)> on_unhandled;
    // F1, in the window of `form` or in a box that stands over it. Nothing may be set.
    std::function<void(forms::Form& form)> on_help;

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
    void SetPointer(forms::Pointer pointer) override;

    // The window that boxes and dialogs of the program stand over; nullptr when none is shown.
    HWND FrontWindow() const;

    // For windows.
    forms::Pointer pointer() const { return pointer_; }
    Taskbar& taskbar() { return taskbar_; }
    void WindowActivated(WindowView& view);
    // Close box, Alt+F4 or a WM_CLOSE from outside. A window with a Cancel or OK button takes it as
    // that button, whichever is to be seen; any other window is unloaded.
    void Close(WindowView& view, forms::UnloadMode mode);
    // Esc does the same to windows with such a button and nothing to others.
    void Escape(WindowView& view);
    void Help(WindowView& view);
    // Cancel first, for what runs; then every window is unloaded, the main window last.
    void EndSession();

    // Runs a handler for Windows: errors go to on_unhandled.
    template <typename Body>
    void Guarded(Body&& body) {
        try {
            body();
        } catch (const Error& error) {
            if (on_unhandled) on_unhandled(error);
        } catch (const std::bad_alloc&) {
            const int number = error_number::kOutOfMemory;
            if (on_unhandled) on_unhandled(Error(number, "Win32Desktop", ErrorText(number)));
        }
    }

  private:
    // A modal window that is shown: while handlers of it run, unloading it waits for them.
    struct Modal {
        forms::Form* form;
        int handlers_before;  // that were running when it was shown
        std::optional<forms::UnloadMode> unload{};
    };
    bool UnloadLater(const forms::Form& form, forms::UnloadMode mode);
    WindowView* ViewOf(const forms::Form& form) const;
    WindowView& LoadedView(forms::Form& form);
    void ShowView(WindowView& view);
    bool PressCancelOrOk(forms::Form& form);
    void Dispatch(MSG& message);
    void Flush();
    bool NextMessage(MSG& message);
    static void WakeLoops();
    void DismissBoxes();
    void LeaveSession();

    std::vector<std::unique_ptr<WindowView>> views_;  // in the order of loading
    // Windows that may still have a procedure running; cleared when none has.
    std::vector<std::unique_ptr<WindowView>> gone_;
    std::vector<Modal> modal_;           // the front one last
    WindowView* last_active_ = nullptr;  // only compared
    forms::Pointer pointer_ = forms::Pointer::kDefault;
    Taskbar taskbar_;
    int dispatching_ = 0;
    bool session_ends_ = false;
};

}  // namespace vantrel::views
