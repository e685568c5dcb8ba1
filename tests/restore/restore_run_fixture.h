// The restore window over a component that extracts nothing.
#pragma once

#include <memory>

#include "restore/Frm_Restore.h"
#include "tests/progress/run_fixture.h"
#include "tests/restore/restore_tab_fixture.h"

namespace vantrel::test {

class RecordingUnzip : public Recording<RecordingUnzip, zip::PKUNZIP, zip::unzip_id::kAction,
                                        zip::unzip_id::kActionExtract> {
  public:
    using Recording::Recording;
};

class RestoreRun : public RunFixture<RestoreTabTest, Frm_Restore, RecordingUnzip> {
  protected:
    RestoreRun() {
        tab.Fld_RestoreFile.SetCaption("C:\\Browsed.zip");
        tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    }
    void Run() { Run(program); }
    void Run(forms::Program& there) {
        ShowToItsEnd(
            std::make_unique<Frm_Restore>(there, tab.Controls(),
                                          std::make_unique<RecordingUnzip>(there.machine, unzip)),
            "Lbl_RestorePath");
    }
    // The chosen set's archive is not the one that the label shows.
    void ChooseSetOfAnotherArchive() {
        Archive();
        PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
        ChooseSet();
        tab.Fld_RestoreFile.SetCaption("C:\\Browsed.zip");
    }

    RecordingUnzip::Record unzip;
};

}  // namespace vantrel::test
