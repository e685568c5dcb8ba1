#include "common/error.h"
#include "tests/backup/backup_run_fixture.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

TEST_F(BackupRun, SetsThePropertiesInTheirOrderAndTheActionLast) {
    Run({.files = "C:\\Data\\*.*"});
    EXPECT_THAT(zip.sets, ElementsAre("8=9", "37=0", "7=True", "1=C:\\Backups\\WEEKLY.zip",
                                      "9=True", "3=True", "2=\"C:\\Data\\*.*\"", "4=True", "5=True",
                                      "32=True", "40=4"));
}

TEST_F(BackupRun, MultiVolumeAsksForSpannedVolumesWithItsControlWord) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    Run({.multi_volume = "ON", .to_drive = "A:\\"});
    EXPECT_THAT(zip.sets, Contains("37=32768"));
}

TEST_F(BackupRun, SetThatCannotBeReadAnyMoreIsNotRunWithEmptyValues) {
    EXPECT_EQ(ErrorOf([&] { RunSet("GONE.INI", program); }), error_number::kPermissionDenied);
    EXPECT_THAT(zip.sets, IsEmpty());
}

TEST_F(BackupRun, SwitchesOtherThanOnAreOff) {
    Run({.sub_directories = "on", .multi_volume = "Yes", .time = "on"});
    EXPECT_THAT(zip.sets, Contains("7=False"));
    EXPECT_THAT(zip.sets, Contains("37=0"));
    EXPECT_THAT(zip.sets, Contains("1=C:\\Backups\\WEEKLY.zip"));
}

TEST_F(BackupRun, FileSpecificationWithBlanksIsQuoted) {
    Run({.files = "C:\\My Data\\a file.*"});
    EXPECT_THAT(zip.sets, Contains("2=\"C:\\My Data\\a file.*\""));
}

TEST_F(BackupRun, TimeBackupMakesAStampedFolderAndRemembersIt) {
    machine.clock.Set(2026, 11, 15, 13, 5, 9);
    machine.AddDrive('E', platform::drive_type::kFixed);
    Run({.name = "Weekly", .to_drive = "E:\\Backups\\", .time = "ON"});
    EXPECT_THAT(zip.sets, Contains("1=E:\\Backups\\20261115_130509\\Weekly.zip"));
    EXPECT_EQ(RestoreKey("RestoreFromDrive"), "E:\\Backups\\20261115_130509\\");
    EXPECT_EQ(RestoreKey("RestoreFileName"), "Weekly.zip");
}

TEST_F(BackupRun, StampIsTakenOnceAndKeptForTheRestoreSource) {
    machine.clock.Set(2026, 11, 15, 13, 5, 9);
    zip.action = [this](RecordingZip&) { machine.clock.Set(2026, 11, 15, 14, 0, 0); };
    Run({.to_drive = "C:\\Backups\\", .time = "ON"});
    EXPECT_EQ(RestoreKey("RestoreFromDrive"), "C:\\Backups\\20261115_130509\\");
}

TEST_F(BackupRun, WithoutTimeBackupTheRestoreSourceIsTheDestinationItself) {
    Run({.name = "Weekly", .to_drive = "E:\\Backups\\"});
    EXPECT_THAT(zip.sets, Contains("1=E:\\Backups\\Weekly.zip"));
    EXPECT_EQ(RestoreKey("RestoreFromDrive"), "E:\\Backups\\");
    EXPECT_EQ(RestoreKey("RestoreFileName"), "Weekly.zip");
}

TEST_F(BackupRun, DestinationWithoutBackslashIsJoinedWithoutOne) {
    Run({.to_drive = "C:\\Backups"});
    EXPECT_THAT(zip.sets, Contains("1=C:\\BackupsWEEKLY.zip"));
}

TEST_F(BackupRun, FreeSpaceIsAskedOnEveryRunWhateverTheSwitches) {
    Run({.multi_volume = "OFF"});
    EXPECT_THAT(machine.drives.space_questions, ElementsAre("C:\\"));
}

