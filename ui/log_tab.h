// The Log tab: the transaction log, and the way to mail it.
#pragma once

#include "forms/controls.h"
#include "forms/form.h"

namespace vantrel {

struct LogTab {
    explicit LogTab(forms::Form& window);
    forms::Frame Fra_Log;
    forms::TextBox Fld_Log;
    forms::Label Lbl_LogHint;
    forms::Button Cmd_Refresh;
    forms::Button Cmd_Email;
};

}  // namespace vantrel
