#include "ui/edit_tab.h"

namespace vantrel {

EditTab::EditTab(forms::Form& window)
    : Fra_INIFileList(window, "Fra_INIFileList"),
      Lbl_INIEdit(window, "Lbl_INIEdit", "INI File List"),
      Fil_INI(window, "Fil_INI", "*.INI"),
      Cmd_INIRefresh(window, "Cmd_INIRefresh", "&Refresh"),
      Fra_INIEdit(window, "Fra_INIEdit"),
      Lbl_INIContents(window, "Lbl_INIContents", "INI File Contents"),
      Fld_INI(window, "Fld_INI", true),
      Cmd_Save(window, "Cmd_Save", "&Save") {
    Fil_INI.SetTooltip("Selection of Existing Configuration Files");
    Cmd_INIRefresh.SetTooltip("Refresh the List of INI Files");
    Fld_INI.SetTooltip("Contents of the Configuration File");
    Cmd_Save.SetTooltip("Save any Changes you have made to the Configuration File");
}

}  // namespace vantrel
