#include "restore/Frm_Restore.h"

#include <utility>

#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "common/error.h"
#include "log/clsLog.h"

namespace vantrel {

Frm_Restore::Frm_Restore(forms::Program& program, const RestoreControls& main_window,
                         std::unique_ptr<zip::PKUNZIP> component)
    : ProgressWindow(program, "Frm_Restore", "Lbl_RestorePath", "Restore"),
      Lbl_RestorePath(path_label_),
      PKUNZIP(*component),
      main_(main_window),
      records_(program, main_window),
      component_(std::move(component)) {
    SetCaption("Restoring Files...");
    Follow(PKUNZIP);
}

std::string Frm_Restore::SetPath() const {
    return program().InApplicationFolder(main_.Cmb_RestoreFile.Text());
}

std::string Frm_Restore::ArchivePath() {
    if (main_.Cmb_RestoreFile.Text().empty()) {
        return main_.Fld_RestoreFile.Caption();
    }
    clsINI set(program());
    set.Read_INI(SetPath());
    // The Restore button has checked the same file. A truncated path could be another archive's.
    const std::string problem = set.RestoreSourceProblem();
    if (!problem.empty()) {
        throw Error(error_number::kBadFileName, name(), problem);
    }
    return set.RestoreFromDrive() + set.RestoreFileName();
}

void Frm_Restore::Form_Activate() {
    records_.WriteStarted();
    cancelled_ = false;
    StartRun("Restoring to: " + main_.Fld_RestoreTo.Caption());
    RunComponent();
    messages_.WriteSummary(PKUNZIP.FailedEntries(), "not restored");
    if (cancelled_) {
        records_.WriteCancelled();
    } else {
        Cmd_Cancel.SetVisible(false);
        Cmd_Ok.SetVisible(true);
        RememberDestination();
        records_.WriteFinished();
    }
    ShowOutcome(cancelled_ ? "Restore Cancelled by User" : "Restore Complete");
    const RunEnd end = EndOfRun();
    ShowSummary(end, RestoredText(end, main_.Fld_RestoreTo.Caption()));
    Lst_Details.Refresh();
}

// The order of the properties is given. The action is the last; setting it runs the
// extraction.
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
    if (main_.Cmb_RestoreFile.Text().empty()) {
        return;
    }
    clsFiles(program()).WriteINI("RESTORE DESTINATION", "RestoreDestination",
                                 main_.Fld_RestoreTo.Caption(),
                                 program().machine.code_page.Upper(SetPath()));
}

void Frm_Restore::Cmd_Ok_Click() { program().desktop.Unload(*this); }

std::string RestoreRecords::SourceText() const {
    const std::string set = controls_.Cmb_RestoreFile.Text();
    return set.empty() ? "ZIP File - " + controls_.Fld_RestoreFile.Caption() : set;
}

void RestoreRecords::LogRecord(const std::string& text) {
    clsLog(program_).WriteToLog("Backup", true, text);
}

void RestoreRecords::WriteStarted() { LogRecord("Starting Restore from " + SourceText()); }

void RestoreRecords::WriteFinished() { LogRecord("Finished Restore from " + SourceText()); }

void RestoreRecords::WriteCancelled() {
    WriteFinished();
    LogRecord("Cancelled by User");
}

// It has the controls of the restore window, and so its dialog; the two are never open together.
Frm_Search::Frm_Search(forms::Program& program, zip::PKUNZIP& component)
    : ProgressWindow(program, "Frm_Restore", "Lbl_RestorePath", "Restore"), component_(component) {
    SetCaption("Searching for Files...");
    path_label_.SetCaption("Please Wait...  Searching the Archive");
    Follow(component_);
    component_.Figures = nullptr;  // a search counts no files
}

Frm_Search::~Frm_Search() {
    component_.OverallProgress = nullptr;
    component_.FileProgress = nullptr;
    component_.Message = nullptr;
    component_.questions = nullptr;
}

void Frm_Search::Message(const zip::ComponentMessage& message) {
    path_label_.SetCaption(message.text);
}

void Frm_Search::Form_Activate() {
    component_.Set(zip::unzip_id::kAction, zip::unzip_id::kActionSearch);
    SetTaskProgress(kNoTaskProgress);
    program().desktop.Unload(*this);
}

void Frm_Search::Cmd_Ok_Click() { program().desktop.Unload(*this); }

bool ConfirmSearch(forms::Desktop& desktop, const std::string& path) {
    return desktop.Show(
               {.text = "The list of files in this archive is damaged or missing:\r\n" + path +
                        "\r\n\r\nPress Search to read the archive and find every file that "
                        "is intact. This can take as long as a restore.",
                .buttons = forms::Buttons::kSearchCancel,
                .icon = forms::Icon::kExclamation,
                .title = "Restore"}) == forms::Answer::kSearch;
}

}  // namespace vantrel
