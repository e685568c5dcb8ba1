// The Log tab: the transaction log as it stands, its size, and the way to mail it.
#pragma once

#include "forms/controls.h"
#include "forms/form.h"
#include "ui/mailing.h"

namespace vantrel {

class LogTab {
  public:
    explicit LogTab(forms::Form& window);

    forms::Frame Fra_Log;
    forms::TextBox Fld_Log;
    forms::Label Lbl_LogHint;
    forms::Button Cmd_Refresh;
    forms::Button Cmd_Email;
    Mailing mailing;

    void Cmd_Refresh_Click();

  private:
    void ShowLog();
    void ShowSize();
    void ScrollToNewest();

    forms::Program& program_;
};

}  // namespace vantrel