TEST_F(BackupRun, VolumeOptionIsOffForMultiVolumeWith1999999BytesFree) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    machine.drives.drives['A'].space = {1, 1, 1'999'999, 1'999'999};
    Run({.multi_volume = "ON", .to_drive = "A:\\"});
    EXPECT_THAT(zip.sets, Contains("9=False"));
}

TEST_F(BackupRun, VolumeOptionStaysOnForMultiVolumeWith2000000BytesFree) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    machine.drives.drives['A'].space = {1, 1, 2'000'000, 2'000'000};
    Run({.multi_volume = "ON", .to_drive = "A:\\"});
    EXPECT_THAT(zip.sets, Contains("9=True"));
}

TEST_F(BackupRun, VolumeOptionStaysOnForASingleVolumeWithLittleSpace) {
    machine.drives.drives['C'].space = {1, 1, 10, 10};
    Run({.multi_volume = "OFF"});
    EXPECT_THAT(zip.sets, Contains("9=True"));
}

TEST_F(BackupRun, FreeSpaceThatOverflowsIsNotTrapped) {
    machine.drives.drives['C'].space = {64, 512, 65536, 65536};
    EXPECT_EQ(ErrorOf([&] { Run(); }), error_number::kOverflow);
    EXPECT_THAT(zip.sets, Not(Contains("40=4")));
}

TEST_F(BackupRun, LogsStartArchiveFinishAndSuccess) {
    Run();
    EXPECT_THAT(LogRecords(), ElementsAre("Starting Backup WEEKLY.INI",
                                          "Creating Backup File C:\\Backups\\WEEKLY.zip",
                                          "Finished Backup WEEKLY.INI", "Successful Backup"));
}

TEST_F(BackupRun, RecordsAreDated) {
    Run();
    EXPECT_THAT(machine.Content("C:\\Vantrel\\Vantrel.Log"),
                ::testing::EndsWith("\r\n15/11/2026 13:05:09 Starting Backup WEEKLY.INI\r\n"
                                    "15/11/2026 13:05:09 Creating Backup File "
                                    "C:\\Backups\\WEEKLY.zip\r\n"
                                    "15/11/2026 13:05:09 Finished Backup WEEKLY.INI\r\n"
                                    "15/11/2026 13:05:09 Successful Backup\r\n"));
}

TEST_F(BackupRun, CancelOnlyDisablesItsButton) {
    zip.action = [this](RecordingZip&) {
        PressCancel();
        EXPECT_FALSE(window->Cmd_Cancel.Enabled());
        EXPECT_TRUE(window->Cmd_Cancel.Visible());
        EXPECT_FALSE(window->Cmd_Ok.Visible());
    };
    Run();
}

TEST_F(BackupRun, CancelWithoutAnotherOverallEventCompletesAsSuccessful) {
    zip.action = [this](RecordingZip&) { PressCancel(); };
    Run();
    EXPECT_EQ(LogRecords().back(), "Successful Backup");
    EXPECT_EQ(RestoreKey("RestoreFileName"), "WEEKLY.zip");
    EXPECT_EQ(at_end.status, "Backup Complete");
}

TEST_F(BackupRun, CancelIsHandedOverAtTheNextOverallEvent) {
    zip.action = [this](RecordingZip& component) {
        EXPECT_FALSE(component.RaiseOverall(10));
        PressCancel();
        EXPECT_TRUE(component.RaiseOverall(11));
        EXPECT_TRUE(window->Cmd_Ok.Visible());
        EXPECT_FALSE(window->Cmd_Cancel.Visible());
    };
    Run();
    EXPECT_THAT(LogRecords(), ElementsAre("Starting Backup WEEKLY.INI",
                                          "Creating Backup File C:\\Backups\\WEEKLY.zip",
                                          "Finished Backup WEEKLY.INI", "Cancelled by User"));
    EXPECT_EQ(at_end.status, "Backup Cancelled by User");
}

TEST_F(BackupRun, RunAfterACancelledOneIsNotCancelled) {
    zip.action = [this](RecordingZip& component) {
        PressCancel();
        component.RaiseOverall(1);
    };
    Run();
    zip.action = nullptr;
    window->Form_Activate();
    EXPECT_EQ(LogRecords().back(), "Successful Backup");
}

