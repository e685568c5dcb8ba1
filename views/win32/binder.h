// A binder ties one control object to one real control, both ways: what the object becomes, the
// screen shows; what the user does, the object is told. One small class per kind of control, made
// by MakeBinder. Used on the user-interface thread only.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <vector>

#include "forms/control.h"
#include "views/win32/fonts.h"

namespace vantrel::views {

class WindowView;

class Binder : public forms::ControlView {
  public:
    // `handle` is the real control, nullptr for kinds that have none.
    Binder(WindowView& window, forms::Control& control, HWND handle, int id);
    ~Binder() override;
    Binder(const Binder&) = delete;
    Binder& operator=(const Binder&) = delete;

    HWND handle() const { return handle_; }
    int id() const { return id_; }
    forms::Control& control() const { return control_; }

    // Brings the whole object to the screen and follows it from then on.
    void Start();
    void Changed(forms::Aspect aspect) override;
    // Shows what has been put off.
    void Flush();
    // Lets go of the object. The binder itself may still be at work then: a handler that it has
    // called may take the window away.
    void Release();

    // What the real control reports: a WM_COMMAND code, a WM_NOTIFY, a wish to be painted, a click
    // of the right button, a tick, a chosen menu entry.
    virtual void Command(WORD) {}
    virtual void Notify(const NMHDR&) {}
    virtual void Draw(const DRAWITEMSTRUCT&) {}
    virtual void RightClick() {}
    virtual void Tick() {}
    // Colours of a static text; nullptr leaves the system's.
    virtual HBRUSH Colors(HDC) { return nullptr; }
    // Fonts and pictures for another dpi; the real control has its new place already.
    virtual void Rescale(int dpi);

  protected:
    virtual void Show(forms::Aspect) {}
    // Whether an aspect may change thousands of times a second: it is then shown when the message
    // queue is looked at next, which is when anybody could see it.
    virtual bool PutsOff(forms::Aspect) const { return false; }
    bool ShouldShow() const;

    WindowView& window_;

  private:
    void Enable(bool enabled);
    void ShowOrHide(bool show);
    void MoveFocusAway();

    forms::Control& control_;
    HWND handle_;
    int id_;
    OwnedFont font_;
    std::vector<forms::Aspect> put_off_;
    bool released_ = false;
};

// The binder for the control's kind. Throws vantrel::Error when the window lacks the real control.
std::unique_ptr<Binder> MakeBinder(WindowView& window, forms::Control& control, HWND handle,
                                   int id);

}  // namespace vantrel::views
