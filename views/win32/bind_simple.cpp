// Labels, buttons, check boxes, frames, bars: one property each.
#include <windows.h>

#include <uxtheme.h>

#include <string>

#include "views/win32/binder.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

// The caption of the object is the text of the real control.
class CaptionBinder : public Binder {
  public:
    using Binder::Binder;

  protected:
    void Show(Aspect aspect) override {
        if (aspect == Aspect::kText) {
            SetTextOf(handle(), control().Caption());
        }
    }
};

class LabelBinder : public CaptionBinder {
  public:
    LabelBinder(BinderWindow& window, forms::Label& label, HWND handle, int id)
        : CaptionBinder(window, label, handle, id), label_(label) {}

    void Command(WORD code) override {
        if (code == STN_CLICKED || code == STN_DBLCLK) {
            label_.UserClick();
        }
    }
    HBRUSH Colors(HDC device) override {
        if (!window_.HasBoxes()) {
            return nullptr;
        }
        SetTextColor(device, RGB(255, 255, 255));
        SetBkMode(device, TRANSPARENT);
        return static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
    }
    // Owner-drawn are the label that changes its colour, and the values that the program shows.
    void Draw(const DRAWITEMSTRUCT& item) override {
        SetBkMode(item.hDC, TRANSPARENT);
        if (id() == Lbl_WebAddress) {
            DrawBlinking(item.hDC, item.rcItem);
        } else {
            DrawValue(item.hDC, item.rcItem);
        }
    }
    std::string ShortenedText() const override {
        RECT area{};
        GetClientRect(handle(), &area);
        area = TextArea(area);
        const bool fits =
            TextDevice(handle()).WidthOf(Wide(label_.Caption())) <= area.right - area.left;
        return fits || !ShortensText() ? "" : label_.Caption();
    }

  protected:
    bool Defers(Aspect aspect) const override { return aspect == Aspect::kText; }
    void Show(Aspect aspect) override {
        CaptionBinder::Show(aspect);
        if (aspect != Aspect::kColor && aspect != Aspect::kText) {
            return;
        }
        if (window_.HasBoxes()) {
            RedrawArea();  // the label is transparent: the text before would stay
        } else {
            InvalidateRect(handle(), nullptr, TRUE);
        }
    }

  private:
    bool IsOwnerDrawn() const { return StyleType() == SS_OWNERDRAW; }
    LONG_PTR StyleType() const { return GetWindowLongPtrW(handle(), GWL_STYLE) & SS_TYPEMASK; }
    // Otherwise a long text is broken into lines.
    bool ShortensText() const {
        return IsOwnerDrawn() || GetWindowLongPtrW(handle(), GWL_STYLE) & SS_ELLIPSISMASK;
    }
    // Of the area of the control, what its text takes.
    RECT TextArea(RECT area) const {
        if (IsOwnerDrawn() && id() != Lbl_WebAddress) {
            const int indent = (area.bottom - area.top) / 5;
            InflateRect(&area, -indent, -1);
        }
        return area;
    }

    // The second of its two colours is meant for the background of selected text, and can be the
    // colour of the page.
    void DrawBlinking(HDC device, RECT area) const {
        DrawThemeParentBackground(handle(), device, &area);
        const std::wstring text = Wide(label_.Caption());
        const bool highlighted = label_.ForeColor() == forms::Label::Color::kHighlightText;
        if (highlighted) {
            RECT behind = area;
            DrawTextW(device, text.c_str(), -1, &behind, DT_SINGLELINE | DT_NOPREFIX | DT_CALCRECT);
            behind.right += (area.bottom - area.top) / 4;
            behind.bottom = area.bottom;
            FillRect(device, &behind, GetSysColorBrush(COLOR_HIGHLIGHT));
        }
        SetTextColor(device, GetSysColor(highlighted ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT));
        DrawTextW(device, text.c_str(), -1, &area, DT_SINGLELINE | DT_NOPREFIX | DT_VCENTER);
    }

    // One line in a thin frame on the colour of what cannot be edited. A long path is shortened in
    // its middle.
    void DrawValue(HDC device, RECT area) const {
        FillRect(device, &area, GetSysColorBrush(COLOR_BTNFACE));
        FrameRect(device, &area, GetSysColorBrush(COLOR_BTNSHADOW));
        area = TextArea(area);
        SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
        const bool path = label_.Caption().find('\\') != std::string::npos;
        DrawTextW(device, Wide(label_.Caption()).c_str(), -1, &area,
                  DT_SINGLELINE | DT_NOPREFIX | DT_VCENTER |
                      static_cast<UINT>(path ? DT_PATH_ELLIPSIS : DT_END_ELLIPSIS));
    }

    forms::Label& label_;
};

class ButtonBinder : public CaptionBinder {
  public:
    ButtonBinder(BinderWindow& window, forms::Button& button, HWND handle, int id)
        : CaptionBinder(window, button, handle, id), button_(button) {}
    void Command(WORD code) override {
        if (code == BN_CLICKED) {
            button_.UserPress();
        }
    }

  private:
    forms::Button& button_;
};

// The resource's box must not check itself (BS_CHECKBOX): the object decides.
class CheckBoxBinder : public CaptionBinder {
  public:
    CheckBoxBinder(BinderWindow& window, forms::CheckBox& box, HWND handle, int id)
        : CaptionBinder(window, box, handle, id), box_(box) {}
    void Command(WORD code) override {
        if (code == BN_CLICKED) {
            box_.UserToggle();
        }
    }

  protected:
    void Show(Aspect aspect) override {
        CaptionBinder::Show(aspect);
        if (aspect == Aspect::kValue) {
            SendMessageW(handle(), BM_SETCHECK, box_.Checked() ? BST_CHECKED : BST_UNCHECKED, 0);
        }
    }

  private:
    forms::CheckBox& box_;
};

class ProgressBarBinder : public Binder {
  public:
    ProgressBarBinder(BinderWindow& window, forms::ProgressBar& bar, HWND handle, int id)
        : Binder(window, bar, handle, id), bar_(bar) {
        SendMessageW(handle, PBM_SETRANGE32, 0, 100);
    }

  protected:
    bool Defers(Aspect aspect) const override { return aspect == Aspect::kValue; }
    void Show(Aspect aspect) override {
        if (aspect == Aspect::kValue) {
            SendMessageW(handle(), PBM_SETPOS, static_cast<WPARAM>(bar_.Value()), 0);
        }
    }

  private:
    forms::ProgressBar& bar_;
};

}  // namespace

OwnedBinder BindLabel(BinderWindow& window, forms::Label& label, HWND handle, int id) {
    return std::make_unique<LabelBinder>(window, label, handle, id);
}

OwnedBinder BindButton(BinderWindow& window, forms::Button& button, HWND handle, int id) {
    return std::make_unique<ButtonBinder>(window, button, handle, id);
}

OwnedBinder BindCheckBox(BinderWindow& window, forms::CheckBox& box, HWND handle, int id) {
    return std::make_unique<CheckBoxBinder>(window, box, handle, id);
}

OwnedBinder BindFrame(BinderWindow& window, forms::Frame& frame, HWND handle, int id) {
    return std::make_unique<CaptionBinder>(window, frame, handle, id);
}

OwnedBinder BindProgressBar(BinderWindow& window, forms::ProgressBar& bar, HWND handle, int id) {
    return std::make_unique<ProgressBarBinder>(window, bar, handle, id);
}

}  // namespace vantrel::views