TEST_F(BackupRun, CancelPressedDuringTheYieldOfAnEventCountsInThatEvent) {
    desktop.on_events.push_back([this] { PressCancel(); });
    zip.action = [](RecordingZip& component) { EXPECT_TRUE(component.RaiseOverall(5)); };
    Run();
    EXPECT_EQ(LogRecords().back(), "Cancelled by User");
}

TEST_F(BackupRun, CancelledRunWritesNothingIntoTheSet) {
    zip.action = [this](RecordingZip& component) {
        PressCancel();
        component.RaiseOverall(1);
    };
    Run();
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({}));
}

TEST_F(BackupRun, TaskbarButtonShowsTheOverallProgressUntilTheEnd) {
    int shown = -1;
    zip.action = [&](RecordingZip& component) {
        component.RaiseOverall(47);
        shown = window->TaskProgress();
    };
    Run();
    EXPECT_EQ(shown, 47);
    EXPECT_EQ(window->TaskProgress(), forms::Form::kNoTaskProgress);
}

TEST_F(BackupRun, MessagesShowTheirTextAndScrollTheDetails) {
    zip.action = [this](RecordingZip& component) {
        component.Say("Adding a.txt");
        component.Say("Adding b.txt");
        EXPECT_EQ(window->Lbl_BackupPath.Caption(), "Adding b.txt");
        EXPECT_EQ(window->Lst_Details.Count(), 2);
        EXPECT_EQ(window->Lst_Details.Index(), 1);
    };
    Run();
    EXPECT_THAT(LogRecords(), Not(Contains("Adding b.txt")));
}

TEST_F(BackupRun, WarningsAndErrorsAreLoggedUndated) {
    zip.skipped = 2;
    zip.action = [](RecordingZip& component) {
        component.Say("a.txt: Permission denied", zip::MessageKind::kWarning);
        component.Say("b.txt: Device I/O error", zip::MessageKind::kError);
    };
    Run();
    EXPECT_THAT(machine.Content("C:\\Vantrel\\Vantrel.Log"),
                ::testing::HasSubstr("\r\n                    a.txt: Permission denied\r\n"
                                     "                    b.txt: Device I/O error\r\n"
                                     "                    2 files not backed up\r\n"));
}

TEST_F(BackupRun, AtMostFiftyWarningsAreLoggedAndTheOthersCounted) {
    zip.skipped = 53;
    RunWithWarnings(53);
    const auto records = LogRecords();
    EXPECT_THAT(records, Contains("no 49"));
    EXPECT_THAT(records, Not(Contains("no 50")));
    EXPECT_THAT(records, Contains("3 more messages not written"));
    EXPECT_THAT(records, Contains("53 files not backed up"));
}

TEST_F(BackupRun, AttendedEndEmptiesTheDetailsResetsTheBarsAndWaitsForOk) {
    machine.PutFile("C:\\Vantrel\\System\\FileCopy.AVI", "clip");
    zip.action = [](RecordingZip& component) {
        component.Say("Adding a.txt");
        component.RaiseOverall(100);
        component.RaiseFile(100);
    };
    Run();
    ExpectReset("Backup Complete");
}

TEST_F(BackupRun, UnattendedWindowClosesItselfWithTheDetailsLeft) {
    Unattended("WEEKLY.INI");
    zip.action = [](RecordingZip& component) { component.Say("Adding a.txt"); };
    Run();
    EXPECT_FALSE(window->Visible());
    EXPECT_EQ(window->Lst_Details.Count(), 1);
    EXPECT_EQ(program.exit_code, forms::exit_code::kComplete);
}

TEST_F(BackupRun, UnattendedRunThatSkippedFilesExitsWithOne) {
    Unattended("WEEKLY.INI");
    zip.skipped = 1;
    Run();
    EXPECT_EQ(program.exit_code, forms::exit_code::kSomeFilesSkipped);
    EXPECT_EQ(LogRecords().back(), "Successful Backup");
}

