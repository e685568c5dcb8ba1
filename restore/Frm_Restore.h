// The restore window: its activation runs one whole extraction.
#pragma once

#include <memory>
#include <string>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "log/component_messages.h"
#include "restore/restore_controls.h"
#include "zip/pkunzip.h"

namespace vantrel {

class Frm_Restore : public forms::Form, private zip::Questions {
  public:
    Frm_Restore(forms::Program& program, const RestoreControls& main_window,
                std::unique_ptr<zip::PKUNZIP> component);

    forms::Button Cmd_Ok;
    forms::Button Cmd_Cancel;
    forms::Frame Fra_Details;
    forms::ListBox Lst_Details;
    forms::Frame Frame1;
    forms::Label Lbl_File;
    forms::Label Lbl_JobProgress;
    forms::Label Lbl_RestorePath;
    forms::Label Lbl_Folder;
    forms::Animation Ani_File;
    forms::ProgressBar PB_Folder;
    forms::ProgressBar PB_File;
    zip::PKUNZIP& PKUNZIP;

    void Form_Load() override;
    void Form_Activate() override;

    void Cmd_Ok_Click();
    void Cmd_Cancel_Click();
    void PKUNZIP_OverallProgress(std::int32_t& percent, bool& cancel);
    void PKUNZIP_FileProgress(std::int32_t& percent);
    void PKUNZIP_Message(const zip::ComponentMessage& message);

  private:
    bool AskRetry(const std::string& text) override;
    void RunComponent();
    void RememberDestination();
    void ShowOutcome();
    void LogRecord(const std::string& text);
    // "ZIP File - C:\x.zip" for a browsed archive, the set's name for a chosen set.
    std::string SourceInWords() const;
    std::string ArchivePath();
    std::string SetPath() const;

    RestoreControls main_;
    std::unique_ptr<zip::PKUNZIP> component_;
    ComponentMessages messages_;
    bool cancelled_ = false;
};

}  // namespace vantrel
