// The message box, the input box and the system's dialog for choosing a file.
#include "views/win32/win32_desktop.h"

#include <windows.h>
// Needs the types of windows.h.
#include <commdlg.h>

#include <algorithm>
#include <optional>
#include <string>

#include "common/product.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"
#include "views/win32/window_resources.h"

namespace vantrel::views {

using forms::Answer;
using forms::Buttons;
using forms::Icon;

namespace {

// A prompt, a line of text, OK and Cancel.
class InputBox {
  public:
    InputBox(const std::string& prompt, const std::string& title, const std::string& default_text)
        : layout_(L"Frm_Input"), prompt_(prompt), title_(title), text_(default_text) {}

    std::string Run(HWND owner) {
        const INT_PTR pressed = DialogBoxParamW(GetModuleHandleW(nullptr), L"Frm_Input", owner,
                                                Procedure, reinterpret_cast<LPARAM>(this));
        return pressed == IDOK ? text_ : std::string();
    }

  private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        if (message == WM_INITDIALOG) {
            SetWindowLongPtrW(window, DWLP_USER, lparam);
            reinterpret_cast<InputBox*>(lparam)->Prepare(window);
            return FALSE;
        }
        auto* box = reinterpret_cast<InputBox*>(GetWindowLongPtrW(window, DWLP_USER));
        if (!box || message != WM_COMMAND) {
            return FALSE;
        }
        const WORD id = LOWORD(wparam);
        if (id != IDOK && id != IDCANCEL) {
            return FALSE;
        }
        box->text_ = TextOf(GetDlgItem(window, Frm_Input_Fld_Answer));
        EndDialog(window, id);
        return TRUE;
    }

    void Prepare(HWND window) {
        layout_.Attach(window);
        font_ = WindowFont(static_cast<int>(GetDpiForWindow(window)));
        const SIZE inside = layout_.Apply(font_.get());
        SetTextOf(window, title_);
        SetTextOf(GetDlgItem(window, Frm_Input_Lbl_Prompt), prompt_);
        const HWND answer = GetDlgItem(window, Frm_Input_Fld_Answer);
        SetTextOf(answer, text_);
        SendMessageW(answer, EM_SETSEL, 0, -1);
        SetFocus(answer);
        Place(window, inside);
    }

    static void Place(HWND window, SIZE inside) {
        RECT own{0, 0, inside.cx, inside.cy};
        AdjustWindowRectExForDpi(&own, static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE)),
                                 FALSE, static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE)),
                                 GetDpiForWindow(window));
        RECT over{};
        const HWND owner = GetWindow(window, GW_OWNER);
        GetWindowRect(owner ? owner : GetDesktopWindow(), &over);
        const int width = own.right - own.left;
        const int height = own.bottom - own.top;
        SetWindowPos(window, nullptr, (over.left + over.right - width) / 2,
                     (over.top + over.bottom - height) / 2, width, height, SWP_NOZORDER);
    }

    Layout layout_;
    OwnedFont font_;
    std::string prompt_, title_, text_;
};

// Some systems measure the text of a message box less wide than they draw it, and clip its end.
// While this lives, the next box that opens on this thread is widened where its text needs it.
class BoxFitting {
  public:
    BoxFitting() : hook_(SetWindowsHookExW(WH_CBT, Opening, nullptr, GetCurrentThreadId())) {}
    ~BoxFitting() { UnhookWindowsHookEx(hook_); }
    BoxFitting(const BoxFitting&) = delete;
    BoxFitting& operator=(const BoxFitting&) = delete;

  private:
    static LRESULT CALLBACK Opening(int code, WPARAM wparam, LPARAM lparam) {
        const auto box = reinterpret_cast<HWND>(wparam);
        if (code == HCBT_ACTIVATE) {
            if (const HWND text = GetDlgItem(box, kBoxText)) {
                Fit(box, text);
            }
        }
        return CallNextHookEx(nullptr, code, wparam, lparam);
    }

    static void Fit(HWND box, HWND text) {
        RECT inside{};
        GetClientRect(text, &inside);
        const int slack = TextDevice(text).WidthOf(L"W");
        int missing = 0;
        while (missing < 4 * slack && !HasSpace(text, inside, missing, slack)) {
            ++missing;
        }
        if (missing == 0) {
            return;
        }
        for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            if ((SendMessageW(child, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0) {
                Move(box, child, missing / 2, 0);
            }
        }
        Move(box, text, 0, missing);
        Move(nullptr, box, -missing / 2, missing);
    }

    // Whether the text, in lines that end `slack` before the right edge, has all its lines in view.
    static bool HasSpace(HWND text, const RECT& inside, int wider, int slack) {
        const HDC device = GetDC(text);
        const HGDIOBJ font_before =
            SelectObject(device, reinterpret_cast<HGDIOBJ>(SendMessageW(text, WM_GETFONT, 0, 0)));
        RECT needed{0, 0, inside.right + wider, 0};
        DrawTextW(device, Wide(TextOf(text)).c_str(), -1, &needed,
                  DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX | DT_CALCRECT);
        SelectObject(device, font_before);
        ReleaseDC(text, device);
        return needed.bottom <= inside.bottom && needed.right + slack <= inside.right + wider;
    }

    static void Move(HWND parent, HWND window, int right, int wider) {
        RECT area{};
        GetWindowRect(window, &area);
        MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&area), 2);
        SetWindowPos(window, nullptr, area.left + right, area.top, area.right - area.left + wider,
                     area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }

