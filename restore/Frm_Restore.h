// The restore window: its activation runs one whole extraction.
#pragma once

#include <memory>
#include <string>

#include "forms/controls.h"
#include "progress/progress_window.h"
#include "restore/restore_controls.h"
#include "restore/restore_records.h"
#include "zip/pkunzip.h"

namespace vantrel {

class Frm_Restore : public ProgressWindow {
  public:
    Frm_Restore(forms::Program& program, const RestoreControls& main_window,
                std::unique_ptr<zip::PKUNZIP> component);

    forms::Label& Lbl_RestorePath;
    zip::PKUNZIP& PKUNZIP;

    void Form_Activate() override;

    void Cmd_Ok_Click() override;
    void PKUNZIP_OverallProgress(std::int32_t& percent, bool& cancel);
    void PKUNZIP_FileProgress(std::int32_t& percent);
    void PKUNZIP_Message(const zip::ComponentMessage& message);

  private:
    void RunComponent();
    void RememberDestination();
    std::string ArchivePath();
    std::string SetPath() const;

    RestoreControls main_;
    RestoreRecords records_;
    std::unique_ptr<zip::PKUNZIP> component_;
};

}  // namespace vantrel
