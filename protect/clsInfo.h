// The help texts of the program.
#pragma once

#include "forms/controls.h"

namespace vantrel {

class clsInfo {
  public:
    // Sets the text of `box` to the help about protected folders.
    void SecureData(forms::TextBox& box);
};

}  // namespace vantrel
