// A set that is selected, and a dialog over it.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "backup/backup_controls.h"
#include "forms/form.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {

// A window with the controls that show the selected set, without the rest of the main window.
class SelectedSet : public forms::Form {
  public:
    explicit SelectedSet(forms::Program& program)
        : Form(program, "Frm_Mainmenu"),
          Cmb_BackupSet(*this, "Cmb_BackupSet"),
          Dir_DirList(*this, "Dir_DirList"),
          Lbl_FilestoBackup(*this, "Lbl_FilestoBackup"),
          Lbl_BackupFileName(*this, "Lbl_BackupFileName"),
          Fld_BackupWhere(*this, "Fld_BackupWhere"),
          Fld_BackupOptions(*this, "Fld_BackupOptions") {}
    forms::ComboBox Cmb_BackupSet;
    forms::FolderList Dir_DirList;
    forms::Label Lbl_FilestoBackup;
    forms::Label Lbl_BackupFileName;
    forms::Label Fld_BackupWhere;
    forms::Label Fld_BackupOptions;
    BackupControls Controls() {
        return {Cmb_BackupSet,      Dir_DirList,     Lbl_FilestoBackup,
                Lbl_BackupFileName, Fld_BackupWhere, Fld_BackupOptions};
    }
};

class SelectedSetTest : public ProgramFixture {
  protected:
    SelectedSetTest() { MakeSourceAndDestination(); }
    void Select(const SetValues& set) {
        PutSet("WEEKLY.INI", set);
        window.Cmb_BackupSet.Add("WEEKLY.INI");
        window.Cmb_BackupSet.SetText("WEEKLY.INI");
        window.Fld_BackupWhere.SetCaption(set.to_drive);
        window.Dir_DirList.SetPath("C:\\Data");
    }
    SelectedSet window{program};
};

template <typename Dialog>
class DialogTest : public SelectedSetTest {
  protected:
    Dialog& Open() {
        dialog = std::make_unique<Dialog>(program, window.Controls());
        desktop.Load(*dialog);
        return *dialog;
    }
    clsINI Stored() {
        clsINI set(program);
        set.Read_INI("C:\\Vantrel\\WEEKLY.INI");
        return set;
    }
    std::unique_ptr<Dialog> dialog;
};

}  // namespace vantrel::test
