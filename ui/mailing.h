// Two messages to the support address, handed to the user's mail program: the log, and a message
// that the user writes himself.
#pragma once

#include <functional>
#include <string>

#include "common/error.h"
#include "forms/program.h"
#include "platform/mail.h"

namespace vantrel {

class Mailing {
  public:
    explicit Mailing(forms::Program& program);

    platform::MailSession& MAPI_Session;
    platform::MailMessages& MAPI_Messages;

    // Each asks or says first, writes an attempt into the log, and then its success or its failure
    // with the error's number and words. A failed sign-on is shown to the user, too.
    void Cmd_Email_Click();
    void Cmd_ContactUs_Click();

  private:
    // Runs a handler that traps its errors; one of them at a time, since mail programs let events
    // run.
    void Run(const std::function<void()>& handler);
    void MailLog();
    void Contact();
    bool Asked();
    bool SignedOn(const std::string& what);
    // Whether `fill_and_send` went well; the session is signed off either way.
    bool Sent(const std::string& what, const std::function<void()>& fill_and_send);
    void Fill(const std::string& subject, const std::string& note_text);
    void AttachLogs();
    void BuildContactText();
    void Record(const std::string& text);
    void RecordFailure(const std::string& what, const Error& error);

    forms::Program& program_;
    bool running_ = false;
};

}  // namespace vantrel
