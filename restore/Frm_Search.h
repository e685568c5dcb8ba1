// The window of a search: its activation searches the archive that was listed last, with progress
// and Cancel. Then it closes. Window thread only.
#pragma once

#include "forms/program.h"
#include "progress/progress_window.h"
#include "zip/pkunzip.h"

namespace vantrel {

class Frm_Search : public ProgressWindow {
  public:
    // `component` is borrowed, and has counted the archive.
    Frm_Search(forms::Program& program, zip::PKUNZIP& component);
    ~Frm_Search() override;

    void Form_Activate() override;
    void Cmd_Ok_Click() override;

  private:
    zip::PKUNZIP& component_;
};

// Asks whether the archive at `path`, whose directory is damaged, is to be searched for its files.
bool ConfirmSearch(forms::Desktop& desktop, const std::string& path);

}  // namespace vantrel
