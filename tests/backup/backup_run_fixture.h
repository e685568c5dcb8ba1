// The backup window over a component that compresses nothing.
#pragma once

#include <memory>
#include <string>

#include "backup/Frm_Backup.h"
#include "backupset/clsINI.h"
#include "tests/backup/recording_zip.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {

class BackupRun : public ProgramFixture {
  protected:
    BackupRun() { MakeSourceAndDestination(); }

    // Shows the window over the set until it closes; attended, the user presses OK at the end.
    void Run(const SetValues& set) { Run(set, program); }
    void Run(const SetValues& set, forms::Program& there) {
        PutSet("WEEKLY.INI", set);
        window = std::make_unique<Frm_Backup>(there, "WEEKLY.INI",
                                              std::make_unique<RecordingZip>(there.machine, zip));
        if (!there.Unattended()) {
            desktop.idle.push_back([this] {
                at_end = {window->Lbl_BackupPath.Caption(), window->PB_Folder.Value(),
                          window->PB_File.Value(),          window->Lst_Details.Count(),
                          window->Cmd_Ok.Visible(),         window->Cmd_Cancel.Visible(),
                          window->Ani_File.Playing()};
                window->Cmd_Ok.UserPress();
            });
        }
        desktop.ShowModal(*window);
    }
    std::string RestoreKey(const std::string& which) {
        clsINI set(program);
        set.Read_INI("C:\\Vantrel\\WEEKLY.INI");
        return which == "RestoreFromDrive" ? set.RestoreFromDrive() : set.RestoreFileName();
    }
    void PressCancel() { window->Cmd_Cancel.UserPress(); }

    struct AtEnd {
        std::string status;
        int overall = -1;
        int file = -1;
        int details = -1;
        bool ok_visible = false;
        bool cancel_visible = true;
        bool playing = true;
    } at_end;
    RecordingZip::Record zip;
    std::unique_ptr<Frm_Backup> window;
};

}  // namespace vantrel::test
