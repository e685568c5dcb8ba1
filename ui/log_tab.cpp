#include "ui/log_tab.h"

#include <algorithm>

#include "common/error.h"
#include "log/show_error.h"
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
    ShowSize();
    ScrollToNewest();
}

void LogTab::ShowSize() {
    const auto log = program_.machine.files.Find(program_.InApplicationFolder("Vantrel.Log"));
    if (!log) RaiseError(error_number::kFileNotFound);
    auto& globals = program_.globals;
    globals.MessageText = kHint + globals.CrLf + "File Current Size is " +
                          std::to_string(log->size / kBytesInK) + "K";
    Lbl_LogHint.SetCaption(globals.MessageText);
}

// Once for a log of the usual length. A long session may write more lines than that: the log is
// trimmed only when the program starts.
void LogTab::ScrollToNewest() {
    const std::string& text = Fld_Log.Text();
    auto lines = std::count(text.begin(), text.end(), '\n');
    do {
        clsSystem(program_).ScrollText(Fld_Log, kLinesAtOnce);
        lines -= kLinesAtOnce;
    } while (lines > 0);
}

}  // namespace vantrel
