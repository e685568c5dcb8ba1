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

class LabelBinder : public BinderOf<forms::Label, CaptionBinder> {
  public:
    using BinderOf::BinderOf;

    void Command(WORD code) override {
        if (code == STN_CLICKED || code == STN_DBLCLK) {
            object().UserClick();
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
            TextDevice(handle()).WidthOf(Wide(object().Caption())) <= area.right - area.left;
        return fits || !ShortensText() ? "" : object().Caption();
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
        const std::wstring text = Wide(object().Caption());
        const bool highlighted = object().ForeColor() == forms::Label::Color::kHighlightText;
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
        const bool path = object().Caption().find('\\') != std::string::npos;
        DrawTextW(device, Wide(object().Caption()).c_str(), -1, &area,
                  DT_SINGLELINE | DT_NOPREFIX | DT_VCENTER |
                      static_cast<UINT>(path ? DT_PATH_ELLIPSIS : DT_END_ELLIPSIS));
    }
};

class ButtonBinder : public BinderOf<forms::Button, CaptionBinder> {
  public:
    using BinderOf::BinderOf;
    void Command(WORD code) override {
        if (code == BN_CLICKED) {
            object().UserPress();
        }
    }
};

// The resource's box must not check itself (BS_CHECKBOX): the object decides.
class CheckBoxBinder : public BinderOf<forms::CheckBox, CaptionBinder> {
  public:
    using BinderOf::BinderOf;
    void Command(WORD code) override {
        if (code == BN_CLICKED) {
            object().UserToggle();
        }
    }

  protected:
    void Show(Aspect aspect) override {
        CaptionBinder::Show(aspect);
        if (aspect == Aspect::kValue) {
            SendMessageW(handle(), BM_SETCHECK, object().Checked() ? BST_CHECKED : BST_UNCHECKED,
                         0);
        }
    }
};

class ProgressBarBinder : public BinderOf<forms::ProgressBar> {
  public:
    using BinderOf::BinderOf;

  protected:
    bool Defers(Aspect aspect) const override { return aspect == Aspect::kValue; }
    void Show(Aspect aspect) override {
        if (aspect == Aspect::kValue) {
            SendMessageW(handle(), PBM_SETPOS, static_cast<WPARAM>(object().Value()), 0);
        }
    }
};

}  // namespace

const BinderMaker kLabelBinder = NewBinder<LabelBinder>;
const BinderMaker kButtonBinder = NewBinder<ButtonBinder>;
const BinderMaker kCheckBoxBinder = NewBinder<CheckBoxBinder>;
const BinderMaker kFrameBinder = NewBinder<CaptionBinder>;
const BinderMaker kProgressBarBinder = NewBinder<ProgressBarBinder>;

}  // namespace vantrel::views
