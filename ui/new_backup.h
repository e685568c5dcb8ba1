// The "New Backup" button: asks for a name and makes a set of that name.
#pragma once

#include "forms/lists.h"
#include "forms/program.h"
#include "ui/backup_tab.h"

namespace vantrel {

// Adds the new set to both lists of sets and selects it on the Backup tab. A name that is taken,
// in whatever letter case, is refused and the set of that name selected instead. Traps its errors:
// a name that cannot be a file's is error 52, and no list shows a set that could not be made.
void Cmd_AddNew_Click(forms::Program& program, BackupTab& tab, forms::ComboBox& Cmb_RestoreFile);

}  // namespace vantrel
