#include "ui/secure_tab.h"

namespace vantrel {

SecureTab::SecureTab(forms::Form& window)
    : Fra_SecureData{{{window, "Fra_SecureData_0", "Secure Data"}, {window, "Fra_SecureData_1"}}},
      Dri_SecureMode(window, "Dri_SecureMode"),
      TV_SecureMode(window, "TV_SecureMode"),
      SSP_PleaseWait(window, "SSP_PleaseWait", "Please Wait..."),
      SSP_ProgressSecure(window, "SSP_ProgressSecure", "Loading Folder Structure"),
      Fld_SecureData(window, "Fld_SecureData", true, true) {}

}  // namespace vantrel
