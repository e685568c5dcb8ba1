#include "views/win32/binders.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

class TextBoxBinder : public Binder {
  public:
    TextBoxBinder(WindowView& window, forms::TextBox& box, HWND handle, int id)
        : Binder(window, box, handle, id), box_(box) {
        SendMessageW(handle, EM_SETLIMITTEXT, 0, 0);  // as much as there is memory for
    }

    void Command(WORD code) override {
        if (code == EN_CHANGE && !showing_) box_.UserType(TextOf(handle()));
    }
    // A text that is only to be read stands on paper like any other.
    HBRUSH Colors(HDC device) override {
        SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(device, GetSysColor(COLOR_WINDOW));
        return GetSysColorBrush(COLOR_WINDOW);
    }

  protected:
    void Show(Aspect aspect) override {
        if (aspect == Aspect::kText) {
            showing_ = true;
            SetTextOf(handle(), box_.Text());
            showing_ = false;
        } else if (aspect == Aspect::kScroll) {
            SendMessageW(handle(), EM_LINESCROLL, 0, box_.ScrolledLines());
        }
    }

  private:
    forms::TextBox& box_;
    bool showing_ = false;
};

}  // namespace

OwnedBinder BindTextBox(WindowView& window, forms::TextBox& box, HWND handle, int id) {
    return std::make_unique<TextBoxBinder>(window, box, handle, id);
}

}  // namespace vantrel::views
