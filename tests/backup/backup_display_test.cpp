// What the backup window shows of a run's figures, while it works and at its end.
#include "common/error.h"
#include "tests/backup/backup_run_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using std::chrono::milliseconds;

class BackupDisplay : public BackupRun {
  protected:
    BackupDisplay() { SetFigures(20012, 721, 16909, 287); }
    void Cancel(RecordingZip& component) {
        PressCancel();
        component.RaiseOverall(10);
    }
};

TEST_F(BackupDisplay, ShowsFiguresSpeedAndRemainingTime) {
    figures.files_done = 0;
    figures.bytes_done = 0;
    zip.action = [this](RecordingZip& component) {
        component.Figures(figures);
        for (int i = 1; i <= 70; ++i) {
            figures.files_done = static_cast<std::uint64_t>(i) * 240;
            figures.bytes_done = static_cast<std::uint64_t>(i) * 41 * kMb / 10;
            Tick(component, milliseconds(100));
        }
        EXPECT_EQ(window->Lbl_Figures.Caption(),
                  "16,800 of 20,012 files, 287 MB of 721 MB, 41 MB/s, 11 s left");
    };
    Run();
}

TEST_F(BackupDisplay, IsUpdatedAtMostTenTimesASecond) {
    int changes = 0;
    struct Counter : forms::ControlView {
        explicit Counter(int& count) : count_(count) {}
        void Changed(forms::Aspect aspect) override { count_ += aspect == forms::Aspect::kText; }
        int& count_;
    } counter(changes);
    zip.action = [&](RecordingZip& component) {
        component.Figures(figures);
        window->Lbl_Figures.Bind(&counter);
        for (int i = 0; i < 1000; ++i) {
            ++figures.files_done;
            Tick(component, milliseconds(1));
        }
        window->Lbl_Figures.Bind(nullptr);
    };
    Run();
    EXPECT_EQ(changes, 10);
}

TEST_F(BackupDisplay, NumberOfADiskIsShownAtOnceAndBeforeItsQuestion) {
    zip.action = [this](RecordingZip& component) {
        component.Figures(figures);
        figures.disk = 2;
        component.Figures(figures);
        EXPECT_THAT(window->Lbl_Figures.Caption(), EndsWith("721 MB, waiting for disk 2"));
        figures.disk = 0;
        component.Figures(figures);
        EXPECT_THAT(window->Lbl_Figures.Caption(), EndsWith("721 MB"));
    };
    Run();
}

TEST_F(BackupDisplay, ShowsFilesThatAreLeftOutFromTheFirstOn) {
    zip.action = [this](RecordingZip& component) {
        Tick(component, milliseconds(100));
        EXPECT_EQ(window->Lbl_LeftOut.Caption(), "");
        LeaveOut(component, "C:\\Data\\ledger.xls");
        Tick(component, milliseconds(100));
        EXPECT_EQ(window->Lbl_LeftOut.Caption(), "1 file left out: ledger.xls");
    };
    Run();
}

TEST_F(BackupDisplay, WarningAboutAFileThatIsInTheArchiveLeavesNothingOut) {
    zip.action = [this](RecordingZip& component) {
        component.Say("Changed while it was read", zip::MessageKind::kWarning);
        Tick(component, milliseconds(100));
    };
    Run();
    EXPECT_EQ(at_end.left_out, "");
}

TEST_F(BackupDisplay, ShowsTheArchiveWhileItIsWritten) {
    zip.action = [this](RecordingZip&) {
        EXPECT_EQ(window->Lbl_Location.Caption(), "Archive: C:\\Backups\\WEEKLY.zip");
    };
    Run();
}

TEST_F(BackupDisplay, NumbersAreInTheUsersFormat) {
    machine.settings.numbers = {",", ".", 3, 3};
    zip.action = [this](RecordingZip& component) {
        Tick(component, milliseconds(100));
        EXPECT_EQ(window->Lbl_Figures.Caption(), "16.909 of 20.012 files, 287 MB of 721 MB");
    };
    Run();
}

