#include "restore/Frm_Restore.h"

#include <utility>

#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "log/clsLog.h"

namespace vantrel {

Frm_Restore::Frm_Restore(forms::Program& program, const RestoreControls& main_window,
                         std::unique_ptr<zip::PKUNZIP> component)
    : Form(program, "Frm_Restore"),
      Cmd_Ok(*this, "Cmd_Ok", "OK"),
      Cmd_Cancel(*this, "Cmd_Cancel", "Cancel"),
      Fra_Details(*this, "Fra_Details", "Details"),
      Lst_Details(*this, "Lst_Details"),
      Frame1(*this, "Frame1"),
      Lbl_File(*this, "Lbl_File", "File Progress"),
      Lbl_JobProgress(*this, "Lbl_JobProgress", "Overall Progress"),
      Lbl_RestorePath(*this, "Lbl_RestorePath", "Please Wait...  Processing Files"),
      Lbl_Folder(*this, "Lbl_Folder", "Status"),
      Ani_File(*this, "Ani_File"),
      PB_Folder(*this, "PB_Folder"),
      PB_File(*this, "PB_File"),
      PKUNZIP(*component),
      main_(main_window),
      component_(std::move(component)),
      messages_(program) {
    SetCaption("Restoring Files...");
    Cmd_Ok.Click = [this] { Cmd_Ok_Click(); };
    Cmd_Cancel.Click = [this] { Cmd_Cancel_Click(); };
    PKUNZIP.OverallProgress = [this](std::int32_t& percent, bool& cancel) {
        PKUNZIP_OverallProgress(percent, cancel);
    };
    PKUNZIP.FileProgress = [this](std::int32_t& percent) { PKUNZIP_FileProgress(percent); };
    PKUNZIP.Message = [this](const zip::ComponentMessage& message) { PKUNZIP_Message(message); };
    PKUNZIP.questions = this;
}

std::string Frm_Restore::SetPath() const {
    return program().InApplicationFolder(main_.Cmb_RestoreFile.Text());
}

std::string Frm_Restore::SourceInWords() const {
    const std::string set = main_.Cmb_RestoreFile.Text();
    return set.empty() ? "ZIP File - " + main_.Fld_RestoreFile.Caption() : set;
}

std::string Frm_Restore::ArchivePath() {
    if (main_.Cmb_RestoreFile.Text().empty()) return main_.Fld_RestoreFile.Caption();
    clsINI set(program());
    set.Read_INI(SetPath());
    return set.RestoreFromDrive() + set.RestoreFileName();
}

void Frm_Restore::LogRecord(const std::string& text) {
    clsLog(program()).WriteToLog("Backup", true, text);
}

void Frm_Restore::Form_Load() {
    const std::string clip =
        program().machine.process.ApplicationFolder() + "\\System\\FileCopy.AVI";
    if (clsFiles(program()).Exist(clip, true)) Ani_File.Open(clip);
    Cmd_Cancel.SetVisible(true);
    Cmd_Ok.SetVisible(false);
}

void Frm_Restore::Form_Activate() {
    LogRecord("Starting Restore from " + SourceInWords());
    cancelled_ = false;
    RunComponent();
    messages_.Summarise(PKUNZIP.FailedEntries(), "files not restored");
    if (cancelled_) {
        LogRecord("Finished Restore from " + SourceInWords());
        LogRecord("Cancelled by User");
    } else {
        Cmd_Cancel.SetVisible(false);
        Cmd_Ok.SetVisible(true);
        RememberDestination();
        LogRecord("Finished Restore from " + SourceInWords());
    }
    ShowOutcome();
}

// The component takes its properties in this order; the action is the last and runs to its end.
void Frm_Restore::RunComponent() {
    namespace id = zip::unzip_id;
    PKUNZIP.Set(14, true);
    PKUNZIP.Set(id::kArchive, ArchivePath());
    PKUNZIP.Set(10, false);
    PKUNZIP.Set(11, false);
    PKUNZIP.Set(5, true);
    PKUNZIP.Set(6, true);
    PKUNZIP.Set(7, true);
    PKUNZIP.Set(35, true);
    PKUNZIP.Set(id::kDestination, main_.Fld_RestoreTo.Caption());
    PKUNZIP.Set(id::kFileSpec, std::string("*.*"));
    PKUNZIP.Set(id::kAction, id::kActionCount);
    PKUNZIP.Set(id::kAction, id::kActionExtract);
}

void Frm_Restore::RememberDestination() {
    if (main_.Cmb_RestoreFile.Text().empty()) return;
    clsFiles(program()).WriteINI("RESTORE DESTINATION", "RestoreDestination",
                                 main_.Fld_RestoreTo.Caption(),
                                 program().machine.code_page.Upper(SetPath()));
}

void Frm_Restore::ShowOutcome() {
    Ani_File.Stop();
    Lbl_RestorePath.SetCaption(cancelled_ ? "Restore Cancelled by User" : "Restore Complete");
    PB_Folder.SetValue(0);
    PB_File.SetValue(0);
    Lst_Details.Clear();
    Lst_Details.Refresh();
}

void Frm_Restore::Cmd_Ok_Click() { program().desktop.Unload(*this); }

// The disabled button is the signal: the next overall-progress event hands the cancel over.
void Frm_Restore::Cmd_Cancel_Click() { Cmd_Cancel.SetEnabled(false); }

void Frm_Restore::PKUNZIP_OverallProgress(std::int32_t& percent, bool& cancel) {
    program().desktop.DoEvents();
    PB_Folder.SetValue(percent);
    if (Cmd_Cancel.Enabled()) return;
    cancel = true;
    Cmd_Ok.SetVisible(true);
    Cmd_Cancel.SetVisible(false);
    cancelled_ = true;
}

void Frm_Restore::PKUNZIP_FileProgress(std::int32_t& percent) {
    program().desktop.DoEvents();
    PB_File.SetValue(percent);
}

void Frm_Restore::PKUNZIP_Message(const zip::ComponentMessage& message) {
    Lbl_RestorePath.SetCaption(message.text);
    Lst_Details.Add(message.text);
    Lst_Details.SetIndex(Lst_Details.Count() - 1);
    messages_.Handle(message);
}

bool Frm_Restore::AskRetry(const std::string& text) {
    const auto answer = program().desktop.Show({.text = text,
                                                .buttons = forms::Buttons::kRetryCancel,
                                                .icon = forms::Icon::kExclamation,
                                                .title = "Restore"});
    if (answer == forms::Answer::kRetry) return true;
    Cmd_Cancel.SetEnabled(false);
    return false;
}

}  // namespace vantrel
