// The Log tab: the transaction log, its size, and the button that mails it.
#pragma once

#include <functional>
#include <string>

#include "common/error.h"
#include "forms/controls.h"
#include "forms/form.h"
#include "forms/program.h"
#include "platform/mail.h"
#include "ui/last_run.h"

namespace vantrel {

// Hands two messages to the user's mail program, both to the support address: the log, and a
// message that the user writes.
class Mailing {
  public:
    explicit Mailing(forms::Program& program);

    platform::MailSession& MAPI_Session;
    platform::MailMessages& MAPI_Messages;

    // Each logs the attempt and then its success, or its failure with the error's number and
    // description. A failed sign-on is also shown. Mailing the log asks for confirmation first.
    void Cmd_Email_Click();
    void Cmd_ContactUs_Click();

  private:
    // Runs a handler and shows its errors. Does nothing while another one runs: mail programs run
    // pending events.
    void Run(const std::function<void()>& handler);
    void MailLog();
    void Contact();
    bool ConfirmMailing();
    bool TryLogon(const std::string& what);
    // Calls `fill_and_send` and signs off. False, with a record of the failure, when it raises.
    bool TrySend(const std::string& what, const std::function<void()>& fill_and_send);
    void Fill(const std::string& subject, const std::string& note_text);
    void AttachLogs();
    void BuildContactText();
    void Record(const std::string& text);
    void RecordFailure(const std::string& what, const Error& error);

    forms::Program& program_;
    bool running_ = false;
};

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
    // The last run in the log as it was shown last.
    const LastRun& ShownRun() const { return last_run_; }

  private:
    void ShowLog();
    void ShowSize();
    void ScrollToNewest();

    forms::Program& program_;
    LastRun last_run_;
};

}  // namespace vantrel
