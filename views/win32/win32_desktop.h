// The desktop of Windows: windows from dialog resources, message boxes, the message loop. Created
// once, on the thread that owns the windows, and used on that thread only.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/error.h"
#include "forms/window_manager.h"
#include "views/win32/window_view.h"

namespace vantrel::views {

class Win32Desktop : public forms::WindowManager {
  public:
    Win32Desktop();
    ~Win32Desktop() override;

    // Receives an error that a handler did not trap. It is called inside the window procedure,
    // through which no exception may travel, and is expected to end the program.
    std::function<void(const Error&)> on_unhandled;

    std::string Input(const std::string& prompt, const std::string& title,
                      const std::string& default_text) override;
    std::string OpenFile(const std::string& title, const std::string& filter,
                         const std::string& start) override;
    void DoEvents() override;
    void WaitEvents() override;

    // Errors go to on_unhandled.
    void RunGuarded(const std::function<void()>& body) override;

  protected:
    forms::Answer ShowBox(const forms::Box& box) override;
    void ShowPointer(forms::Pointer pointer) override;
    void CreateNative(forms::Form& form) override;
    void DestroyNative(forms::Form& form) override;
    void ShowNative(forms::Form& form) override { ViewOf(form)->Show(); }
    void HideNative(forms::Form& form) override { ViewOf(form)->Hide(); }
    void BringToFront(forms::Form& form) override;
    void SetOwner(forms::Form& form, forms::Form& owner) override;
    bool TakesInput(const forms::Form& form) const override;
    void SetTakesInput(forms::Form& form, bool takes_input) override;
    void ActivateNative(forms::Form& form) override;
    forms::Form* FrontWindow() const override;
    void RequestActivation(forms::Form& form) override { ViewOf(form)->PostActivation(); }
    bool HandleNextEvent() override;
    void WakeLoops() override;
    bool ServePainting() override;
    void DismissBoxes() override;

  private:
    // nullptr when the form is not loaded.
    WindowView* ViewOf(const forms::Form& form) const;
    // The owner of boxes and of the system's dialogs; nullptr when no window is in front.
    HWND BoxOwner() const;
    void Dispatch(MSG& message);
    void Flush();
    static bool TakeEscape();

    std::vector<std::unique_ptr<WindowView>> views_;  // in the order of loading
    // Destroyed windows whose procedure may still be on the stack; cleared between events.
    std::vector<std::unique_ptr<WindowView>> destroyed_;
    Taskbar taskbar_;
    ULONGLONG painted_at_ = 0;  // the system's milliseconds at the last ServePainting
};

}  // namespace vantrel::views
