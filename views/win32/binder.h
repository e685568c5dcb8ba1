// A binder connects one control object with one real control: changes of the object are shown on
// the screen, and the user's actions are passed to the object. One small class for each kind of
// control, created by MakeBinder. Used on the user-interface thread only.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <string>
#include <vector>

#include "forms/control.h"
#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/lists.h"
#include "views/win32/window_resources.h"

namespace vantrel::views {

// The window of a binder, as its binders use it.
class BinderWindow {
  public:
    virtual HWND handle() const = 0;
    // Whether the form draws boxes behind its controls.
    virtual bool HasBoxes() const = 0;
    virtual void ShowPage(int page) = 0;
    virtual void SetMenuText(int id, const std::string& text) = 0;
    virtual void EnableMenuEntry(int id, bool enabled) = 0;
    virtual void PopUpMenu(int id) = 0;
    // The panel that a control stands on and disappears with; nullptr for none.
    virtual const forms::Control* ContainerOf(const forms::Control& control) const = 0;
    virtual void ContainerShown(const forms::Control& container) = 0;

  protected:
    ~BinderWindow() = default;
};

class Binder : public forms::ControlView {
  public:
    // `handle` is the real control, nullptr for kinds that have none.
    Binder(BinderWindow& window, forms::Control& control, HWND handle, int id);
    ~Binder() override;
    Binder(const Binder&) = delete;
    Binder& operator=(const Binder&) = delete;

    HWND handle() const { return handle_; }
    int id() const { return id_; }
    forms::Control& control() const { return control_; }

    // Shows the complete object and follows its changes from then on.
    void Start();
    void Changed(forms::Aspect aspect) override;
    // Shows the changes that were deferred.
    void Flush();
    // Unbinds the object. Functions of the binder may still be on the stack: a handler that the
    // binder has called may destroy the window.
    void Release();

    // Reports of the real control: a WM_COMMAND code (also for a chosen menu entry), a WM_NOTIFY, a
    // request to paint, a click of the right button, a tick.
    virtual void Command(WORD) {}
    virtual void Notify(const NMHDR&) {}
    virtual void Draw(const DRAWITEMSTRUCT&) {}
    // Also the menu key and Shift+F10, whose menu opens at MenuPosition (inside the real control).
    virtual void RightClick() {}
    virtual POINT MenuPosition() const { return {}; }
    virtual void Tick() {}
    // Colours of a static text; nullptr leaves the system's.
    virtual HBRUSH Colors(HDC) { return nullptr; }
    // What the pointer shows: the given tool tip or our own, and below it the text of the control
    // if that is shown shortened.
    std::string Tip() const;
    // Fonts and pictures for another dpi. The real control has its new position already.
    virtual void Rescale(int dpi);

  protected:
    virtual void Show(forms::Aspect) {}
    // Whether an aspect may change thousands of times a second. It is then shown the next time that
    // the message queue is read, because nothing is painted before.
    virtual bool Defers(forms::Aspect) const { return false; }
    // The full text of a control that shows it shortened; "" for any other.
    virtual std::string ShortenedText() const { return ""; }
    int Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
        return static_cast<int>(SendMessageW(handle_, message, wparam, lparam));
    }
    bool ShouldShow() const;
    // Paints the control's area of the window, what is behind the control first.
    void RedrawArea() const;

    BinderWindow& window_;

  private:
    void Enable(bool enabled);
    void ShowOrHide(bool show);
    void MoveFocusAway();

    forms::Control& control_;
    HWND handle_;
    int id_;
    OwnedFont font_;
    std::vector<forms::Aspect> deferred_;
    bool released_ = false;
};

// A binder that knows its control's class.
template <typename Object, typename Base = Binder>
class BinderOf : public Base {
  public:
    using Base::Base;

  protected:
    Object& object() const { return static_cast<Object&>(this->control()); }
};

// Where the menu of an entry opens: below the entry's left half, but inside `list`. Both are in the
// list's coordinates.
POINT BelowInside(HWND list, const RECT& entry);

// The binder for the control's kind. Throws vantrel::Error when the window lacks the real control.
std::unique_ptr<Binder> MakeBinder(BinderWindow& window, forms::Control& control, HWND handle,
                                   int id);

// Makes the binder of one kind of control, for MakeBinder.
using BinderMaker = std::unique_ptr<Binder> (*)(BinderWindow&, forms::Control&, HWND, int);
template <typename T>
std::unique_ptr<Binder> NewBinder(BinderWindow& window, forms::Control& control, HWND handle,
                                  int id) {
    return std::make_unique<T>(window, control, handle, id);
}
extern const BinderMaker kLabelBinder, kButtonBinder, kCheckBoxBinder, kFrameBinder, kPictureBinder,
    kStatusBarBinder, kProgressBarBinder, kPanelBinder, kAnimationBinder, kTextBoxBinder,
    kTabsBinder, kComboBoxBinder, kListBoxBinder, kDriveListBinder, kFolderListBinder,
    kFileListBinder, kTreeBinder, kMenuBinder, kTimerBinder;

}  // namespace vantrel::views
