#include "views/win32/icons.h"

namespace vantrel::views {

namespace {

// The sizes that every picture is drawn in, in pixels (scripts/make-icon).
constexpr int kSizes[] = {16, 20, 24, 32, 40, 48, 64, 96};

}  // namespace

OwnedIcon LoadPicture(int picture, int pixels) {
    int size = kSizes[0];
    for (int candidate : kSizes)
        if (candidate <= pixels) size = candidate;
    return OwnedIcon(
        static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(picture),
                                      IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
}

int PictureSize(HICON icon) {
    ICONINFO info{};
    if (!GetIconInfo(icon, &info)) return 0;
    BITMAP bitmap{};
    GetObjectW(info.hbmMask, sizeof bitmap, &bitmap);
    DeleteObject(info.hbmMask);
    if (info.hbmColor) DeleteObject(info.hbmColor);
    return static_cast<int>(bitmap.bmWidth);
}

}  // namespace vantrel::views
