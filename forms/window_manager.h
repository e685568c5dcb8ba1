// The life cycle of windows, one implementation for every desktop: loading, modal windows, deferred
// unloading, activation and the end of the session. A desktop derives from this class and supplies
// the native windows and the message loop. Used on the user-interface thread only.
//
// - A window whose Form_Load raises an error is destroyed again; the error travels to the caller.
// - A modal window ends when it is hidden or unloaded and none of its handlers is running.
// - A window is activated when it is first shown and when the user returns to it from another
//   window of the program. A message box or another program's window activates nothing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/desktop.h"
#include "forms/form.h"

namespace vantrel::forms {

class WindowManager : public Desktop {
  public:
    // F1 in the window of a form, or in a box in front of that window. May be empty.
    std::function<void(Form&)> on_help;

    Answer Show(const Box& box) final;
    void Load(Form& form) final;
    void ShowModeless(Form& form) final;
    void ShowModal(Form& form) final;
    void Hide(Form& form) final;
    void Unload(Form& form, UnloadMode mode = UnloadMode::kCode) final;
    void Run() final;
    bool PaintAndCheckEscape() final;
    void SetPointer(Pointer pointer) final;
    Pointer CurrentPointer() const { return pointer_; }
    // Whether PaintAndCheckEscape is running: an event that the system delivers now must wait.
    bool OnlyPaints() const { return only_paints_; }

    // What the user or the system does to a window. Ignored while the window takes no input.
    // Close box, Alt+F4 or a WM_CLOSE from outside: presses the visible one of the buttons
    // Cmd_Cancel and Cmd_Ok; a window with neither button is unloaded.
    void Close(Form& form, UnloadMode mode);
    // Presses the same button; a window with neither button stays.
    void Escape(Form& form);
    void Help(Form& form);
    // The user has come to this window, from whatever window was active before.
    void WindowActivated(Form& form);
    // Presses Cancel in every window that has it, then unloads all windows, the main window last:
    // at once, or when the running event has ended if a window stays open until its run has ended.
    // Questions are not shown from then on; their answer is Cancel or No.
    void EndSession();

    // Runs handlers on behalf of the system. A desktop whose caller cannot take exceptions
    // overrides this.
    virtual void RunGuarded(const std::function<void()>& body) { body(); }
    // Raises Form_Activate, if the window is still visible. For RequestActivation.
    void RunActivation(Form& form);

  protected:
    // In the order of loading.
    const std::vector<Form*>& Windows() const { return windows_; }
    bool HandlesEvent() const { return running_events_ > 0; }
    // Every event of the message loop runs inside this.
    void HandleEvent(const std::function<void()>& event);

    virtual Answer ShowBox(const Box& box) = 0;
    virtual void ShowPointer(Pointer pointer) = 0;

    // Native windows. `form` is loaded, except for CreateNative and DestroyNative.
    virtual void CreateNative(Form& form) = 0;
    virtual void DestroyNative(Form& form) = 0;
    // Form_Resize, then the window appears in front of its owner.
    virtual void ShowNative(Form& form) = 0;
    virtual void HideNative(Form& form) = 0;
    virtual void BringToFront(Form& form) = 0;
    virtual void SetOwner(Form& form, Form& owner) = 0;
    // Whether the user can reach the window: neither a modal window nor a box is in front of it.
    virtual bool TakesInput(const Form& form) const = 0;
    virtual void SetTakesInput(Form& form, bool takes_input) = 0;
    // Gives the keyboard to the window.
    virtual void ActivateNative(Form& form) = 0;
    // The visible window that takes input and is in front of the others; nullptr for none.
    virtual Form* FrontWindow() const = 0;

    // Has the message loop call RunActivation once, however often this is called before.
    virtual void RequestActivation(Form& form) = 0;
    // Waits for one event and handles it. False when there is none to wait for.
    virtual bool HandleNextEvent() = 0;
    // Makes a HandleNextEvent that waits return, so that its caller checks its condition again.
    virtual void WakeLoops() = 0;
    // Paints what waits to be painted. True when Esc has been pressed.
    virtual bool ServePainting() = 0;
    // Answers every box that is shown with Cancel or No.
    virtual void DismissBoxes() = 0;

  private:
    struct ModalWindow {
        Form* form;
        int handlers_before;  // that were running when the window was shown
        std::optional<UnloadMode> unload{};
        std::vector<Form*> blocked{};  // take no input meanwhile
    };
    ModalWindow* FindModal(const Form& form);
    bool IsLoaded(const Form* form) const;
    bool DeferUnload(const Form& form, UnloadMode mode);
    void ShowLoaded(Form& form);
    void BeginModal(Form& form);
    std::optional<UnloadMode> EndModal();
    void Remove(Form& form);
    bool PressCancelOrOk(Form& form);
    void LeaveSession();

    std::vector<Form*> windows_;
    std::vector<ModalWindow> modal_;  // the front one last
    std::vector<Form*> unloading_;
    const Form* last_active_ = nullptr;  // only compared
    Pointer pointer_ = Pointer::kDefault;
    int running_events_ = 0;
    bool only_paints_ = false;
    bool session_ends_ = false;
};

}  // namespace vantrel::forms
