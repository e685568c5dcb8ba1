#include <algorithm>
#include <string>
#include <vector>

#include "views/win32/binder.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"
#include "views/win32/window_resources.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

using OwnedImageList = Owned<HIMAGELIST, ImageList_Destroy>;

// Picture numbers of nodes count from 1, in this order.
constexpr int kPictures[] = {IDI_Folder, IDI_OpenFolder, IDI_ProtectedFolder};

// The window procedure of all trees.
WNDPROC g_tree_procedure = nullptr;

class TreeBinder : public BinderOf<forms::Tree> {
  public:
    TreeBinder(BinderWindow& window, forms::Control& control, HWND handle, int id)
        : BinderOf(window, control, handle, id) {
        // A subclass of the common controls would look up a property for each message, under Wine
        // five requests to its server for each node.
        g_tree_procedure = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(MenuMessages)));
    }
    ~TreeBinder() override { TreeView_SetImageList(handle(), nullptr, TVSIL_NORMAL); }

    void Notify(const NMHDR& header) override {
        if (header.code != TVN_SELCHANGEDW || showing_) {
            return;
        }
        const auto& change = reinterpret_cast<const NMTREEVIEWW&>(header);
        object().UserSelect(static_cast<int>(change.itemNew.lParam));
    }
    // The menu acts on the selected node, which may have been scrolled out of the view.
    void RightClick() override {
        if (const HTREEITEM selected = TreeView_GetSelection(handle())) {
            TreeView_EnsureVisible(handle(), selected);
        }
        object().UserMouseDown(2);
    }
    POINT MenuPosition() const override {
        RECT node{};
        if (const HTREEITEM selected = TreeView_GetSelection(handle())) {
            TreeView_EnsureVisible(handle(), selected);
            constexpr BOOL kTextOnly = TRUE;
            TreeView_GetItemRect(handle(), selected, &node, kTextOnly);
        }
        return BelowInside(handle(), node);
    }

    void Rescale(int dpi) override {
        const OwnedIcon sample =
            LoadPicture(kPictures[0], MulDiv(16, dpi, USER_DEFAULT_SCREEN_DPI));
        const int size = PictureSize(sample.get());
        OwnedImageList images(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 3, 0));
        for (int picture : kPictures) {
            ImageList_AddIcon(images.get(), LoadPicture(picture, size).get());
        }
        if (has_images_) {
            TreeView_SetImageList(handle(), images.get(), TVSIL_NORMAL);
        }
        images_ = std::move(images);
    }

  protected:
    void Show(Aspect aspect) override {
        // A hidden tree is one that is being filled: the control would look at all of its items
        // for each new one.
        if (aspect == Aspect::kVisible) {
            SendMessageW(handle(), WM_SETREDRAW, object().Visible() ? TRUE : FALSE, 0);
        }
        showing_ = true;
        if (aspect == Aspect::kItems) {
            ShowNodes();
        }
        if (aspect == Aspect::kValue) {
            ShowImages();
        }
        if (aspect == Aspect::kSelection) {
            TreeView_SelectItem(handle(),
                                object().Selected() ? ItemOf(object().Selected()) : nullptr);
        }
        showing_ = false;
    }

  private:
    struct Shown {
        HTREEITEM item;
        int image, selected_image;
    };

    // The control itself would paint the node under the pointer like a selected one until the menu
    // is closed. The system makes a WM_CONTEXTMENU of the button's release; some trees make none of
    // Shift+F10.
    static LRESULT CALLBACK MenuMessages(HWND tree, UINT message, WPARAM wparam, LPARAM lparam) {
        constexpr LPARAM kFromKeyboard = -1;
        switch (message) {
            case WM_RBUTTONDOWN:
                SetFocus(tree);
                return 0;
            case WM_RBUTTONUP:
                return DefWindowProcW(tree, message, wparam, lparam);
            case WM_SYSKEYDOWN:
                if (wparam != VK_F10 || GetKeyState(VK_SHIFT) >= 0) {
                    break;
                }
                return SendMessageW(tree, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(tree),
                                    kFromKeyboard);
            default:
                break;
        }
        return CallWindowProcW(g_tree_procedure, tree, message, wparam, lparam);
    }

    HTREEITEM ItemOf(int node) const { return shown_[static_cast<std::size_t>(node - 1)].item; }

    // Nodes are only ever added at the end, or all removed.
    void ShowNodes() {
        if (object().Count() <= static_cast<int>(shown_.size())) {
            TreeView_DeleteAllItems(handle());
            shown_.clear();
        }
        while (static_cast<int>(shown_.size()) < object().Count()) {
            Insert(static_cast<int>(shown_.size()) + 1);
        }
    }

    void Insert(int index) {
        const forms::Tree::Node& node = object().At(index);
        if (node.image && !has_images_) {
            has_images_ = true;
            TreeView_SetImageList(handle(), images_.get(), TVSIL_NORMAL);
        }
        std::wstring text = Wide(node.text);
        TVINSERTSTRUCTW insert{};
        insert.hParent = node.parent ? ItemOf(node.parent) : TVI_ROOT;
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        insert.item.pszText = text.data();
        insert.item.lParam = index;
        insert.item.iImage = ImageIndex(node.image);
        insert.item.iSelectedImage = ImageIndex(node.selected_image);
        const auto item = reinterpret_cast<HTREEITEM>(
            SendMessageW(handle(), TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
        shown_.push_back({item, node.image, node.selected_image});
    }

    static int ImageIndex(int picture) { return picture ? picture - 1 : I_IMAGENONE; }

    void ShowImages() {
        const int count = std::min(object().Count(), static_cast<int>(shown_.size()));
        for (int index = 1; index <= count; ++index) {
            const forms::Tree::Node& node = object().At(index);
            Shown& shown = shown_[static_cast<std::size_t>(index - 1)];
            if (shown.image == node.image && shown.selected_image == node.selected_image) {
                continue;
            }
            shown = {shown.item, node.image, node.selected_image};
            TVITEMW item{};
            item.mask = TVIF_HANDLE | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
            item.hItem = shown.item;
            item.iImage = ImageIndex(node.image);
            item.iSelectedImage = ImageIndex(node.selected_image);
            SendMessageW(handle(), TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        }
    }

    OwnedImageList images_;
    std::vector<Shown> shown_;
    bool has_images_ = false;
    bool showing_ = false;
};

}  // namespace

const BinderMaker kTreeBinder = NewBinder<TreeBinder>;

}  // namespace vantrel::views