TEST_F(BackupRun, UnattendedCancelExitsWithThree) {
    Unattended("WEEKLY.INI");
    zip.action = [this](RecordingZip& component) {
        PressCancel();
        component.RaiseOverall(1);
    };
    Run();
    EXPECT_EQ(program.exit_code, forms::exit_code::kCancelled);
}

TEST_F(BackupRun, AnimationPlaysWhenItsClipIsThere) {
    machine.PutFile("C:\\Vantrel\\System\\FileCopy.AVI", "clip");
    zip.action = [this](RecordingZip&) {
        EXPECT_EQ(window->Ani_File.Path(), "C:\\Vantrel\\System\\FileCopy.AVI");
        EXPECT_TRUE(window->Ani_File.Playing());
    };
    Run();
}

TEST_F(BackupRun, MissingAnimationIsSilentlyAccepted) {
    zip.action = [this](RecordingZip&) { EXPECT_EQ(window->Ani_File.Path(), ""); };
    Run();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(LogRecords().back(), "Successful Backup");
}

TEST_F(BackupRun, FatalStopEndsTheProgramAtOnceAfterTheSummary) {
    Unattended("WEEKLY.INI");
    zip.skipped = 1;
    zip.action = [](RecordingZip& component) {
        component.Say("C:\\Backups: Disk full", zip::MessageKind::kError);
        component.FatalStop();
    };
    try {
        Run();
        FAIL() << "the program went on";
    } catch (const ProgramEnded& end) {
        EXPECT_EQ(end.exit_code, forms::exit_code::kFailed);
    }
    EXPECT_THAT(LogRecords(), ElementsAre("Starting Backup WEEKLY.INI",
                                          "Creating Backup File C:\\Backups\\WEEKLY.zip",
                                          "C:\\Backups: Disk full", "1 file not backed up"));
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({}));
}

TEST_F(BackupRun, ComponentsQuestionOffersRetryAndCancel) {
    desktop.answers = {forms::Answer::kRetry};
    zip.action = [](RecordingZip& component) {
        EXPECT_TRUE(component.questions->AskRetry("The disk is full."));
    };
    Run();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].text, "The disk is full.");
    EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kRetryCancel);
}

TEST_F(BackupRun, CancellingAQuestionDisablesCancelSoThatTheNextEventHandsItOver) {
    desktop.answers = {forms::Answer::kCancel};
    zip.action = [](RecordingZip& component) {
        EXPECT_FALSE(component.questions->AskRetry("The disk is full."));
        EXPECT_TRUE(component.RaiseOverall(50));
    };
    Run();
    EXPECT_EQ(LogRecords().back(), "Cancelled by User");
}

TEST_F(BackupRun, NoQuestionIsShownOnceCancelIsPressed) {
    zip.action = [this](RecordingZip& component) {
        PressCancel();
        EXPECT_FALSE(component.questions->AskRetry("The disk is full."));
        EXPECT_TRUE(component.RaiseOverall(50));
        EXPECT_FALSE(component.questions->AskRetry("The disk is full."));
    };
    Run();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(LogRecords().back(), "Cancelled by User");
}

TEST_F(BackupRun, PressOfCancelThatStillWaitsIsTheAnswerToAQuestion) {
    zip.action = [this](RecordingZip& component) {
        desktop.on_events.push_back([this] { PressCancel(); });
        EXPECT_FALSE(component.questions->AskRetry("The disk is full."));
        EXPECT_TRUE(component.RaiseOverall(50));
    };
    Run();
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(BackupRun, OneOfEachIsCountedInTheSingular) {
    zip.skipped = 1;
    RunWithWarnings(51);
    EXPECT_THAT(LogRecords(), Contains("1 more message not written"));
    EXPECT_THAT(LogRecords(), Contains("1 file not backed up"));
}

TEST_F(BackupRun, UnattendedThereIsNobodyToAsk) {
    Unattended("WEEKLY.INI");
    zip.action = [](RecordingZip& component) { EXPECT_EQ(component.questions, nullptr); };
    Run();
}

}  // namespace
}  // namespace vantrel::test
