// The tab when the disk fails under it.
#include "tests/restore/restore_tab_fixture.h"
#include "tests/support/faulty_file_system.h"

namespace vantrel::test {
namespace {

// Fails the n-th call to the disk, for every n, while `act` runs on a tab of its own.
template <typename Act>
void SweepFailures(TestMachine& machine, ScriptedDesktop& desktop, Act&& act) {
    for (int n = 1, fired = 1; fired > 0; ++n) {
        FaultyFileSystem faulty(machine.files());
        platform::Machine failing = WithFiles(machine.machine(), faulty);
        forms::Program there{failing, desktop};
        there.globals.CrLf = "\r\n";
        Tab tab(there);
        tab.Cmb_RestoreFile.Add("WEEKLY.INI");
        faulty.plan.Inject({.kind = Call::kAny, .at = n});
        EXPECT_NO_THROW(act(tab)) << n;
        EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault) << n;
        fired = faulty.plan.Fired();
        if (fired == 0) {
            EXPECT_EQ(tab.Fld_Total.Caption(), "2");
            EXPECT_GT(n, 5);
        }
    }
}

TEST_F(RestoreTabTest, WhateverFailsWhileASetIsTakenThePointerComesBack) {
    Archive();
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    SweepFailures(machine, desktop,
                  [](Tab& shown) { shown.Cmb_RestoreFile.SetText("WEEKLY.INI"); });
}

TEST_F(RestoreTabTest, WhateverFailsWhileAnArchiveIsBrowsedThePointerComesBack) {
    Archive();
    SweepFailures(machine, desktop, [this](Tab& shown) {
        desktop.files.assign(1, kArchive);
        shown.actions.Cmd_RestoreFile_Click();
    });
}

}  // namespace
}  // namespace vantrel::test
