// The "New Backup" button: asks for a name and makes a set of that name.
#pragma once

#include "forms/lists.h"
#include "forms/program.h"
#include "ui/backup_tab.h"

namespace vantrel {

// Adds the new set to both lists of sets and selects it on the Backup tab. A name that is in use,
// in any letter case, is refused with one message and the set of that name is selected if it is
// listed. Shows its errors: 52 for a name that Windows cannot hold. A set whose file cannot be
// created is added to no list.
void Cmd_AddNew_Click(forms::Program& program, BackupTab& tab, forms::ComboBox& Cmb_RestoreFile);

}  // namespace vantrel
