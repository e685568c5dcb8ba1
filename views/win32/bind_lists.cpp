// Lists of text: drop-down lists, list boxes, drive lists, file lists.
#include <utility>

#include "forms/form.h"
#include "views/win32/binder.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

// The messages of the two real lists.
struct Messages {
    UINT reset, add, count, select, selection;
};
constexpr Messages kCombo{CB_RESETCONTENT, CB_ADDSTRING, CB_GETCOUNT, CB_SETCURSEL, CB_GETCURSEL};
constexpr Messages kListBox{LB_RESETCONTENT, LB_ADDSTRING, LB_GETCOUNT, LB_SETCURSEL, LB_GETCURSEL};

class ListBinder : public Binder {
  public:
    using Binder::Binder;

    void Command(WORD code) override {
        if (code != (IsDropDown() ? CBN_SELCHANGE : LBN_SELCHANGE)) {
            return;
        }
        const int chosen = Send(messages_.selection);
        if (chosen >= Count()) {
            return Flush();  // it is gone, and only still shown
        }
        Choose(chosen);
    }

    // Drop-down lists are as high as the fields beside them; by themselves they are as high as
    // their font needs, which is less at more than 96 dpi.
    void Rescale(int dpi) override {
        Binder::Rescale(dpi);
        if (IsDropDown()) {
            constexpr int kFieldUnits = 13;  // of 8 for the height of a line
            constexpr int kFrame = 6;        // pixels around the selected entry
            constexpr auto kSelectedEntry = static_cast<WPARAM>(-1);
            const int height = MulDiv(TextDevice(handle()).LineHeight(), kFieldUnits, 8);
            Send(CB_SETITEMHEIGHT, kSelectedEntry, height - kFrame);
        }
    }

  protected:
    virtual int Count() const = 0;
    virtual std::string Entry(int index) const = 0;
    virtual int Selected() const = 0;
    virtual void Choose(int index) = 0;
    virtual void Added(const std::wstring&) {}
    // Whether the shown entries are unchanged, apart from new ones at the end.
    virtual bool OnlyAdded() { return false; }

    // A list box can be scrolled as far as its widest entry.
    void WidenFor(const std::wstring& text) const {
        constexpr int kMargin = 4;  // what the list leaves beside its entries
        const int needed = TextDevice(handle()).WidthOf(text) + kMargin;
        if (needed > Send(LB_GETHORIZONTALEXTENT)) {
            Send(LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(needed));
        }
    }
    void Show(Aspect aspect) override {
        if (aspect == Aspect::kItems) {
            ShowEntries();
        }
        if (aspect == Aspect::kSelection) {
            ShowSelection();
        }
    }

  private:
    void ShowSelection() { Send(messages_.select, static_cast<WPARAM>(Selected())); }

    void ShowEntries() {
        int shown = Send(messages_.count);
        SendMessageW(handle(), WM_SETREDRAW, FALSE, 0);
        if (!OnlyAdded() || shown > Count()) {
            Send(messages_.reset);
            if (!IsDropDown()) {
                Send(LB_SETHORIZONTALEXTENT, 0);
            }
            shown = 0;
        }
        for (; shown < Count(); ++shown) {
            const std::wstring text = Wide(Entry(shown));
            Send(messages_.add, 0, reinterpret_cast<LPARAM>(text.c_str()));
            Added(text);
        }
        // Before it is painted, since it scrolls.
        ShowSelection();
        SendMessageW(handle(), WM_SETREDRAW, TRUE, 0);
        InvalidateRect(handle(), nullptr, TRUE);
    }

    bool IsDropDown() const {
        return control().kind() == forms::Kind::kComboBox ||
               control().kind() == forms::Kind::kDriveList;
    }

    const Messages& messages_ = IsDropDown() ? kCombo : kListBox;
};

class TextListBinder : public BinderOf<forms::List, ListBinder> {
  public:
    using BinderOf::BinderOf;

  protected:
    int Count() const override { return object().Count(); }
    std::string Entry(int index) const override { return object().Item(index); }
    int Selected() const override { return object().Index(); }
    void Choose(int index) override { object().SetIndex(index); }
    bool OnlyAdded() override {
        const int before = std::exchange(removals_, object().Removals());
        return before == removals_;
    }

  private:
    int removals_ = -1;
};

// A list of messages: they come by the thousand, and their long lines can be scrolled to. Empty, it
// has no focus rectangle, which would look like an empty line.
class WideListBinder : public TextListBinder {
  public:
    WideListBinder(BinderWindow& window, forms::Control& control, HWND handle, int id)
        : TextListBinder(window, control, handle, id) {
        SetWindowSubclass(handle, PaintEmpty, 0, 0);
    }
    ~WideListBinder() override { RemoveWindowSubclass(handle(), PaintEmpty, 0); }

  protected:
    bool Defers(Aspect aspect) const override {
        return aspect == Aspect::kItems || aspect == Aspect::kSelection;
    }
    void Added(const std::wstring& text) override { WidenFor(text); }

  private:
    static LRESULT CALLBACK PaintEmpty(HWND list, UINT message, WPARAM wparam, LPARAM lparam,
                                       UINT_PTR, DWORD_PTR) {
        const bool paints = message == WM_PAINT || message == WM_SETFOCUS;
        const bool is_empty = paints && SendMessageW(list, LB_GETCOUNT, 0, 0) == 0;
        if (is_empty && message == WM_PAINT) {
            PAINTSTRUCT paint{};
            FillRect(BeginPaint(list, &paint), &paint.rcPaint, GetSysColorBrush(COLOR_WINDOW));
            EndPaint(list, &paint);
            return 0;
        }
        const LRESULT result = DefSubclassProc(list, message, wparam, lparam);
        if (is_empty) {
            InvalidateRect(list, nullptr, TRUE);
        }
        return result;
    }
};

class DriveListBinder : public BinderOf<forms::DriveList, ListBinder> {
  public:
    using BinderOf::BinderOf;

    // Drives come and go while the window is open.
    void Command(WORD code) override {
        if (code == CBN_DROPDOWN) {
            return object().Reload();
        }
        ListBinder::Command(code);
    }

  protected:
    int Count() const override { return static_cast<int>(object().Entries().size()); }
    std::string Entry(int index) const override {
        return object().Entries()[static_cast<std::size_t>(index)];
    }
    int Selected() const override { return object().Index(); }
    void Choose(int index) override { object().UserChoose(index); }
};

class FileListBinder : public BinderOf<forms::FileList, TextListBinder> {
  public:
    using BinderOf::BinderOf;
    void RightClick() override { object().UserMouseDown(2); }
    POINT MenuPosition() const override {
        RECT entry{};
        if (object().Index() >= 0) {
            Send(LB_GETITEMRECT, static_cast<WPARAM>(object().Index()),
                 reinterpret_cast<LPARAM>(&entry));
        }
        return BelowInside(handle(), entry);
    }

  protected:
    void Added(const std::wstring& text) override { WidenFor(text); }
};

}  // namespace

const BinderMaker kComboBoxBinder = NewBinder<TextListBinder>;
const BinderMaker kListBoxBinder = NewBinder<WideListBinder>;
const BinderMaker kDriveListBinder = NewBinder<DriveListBinder>;
const BinderMaker kFileListBinder = NewBinder<FileListBinder>;

}  // namespace vantrel::views
