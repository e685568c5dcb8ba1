// What else is done, or goes wrong, while an archive is listed.

#include "common/error.h"
#include "tests/restore/restore_tab_fixture.h"
#include "tests/support/matchers.h"
#include "tests/zip/zip_builder.h"

namespace vantrel::test {
namespace {

constexpr const char* kOther = "C:\\Backups\\OTHER.zip";

class RestoreMeanwhile : public RestoreTabTest {
  protected:
    RestoreMeanwhile() { ProtectSub(); }
    // An archive with nothing for the protected folder, as `path`, which has been listed.
    void BrowseHarmless(const char* path) {
        machine.PutFile("C:\\Harmless\\top.txt", "old");
        Archive("C:\\Harmless");
        machine.PutFile(path, machine.Content(kArchive));
        Browse(path);
    }
    // It will be listed anew: it is another one than a moment ago.
    void Replace(const char* path) { machine.PutFile(path, machine.Content(path) + "\n"); }
};

// The button waits in the queue a second time, as after a double click.
TEST_F(RestoreMeanwhile, SecondPressDoesNotRestoreInsideTheFirst) {
    Archive();
    Browse(kArchive);
    Replace(kArchive);
    int pressed = 0;
    desktop.on_events.push_back([&] {
        ++pressed;
        tab.actions.Cmd_Restore_Click();
    });
    Restore();
    EXPECT_EQ(pressed, 1);
    EXPECT_THAT(desktop.happened, Contains("show Frm_Restore").Times(1));
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\SUB_002"));
}

TEST_F(RestoreMeanwhile, PressAfterARestoreRestoresAgain) {
    Archive();
    Browse(kArchive);
    Restore();
    Restore();
    EXPECT_THAT(desktop.happened, Contains("show Frm_Restore").Times(2));
}

TEST_F(RestoreMeanwhile, PressAfterOneThatEndedInAnErrorIsTakenAgain) {
    clsCfg cfg(program);
    const std::string list = machine.Content(cfg.ListPath());
    machine.files().RemoveFile(cfg.ListPath());
    Archive();
    Browse(kArchive);
    EXPECT_THROW(tab.actions.Cmd_Restore_Click(), Error);
    machine.PutFile(cfg.ListPath(), list);
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
}

// What is restored is what is chosen when the listing has ended; the pass has to know that.
TEST_F(RestoreMeanwhile, ArchiveThatIsChosenMeanwhileIsTheOneThatThePassKnows) {
    BrowseHarmless(kOther);
    Archive();
    Replace(kOther);
    desktop.on_events.push_back([this] { Browse(kArchive); });
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "beta");
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\top.txt"));
}

TEST_F(RestoreMeanwhile, WindowThatIsClosedMeanwhileRestoresNothing) {
    desktop.Load(tab);
    Archive();
    Browse(kArchive);
    Replace(kArchive);
    desktop.on_events.push_back([this] { desktop.Unload(tab); });
    tab.actions.Cmd_Restore_Click();
    EXPECT_THAT(desktop.happened, Not(Contains("load Frm_Restore")));
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "newer work");
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

// An archive of so many entries that events are handled between them.
class LongListing : public RestoreMeanwhile {
  protected:
    static constexpr int kEntries = 2000;
    LongListing() {
        BuiltArchive archive;
        for (int i = 0; i < kEntries; ++i) {
            archive.entries.push_back({.name = "Sub/" + std::to_string(i)});
        }
        machine.PutFile(kOther, archive.Bytes());
        Archive();
    }
    // Runs `step` when a part of the entries is listed.
    void Meanwhile(std::function<void()> step) {
        desktop.on_events.push_back([this, step = std::move(step)] {
            if (tab.TV_Restore.Count() == 0) {
                return Meanwhile(step);
            }
            listed_before_ = tab.TV_Restore.Count();
            step();
        });
    }
    int listed_before_ = 0;
};

TEST_F(LongListing, HandlesEventsBetweenTheEntries) {
    int handled = 0;
    const std::function<void()> count = [&] {
        ++handled;
        Meanwhile(count);
    };
    Meanwhile(count);
    Browse(kOther);
    EXPECT_EQ(tab.TV_Restore.Count(), kEntries);
    EXPECT_GE(handled, 3);
}

TEST_F(LongListing, ArchiveChosenMeanwhileIsTheOneThatIsListed) {
    Meanwhile([this] { Browse(kArchive); });
    Browse(kOther);
    EXPECT_LT(listed_before_, kEntries);
    EXPECT_THAT(Listed(), ElementsAre("a.txt", "Sub/b.txt"));
    EXPECT_EQ(tab.Fld_Total.Caption(), "2");
    EXPECT_EQ(tab.Fld_RestoreFile.Caption(), kArchive);
    EXPECT_TRUE(tab.TV_Restore.Visible());
    EXPECT_EQ(tab.SSP_TotalFiles.FloodPercent(), 0);
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

TEST_F(LongListing, SetChosenMeanwhileStaysChosen) {
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    Meanwhile([this] { ChooseSet(); });
    Browse(kOther);
    EXPECT_EQ(tab.Cmb_RestoreFile.Text(), "WEEKLY.INI");
    EXPECT_EQ(tab.Fld_RestoreFile.Caption(), kArchive);
    EXPECT_THAT(Listed(), ElementsAre("a.txt", "Sub/b.txt"));
}

TEST_F(LongListing, SetWithoutAnArchiveChosenMeanwhileLeavesNothing) {
    PutSetWithArchive("", "");
    Meanwhile([this] { ChooseSet(); });
    Browse(kOther);
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_EQ(tab.Fld_Total.Caption(), "0");
    EXPECT_TRUE(tab.TV_Restore.Visible());
    EXPECT_EQ(tab.SSP_TotalFiles.FloodPercent(), 0);
}

TEST_F(LongListing, RestoreMeanwhilePassesTheProtectedFoldersFirst) {
    Meanwhile([this] { Restore(); });
    Browse(kOther);
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
    EXPECT_TRUE(machine.Exists("C:\\RESTORE\\Sub\\1999"));
    EXPECT_EQ(tab.TV_Restore.Count(), kEntries);
}

TEST_F(LongListing, ErrorMeanwhileLeavesNothingToRestore) {
    Meanwhile([] { RaiseError(error_number::kPermissionDenied); });
    Browse(kOther);
    EXPECT_LT(tab.TV_Restore.Count(), kEntries);
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
}

TEST_F(LongListing, EndsWhenTheWindowIsClosed) {
    desktop.Load(tab);
    Meanwhile([this] { desktop.Unload(tab); });
    Browse(kOther);
    EXPECT_EQ(tab.TV_Restore.Count(), listed_before_);
}

TEST_F(RestoreMeanwhile, ArchiveThatMayNotBeLookedAtIsAMissingOne) {
    Archive();
    FaultyTab over(machine, program);
    Tab& shown = over.tab;
    desktop.files.push_back(kArchive);
    shown.actions.Cmd_RestoreFile_Click();
    ASSERT_EQ(shown.TV_Restore.Count(), 2);
    over.faulty.plan.Inject({.kind = Call::kFind,
                             .from_then_on = true,
                             .number = error_number::kPermissionDenied,
                             .path_part = "WEEKLY.zip"});
    over.faulty.plan.Inject({.kind = Call::kList,
                             .from_then_on = true,
                             .number = error_number::kPathFileAccess,
                             .path_part = "C:\\Backups"});
    desktop.answers = {forms::Answer::kCancel};
    shown.actions.Cmd_Restore_Click();
    EXPECT_GT(over.faulty.plan.Fired(), 0);
    ExpectBox("The archive cannot be read: C:\\Backups\\WEEKLY.zip (File not found).",
              forms::Icon::kExclamation, "Restore");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "newer work");
}

// Fails the n-th call to the disk, for every n, while `act` runs on a tab of its own.
template <typename Act>
void SweepFailures(TestMachine& machine, forms::Program& program, ScriptedDesktop& desktop,
                   Act&& act) {
    for (int n = 1, fired = 1; fired > 0; ++n) {
        FaultyTab over(machine, program);
        over.tab.Cmb_RestoreFile.Add("WEEKLY.INI");
        over.faulty.plan.Inject({.kind = Call::kAny, .at = n});
        EXPECT_NO_THROW(act(over.tab)) << n;
        EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault) << n;
        fired = over.faulty.plan.Fired();
        if (fired == 0) {
            EXPECT_EQ(over.tab.Fld_Total.Caption(), "2");
            EXPECT_GT(n, 5);
        }
    }
}

TEST_F(RestoreTabTest, WhateverFailsWhileASetIsTakenThePointerComesBack) {
    Archive();
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    SweepFailures(machine, program, desktop,
                  [](Tab& shown) { shown.Cmb_RestoreFile.SetText("WEEKLY.INI"); });
}

TEST_F(RestoreTabTest, WhateverFailsWhileAnArchiveIsBrowsedThePointerComesBack) {
    Archive();
    SweepFailures(machine, program, desktop, [this](Tab& shown) {
        desktop.files.assign(1, kArchive);
        shown.actions.Cmd_RestoreFile_Click();
    });
}

}  // namespace
}  // namespace vantrel::test
