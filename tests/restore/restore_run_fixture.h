// The restore window over a component that extracts nothing.
#pragma once

#include <memory>
#include <string>

#include "restore/Frm_Restore.h"
#include "tests/restore/recording_unzip.h"
#include "tests/restore/restore_tab_fixture.h"

namespace vantrel::test {

class RestoreRun : public RestoreTabTest {
  protected:
    RestoreRun() {
        Archive();
        machine.PutFile("C:\\Browsed.zip", machine.Content(kArchive));
        tab.Fld_RestoreFile.SetCaption("C:\\Browsed.zip");
        tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    }
    // Shows the window until it closes; the user presses OK at the end.
    void Run() { Run(program); }
    void Run(forms::Program& there) {
        window = std::make_unique<Frm_Restore>(
            there, tab.Controls(), std::make_unique<RecordingUnzip>(there.machine, unzip));
        desktop.idle.push_back([this] {
            at_end = {window->Lbl_RestorePath.Caption(), window->PB_Folder.Value(),
                      window->PB_File.Value(),           window->Lst_Details.Count(),
                      window->Ani_File.Playing(),        window->Cmd_Ok.Visible(),
                      window->Cmd_Cancel.Visible()};
            window->Cmd_Ok.UserPress();
        });
        desktop.ShowModal(*window);
    }
    // The chosen set's archive is not the one that the label shows.
    void ChooseSetOfAnotherArchive() {
        PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
        ChooseSet();
        tab.Fld_RestoreFile.SetCaption("C:\\Browsed.zip");
    }

    struct AtEnd {
        std::string status;
        int overall = -1;
        int file = -1;
        int details = -1;
        bool playing = true;
        bool ok_visible = false;
        bool cancel_visible = true;
    } at_end;
    RecordingUnzip::Record unzip;
    std::unique_ptr<Frm_Restore> window;
};

}  // namespace vantrel::test
