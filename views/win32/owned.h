// Owners of Windows handles: each closes what it holds, also when it is given another.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace vantrel::views {

struct GdiCloser {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
struct MenuCloser {
    void operator()(HMENU menu) const { DestroyMenu(menu); }
};
struct IconCloser {
    void operator()(HICON icon) const { DestroyIcon(icon); }
};

using OwnedFont = std::unique_ptr<std::remove_pointer_t<HFONT>, GdiCloser>;
using OwnedMenu = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuCloser>;
using OwnedIcon = std::unique_ptr<std::remove_pointer_t<HICON>, IconCloser>;

}  // namespace vantrel::views
