// The message box, the input box and the system's dialog for choosing a file.
#include "views/win32/win32_desktop.h"

#include <windows.h>
// Needs the types of windows.h.
#include <commdlg.h>

#include <algorithm>
#include <string>

#include "common/product.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"
#include "views/win32/window_resources.h"

namespace vantrel::views {

using forms::Answer;
using forms::Buttons;

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
        layout_.Resize(0, 0);
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

// While this lives, the next message box that opens on this thread gets the captions of its
// buttons: Search for OK, Retry for Try Again. It is widened where its text needs it: some systems
// measure the text less wide than they draw it, and clip its end.
class OpeningBox {
  public:
    OpeningBox() : hook_(SetWindowsHookExW(WH_CBT, OnEvent, nullptr, GetCurrentThreadId())) {}
    ~OpeningBox() { UnhookWindowsHookEx(hook_); }
    OpeningBox(const OpeningBox&) = delete;
    OpeningBox& operator=(const OpeningBox&) = delete;

  private:
    static LRESULT CALLBACK OnEvent(int code, WPARAM wparam, LPARAM lparam) {
        const auto box = reinterpret_cast<HWND>(wparam);
        const HWND text = code == HCBT_ACTIVATE ? GetDlgItem(box, kBoxText) : nullptr;
        if (text) {
            Fit(box, text);
            RenameButtons(box);
        }
        return CallNextHookEx(nullptr, code, wparam, lparam);
    }

    // OK with Cancel is a search; a box with OK only has no other button.
    static void RenameButtons(HWND box) {
        if (GetDlgItem(box, IDCANCEL)) {
            SetDlgItemTextW(box, IDOK, L"&Search");
            SetDlgItemTextW(box, IDTRYAGAIN, L"&Retry");
        }
    }

    static void Fit(HWND box, HWND text) {
        RECT inside{};
        GetClientRect(text, &inside);
        const int missing = MissingWidth(text, inside);
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

    // By how much the area must become wider so that all lines of the text are in it and end a
    // letter's width before its right edge.
    static int MissingWidth(HWND text, const RECT& inside) {
        const TextDevice device(text);
        const int slack = device.WidthOf(L"W");
        const std::wstring words = Wide(TextOf(text));
        for (int missing = 0; missing < 4 * slack; ++missing) {
            const SIZE needed = device.SizeInLines(words, inside.right + missing);
            if (needed.cy <= inside.bottom && needed.cx + slack <= inside.right + missing) {
                return missing;
            }
        }
        return 4 * slack;
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

// In the order of the enumerators. A box may have to report that no memory is left: no map.
constexpr UINT kButtonStyles[] = {MB_OK, MB_YESNO, MB_RETRYCANCEL,
                                  MB_CANCELTRYCONTINUE | MB_DEFBUTTON2, MB_OKCANCEL};
constexpr UINT kIconStyles[] = {0, MB_ICONERROR, MB_ICONQUESTION, MB_ICONEXCLAMATION,
                                MB_ICONINFORMATION};

UINT StyleOf(const forms::Box& box) {
    UINT style = kButtonStyles[static_cast<std::size_t>(box.buttons)] |
                 kIconStyles[static_cast<std::size_t>(box.icon)];
    if (box.right_aligned) {
        style |= MB_RIGHT;
    }
    if (box.default_button == 2) {
        style |= MB_DEFBUTTON2;
    }
    return style;
}

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
    Flush();
    const std::wstring title = Wide(box.title.empty() ? product::kName : box.title);
    const HWND owner = BoxOwner();
    const UINT style = StyleOf(box) | (owner ? 0U : static_cast<UINT>(MB_TASKMODAL));
    const OpeningBox opening;
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