    static constexpr int kBoxText = 0xFFFF;  // the number of a message box's text
    HHOOK hook_;
};

UINT StyleOf(const forms::Box& box) {
    UINT style = box.right_aligned ? MB_RIGHT : 0U;
    switch (box.buttons) {
        case Buttons::kOk:
            style |= MB_OK;
            break;
        case Buttons::kYesNo:
            style |= MB_YESNO;
            break;
        case Buttons::kRetryCancel:
            style |= MB_RETRYCANCEL;
            break;
        case Buttons::kRetryContinueCancel:
            style |= MB_CANCELTRYCONTINUE | MB_DEFBUTTON2;
            break;
        case Buttons::kSearchCancel:
            style |= MB_OKCANCEL;
            break;
    }
    switch (box.icon) {
        case Icon::kNone:
            break;
        case Icon::kCritical:
            style |= MB_ICONERROR;
            break;
        case Icon::kQuestion:
            style |= MB_ICONQUESTION;
            break;
        case Icon::kExclamation:
            style |= MB_ICONEXCLAMATION;
            break;
        case Icon::kInformation:
            style |= MB_ICONINFORMATION;
            break;
    }
    if (box.default_button == 2) {
        style |= MB_DEFBUTTON2;
    }
    return style;
}

// Renames buttons of message boxes of this thread: OK to Search, Try Again to Retry.
class RenamedButtons {
  public:
    RenamedButtons() : hook_(SetWindowsHookExW(WH_CBT, &OnEvent, nullptr, GetCurrentThreadId())) {}
    ~RenamedButtons() { UnhookWindowsHookEx(hook_); }
    RenamedButtons(const RenamedButtons&) = delete;
    RenamedButtons& operator=(const RenamedButtons&) = delete;

  private:
    static LRESULT CALLBACK OnEvent(int code, WPARAM wparam, LPARAM lparam) {
        if (code == HCBT_ACTIVATE) {
            const HWND box = reinterpret_cast<HWND>(wparam);
            if (GetDlgItem(box, IDCANCEL) != nullptr) {
                SetDlgItemTextW(box, IDOK, L"&Search");
                SetDlgItemTextW(box, IDTRYAGAIN, L"&Retry");
            }
        }
        return CallNextHookEx(nullptr, code, wparam, lparam);
    }

    HHOOK hook_;
};

Answer AnswerOf(Buttons buttons, int pressed) {
    if (buttons == Buttons::kSearchCancel) {
        return pressed == IDOK ? Answer::kSearch : Answer::kCancel;
    }
    switch (pressed) {
        case IDYES:
            return Answer::kYes;
        case IDNO:
            return Answer::kNo;
        case IDCONTINUE:
            return Answer::kContinue;
        case IDRETRY:
        case IDTRYAGAIN:
            return Answer::kRetry;
        case IDCANCEL:
            return Answer::kCancel;
        case 0:
            return Answer::kNotShown;
        default:
            return Answer::kOk;
    }
}

}  // namespace

Answer Win32Desktop::ShowBox(const forms::Box& box) {
    const std::wstring title = Wide(box.title.empty() ? product::kName : box.title);
    const HWND owner = BoxOwner();
    const UINT style = StyleOf(box) | (owner ? 0U : static_cast<UINT>(MB_TASKMODAL));
    const BoxFitting fitting;
    std::optional<RenamedButtons> renamed;
    if (box.buttons == Buttons::kSearchCancel || box.buttons == Buttons::kRetryContinueCancel) {
        renamed.emplace();
    }
    return AnswerOf(box.buttons, MessageBoxW(owner, Wide(box.text).c_str(), title.c_str(), style));
}

std::string Win32Desktop::Input(const std::string& prompt, const std::string& title,
                                const std::string& default_text) {
    return InputBox(prompt, title, default_text).Run(BoxOwner());
}

std::string Win32Desktop::OpenFile(const std::string& title, const std::string& filter,
                                   const std::string& start) {
    constexpr std::size_t kMaxPath = 32768;  // UTF-16 units, the limit of the system
    std::wstring path = Wide(start);
    path.resize(kMaxPath);
    const std::wstring title_text = Wide(title);
    std::wstring filters = Wide(filter);
    std::replace(filters.begin(), filters.end(), L'|', L'\0');
    filters += L'\0';
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = BoxOwner();
    dialog.lpstrFilter = filters.c_str();
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrTitle = title_text.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
    if (!GetOpenFileNameW(&dialog)) {
        return "";
    }
    path.resize(path.find(L'\0'));
    return Utf8(path);
}

}  // namespace vantrel::views
