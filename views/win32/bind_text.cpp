#include <algorithm>

#include "views/win32/binder.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

constexpr WPARAM kSelectAllKey = 'A';
constexpr WPARAM kControlA = 1;  // what the keyboard makes of it, too

// What edit fields of every system and comctl32 do not do by themselves: Ctrl+A marks everything,
// and entering by Tab does not select the complete file, which the next key would replace.
LRESULT CALLBACK EditProcedure(HWND edit, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                               DWORD_PTR multi_line) {
    switch (message) {
        case WM_KEYDOWN:
            if (wparam != kSelectAllKey || GetKeyState(VK_CONTROL) >= 0 ||
                GetKeyState(VK_MENU) < 0) {
                break;
            }
            SendMessageW(edit, EM_SETSEL, 0, -1);
            return 0;
        case WM_CHAR:
            if (wparam == kControlA) {
                return 0;
            }
            break;
        case WM_GETDLGCODE: {
            const LRESULT code = DefSubclassProc(edit, message, wparam, lparam);
            return multi_line ? code & ~static_cast<LRESULT>(DLGC_HASSETSEL) : code;
        }
        case WM_NCDESTROY:
            RemoveWindowSubclass(edit, EditProcedure, 0);
            break;
        default:
            break;
    }
    return DefSubclassProc(edit, message, wparam, lparam);
}

// The number of complete lines that an edit field can show.
int LinesOnScreen(HWND edit) {
    RECT area{};
    SendMessageW(edit, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
    return std::max(1, static_cast<int>(area.bottom - area.top) / TextDevice(edit).LineHeight());
}

class TextBoxBinder : public BinderOf<forms::TextBox> {
  public:
    TextBoxBinder(BinderWindow& window, forms::Control& control, HWND handle, int id)
        : BinderOf(window, control, handle, id) {
        SendMessageW(handle, EM_SETLIMITTEXT, 0, 0);  // as much as there is memory for
        SetWindowSubclass(handle, EditProcedure, 0, object().MultiLine());
    }

    void Command(WORD code) override {
        if (code == EN_CHANGE && !showing_) {
            object().UserType(TextOf(handle()));
        }
    }
    // Read-only text has the same background as other text.
    HBRUSH Colors(HDC device) override {
        SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(device, GetSysColor(COLOR_WINDOW));
        return GetSysColorBrush(COLOR_WINDOW);
    }

  protected:
    // A file is added line by line; only the result is shown.
    bool Defers(Aspect aspect) const override { return aspect == Aspect::kAppended; }

    void Show(Aspect aspect) override {
        if (aspect == Aspect::kText || aspect == Aspect::kAppended) {
            showing_ = true;
            SetTextOf(handle(), object().Text());
            showing_ = false;
        } else if (aspect == Aspect::kScroll) {
            Flush();
            Scroll();
        }
    }

  private:
    // As far as there is text: some systems would scroll on until the last line is the only one.
    void Scroll() {
        const int first = static_cast<int>(SendMessageW(handle(), EM_GETFIRSTVISIBLELINE, 0, 0));
        const int lines = static_cast<int>(SendMessageW(handle(), EM_GETLINECOUNT, 0, 0));
        const int furthest = std::max(0, lines - LinesOnScreen(handle()) - first);
        SendMessageW(handle(), EM_LINESCROLL, 0, std::min(object().ScrolledLines(), furthest));
    }

    bool showing_ = false;
};

}  // namespace

const BinderMaker kTextBoxBinder = NewBinder<TextBoxBinder>;

}  // namespace vantrel::views
