// What the restore room needs of the main window: the controls of its Restore tab, and the unzip
// component that lists archives for it.
#pragma once

#include "forms/controls.h"
#include "forms/lists.h"
#include "zip/pkunzip.h"

namespace vantrel {

struct RestoreControls {
    forms::ComboBox& Cmb_RestoreFile;
    forms::Label& Fld_RestoreFile;
    forms::Label& Fld_RestoreTo;
    forms::Tree& TV_Restore;
    forms::Label& Fld_Total;
    forms::Panel& SSP_TotalFiles;
    zip::PKUNZIP& PKUNZIP;
};

}  // namespace vantrel
