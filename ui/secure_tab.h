// The Secure Data tab: the folders of a drive, and which of them are protected.
#pragma once

#include <array>

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "forms/tree.h"

namespace vantrel {

struct SecureTab {
    explicit SecureTab(forms::Form& window);
    std::array<forms::Frame, 2> Fra_SecureData;
    forms::DriveList Dri_SecureMode;
    forms::Tree TV_SecureMode;
    forms::Panel SSP_PleaseWait;
    forms::Panel SSP_ProgressSecure;
    forms::TextBox Fld_SecureData;
};

}  // namespace vantrel
