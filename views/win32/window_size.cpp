// Size and position of a window: for a dpi, while the user resizes it, and from one run to the
// next.
#include <windows.h>

#include <algorithm>
#include <vector>

#include "forms/placement.h"
#include "views/win32/resource.h"
#include "views/win32/window_resources.h"
#include "views/win32/window_view.h"

namespace vantrel::views {

using forms::Area;

namespace {

constexpr int kMaxTipWidth = 500;  // pixels at 96 dpi; longer texts are broken into lines

Area AreaOf(const RECT& area) { return {area.left, area.top, area.right, area.bottom}; }

Area OuterArea(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return AreaOf(area);
}

SIZE InsideOf(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return {area.right, area.bottom};
}

BOOL CALLBACK AddWorkArea(HMONITOR screen, HDC, RECT*, LPARAM areas) {
    auto& found = *reinterpret_cast<std::vector<Area>*>(areas);
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (GetMonitorInfoW(screen, &info)) {
        const bool main = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
        found.insert(main ? found.begin() : found.end(), AreaOf(info.rcWork));
    }
    return TRUE;
}

// The screens without their taskbars, the main screen first.
std::vector<Area> WorkAreas() {
    std::vector<Area> areas;
    EnumDisplayMonitors(nullptr, nullptr, AddWorkArea, reinterpret_cast<LPARAM>(&areas));
    return areas;
}

void MoveTo(HWND window, const Area& area) {
    SetWindowPos(window, nullptr, area.left, area.top, area.Width(), area.Height(),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

bool WindowView::IsResizable() const {
    return (GetWindowLongPtrW(window_, GWL_STYLE) & WS_THICKFRAME) != 0;
}

void WindowView::TakeDpi(int dpi, const RECT* suggested) {
    extra_ = {MulDiv(extra_.cx, dpi, dpi_), MulDiv(extra_.cy, dpi, dpi_)};
    dpi_ = dpi;
    OwnedFont font = WindowFont(dpi);
    designed_inside_ = layout_.Apply(font.get());
    for (Page& page : pages_) {
        page.layout.Apply(font.get());
    }
    font_ = std::move(font);
    TakeSizeOfDpi(suggested);
    Arrange();
    for (const auto& binder : binders_) {
        binder->Rescale(dpi);
    }
    LoadIcons();
    tooltips_.SetWidth(MulDiv(kMaxTipWidth, dpi, USER_DEFAULT_SCREEN_DPI));
    MarkSize();
    InvalidateRect(window_, nullptr, TRUE);
}

void WindowView::TakeSizeOfDpi(const RECT* suggested) {
    sizing_ = true;
    if (suggested && IsZoomed(window_)) {
        MoveTo(window_, AreaOf(*suggested));
    } else {
        const SIZE inside{designed_inside_.cx + extra_.cx, designed_inside_.cy + extra_.cy};
        if (suggested) {
            SetWindowPos(window_, nullptr, suggested->left, suggested->top, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
        // The first time, the frame can get another width with the new dpi.
        SetInsideSize(inside);
        SetInsideSize(inside);
    }
    sizing_ = false;
}

void WindowView::LoadIcons() {
    const auto dpi = static_cast<UINT>(dpi_);
    large_icon_ = LoadPicture(IDI_Product, GetSystemMetricsForDpi(SM_CXICON, dpi));
    small_icon_ = LoadPicture(IDI_Product, GetSystemMetricsForDpi(SM_CXSMICON, dpi));
    SendMessageW(window_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(large_icon_.get()));
    SendMessageW(window_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(small_icon_.get()));
}

// Around the inside, the menu bar included. The real frame, not that of a calculation: systems
// differ in what they scale.
SIZE WindowView::FrameSize() const {
    const Area outer = OuterArea(window_);
    const SIZE inside = InsideOf(window_);
    return {outer.Width() - inside.cx, outer.Height() - inside.cy};
}

void WindowView::SetInsideSize(SIZE inside) const {
    const SIZE frame = FrameSize();
    SetWindowPos(window_, nullptr, 0, 0, inside.cx + frame.cx, inside.cy + frame.cy,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

POINT WindowView::MinSize() const {
    const SIZE frame = FrameSize();
    return {designed_inside_.cx + frame.cx, designed_inside_.cy + frame.cy};
}

void WindowView::Arrange() {
    const SIZE inside = InsideOf(window_);
    extra_ = {std::max<LONG>(0, inside.cx - designed_inside_.cx),
              std::max<LONG>(0, inside.cy - designed_inside_.cy)};
    layout_.Resize(extra_.cx, extra_.cy);
    if (Binder* bar = Find(Sta_Mainmenu)) {
        bar->Rescale(dpi_);
    }
    PlacePages();
}

void WindowView::PlacePages() {
    const HWND tabs = GetDlgItem(window_, TAB_Backup);
    if (!tabs) {
        return;
    }
    RECT area{};
    GetWindowRect(tabs, &area);
    MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&area), 2);
    SendMessageW(tabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    for (const Page& page : pages_) {
        SetWindowPos(page.window, HWND_TOP, area.left, area.top, area.right - area.left,
                     area.bottom - area.top, SWP_NOACTIVATE);
        page.layout.Resize(extra_.cx, extra_.cy);
    }
}

void WindowView::MarkSize() {
    const Area outer = OuterArea(window_);
    form_->MarkSize(TwipsOf(outer.Width(), dpi_), TwipsOf(outer.Height(), dpi_));
}

void WindowView::Resized() {
    MarkSize();
    manager_.RunGuarded([this] {
        const forms::HandlerScope scope(*form_);
        form_->Form_Resize();
    });
}

void WindowView::Show() {
    const bool maximized = Place();
    Resized();
    shown_ = true;
    ShowWindow(window_, maximized ? SW_SHOWMAXIMIZED : SW_SHOW);
    UpdateWindow(window_);
}

bool WindowView::Place() {
    const auto stored =
        IsResizable() ? forms::StoredPlacement(form_->program(), form_->name()) : std::nullopt;
    const HWND owner = GetWindow(window_, GW_OWNER);
    const std::vector<Area> screens = WorkAreas();
    const bool over_owner = owner && IsWindowVisible(owner) && !IsIconic(owner);
    if (stored && !over_owner) {
        // The screen at that position can have another dpi, and TakeDpi is called by this move.
        const Area on_screen = OnScreen(stored->area, screens);
        SetWindowPos(window_, nullptr, on_screen.left, on_screen.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    Area area = OuterArea(window_);
    if (stored) {
        const POINT min = MinSize();
        const auto scaled = [&](int pixels) { return MulDiv(pixels, dpi_, stored->dpi); };
        area.right = area.left + std::max<int>(min.x, scaled(stored->area.Width()));
        area.bottom = area.top + std::max<int>(min.y, scaled(stored->area.Height()));
    }
    if (over_owner) {
        area = Centered(area, OuterArea(owner));
    } else if (!stored && !screens.empty()) {
        area = Centered(area, screens.front());
    }
    MoveTo(window_, OnScreen(area, screens));
    return stored && stored->maximized;
}

void WindowView::TrackPlacement() {
    if (!IsZoomed(window_) && !IsIconic(window_)) {
        normal_ = OuterArea(window_);
    }
}

void WindowView::RememberPlacement() const {
    if (shown_ && IsResizable()) {
        forms::StorePlacement(form_->program(), form_->name(),
                              {normal_, dpi_, IsZoomed(window_) != FALSE});
    }
}

}  // namespace vantrel::views
