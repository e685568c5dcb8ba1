// Resources of windows besides their dialogs: control numbers, fonts and icons, and the owners of
// such Windows handles. Used on the user-interface thread only.
#pragma once

#include <windows.h>
// Needs the types of windows.h.
#include <commctrl.h>

#include <memory>
#include <string>
#include <type_traits>

namespace vantrel::views {

// Owners of Windows handles; each closes its handle.
template <auto kClose>
struct Closer {
    template <typename Handle>
    void operator()(Handle handle) const {
        kClose(handle);
    }
};
template <typename Handle, auto kClose>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, Closer<kClose>>;

using OwnedFont = Owned<HFONT, DeleteObject>;
using OwnedMenu = Owned<HMENU, DestroyMenu>;
using OwnedIcon = Owned<HICON, DestroyIcon>;

// The number of a control of the window `form`; 0 when resource.h has none.
int ControlId(const std::string& form, const std::string& control);

// The font of all windows: bitmap letters at 96 dpi, their outline sibling above.
OwnedFont WindowFont(int dpi);
// The font of a control that has one of its own, otherwise none.
OwnedFont ControlFont(int control_id, int dpi);

// The picture with that number in resource.h, in the largest size it has that is not above `pixels`
// (so that it is never blurred).
OwnedIcon LoadPicture(int picture, int pixels);
// Edge length of a picture in pixels.
int PictureSize(HICON icon);

}  // namespace vantrel::views
