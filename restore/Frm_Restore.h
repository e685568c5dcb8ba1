// The restore window: its activation runs one complete extraction. Window thread only; the
// component's own threads never call back into the window.
#pragma once

#include <memory>
#include <string>

#include "forms/controls.h"
#include "forms/program.h"
#include "progress/progress_window.h"
#include "restore/restore_controls.h"
#include "zip/pkunzip.h"

namespace vantrel {

// Writes the log records of a restore. Each names its source: the set, or the browsed archive.
class RestoreRecords {
  public:
    // The source is the one that `controls` show when a record is written.
    RestoreRecords(forms::Program& program, const RestoreControls& controls)
        : program_(program), controls_(controls) {}

    void WriteStarted();
    void WriteFinished();
    // Both records of a cancelled run: "Finished Restore ..." and "Cancelled by User".
    void WriteCancelled();

  private:
    // "ZIP File - C:\x.zip" for a browsed archive, the set's name for a chosen set.
    std::string SourceText() const;
    void LogRecord(const std::string& text);

    forms::Program& program_;
    RestoreControls controls_;
};

class Frm_Restore : public ProgressWindow {
  public:
    Frm_Restore(forms::Program& program, const RestoreControls& main_window,
                std::unique_ptr<zip::PKUNZIP> component);

    forms::Label& Lbl_RestorePath;
    zip::PKUNZIP& PKUNZIP;

    void Form_Activate() override;

    void Cmd_Ok_Click() override;

  private:
    void RunComponent();
    void RememberDestination();
    std::string ArchivePath();
    std::string SetPath() const;

    RestoreControls main_;
    RestoreRecords records_;
    std::unique_ptr<zip::PKUNZIP> component_;
};

// The window of a search: its activation searches the archive that was listed last, with progress
// and Cancel. Then it closes.
class Frm_Search : public ProgressWindow {
  public:
    // `component` is borrowed, and has counted the archive.
    Frm_Search(forms::Program& program, zip::PKUNZIP& component);
    ~Frm_Search() override;

    void Form_Activate() override;
    void Cmd_Ok_Click() override;

  private:
    void Message(const zip::ComponentMessage& message) override;

    zip::PKUNZIP& component_;
};

// Asks whether the archive at `path`, whose directory is damaged, is to be searched for its files.
bool ConfirmSearch(forms::Desktop& desktop, const std::string& path);

}  // namespace vantrel
