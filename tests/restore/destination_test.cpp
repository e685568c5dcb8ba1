// The dialog for the destination of a restore, where it differs from that of a backup.
#include "restore/Frm_RestoreWhere.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/restore/restore_tab_fixture.h"

namespace vantrel::test {
namespace {

class RestoreDestination : public RestoreTabTest {
  protected:
    void Open() {
        dialog = std::make_unique<Frm_RestoreWhere>(program, tab.Fld_RestoreTo);
        desktop.Load(*dialog);
    }
    std::unique_ptr<Frm_RestoreWhere> dialog;
};

TEST_F(RestoreDestination, OpensAtTheDestinationShown) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Here");
    tab.Fld_RestoreTo.SetCaption("D:\\HERE");
    Open();
    EXPECT_EQ(dialog->Dri_DriveList.Drive(), "d:");
    EXPECT_EQ(dialog->Dir_DirList.Path(), "D:\\HERE");
}

TEST_F(RestoreDestination, FolderThatTheCodePageCannotHoldIsRefused) {
    const std::string folder = "C:\\\xE6\x96\x87";
    machine.MakeFolders(folder);
    Open();
    dialog->Dir_DirList.SetPath(folder);
    dialog->Cmd_Ok.UserPress();
    ExpectBox("Unable to use the folder " + folder +
                  ".\r\nIts name holds characters that a Backup Set cannot store.",
              forms::Icon::kExclamation, "Backup");
    EXPECT_TRUE(dialog->Loaded());
    EXPECT_EQ(tab.Fld_RestoreTo.Caption(), "");
    dialog->Cmd_Cancel.UserPress();
}

TEST_F(RestoreDestination, VanishedOneIsTold) {
    tab.Fld_RestoreTo.SetCaption("C:\\GONE");
    Open();
    ExpectBox("Unable to find C:\\GONE\r\nPlease select an available path.",
              forms::Icon::kExclamation, "Restore To Where");
    EXPECT_EQ(dialog->Dir_DirList.Path(), "C:\\Vantrel");
}

}  // namespace
}  // namespace vantrel::test
