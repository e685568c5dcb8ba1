// Titles of the windows that open over the main window, and every control of them with what is
// written on it, before anything has been loaded.

#include <memory>

#include "backup/Frm_Backup.h"
#include "backup/Frm_BackupOptions.h"
#include "backup/Frm_BackupWhere.h"
#include "restore/Frm_Restore.h"
#include "restore/Frm_RestoreWhere.h"
#include "tests/app/caption_table.h"
#include "tests/backup/dialog_fixture.h"
#include "tests/restore/restore_tab_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using Rows = std::vector<Row>;

// The window of a long run; the two differ in a label or two.
Rows ProgressRows(const std::string& path_label) {
    return {{"Cmd_Ok", "OK"},
            {"Cmd_Cancel", "Cancel"},
            {"Fra_Details", "Details"},
            {"Lst_Details"},
            {"Frame1"},
            {"Lbl_File", "File Progress"},
            {"Lbl_JobProgress", "Overall Progress"},
            {"Lbl_Folder", "Status"},
            {"Ani_File"},
            {"PB_Folder"},
            {"PB_File"},
            {"Lbl_Figures"},
            {"Lbl_Location"},
            {"Lbl_LeftOut"},
            {path_label, "Please Wait...  Processing Files"}};
}

const Rows kFolderDialog = {{"Dri_DriveList"},
                            {"Dir_DirList"},
                            {"Cmd_NewFolder", "New &Folder"},
                            {"Cmd_Ok", "OK"},
                            {"Cmd_Cancel", "Cancel"}};

const Rows kOptions = {{"Fra_Options"},
                       {"Chk_TimeBackup", "Time Backup"},
                       {"Chk_MultiVolumeBackup", "Multi Volume Backup"},
                       {"Chk_BackupSubDirectories", "Backup Sub Directories"},
                       {"Lbl_BackupFiles", "Backup Files"},
                       {"Fld_BackupFile"},
                       {"Lbl_BackupFileName", "Backup File Name"},
                       {"Fld_BackupFileName"},
                       {"Cmd_Ok", "OK"},
                       {"Cmd_Cancel", "Cancel"}};

class DialogCaptions : public ProgramFixture {
  protected:
    static void ExpectSays(const forms::Form& window, const std::string& title, const Rows& rows) {
        EXPECT_EQ(window.Caption(), title);
        EXPECT_THAT(RowsOf(window), ElementsAreArray(rows));
    }
    SelectedSet selected{program};
    Tab restore_tab{program};
};

TEST_F(DialogCaptions, BackupRun) {
    Rows rows = ProgressRows("Lbl_BackupPath");
    rows.push_back({"Lbl_BackingUp", "Backing Up Files......."});
    ExpectSays(Frm_Backup(program, "WEEKLY.INI", std::make_unique<zip::PKZIP>(machine.machine())),
               "Backing Up Files...", rows);
}

TEST_F(DialogCaptions, RestoreRun) {
    ExpectSays(Frm_Restore(program, restore_tab.Controls(),
                           std::make_unique<zip::PKUNZIP>(machine.machine())),
               "Restoring Files...", ProgressRows("Lbl_RestorePath"));
}

TEST_F(DialogCaptions, BackupDestination) {
    ExpectSays(Frm_BackupWhere(program, selected.Controls()), "Backup to Where?", kFolderDialog);
}

TEST_F(DialogCaptions, RestoreDestination) {
    ExpectSays(Frm_RestoreWhere(program, restore_tab.Fld_RestoreTo), "Restore To Where?",
               kFolderDialog);
}

TEST_F(DialogCaptions, BackupOptions) {
    ExpectSays(Frm_BackupOptions(program, selected.Controls()), "Backup Options", kOptions);
}

}  // namespace
}  // namespace vantrel::test
