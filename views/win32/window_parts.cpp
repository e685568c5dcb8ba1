// Creation of a window: its dialogs, binders and tooltips.
#include <windows.h>

#include <oleacc.h>
#include <uxtheme.h>

#include <algorithm>

#include "common/error.h"
#include "forms/controls.h"
#include "views/win32/own_texts.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"
#include "views/win32/window_resources.h"
#include "views/win32/window_view.h"

namespace vantrel::views {

namespace {

HMODULE Program() { return GetModuleHandleW(nullptr); }

BOOL CALLBACK SendSystemColorsChanged(HWND control, LPARAM) {
    SendMessageW(control, WM_SYSCOLORCHANGE, 0, 0);
    return TRUE;
}

// Newer systems scale dialogs by themselves; these windows do it better, with another typeface.
void KeepSystemFromScaling(HWND dialog) {
    using Setter = BOOL(WINAPI*)(HWND, int, int);
    constexpr int kDisableAll = 1;
    const auto setter = reinterpret_cast<Setter>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetDialogDpiChangeBehavior")));
    if (setter) {
        setter(dialog, kDisableAll, kDisableAll);
    }
}

}  // namespace

WindowView::WindowView(forms::WindowManager& manager, Taskbar& taskbar, forms::Form& form)
    : manager_(manager), taskbar_(taskbar), form_(&form), layout_(Wide(form.name()).c_str()) {
    window_ = MakeDialog(Wide(form.name()).c_str(), nullptr, layout_);
    if (!form.Caption().empty()) {
        SetTextOf(window_, form.Caption());
    }
    try {
        MakePages();
        LoadMenus();
        MakeBinders();
        MakeTooltips();
        NameControls();
        TakeDpi(static_cast<int>(GetDpiForWindow(window_)), nullptr);
    } catch (...) {
        Destroy();
        throw;
    }
    form.Bind(this);
}

WindowView::~WindowView() { Destroy(); }

HWND WindowView::MakeDialog(const wchar_t* name, HWND parent, Layout& layout) {
    const HWND dialog =
        CreateDialogParamW(Program(), name, parent, Procedure, reinterpret_cast<LPARAM>(this));
    if (!dialog) {
        throw Error(error_number::kOutOfMemory, "WindowView",
                    "The window " + Utf8(name) + " cannot be made");
    }
    KeepSystemFromScaling(dialog);
    layout.Attach(dialog);
    return dialog;
}

void WindowView::MakePages() {
    const int id = ControlId(form_->name(), "TAB_Backup");
    if (!id || !GetDlgItem(window_, id)) {
        return;
    }
    const auto* tabs = static_cast<forms::Tabs*>(form_->Find("TAB_Backup"));
    for (std::size_t i = 0; tabs && i < tabs->Captions().size(); ++i) {
        const std::wstring name = Wide(form_->name() + "_" + std::to_string(i));
        Page page{nullptr, Layout(name.c_str())};
        page.window = MakeDialog(name.c_str(), window_, page.layout);
        EnableThemeDialogTexture(page.window, ETDT_ENABLETAB);
        pages_.push_back(std::move(page));
    }
}

HWND WindowView::RealControl(int id) const {
    if (HWND control = GetDlgItem(window_, id)) {
        return control;
    }
    for (const Page& page : pages_) {
        if (HWND control = GetDlgItem(page.window, id)) {
            return control;
        }
    }
    return nullptr;
}

void WindowView::MakeBinders() {
    for (forms::Control* control : form_->controls()) {
        const int id = ControlId(form_->name(), control->name());
        binders_.push_back(MakeBinder(*this, *control, id ? RealControl(id) : nullptr, id));
        if (id) {
            by_id_[id] = binders_.back().get();
        }
    }
    for (const auto& binder : binders_) {
        binder->Start();
    }
}

void WindowView::MakeTooltips() {
    tooltips_.Attach(window_);
    for (const auto& binder : binders_) {
        if (binder->handle()) {
            tooltips_.Add(binder->handle());
        }
    }
}

// The system names a control by its text or by the label before it, and takes what the program
// draws for text. Lists, trees and bars show no text of their own: it is their name, too.
void WindowView::NameControls() {
    using forms::Kind;
    for (const auto& binder : binders_) {
        const Kind kind = binder->control().kind();
        const std::string name = OwnName(binder->id());
        if (binder->handle() && !name.empty()) {
            annotations_.SetName(binder->handle(), name);
            if (kind == Kind::kListBox || kind == Kind::kFolderList || kind == Kind::kFileList ||
                kind == Kind::kTree || kind == Kind::kProgressBar) {
                SetTextOf(binder->handle(), name);
            }
        }
        if (kind == Kind::kPanel) {
            annotations_.SetRole(binder->handle(), ROLE_SYSTEM_PROGRESSBAR);
        } else if (kind == Kind::kPicture) {
            annotations_.SetRole(binder->handle(), ROLE_SYSTEM_GRAPHIC);
        }
    }
}

// Windows sends it to top windows only, and common controls keep brushes of their own.
void WindowView::SystemColorsChanged() {
    EnumChildWindows(window_, SendSystemColorsChanged, 0);
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void WindowView::ShowPage(int page) {
    const bool page_had_focus = std::ranges::any_of(
        pages_, [](const Page& each) { return IsChild(each.window, GetFocus()) != FALSE; });
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        if (static_cast<int>(i) != page) {
            ShowWindow(pages_[i].window, SW_HIDE);
        }
    }
    if (page < static_cast<int>(pages_.size())) {
        ShowWindow(pages_[static_cast<std::size_t>(page)].window, SW_SHOWNA);
    }
    if (page_had_focus) {
        SetFocus(GetDlgItem(window_, TAB_Backup));
    }
    TrackFocus();
}

// The dialog manager would go back to the control that had the keyboard when the window was left,
// even if a handler has moved it meanwhile. FALSE when it is to choose one.
INT_PTR WindowView::RestoreFocus() {
    for (const auto& binder : binders_) {
        if (&binder->control() == form_->ActiveControl() && IsWindowVisible(binder->handle()) &&
            IsWindowEnabled(binder->handle())) {
            SetFocus(binder->handle());
            return TRUE;
        }
    }
    return FALSE;
}

// The dialog manager marks buttons as the keyboard moves, but not when a program moves it, across
// the pages of the tabs, or to another window.
void WindowView::MarkDefaultButton() {
    HWND marked = nullptr;
    if (focus_) {
        const LRESULT kind = SendMessageW(focus_, WM_GETDLGCODE, 0, 0);
        const LRESULT id = SendMessageW(window_, DM_GETDEFID, 0, 0);
        if (kind & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) {
            marked = focus_;
        } else if (HIWORD(id) == DC_HASDEFID) {
            marked = GetDlgItem(window_, LOWORD(id));
        }
    }
    for (const auto& binder : binders_) {
        if (binder->control().kind() != forms::Kind::kButton) {
            continue;
        }
        const HWND button = binder->handle();
        const LONG_PTR style = button == marked ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
        if ((GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) != style) {
            SendMessageW(button, BM_SETSTYLE, static_cast<WPARAM>(style), TRUE);
        }
    }
}

const forms::Control* WindowView::ContainerOf(const forms::Control& control) const {
    if (!form_ || control.name() != "SSP_ProgressSecure") {
        return nullptr;
    }
    return form_->Find("SSP_PleaseWait");
}

void WindowView::ContainerShown(const forms::Control& container) {
    for (const auto& binder : binders_) {
        if (ContainerOf(binder->control()) == &container) {
            binder->Changed(forms::Aspect::kVisible);
        }
    }
}

}  // namespace vantrel::views
