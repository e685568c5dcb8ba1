// The help texts of the program.
#pragma once

#include "forms/controls.h"

namespace vantrel {

class clsInfo {
  public:
    // Puts what there is to know about protected folders into `box`.
    void SecureData(forms::TextBox& box);
};

}  // namespace vantrel
