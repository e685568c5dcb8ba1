// The checks between pressing Backup Now and the backup window. With somebody there every refusal is
// a message box; without, it is three log records, and the rules are stricter.
#pragma once

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/lists.h"
#include "forms/program.h"

namespace vantrel {

// What the main window shows of the selected set.
struct BackupControls {
    forms::ComboBox& Cmb_BackupSet;
    forms::Label& Fld_BackupWhere;
    forms::FolderList& Dir_DirList;
};

// Checks, and shows Frm_Backup modally when everything passes. Traps nothing.
void Cmd_Backup_Click(forms::Program& program, const BackupControls& controls);

}  // namespace vantrel
