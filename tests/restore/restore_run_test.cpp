// The listing and the run of a restore, each with what it asks of its component and in which order.

#include "restore/archive_contents.h"
#include "tests/restore/restore_run_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using ::testing::DoubleNear;

TEST_F(RestoreRun, SetsThePropertiesInTheirOrderAndTheActionsLast) {
    Run();
    EXPECT_THAT(unzip.sets, ElementsAre("14=True", "1=C:\\Browsed.zip", "10=False", "11=False",
                                        "5=True", "6=True", "7=True", "35=True", "4=C:\\RESTORE",
                                        "2=*.*", "34=1", "34=8"));
}

TEST_F(RestoreRun, ArchiveOfAChosenSetIsTheOneThatTheSetNames) {
    ChooseSetOfAnotherArchive();
    Run();
    EXPECT_EQ(unzip.sets.at(1), "1=C:\\Backups\\WEEKLY.zip");
}

TEST_F(RestoreRun, ProgressEventsYieldBeforeTheBarsMove) {
    unzip.action = [this](RecordingUnzip& component) { ExpectYieldsBeforeTheBarsMove(component); };
    Run();
}

TEST_F(RestoreRun, CancelIsHandedOverAtTheNextOverallEvent) {
    unzip.action = [this](RecordingUnzip& component) {
        EXPECT_FALSE(component.RaiseOverall(10));
        window->Cmd_Cancel.UserPress();
        EXPECT_FALSE(window->Cmd_Cancel.Enabled());
        EXPECT_FALSE(window->Cmd_Ok.Visible());
        EXPECT_TRUE(component.RaiseOverall(11));
        EXPECT_TRUE(window->Cmd_Ok.Visible());
        EXPECT_FALSE(window->Cmd_Cancel.Visible());
    };
    Run();
    EXPECT_EQ(at_end.status, "Restore Cancelled by User");
}

TEST_F(RestoreRun, NoQuestionIsShownOnceCancelIsPressed) {
    unzip.action = [this](RecordingUnzip& component) {
        window->Cmd_Cancel.UserPress();
        EXPECT_FALSE(component.questions->AskRetry("Please insert disk 2."));
        EXPECT_TRUE(component.RaiseOverall(11));
        EXPECT_FALSE(component.questions->AskRetry("Please insert disk 2."));
    };
    Run();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(at_end.status, "Restore Cancelled by User");
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User"));
}

TEST_F(RestoreRun, RunAfterACancelledOneIsNotCancelled) {
    unzip.action = [this](RecordingUnzip& component) {
        window->Cmd_Cancel.UserPress();
        component.RaiseOverall(1);
    };
    Run();
    unzip.action = nullptr;
    window->Form_Activate();
    EXPECT_EQ(window->Lbl_RestorePath.Caption(), "Restore Complete");
}

TEST_F(RestoreRun, MessagesShowTheirTextAndScrollTheDetails) {
    unzip.action = [this](RecordingUnzip& component) {
        component.Say("Extracting a.txt");
        component.Say("Extracting b.txt");
        EXPECT_EQ(window->Lbl_RestorePath.Caption(), "Extracting b.txt");
        EXPECT_EQ(window->Lst_Details.Count(), 2);
        EXPECT_EQ(window->Lst_Details.Text(), "Extracting b.txt");
    };
    Run();
}

TEST_F(RestoreRun, EndEmptiesTheDetailsResetsTheBarsAndWaitsForOk) {
    machine.PutFile("C:\\Vantrel\\System\\FileCopy.AVI", "clip");
    unzip.action = [this](RecordingUnzip& component) {
        EXPECT_TRUE(window->Ani_File.Playing());
        component.Say("Extracting a.txt");
        component.RaiseOverall(100);
        component.RaiseFile(100);
    };
    Run();
    ExpectReset("Restore Complete");
    EXPECT_FALSE(window->Loaded());
}

TEST_F(RestoreRun, EmptiedDetailsArePaintedAtOnce) {
    Diary diary(desktop);
    unzip.action = [&](RecordingUnzip& component) {
        component.Say("Extracting a.txt");
        diary.Note("end");
        diary.Follow(window->Lst_Details);
    };
    Run();
    const auto lines = diary.Lines();
    EXPECT_THAT(std::vector(std::find(lines.begin(), lines.end(), "end") + 1, lines.end()),
                ElementsAre("Lst_Details items", "Lst_Details redraw", "hide Frm_Restore",
                            "unload Frm_Restore"));
}

