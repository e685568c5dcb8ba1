#include "ui/mailing.h"

#include "backupset/clsFiles.h"
#include "common/product.h"
#include "forms/desktop.h"
#include "log/clsLog.h"
#include "log/show_error.h"

namespace vantrel {

using forms::Answer;
using forms::Icon;

Mailing::Mailing(forms::Program& program)
    : MAPI_Session(program.machine.mail_session),
      MAPI_Messages(program.machine.mail_messages),
      program_(program) {}

void Mailing::Run(const std::function<void()>& handler) {
    if (running_) return;
    running_ = true;
    try {
        handler();
    } catch (const Error& error) {
        ShowError(program_, error);
    }
    running_ = false;
}

void Mailing::Cmd_Email_Click() {
    Run([this] { MailLog(); });
}

void Mailing::Cmd_ContactUs_Click() {
    Run([this] {
        const forms::Hourglass hourglass(program_.desktop);
        Contact();
    });
}

void Mailing::MailLog() {
    if (!Asked()) return;
    Record("Log File Emailed to Corvane Limited.");
    if (!SignedOn("Email")) return;
    const bool sent = Sent("Email", [this] {
        Fill("Vantrel Log",
             "Please find attached the Vantrel Log File.  The reason I am mailing it to you is "
             "...");
        AttachLogs();
        MAPI_Messages.Send(false);
    });
    if (!sent) return;
    Record("Email Successful");
    program_.desktop.Show({.text = "Log File Succesfully Sent to your E-Mail Application",
                           .icon = Icon::kInformation,
                           .title = "E-Mail Log File"});
}

bool Mailing::Asked() {
    auto& message = program_.globals.MessageText;
    message = "Are you sure that you wish to E-Mail the Log File to Corvane Limited.";
    return program_.desktop.Show({.text = message,
                                  .buttons = forms::Buttons::kYesNo,
                                  .icon = Icon::kQuestion,
                                  .title = "E-Mail",
                                  .default_button = 2}) == Answer::kYes;
}

void Mailing::Contact() {
    Record("Contact attempted for Corvane Limited.");
    if (!SignedOn("Contact")) return;
    const bool sent = Sent("Contact", [this] {
        BuildContactText();
        Fill("Vantrel Query", program_.globals.MessageText);
        MAPI_Messages.Send(true);
    });
    if (sent) Record("Contact Successful");
}

bool Mailing::SignedOn(const std::string& what) {
    try {
        MAPI_Session.SignOn();
        return true;
    } catch (const Error& error) {
        program_.desktop.Show({.text = "Logon Failure: " + error.description()});
        RecordFailure(what, error);
        return false;
    }
}

bool Mailing::Sent(const std::string& what, const std::function<void()>& fill_and_send) {
    bool sent = false;
    try {
        fill_and_send();
        sent = true;
    } catch (const Error& error) {
        RecordFailure(what, error);
    }
    try {
        MAPI_Session.SignOff();
    } catch (const Error&) {
        // The message has gone or has not: what the mail program says at its door changes nothing.
    }
    return sent;
}

void Mailing::Fill(const std::string& subject, const std::string& note_text) {
    MAPI_Messages.SetSessionId(MAPI_Session.SessionId());
    MAPI_Messages.SetMessageIndex(platform::MailMessages::kComposeBuffer);
    MAPI_Messages.Compose();
    MAPI_Messages.SetRecipientDisplayName(product::kSupportAddress);
    MAPI_Messages.SetRecipientAddress(product::kSupportAddress);
    MAPI_Messages.SetAddressResolutionDialog(false);
    MAPI_Messages.SetSubject(subject);
    MAPI_Messages.SetNoteText(note_text);
}

// Last month's log goes along when there is one; only then do the two take places in the text.
void Mailing::AttachLogs() {
    const std::string last_month = program_.InApplicationFolder("Vantrel.Bak");
    const bool both = clsFiles(program_).Exist(last_month, true);
    MAPI_Messages.SetAttachmentIndex(0);
    MAPI_Messages.SetAttachmentPath(program_.InApplicationFolder("Vantrel.Log"));
    if (!both) return;
    MAPI_Messages.SetAttachmentPosition(1);
    MAPI_Messages.SetAttachmentIndex(1);
    MAPI_Messages.SetAttachmentPath(last_month);
    MAPI_Messages.SetAttachmentPosition(2);
}

void Mailing::BuildContactText() {
    const std::string& end = program_.globals.CrLf;
    const std::string rule(45, '-');
    std::string& text = program_.globals.MessageText;
    text.clear();
    text += "Your Message Goes Here ..........." + end;
    for (int line = 0; line < 5; ++line) text += end;
    text += rule + end;
    text += "My Product Details are;" + end + end;
    text += "Product                : Vantrel" + end;
    text += "Version                : " + product::VersionText() + end;
    text += rule + end + end;
}

void Mailing::Record(const std::string& text) { clsLog(program_).WriteToLog("Backup", true, text); }

void Mailing::RecordFailure(const std::string& what, const Error& error) {
    Record(what + " Failed - Error Code " + std::to_string(error.number()) + " - " +
           error.description());
}

}  // namespace vantrel
