#include "ui/log_tab.h"

#include <algorithm>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "common/product.h"
#include "forms/desktop.h"
#include "log/clsLog.h"
#include "system/clsSystem.h"
#include "ui/text_views.h"

namespace vantrel {

namespace {
constexpr int kLinesAtOnce = 1000;  // more than a log that is kept below its limit has
constexpr std::uint64_t kBytesInK = 1024;
constexpr const char* kHint = "The Vantrel Log File is being limited to a File Size of 50K.";
}  // namespace

LogTab::LogTab(forms::Form& window)
    : Fra_Log(window, "Fra_Log"),
      Fld_Log(window, "Fld_Log", true, true),
      Lbl_LogHint(window, "Lbl_LogHint", kHint),
      Cmd_Refresh(window, "Cmd_Refresh", "&Refresh"),
      Cmd_Email(window, "Cmd_Email", "&E-Mail"),
      mailing(window.program()),
      program_(window.program()) {
    Cmd_Refresh.SetTooltip("Refresh the Log File in the View Window");
    Cmd_Email.SetTooltip("E-Mail the LogFile to Corvane");
    Cmd_Refresh.Click = [this] { Cmd_Refresh_Click(); };
    Cmd_Email.Click = [this] { mailing.Cmd_Email_Click(); };
}

void LogTab::Cmd_Refresh_Click() {
    try {
        ShowLog();
    } catch (const Error& error) {
        ShowError(program_, error);
    }
}

void LogTab::ShowLog() {
    Fld_Log.SetText("");
    Fld_Log.Refresh();
    Show_INIQuick(program_, "Vantrel.LOG", Fld_Log);
    last_run_ = FindLastRun(Fld_Log.Text());
    ShowSize();
    ScrollToNewest();
}

void LogTab::ShowSize() {
    const auto log = program_.machine.files.Find(program_.InApplicationFolder("Vantrel.Log"));
    if (!log) {
        RaiseError(error_number::kFileNotFound);
    }
    auto& globals = program_.globals;
    globals.MessageText = kHint + globals.CrLf + "File Current Size is " +
                          std::to_string(log->size / kBytesInK) + "K";
    Lbl_LogHint.SetCaption(globals.MessageText);
}

// One step is enough for a log of the usual length. A long session can write more lines, since the
// log is trimmed only when the program starts.
void LogTab::ScrollToNewest() {
    const std::string& text = Fld_Log.Text();
    auto lines = std::count(text.begin(), text.end(), '\n');
    do {
        clsSystem(program_).ScrollText(Fld_Log, kLinesAtOnce);
        lines -= kLinesAtOnce;
    } while (lines > 0);
}

using forms::Answer;
using forms::Icon;

Mailing::Mailing(forms::Program& program)
    : MAPI_Session(program.machine.mail_session),
      MAPI_Messages(program.machine.mail_messages),
      program_(program) {}

void Mailing::Run(const std::function<void()>& handler) {
    if (running_) {
        return;
    }
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
    if (!ConfirmMailing()) {
        return;
    }
    Record("Log File Emailed to Corvane Limited.");
    if (!TryLogon("Email")) {
        return;
    }
    const bool sent = TrySend("Email", [this] {
        Fill("Vantrel Log",
             "Please find attached the Vantrel Log File.  The reason I am mailing it to you is "
             "...");
        AttachLogs();
        MAPI_Messages.Send(false);
    });
    if (!sent) {
        return;
    }
    Record("Email Successful");
    program_.desktop.Show({.text = "Log File Succesfully Sent to your E-Mail Application",
                           .icon = Icon::kInformation,
                           .title = "E-Mail Log File"});
}

bool Mailing::ConfirmMailing() {
    return program_.ShowMessage(
               {.text = "Are you sure that you wish to E-Mail the Log File to Corvane Limited.",
                .buttons = forms::Buttons::kYesNo,
                .icon = Icon::kQuestion,
                .title = "E-Mail",
                .default_button = 2}) == Answer::kYes;
}

void Mailing::Contact() {
    Record("Contact attempted for Corvane Limited.");
    if (!TryLogon("Contact")) {
        return;
    }
    const bool sent = TrySend("Contact", [this] {
        BuildContactText();
        Fill("Vantrel Query", program_.globals.MessageText);
        MAPI_Messages.Send(true);
    });
    if (sent) {
        Record("Contact Successful");
    }
}

bool Mailing::TryLogon(const std::string& what) {
    try {
        MAPI_Session.SignOn();
        return true;
    } catch (const Error& error) {
        program_.desktop.Show({.text = "Logon Failure: " + error.description()});
        RecordFailure(what, error);
        return false;
    }
}

bool Mailing::TrySend(const std::string& what, const std::function<void()>& fill_and_send) {
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
        // The outcome of the message is already known.
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

// Attaches last month's log as well when it exists. Only then are positions in the text set.
void Mailing::AttachLogs() {
    const std::string last_month = program_.InApplicationFolder("Vantrel.Bak");
    const bool both = clsFiles(program_).Exist(last_month, true);
    MAPI_Messages.SetAttachmentIndex(0);
    MAPI_Messages.SetAttachmentPath(program_.InApplicationFolder("Vantrel.Log"));
    if (!both) {
        return;
    }
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
    for (int line = 0; line < 5; ++line) {
        text += end;
    }
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
