// The input box: a prompt, a line of text, OK and Cancel.
#include <string>

#include "views/win32/fonts.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"
#include "views/win32/win32_desktop.h"

namespace vantrel::views {

namespace {

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
        if (!box || message != WM_COMMAND) return FALSE;
        const WORD id = LOWORD(wparam);
        if (id != IDOK && id != IDCANCEL) return FALSE;
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

}  // namespace

std::string Win32Desktop::Input(const std::string& prompt, const std::string& title,
                                const std::string& default_text) {
    return InputBox(prompt, title, default_text).Run(BoxOwner());
}

}  // namespace vantrel::views
