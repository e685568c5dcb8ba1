// The real window behind a form: created from the dialog resource of the form's name, with a page
// for each tab (resources "Frm_Mainmenu_0" ...), and a binder for every control. It only forwards
// the messages of Windows to the form, its controls and the window manager, which decide. Used on
// the user-interface thread only.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "forms/form.h"
#include "forms/window_manager.h"
#include "views/win32/binder.h"
#include "views/win32/com_services.h"
#include "views/win32/layout.h"
#include "views/win32/tooltips.h"

namespace vantrel::views {

class WindowView : public forms::ControlView, public BinderWindow {
  public:
    // Throws vantrel::Error when a resource or a real control is missing.
    WindowView(forms::WindowManager& manager, Taskbar& taskbar, forms::Form& form);
    ~WindowView() override;
    WindowView(const WindowView&) = delete;
    WindowView& operator=(const WindowView&) = delete;

    HWND handle() const override { return window_; }
    // The form while the window is there, otherwise nullptr.
    forms::Form* form() const { return form_; }

    // Form_Resize, then shows the window: in the size that it had when it was closed last, if it
    // can be resized; over its owner, at its last position, or in the middle of the screen.
    void Show();
    void Hide();
    void SetOwner(HWND owner);
    // Unbinds the form and its controls, and destroys the window.
    void Destroy();
    // Has the message loop run Form_Activate.
    void PostActivation();
    // Handles a message for this window or one of its controls before Windows does. True when the
    // message needs no further handling.
    bool PreTranslate(MSG& message);
    // Shows the changes that its binders have deferred.
    void Flush();
    void TrackFocus();

    // BinderWindow.
    bool HasBoxes() const override { return form_ && !form_->Boxes().empty(); }
    void ShowPage(int page) override;
    void SetMenuText(int id, const std::string& text) override;
    void EnableMenuEntry(int id, bool enabled) override;
    void PopUpMenu(int id) override;
    const forms::Control* ContainerOf(const forms::Control& control) const override;
    void ContainerShown(const forms::Control& container) override;

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
    void ContextMenu(HWND control, LPARAM where);
    bool Defer(HWND window, UINT message, WPARAM wparam, LPARAM lparam) const;
    INT_PTR RestoreFocus();
    void WantHelp();
    void Activate();
    void PaintBoxes(HDC device) const;

    HWND MakeDialog(const wchar_t* name, HWND parent, Layout& layout);
    void MakePages();
    void LoadMenus();
    void MakeBinders();
    void MakeTooltips();
    void NameControls();
    void SystemColorsChanged();
    // Gives the look of the default button to the one that Enter presses, if there is one.
    void MarkDefaultButton();
    HWND RealControl(int id) const;
    Binder* Find(int id) const;

    // Size and position: window_size.cpp.
    bool IsResizable() const;
    // `suggested`: the area that the system wants for the window, nullptr while it is made.
    void TakeDpi(int dpi, const RECT* suggested);
    void TakeSizeOfDpi(const RECT* suggested);
    void LoadIcons();
    SIZE FrameSize() const;
    void SetInsideSize(SIZE inside) const;
    POINT MinSize() const;
    // Moves the controls to their positions for the window's size.
    void Arrange();
    void PlacePages();
    void MarkSize();
    void Resized();
    // True when the window was maximized.
    bool Place();
    void TrackPlacement();
    void RememberPlacement() const;

    forms::WindowManager& manager_;
    Taskbar& taskbar_;
    forms::Form* form_;
    HWND window_ = nullptr;
    Tooltips tooltips_;
    Annotations annotations_;
    HWND focus_ = nullptr;          // has the keyboard; nullptr while another window is in front
    std::optional<POINT> menu_at_;  // on the screen, while a menu is asked for
    Layout layout_;
    std::vector<Page> pages_;
    OwnedFont font_;
    OwnedIcon large_icon_, small_icon_;
    std::map<int, OwnedMenu> pop_ups_;
    std::vector<std::unique_ptr<Binder>> binders_;
    std::map<int, Binder*> by_id_;
    int dpi_ = USER_DEFAULT_SCREEN_DPI;
    SIZE designed_inside_{};  // pixels at dpi_
    SIZE extra_{};            // what the inside is larger than that
    forms::Area normal_{};    // the window while it is neither maximized nor minimized
    bool sizing_ = false;     // the controls are moved once the window has its size
    bool shown_ = false;
    bool activation_posted_ = false;
    bool help_key_held_ = false;
    bool help_wanted_ = false;  // the message that opens the help is posted
};

}  // namespace vantrel::views
