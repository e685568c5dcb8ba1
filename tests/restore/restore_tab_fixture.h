// The Restore tab on a machine with something to back up and nothing protected.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "forms/file_lists.h"
#include "forms/form.h"
#include "protect/clsCfg.h"
#include "restore/restore_actions.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/program_fixture.h"
#include "zip/pkzip.h"

namespace vantrel::test {

inline constexpr const char* kArchive = "C:\\Backups\\WEEKLY.zip";

// The Restore tab's controls without the rest of the main window.
class Tab : public forms::Form {
  public:
    explicit Tab(forms::Program& the_program)
        : Form(the_program, "Frm_Mainmenu"),
          Cmb_RestoreFile(*this, "Cmb_RestoreFile"),
          Fld_RestoreFile(*this, "Fld_RestoreFile"),
          Fld_RestoreTo(*this, "Fld_RestoreTo"),
          TV_Restore(*this, "TV_Restore"),
          Fld_Total(*this, "Fld_Total"),
          SSP_TotalFiles(*this, "SSP_TotalFiles"),
          PKUNZIP(the_program.machine),
          actions(the_program, Controls()) {
        Cmb_RestoreFile.Click = [this] { actions.Cmb_RestoreFile_Click(); };
    }
    RestoreControls Controls() {
        return {Cmb_RestoreFile, Fld_RestoreFile, Fld_RestoreTo, TV_Restore,
                Fld_Total,       SSP_TotalFiles,  PKUNZIP};
    }

    forms::ComboBox Cmb_RestoreFile;
    forms::Label Fld_RestoreFile;
    forms::Label Fld_RestoreTo;
    forms::Tree TV_Restore;
    forms::Label Fld_Total;
    forms::Panel SSP_TotalFiles;
    zip::PKUNZIP PKUNZIP;
    RestoreActions actions;
};

// Another tab, for restores to C:\RESTORE, over the same disk, which can fail.
struct FaultyTab {
    FaultyTab(TestMachine& machine, forms::Program& program)
        : faulty(machine.files()),
          with_faults(WithFiles(machine.machine(), faulty)),
          there{with_faults, program.desktop, program.globals} {
        tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    }
    FaultyFileSystem faulty;
    platform::Machine with_faults;
    forms::Program there;
    Tab tab{there};
};

class RestoreTabTest : public ProgramFixture {
  protected:
    RestoreTabTest() {
        MakeSourceAndDestination();
        clsCfg cfg(program);
        cfg.Create_CFG(cfg.ListPath());
    }
    void Archive(const std::string& folder = "C:\\Data") {
        namespace id = zip::zip_id;
        zip::PKZIP component(machine.machine());
        component.Set(id::kLevel, std::int16_t{9});
        component.Set(id::kSubFolders, true);
        component.Set(id::kArchive, std::string(kArchive));
        component.Set(id::kFileSpec, "\"" + folder + "\\*.*\"");
        component.Set(id::kAction, id::kActionAdd);
        ASSERT_TRUE(machine.Exists(kArchive));
    }
    void Protect(const std::string& folder) {
        platform::AppendToFile(machine.files(), clsCfg(program).ListPath(), folder + "\r\n");
    }
    // The folder that a restore to C:\RESTORE writes b.txt of the archive into; it has a newer one.
    void ProtectSub() {
        Protect("C:\\RESTORE\\SUB");
        machine.PutFile("C:\\RESTORE\\Sub\\b.txt", "newer work");
        tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    }
    void PutSetWithArchive(const std::string& from, const std::string& name) {
        machine.PutFile("C:\\Vantrel\\WEEKLY.INI", "[RESTORE SOURCE]\r\nRestoreFromDrive=" + from +
                                                       "\r\nRestoreFileName=" + name + "\r\n");
        tab.Cmb_RestoreFile.Add("WEEKLY.INI");
    }
    void ChooseSet() { tab.Cmb_RestoreFile.SetText("WEEKLY.INI"); }
    void Browse(const std::string& path) {
        desktop.files.push_back(path);
        tab.actions.Cmd_RestoreFile_Click();
    }
    std::vector<std::string> Listed() const {
        std::vector<std::string> names;
        for (int i = 1; i <= tab.TV_Restore.Count(); ++i) {
            names.push_back(tab.TV_Restore.At(i).text);
        }
        return names;
    }
    void PressOkWhenIdle() {
        desktop.idle.push_back(
            [this] { dynamic_cast<forms::Button*>(desktop.Front()->Find("Cmd_Ok"))->UserPress(); });
    }
    void Restore() {
        PressOkWhenIdle();
        tab.actions.Cmd_Restore_Click();
    }

    Tab tab{program};
};

}  // namespace vantrel::test
