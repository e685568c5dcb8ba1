#include "ui/log_tab.h"

namespace vantrel {

LogTab::LogTab(forms::Form& window)
    : Fra_Log(window, "Fra_Log"),
      Fld_Log(window, "Fld_Log", true, true),
      Lbl_LogHint(window, "Lbl_LogHint",
                  "The Vantrel Log File is being limited to a File Size of 50K."),
      Cmd_Refresh(window, "Cmd_Refresh", "&Refresh"),
      Cmd_Email(window, "Cmd_Email", "&E-Mail") {
    Cmd_Refresh.SetTooltip("Refresh the Log File in the View Window");
    Cmd_Email.SetTooltip("E-Mail the LogFile to Corvane");
}

}  // namespace vantrel
