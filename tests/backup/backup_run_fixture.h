// The backup window over a component that compresses nothing.
#pragma once

#include <memory>
#include <string>

#include "backup/Frm_Backup.h"
#include "backupset/clsINI.h"
#include "tests/progress/run_fixture.h"

namespace vantrel::test {

class RecordingZip
    : public Recording<RecordingZip, zip::PKZIP, zip::zip_id::kAction, zip::zip_id::kActionAdd> {
  public:
    using Recording::Recording;
    std::int32_t SkippedFiles() const override { return record_.skipped; }
};

class BackupRun : public RunFixture<ProgramFixture, Frm_Backup, RecordingZip> {
  protected:
    BackupRun() { MakeSourceAndDestination(); }

    void Run(const SetValues& set = {}) { Run(set, program); }
    void Run(const SetValues& set, forms::Program& there) {
        PutSet("WEEKLY.INI", set);
        RunSet("WEEKLY.INI", there);
    }
    void RunSet(const std::string& name, forms::Program& there) {
        ShowToItsEnd(std::make_unique<Frm_Backup>(
                         there, name, std::make_unique<RecordingZip>(there.machine, zip)),
                     "Lbl_BackupPath");
    }
    void RunWithWarnings(int count) {
        zip.action = [count](RecordingZip& component) {
            for (int i = 0; i < count; ++i) {
                component.Say("no " + std::to_string(i), zip::MessageKind::kWarning);
            }
        };
        Run();
    }
    std::string RestoreKey(const std::string& which) {
        clsINI set(program);
        set.Read_INI("C:\\Vantrel\\WEEKLY.INI");
        return which == "RestoreFromDrive" ? set.RestoreFromDrive() : set.RestoreFileName();
    }

    RecordingZip::Record zip;
};

}  // namespace vantrel::test
