// The typefaces of the windows, by control. A window's own font serves every control that is not
// named in the table.
#pragma once

#include "views/win32/owned.h"

namespace vantrel::views {

// The font of all windows: bitmap letters at 96 dpi, their outline sibling above.
OwnedFont WindowFont(int dpi);
// The font of a control that has one of its own, otherwise none.
OwnedFont ControlFont(int control_id, int dpi);

}  // namespace vantrel::views
