// Paints a window's background. Keeps no state.
#pragma once

#include "forms/form.h"

namespace vantrel {

class clsForm {
  public:
    // 63 bands over the window's outer size, each 4 steps darker a component than the one before,
    // the first at the top, or at the bottom. `red`, `green` and `blue` are 0 to 255.
    // Errors: "clsForm:Gradient Method" when a coordinate leaves 16 bits.
    void Gradient(forms::Form& window, int red, int green, int blue, bool top_to_bottom);
};

}  // namespace vantrel
