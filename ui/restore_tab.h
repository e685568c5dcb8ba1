// The Restore tab: the archive, its entries and the destination. RestoreActions has the handlers.
#pragma once

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "restore/restore_actions.h"
#include "ui/main_status.h"
#include "zip/pkunzip.h"

namespace vantrel {

struct RestoreTab {
    explicit RestoreTab(forms::Form& window);
    forms::Frame Fra_RestoreFull;
    forms::Label Lbl_RestoreFile;
    forms::ComboBox Cmb_RestoreFile;
    forms::Label Fld_RestoreFile;
    forms::Button Cmd_RestoreFile;
    forms::Label Lbl_RestoreTo;
    forms::Label Fld_RestoreTo;
    forms::Button Cmd_RestoreTo;
    forms::Tree TV_Restore;
    forms::Panel SSP_TotalFiles;
    forms::Label Lbl_NoOfFiles;
    forms::Label Fld_Total;
    forms::Button Cmd_Restore;
    forms::Button Cmd_Exit;
    zip::PKUNZIP PKUNZIP;  // lists archives
    RestoreActions actions;

    RestoreStatus Status() const;
};

}  // namespace vantrel
