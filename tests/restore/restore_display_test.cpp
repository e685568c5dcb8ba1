// What the restore window shows of a run's figures, while it works and at its end.
#include "tests/restore/restore_run_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

constexpr std::uint64_t kMb = 1024 * 1024;

class RestoreDisplay : public RestoreRun {
  protected:
    RestoreDisplay() {
        figures.files_total = 200;
        figures.bytes_total = 20 * kMb;
        figures.files_done = 150;
        figures.bytes_done = 12 * kMb;
    }
    void RunAndLook() {
        desktop.idle.push_back([this] {
            summary = window->Lbl_Figures.Caption();
            location = window->Lbl_Location.Caption();
            left_out = window->Lbl_LeftOut.Caption();
        });
        Run();
    }
    void Tick(RecordingUnzip& component, std::chrono::milliseconds time) {
        machine.clock.Advance(time);
        component.Figures(figures);
    }

    zip::RunFigures figures;
    std::string summary, location, left_out;
};

TEST_F(RestoreDisplay, ShowsFiguresAndDestinationWhileItWorks) {
    unzip.extraction = [this](RecordingUnzip& component) {
        Tick(component, std::chrono::milliseconds(100));
        EXPECT_EQ(window->Lbl_Figures.Caption(), "150 of 200 files, 12 MB of 20 MB");
        EXPECT_EQ(window->Lbl_Location.Caption(), "Restoring to: C:\\RESTORE");
    };
    RunAndLook();
}

TEST_F(RestoreDisplay, SummaryStaysUntilOk) {
    unzip.extraction = [this](RecordingUnzip& component) {
        component.Message(zip::LeftOutWarning("Sub/ledger.xls", "It is not restored", 52));
        figures.left_out = 1;
        Tick(component, std::chrono::milliseconds(9000));
    };
    RunAndLook();
    EXPECT_EQ(at_end.status, "Restore Complete");
    EXPECT_EQ(summary, "150 files, 12 MB, 9 s");
    EXPECT_EQ(location, "Restored to: C:\\RESTORE");
    EXPECT_EQ(left_out, "1 file left out: ledger.xls. See the Log tab.");
}

TEST_F(RestoreDisplay, CancelledRunHasWhatWasRestoredUntilThen) {
    unzip.extraction = [this](RecordingUnzip& component) {
        Tick(component, std::chrono::milliseconds(9000));
        window->Cmd_Cancel.UserPress();
        component.RaiseOverall(60);
    };
    RunAndLook();
    EXPECT_EQ(summary, "Cancelled after 150 of 200 files, 12 MB of 20 MB, 9 s");
    EXPECT_EQ(location, "Restored until then to: C:\\RESTORE");
}

TEST_F(RestoreDisplay, FailedRunHasItsErrorAndWhatWasLeftOut) {
    unzip.extraction = [this](RecordingUnzip& component) {
        component.Message(zip::LeftOutWarning("a.txt", "It is not restored", 52));
        figures.left_out = 1;
        Tick(component, std::chrono::milliseconds(9000));
        component.Message(zip::Failure(57, "", "The archive's directory is damaged."));
        component.Message(zip::Failure(57, "", "Another error."));
    };
    RunAndLook();
    EXPECT_EQ(left_out,
              "The archive's directory is damaged. 1 file left out: a.txt. See the Log tab.");
}

TEST_F(RestoreDisplay, FailedRunWithoutAFileLeftOutHasItsError) {
    unzip.extraction = [](RecordingUnzip& component) {
        component.Message(zip::Failure(57, "", "The archive's directory is damaged."));
    };
    RunAndLook();
    EXPECT_EQ(left_out, "The archive's directory is damaged. See the Log tab.");
    EXPECT_EQ(location, "No file was restored to: C:\\RESTORE");
}

}  // namespace
}  // namespace vantrel::test
