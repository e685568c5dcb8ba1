// The checks between pressing Backup Now and the backup window. With somebody there every refusal
// is a message box; without, it is three log records, and the rules are stricter.
#pragma once

#include "backup/backup_controls.h"
#include "forms/program.h"

namespace vantrel {

// Checks, and shows Frm_Backup modally when everything passes. Traps nothing.
void Cmd_Backup_Click(forms::Program& program, const BackupControls& controls);

}  // namespace vantrel
