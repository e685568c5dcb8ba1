// The real window behind a form: made from the dialog resource of the form's name, with a page for
// each tab (resources "Frm_Mainmenu_0" ...), and a binder for every control. It only passes on what
// Windows reports; what happens then is decided by the form, its controls and the desktop.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "forms/form.h"
#include "forms/window_manager.h"
#include "views/win32/binder.h"
#include "views/win32/layout.h"
#include "views/win32/owned.h"
#include "views/win32/taskbar.h"

namespace vantrel::views {

class WindowView : public forms::ControlView {
  public:
    // Throws vantrel::Error when a resource or a real control is missing.
    WindowView(forms::WindowManager& manager, Taskbar& taskbar, forms::Form& form);
    ~WindowView() override;
    WindowView(const WindowView&) = delete;
    WindowView& operator=(const WindowView&) = delete;

    HWND handle() const { return window_; }
    // The form while the window is there, otherwise nullptr.
    forms::Form* form() const { return form_; }

    // Form_Resize, then shows the window, centred over its owner or on the screen.
    void Show();
    void Hide();
    void SetOwner(HWND owner);
    // Lets go of the form and its controls, and destroys the window.
    void Destroy();
    // Form_Activate comes from the message loop.
    void PostActivation();
    // A message for this window or something in it, before Windows sees it; true when that was all.
    bool PreTranslate(MSG& message);
    // Shows what its binders have put off.
    void Flush();
    void TrackFocus();

    // For binders.
    bool HasBoxes() const { return form_ && !form_->Boxes().empty(); }
    void ShowPage(int page);
    void SetMenuText(int id, const std::string& text);
    void EnableMenuEntry(int id, bool enabled);
    void PopUpMenu(int id);
    // The panel that a control stands on and disappears with, if any.
    const forms::Control* ContainerOf(const forms::Control& control) const;
    void ContainerShown(const forms::Control& container);

    void Changed(forms::Aspect aspect) override;

  private:
    struct Page {
        HWND window;
        Layout layout;
    };

    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    INT_PTR Handle(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    INT_PTR HandleForTop(UINT message, WPARAM wparam, LPARAM lparam);
    bool ShowPointer(HWND over, WORD hit);
    INT_PTR Colors(HDC device, HWND control);
    void Command(int id, WORD code);
    void WantHelp();
    void Activate();
    void TellSize();
    void Resized();
    void PaintBoxes(HDC device) const;

    HWND MakeDialog(const wchar_t* name, HWND parent, Layout& layout);
    void MakePages();
    void LoadMenus();
    void MakeBinders();
    void MakeTooltips();
    void TakeDpi(int dpi, const RECT* suggested);
    void PlacePages();
    void Centre();
    HWND RealControl(int id) const;
    Binder* Find(int id) const;

    forms::WindowManager& manager_;
    Taskbar& taskbar_;
    forms::Form* form_;
    HWND window_ = nullptr;
    HWND tooltip_ = nullptr;
    Layout layout_;
    std::vector<Page> pages_;
    OwnedFont font_;
    OwnedIcon large_icon_, small_icon_;
    std::map<int, OwnedMenu> pop_ups_;
    std::vector<std::unique_ptr<Binder>> binders_;
    std::map<int, Binder*> by_id_;
    int dpi_ = USER_DEFAULT_SCREEN_DPI;
    bool activation_posted_ = false;
    bool help_key_held_ = false;
    bool help_wanted_ = false;  // the message that asks for it is on its way
};

}  // namespace vantrel::views
