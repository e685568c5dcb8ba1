// The controls of the main window's Restore tab, and its unzip component, which lists archives.
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