TEST_F(RestoreRun, RecordsAreDated) {
    Run();
    EXPECT_THAT(machine.Content("C:\\Vantrel\\Vantrel.Log"),
                EndsWith("\r\n15/11/2026 13:05:09 Starting Restore from ZIP File - "
                         "C:\\Browsed.zip\r\n15/11/2026 13:05:09 Finished Restore from ZIP File - "
                         "C:\\Browsed.zip\r\n"));
}

// Whoever finds the finished record in the log finds the destination in the set.
TEST_F(RestoreRun, DestinationIsWrittenBeforeTheFinishedRecord) {
    ChooseSetOfAnotherArchive();
    FaultyTab over(machine, program);
    Diary diary(desktop);
    diary.FollowFiles(over.faulty.plan, {"Vantrel.Log", "WEEKLY.INI"});
    unzip.action = [&diary](RecordingUnzip&) { diary.Note("extracted"); };
    Run(over.there);
    const auto lines = diary.Lines();
    EXPECT_THAT(std::vector(std::find(lines.begin(), lines.end(), "Vantrel.Log written"),
                            std::find(lines.begin(), lines.end(), "hide Frm_Restore")),
                ElementsAre("Vantrel.Log written", "WEEKLY.INI read", "extracted",
                            "WEEKLY.INI read", "WEEKLY.INI written", "Vantrel.Log written"));
}

TEST_F(RestoreRun, PassRunsUnderTheHourglassAndTheWindowOpensUnderThePointer) {
    ProtectSub();
    Archive();
    FaultyTab over(machine, program);
    Tab& shown = over.tab;
    desktop.files = {kArchive};
    shown.actions.Cmd_RestoreFile_Click();
    Diary diary(desktop);
    over.faulty.plan.before_call = [&diary](const CallRecord& call) {
        if (call.kind == Call::kRename && call.path == "C:\\RESTORE\\SUB") {
            diary.Note("rename");
        }
    };
    PressOkWhenIdle();
    shown.actions.Cmd_Restore_Click();
    const auto lines = diary.Lines();
    const auto rename = std::find(lines.begin() + 1, lines.end(), "rename");
    EXPECT_THAT(std::vector(rename - 1, std::find(rename, lines.end(), "show Frm_Restore")),
                ElementsAre("pointer hourglass", "rename", "pointer default", "load Frm_Restore"));
}

class Listing : public RestoreTabTest {
  protected:
    Listing() {
        machine.PutFile(kArchive, "");
        unzip.reads_back[zip::unzip_id::kEntryCount] = std::int32_t{3};
        unzip.reads_back[zip::unzip_id::kEntryName] = std::string("a.txt");
    }
    void List() {
        RecordingUnzip component(machine.machine(), unzip);
        const RestoreControls controls{
            tab.Cmb_RestoreFile, tab.Fld_RestoreFile, tab.Fld_RestoreTo, tab.TV_Restore,
            tab.Fld_Total,       tab.SSP_TotalFiles,  component};
        ShowZipContents(program, controls, kArchive);
    }
    RecordingUnzip::Record unzip;
};

TEST_F(Listing, CountsSetsItsFlagAndReadsTheEntriesFromTheFirstOn) {
    List();
    EXPECT_THAT(unzip.sets, ElementsAre("1=C:\\Backups\\WEEKLY.zip", "34=1", "6=True", "3=1",
                                        "34=2", "3=2", "34=2"));
}

TEST_F(Listing, FillsThePanelByTheShareOfTheCount) {
    struct Fills : forms::ControlView {
        explicit Fills(forms::Panel& filled) : panel(filled) { panel.Bind(this); }
        ~Fills() override { panel.Bind(nullptr); }
        void Changed(forms::Aspect) override { percents.push_back(panel.FloodPercent()); }
        forms::Panel& panel;
        std::vector<double> percents;
    } fills(tab.SSP_TotalFiles);
    List();
    EXPECT_THAT(fills.percents,
                ElementsAre(DoubleNear(100.0 / 3, 1e-9), DoubleNear(200.0 / 3, 1e-9), 0));
}

TEST_F(Listing, YieldsBeforeAndAfterTheHourglassAndClearsTheHiddenTree) {
    List();
    unzip.sets.clear();
    Diary diary(desktop);
    diary.Follow(tab.TV_Restore);
    List();
    EXPECT_THAT(diary.Lines(),
                ElementsAre("events", "pointer hourglass", "events", "TV_Restore hidden",
                            "TV_Restore items", "TV_Restore shown", "pointer default"));
}

TEST_F(Listing, ChosenSetIsReadUnderTheHourglass) {
    PutSetWithArchive("", "");
    Diary diary(desktop);
    ChooseSet();
    EXPECT_THAT(diary.Lines(), ElementsAre("pointer hourglass", "pointer default", "box Restore"));
}

}  // namespace
}  // namespace vantrel::test
