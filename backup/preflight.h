// The checks between the Backup Now button and the backup window. Attended, a refusal is a message
// box. Unattended, it is three log records and exit code 2, and the rules are stricter, because
// no user can change a disk. Window thread only.
#pragma once

#include "backup/backup_controls.h"
#include "forms/program.h"

namespace vantrel {

// Runs the checks for the set that `controls` show and, when all pass, shows Frm_Backup modally.
// Traps no errors.
void Cmd_Backup_Click(forms::Program& program, const BackupControls& controls);

}  // namespace vantrel
