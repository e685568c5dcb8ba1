// The program's pictures, in any size.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "views/win32/owned.h"

namespace vantrel::views {

// The picture with that number in resource.h, in the largest size it has that is not above `pixels`
// (so that it is never blurred).
OwnedIcon LoadPicture(int picture, int pixels);
// Edge length of a picture in pixels.
int PictureSize(HICON icon);

}  // namespace vantrel::views
