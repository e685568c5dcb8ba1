// What the program paints itself: pictures and percentage panels; and the clip.
#include <windows.h>

#include <uxtheme.h>

#include <cmath>
#include <map>
#include <string>
#include <utility>

#include "views/win32/binder.h"
#include "views/win32/resource.h"
#include "views/win32/text.h"
#include "views/win32/window_resources.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

int PictureOf(int control_id) {
    static const std::map<int, int> kPictures = {{Img_Set, IDI_BackupSet},
                                                 {Img_What, IDI_Folder},
                                                 {Img_FilesToBackup, IDI_Files},
                                                 {Img_BackupFileName, IDI_Archive},
                                                 {Img_Where, IDI_Destination}};
    const auto found = kPictures.find(control_id);
    return found == kPictures.end() ? IDI_Product : found->second;
}

class PictureBinder : public Binder {
  public:
    using Binder::Binder;

    void Rescale(int dpi) override {
        const int pixels = id() == Frm_Splash_Img_Logo ? 64 : id() == Img_Logo ? 48 : 32;
        icon_ = LoadPicture(PictureOf(id()), MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI));
        size_ = PictureSize(icon_.get());
    }
    void Draw(const DRAWITEMSTRUCT& item) override {
        RECT area = item.rcItem;
        if (!window_.HasBoxes()) {
            DrawThemeParentBackground(handle(), item.hDC, &area);
        }
        DrawIconEx(item.hDC, area.left, area.top, icon_.get(), size_, size_, 0, nullptr, DI_NORMAL);
    }

  private:
    OwnedIcon icon_;
    int size_ = 0;
};

// Caption in the middle, filled from the left; letters over the fill take its text colour. With
// neither it is part of the page: a frame around nothing would look like an empty field.
class PanelBinder : public BinderOf<forms::Panel> {
  public:
    using BinderOf::BinderOf;

    void Draw(const DRAWITEMSTRUCT& item) override {
        RECT area = item.rcItem;
        if (IsIdle()) {
            DrawThemeParentBackground(handle(), item.hDC, &area);
            return;
        }
        FrameRect(item.hDC, &area, GetSysColorBrush(COLOR_BTNSHADOW));
        InflateRect(&area, -1, -1);
        RECT filled = area;
        filled.right = area.left + FilledWidth(area.right - area.left);
        RECT rest = area;
        rest.left = filled.right;
        PaintPart(item.hDC, area, filled, COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT);
        PaintPart(item.hDC, area, rest, COLOR_WINDOW, COLOR_WINDOWTEXT);
    }

  protected:
    void Show(Aspect aspect) override {
        if (aspect == Aspect::kText) {
            SetTextOf(handle(), object().Caption());
        }
        // Thousands of steps a second come here: only those that can be seen are painted.
        RECT area{};
        GetClientRect(handle(), &area);
        const Look look{FilledWidth(area.right - area.left - 2), IsIdle()};
        const bool moved = aspect == Aspect::kValue && std::exchange(shown_, look) != look;
        if (aspect == Aspect::kText || moved) {
            RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        }
    }

  private:
    struct Look {
        LONG filled_width = 0;
        bool idle = true;
        bool operator==(const Look&) const = default;
    };

    bool IsIdle() const { return object().FloodPercent() == 0 && object().Caption().empty(); }
    // Of `width` pixels.
    LONG FilledWidth(LONG width) const {
        return static_cast<LONG>(
            std::lround(static_cast<double>(width) * object().FloodPercent() / 100));
    }

    void PaintPart(HDC device, const RECT& area, const RECT& part, int fill, int letters) const {
        FillRect(device, &part, GetSysColorBrush(fill));
        const int saved = SaveDC(device);
        IntersectClipRect(device, part.left, part.top, part.right, part.bottom);
        SetBkMode(device, TRANSPARENT);
        SetTextColor(device, GetSysColor(letters));
        const std::wstring text = Wide(object().Caption());
        RECT needed = area;
        DrawTextW(device, text.c_str(), -1, &needed, DT_CENTER | DT_NOPREFIX | DT_CALCRECT);
        RECT middle = area;
        middle.top += ((area.bottom - area.top) - (needed.bottom - needed.top)) / 2;
        DrawTextW(device, text.c_str(), -1, &middle, DT_CENTER | DT_NOPREFIX | DT_NOCLIP);
        RestoreDC(device, saved);
    }

    Look shown_;
};

class AnimationBinder : public BinderOf<forms::Animation> {
  public:
    using BinderOf::BinderOf;

    void Rescale(int dpi) override {
        if (std::exchange(dpi_, dpi) != dpi && !open_.empty()) {
            open_.clear();
            Show(Aspect::kValue);
        }
    }

  protected:
    void Show(Aspect aspect) override {
        if (aspect != Aspect::kValue) {
            return;
        }
        if (object().Path() != open_) {
            open_ = object().Path();
            OpenForDpi();
        }
        if (object().Playing()) {
            SendMessageW(handle(), ACM_PLAY, static_cast<WPARAM>(-1), MAKELPARAM(0, -1));
        } else {
            SendMessageW(handle(), ACM_STOP, 0, 0);
            // It rests on its first picture, not on the one that was shown by chance.
            SendMessageW(handle(), ACM_PLAY, 1, MAKELPARAM(0, 0));
        }
    }

  private:
    // The control does not scale a clip: beside it are larger ones, "Clip-144.AVI" for 144 dpi and
    // above. A clip without them is shown as it is.
    void OpenForDpi() const {
        for (const int dpi : {192, 144}) {
            const std::size_t extension = open_.rfind('.');
            if (dpi <= dpi_ && extension != std::string::npos &&
                Open(open_.substr(0, extension) + "-" + std::to_string(dpi) +
                     open_.substr(extension))) {
                return;
            }
        }
        Open(open_);
    }
    bool Open(const std::string& path) const {
        const std::wstring wide = Wide(path);
        return SendMessageW(handle(), ACM_OPENW, 0,
                            path.empty() ? 0 : reinterpret_cast<LPARAM>(wide.c_str())) != 0;
    }

    std::string open_;
    int dpi_ = USER_DEFAULT_SCREEN_DPI;
};

}  // namespace

const BinderMaker kPictureBinder = NewBinder<PictureBinder>;
const BinderMaker kPanelBinder = NewBinder<PanelBinder>;
const BinderMaker kAnimationBinder = NewBinder<AnimationBinder>;

}  // namespace vantrel::views
