#include "ui/restore_tab.h"

namespace vantrel {

RestoreTab::RestoreTab(forms::Form& window)
    : Fra_RestoreFull(window, "Fra_RestoreFull"),
      Lbl_RestoreFile(window, "Lbl_RestoreFile", "&What to Restore?"),
      Cmb_RestoreFile(window, "Cmb_RestoreFile"),
      Fld_RestoreFile(window, "Fld_RestoreFile"),
      Cmd_RestoreFile(window, "Cmd_RestoreFile", "..."),
      Lbl_RestoreTo(window, "Lbl_RestoreTo", "W&here to Restore To?"),
      Fld_RestoreTo(window, "Fld_RestoreTo"),
      Cmd_RestoreTo(window, "Cmd_RestoreTo", "..."),
      TV_Restore(window, "TV_Restore"),
      SSP_TotalFiles(window, "SSP_TotalFiles"),
      Lbl_NoOfFiles(window, "Lbl_NoOfFiles", "No. Of Files"),
      Fld_Total(window, "Fld_Total"),
      Cmd_Restore(window, "Cmd_Restore", "&Restore Now"),
      Cmd_Exit(window, "Cmd_Exit_1", "&Exit"),
      PKUNZIP(window.program().machine),
      actions(window.program(), {Cmb_RestoreFile, Fld_RestoreFile, Fld_RestoreTo, TV_Restore,
                                 Fld_Total, SSP_TotalFiles, PKUNZIP}) {
    Cmb_RestoreFile.Click = [this] { actions.Cmb_RestoreFile_Click(); };
    Cmd_RestoreFile.Click = [this] { actions.Cmd_RestoreFile_Click(); };
    Cmd_RestoreTo.Click = [this] { actions.Cmd_RestoreTo_Click(); };
    Cmd_Restore.Click = [this] { actions.Cmd_Restore_Click(); };
    Cmd_RestoreFile.SetTooltip("Browse for a Zip File to Restore");
    SSP_TotalFiles.SetTooltip("Total Number of Files found in Restore File");
    Fld_Total.SetTooltip("Number of Files found in the Restore File");
}

// The component can ask for disks only while it lists or searches an archive.
RestoreStatus RestoreTab::Status() const {
    return {.archive = Fld_RestoreFile.Caption(),
            .is_reading = PKUNZIP.questions != nullptr,
            .entries = TV_Restore.Count(),
            .bytes = PKUNZIP.CountedBytes(),
            .destination = Fld_RestoreTo.Caption()};
}

}  // namespace vantrel
