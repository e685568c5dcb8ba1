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

// Where the menu of an entry opens: below the entry's left half, but inside `list`. Both are in the
// list's coordinates.
POINT BelowInside(HWND list, const RECT& entry);

// The binder for the control's kind. Throws vantrel::Error when the window lacks the real control.
std::unique_ptr<Binder> MakeBinder(BinderWindow& window, forms::Control& control, HWND handle,
                                   int id);

// Binders of each kind of control, for MakeBinder.
using OwnedBinder = std::unique_ptr<Binder>;
OwnedBinder BindLabel(BinderWindow& window, forms::Label& label, HWND handle, int id);
OwnedBinder BindButton(BinderWindow& window, forms::Button& button, HWND handle, int id);
OwnedBinder BindCheckBox(BinderWindow& window, forms::CheckBox& box, HWND handle, int id);
OwnedBinder BindFrame(BinderWindow& window, forms::Frame& frame, HWND handle, int id);
OwnedBinder BindPicture(BinderWindow& window, forms::Picture& picture, HWND handle, int id);
OwnedBinder BindStatusBar(BinderWindow& window, forms::StatusBar& bar, HWND handle, int id);
OwnedBinder BindProgressBar(BinderWindow& window, forms::ProgressBar& bar, HWND handle, int id);
OwnedBinder BindPanel(BinderWindow& window, forms::Panel& panel, HWND handle, int id);
OwnedBinder BindAnimation(BinderWindow& window, forms::Animation& clip, HWND handle, int id);
OwnedBinder BindTextBox(BinderWindow& window, forms::TextBox& box, HWND handle, int id);
OwnedBinder BindTabs(BinderWindow& window, forms::Tabs& tabs, HWND handle, int id);
OwnedBinder BindComboBox(BinderWindow& window, forms::ComboBox& combo, HWND handle, int id);
OwnedBinder BindListBox(BinderWindow& window, forms::ListBox& list, HWND handle, int id);
OwnedBinder BindDriveList(BinderWindow& window, forms::DriveList& list, HWND handle, int id);
OwnedBinder BindFolderList(BinderWindow& window, forms::FolderList& list, HWND handle, int id);
OwnedBinder BindFileList(BinderWindow& window, forms::FileList& list, HWND handle, int id);
OwnedBinder BindTree(BinderWindow& window, forms::Tree& tree, HWND handle, int id);
OwnedBinder BindMenu(BinderWindow& window, forms::MenuItem& item, int id);
OwnedBinder BindTimer(BinderWindow& window, forms::Timer& timer);

}  // namespace vantrel::views