TEST_F(BackupDisplay, SummaryStaysUntilOk) {
    zip.action = [this](RecordingZip& component) {
        figures.files_done = 20011;
        figures.bytes_done = 721 * kMb;
        figures.archive_bytes = 287 * kMb;
        LeaveOut(component, "C:\\Data\\ledger.xls");
        Tick(component, milliseconds(18'000));
    };
    Run();
    EXPECT_EQ(at_end.status, "Backup Complete");
    EXPECT_EQ(at_end.summary, "20,011 files, 721 MB, archive of 287 MB, 18 s");
    EXPECT_EQ(at_end.location, "Archive: C:\\Backups\\WEEKLY.zip");
    EXPECT_EQ(at_end.left_out, "1 file left out: ledger.xls. See the Log tab.");
}

TEST_F(BackupDisplay, FirstThreeNamesStandForAllThatWereLeftOut) {
    zip.action = [this](RecordingZip& component) {
        for (const char* name : {"a", "b", "Sub", "d", "e"}) {
            LeaveOut(component, std::string("C:\\Data\\") + name);
        }
        component.Figures(figures);
    };
    Run();
    EXPECT_EQ(at_end.left_out, "5 files left out: a, b, Sub and 2 more. See the Log tab.");
}

TEST_F(BackupDisplay, ControlCharactersOfANameAreVisible) {
    zip.action = [this](RecordingZip& component) {
        LeaveOut(component, "C:\\Data\\a\rb");
        component.Figures(figures);
    };
    Run();
    EXPECT_EQ(at_end.left_out, "1 file left out: a\\x0db. See the Log tab.");
}

TEST_F(BackupDisplay, LabelAboveTheBarsIsHiddenAtTheEndWithItsCaption) {
    zip.action = [this](RecordingZip&) { EXPECT_TRUE(window->Lbl_BackingUp.Visible()); };
    Run();
    EXPECT_FALSE(window->Lbl_BackingUp.Visible());
    EXPECT_EQ(window->Lbl_BackingUp.Caption(), "Backing Up Files.......");
}

TEST_F(BackupDisplay, TimeOfAQuestionIsNotPartOfTheDuration) {
    desktop.on_box = [this](const forms::Box&) { machine.clock.Advance(milliseconds(3'600'000)); };
    desktop.answers = {forms::Answer::kRetry};
    zip.action = [this](RecordingZip& component) {
        component.questions->AskRetry("The disk is full.");
        Tick(component, milliseconds(7000));
    };
    Run();
    EXPECT_THAT(at_end.summary, EndsWith(", 7 s"));
}

TEST_F(BackupDisplay, CancelledRunHasTheEarlierArchiveUnchanged) {
    machine.PutFile("C:\\Backups\\WEEKLY.zip", "earlier");
    zip.action = [this](RecordingZip& component) {
        Tick(component, milliseconds(8000));
        Cancel(component);
    };
    Run();
    EXPECT_EQ(at_end.summary, "Cancelled after 16,909 of 20,012 files, 287 MB of 721 MB, 8 s");
    EXPECT_EQ(at_end.location, "Earlier archive, unchanged: C:\\Backups\\WEEKLY.zip");
}

TEST_F(BackupDisplay, CancelledRunWithoutAnEarlierArchiveHasNone) {
    zip.action = [this](RecordingZip& component) { Cancel(component); };
    Run();
    EXPECT_EQ(at_end.location, "No archive was made: C:\\Backups\\WEEKLY.zip");
}

// The file in the drive may be a part of the archive that was not finished.
TEST_F(BackupDisplay, CancelledRunOntoDisksClaimsNothingAboutTheDiskInTheDrive) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    machine.PutFile("A:\\WEEKLY.zip", "a part");
    zip.action = [this](RecordingZip& component) { Cancel(component); };
    Run({.multi_volume = "ON", .to_drive = "A:\\"});
    EXPECT_EQ(at_end.location,
              "No complete archive was made, earlier ones are unchanged: A:\\WEEKLY.zip");
}

// The fatal stop leaves no time for a summary.
TEST_F(BackupDisplay, FailedRunShowsTheReasonAndWhatIsOnTheDiskBeforeTheFatalStop) {
    machine.PutFile("C:\\Backups\\WEEKLY.zip", "earlier");
    zip.action = [](RecordingZip& component) {
        component.Say("Out of memory", zip::MessageKind::kError);
        component.FatalStop();
    };
    EXPECT_THROW(Run({}), ProgramEnded);
    ExpectBox(
        "The backup has failed, and Vantrel ends after OK.\r\n\r\nOut of memory\r\nEarlier "
        "archive, unchanged: C:\\Backups\\WEEKLY.zip",
        forms::Icon::kCritical, "Backup");
}

TEST_F(BackupDisplay, KeyboardIsAtOkAtTheEnd) {
    desktop.idle.push_back([this] { EXPECT_EQ(window->ActiveControl(), &window->Cmd_Ok); });
    Run({});
}

TEST_F(BackupDisplay, UnattendedRunPaysNothingForIt) {
    Unattended("WEEKLY.INI");
    zip.action = [](RecordingZip& component) { EXPECT_FALSE(component.Figures); };
    Run();
    EXPECT_EQ(window->Lbl_Figures.Caption(), "");
    EXPECT_EQ(window->Lbl_Location.Caption(), "");
    EXPECT_TRUE(window->Lbl_BackingUp.Visible());
}

TEST_F(BackupDisplay, EventsComeInTheirGivenOrder) {
    zip.action = [this](RecordingZip& component) {
        Diary diary(desktop);
        diary.Follow(window->PB_Folder);
        diary.Follow(window->Lbl_Figures);
        machine.clock.Advance(milliseconds(100));
        component.Figures(figures);
        component.RaiseOverall(42);
        EXPECT_THAT(diary.Lines(), ElementsAre("Lbl_Figures changed", "events", "PB_Folder value"));
    };
    Run();
}

}  // namespace
}  // namespace vantrel::test
