// What the restore window shows of a run's figures, while it works and at its end.
#include "tests/restore/restore_run_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

class RestoreDisplay : public RestoreRun {
  protected:
    RestoreDisplay() { SetFigures(200, 20, 150, 12); }
};

TEST_F(RestoreDisplay, ShowsFiguresAndDestinationWhileItWorks) {
    unzip.action = [this](RecordingUnzip& component) {
        Tick(component, std::chrono::milliseconds(100));
        EXPECT_EQ(window->Lbl_Figures.Caption(), "150 of 200 files, 12 MB of 20 MB");
        EXPECT_EQ(window->Lbl_Location.Caption(), "Restoring to: C:\\RESTORE");
    };
    Run();
}

TEST_F(RestoreDisplay, SummaryStaysUntilOk) {
    unzip.action = [this](RecordingUnzip& component) {
        LeaveOut(component, "Sub/ledger.xls");
        Tick(component, std::chrono::milliseconds(9000));
    };
    Run();
    EXPECT_EQ(at_end.status, "Restore Complete");
    EXPECT_EQ(at_end.summary, "150 files, 12 MB, 9 s");
    EXPECT_EQ(at_end.location, "Restored to: C:\\RESTORE");
    EXPECT_EQ(at_end.left_out, "1 file left out: ledger.xls. See the Log tab.");
}

TEST_F(RestoreDisplay, CancelledRunHasWhatWasRestoredUntilThen) {
    unzip.action = [this](RecordingUnzip& component) {
        Tick(component, std::chrono::milliseconds(9000));
        window->Cmd_Cancel.UserPress();
        component.RaiseOverall(60);
    };
    Run();
    EXPECT_EQ(at_end.summary, "Cancelled after 150 of 200 files, 12 MB of 20 MB, 9 s");
    EXPECT_EQ(at_end.location, "Restored until then to: C:\\RESTORE");
}

TEST_F(RestoreDisplay, FailedRunHasItsErrorAndWhatWasLeftOut) {
    unzip.action = [this](RecordingUnzip& component) {
        LeaveOut(component, "a.txt");
        Tick(component, std::chrono::milliseconds(9000));
        component.Message(zip::Failure(57, "", "The archive's directory is damaged."));
        component.Message(zip::Failure(57, "", "Another error."));
    };
    Run();
    EXPECT_EQ(at_end.left_out,
              "The archive's directory is damaged. 1 file left out: a.txt. See the Log tab.");
}

TEST_F(RestoreDisplay, FailedRunWithoutAFileLeftOutHasItsError) {
    unzip.action = [](RecordingUnzip& component) {
        component.Message(zip::Failure(57, "", "The archive's directory is damaged."));
    };
    Run();
    EXPECT_EQ(at_end.left_out, "The archive's directory is damaged. See the Log tab.");
    EXPECT_EQ(at_end.location, "No file was restored to: C:\\RESTORE");
}

}  // namespace
}  // namespace vantrel::test
