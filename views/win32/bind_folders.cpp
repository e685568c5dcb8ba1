// The folder list: the way from the root to the current folder, then what is in it, each a step in.
#include <string>

#include "views/win32/binder.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"
#include "views/win32/window_resources.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

class FolderListBinder : public BinderOf<forms::FolderList> {
  public:
    FolderListBinder(BinderWindow& window, forms::Control& control, HWND handle, int id)
        : BinderOf(window, control, handle, id) {
        SetWindowSubclass(handle, Keys, 0, 0);
    }
    ~FolderListBinder() override { RemoveWindowSubclass(handle(), Keys, 0); }

    void Command(WORD code) override {
        if (code == LBN_DBLCLK) {
            object().UserOpen(Send(LB_GETCURSEL));
        }
    }

    void Rescale(int dpi) override {
        const int picture = MulDiv(16, dpi, USER_DEFAULT_SCREEN_DPI);
        closed_ = LoadPicture(IDI_Folder, picture);
        open_ = LoadPicture(IDI_OpenFolder, picture);
        size_ = PictureSize(closed_.get());
        gap_ = MulDiv(3, dpi, USER_DEFAULT_SCREEN_DPI);
        Send(LB_SETITEMHEIGHT, 0, MAKELPARAM(size_ + gap_, 0));
        InvalidateRect(handle(), nullptr, TRUE);
    }

    void Draw(const DRAWITEMSTRUCT& item) override {
        if (item.itemID >= object().Entries().size()) {
            return;
        }
        const forms::FolderList::Entry& entry = object().Entries()[item.itemID];
        const bool selected = (item.itemState & ODS_SELECTED) != 0;
        const bool disabled = (item.itemState & ODS_DISABLED) != 0;
        FillRect(item.hDC, &item.rcItem,
                 GetSysColorBrush(selected && !disabled ? COLOR_HIGHLIGHT : COLOR_WINDOW));
        RECT area = item.rcItem;
        area.left += gap_ + entry.depth * (size_ / 2 + gap_);
        DrawIconEx(item.hDC, area.left, area.top + gap_ / 2,
                   entry.open ? open_.get() : closed_.get(), size_, size_, 0, nullptr, DI_NORMAL);
        area.left += size_ + gap_;
        SetBkMode(item.hDC, TRANSPARENT);
        SetTextColor(item.hDC, GetSysColor(disabled   ? COLOR_GRAYTEXT
                                           : selected ? COLOR_HIGHLIGHTTEXT
                                                      : COLOR_WINDOWTEXT));
        DrawTextW(item.hDC, Wide(entry.name).c_str(), -1, &area,
                  DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
        if (item.itemState & ODS_FOCUS) {
            DrawFocusRect(item.hDC, &item.rcItem);
        }
    }

  protected:
    void Show(Aspect aspect) override {
        if (aspect == Aspect::kEnabled) {
            InvalidateRect(handle(), nullptr, TRUE);
        }
        if (aspect != Aspect::kItems) {
            return;
        }
        SendMessageW(handle(), WM_SETREDRAW, FALSE, 0);
        Send(LB_RESETCONTENT);
        int current = -1;
        for (const forms::FolderList::Entry& entry : object().Entries()) {
            const std::wstring name = Wide(entry.name);
            const int index = Send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
            if (entry.open) {
                current = index;
            }
        }
        Send(LB_SETCURSEL, static_cast<WPARAM>(current));
        SendMessageW(handle(), WM_SETREDRAW, TRUE, 0);
        InvalidateRect(handle(), nullptr, TRUE);
    }

  private:
    // Enter opens the highlighted folder instead of pressing the window's default button.
    static LRESULT CALLBACK Keys(HWND list, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                 DWORD_PTR) {
        if (message == WM_GETDLGCODE && wparam == VK_RETURN) {
            return DLGC_WANTMESSAGE | DefSubclassProc(list, message, wparam, lparam);
        }
        if (message == WM_KEYDOWN && wparam == VK_RETURN) {
            SendMessageW(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), LBN_DBLCLK),
                         reinterpret_cast<LPARAM>(list));
            return 0;
        }
        return DefSubclassProc(list, message, wparam, lparam);
    }

    OwnedIcon closed_, open_;
    int size_ = 16;
    int gap_ = 3;
};

}  // namespace

const BinderMaker kFolderListBinder = NewBinder<FolderListBinder>;

}  // namespace vantrel::views
