#include <optional>

#include "app/application.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"
#include "tests/support/redraw_watch.h"

namespace vantrel::test {
namespace {

using Lines = std::vector<std::string>;

class StartUp : public ProgramFixture {
  protected:
    StartUp() { MakeSourceAndDestination(); }
    void Start() {
        application = std::make_unique<Application>(machine.machine(), desktop);
        application->Main();
    }
    void ExpectNoSuchSet(const std::string& command_line) {
        Unattended(command_line);
        Start();
        EXPECT_THAT(LogRecords()[2],
                    "Unable to Start Backup - File " + command_line + " does not exist.");
        EXPECT_EQ(application->ExitCode(), 4);
    }
    // Starts, and returns all that it did in its order: the desktop's steps, redraws of the splash,
    // and the log's records, which are looked at before each step.
    Lines OrderOfStart() {
        Lines order;
        std::size_t records_seen = 0;
        std::optional<RedrawWatch> splash;
        desktop.on_step = [&](const std::string& step) {
            const Lines records = LogRecords();
            while (records_seen < records.size()) {
                order.push_back(records[records_seen++]);
            }
            order.push_back(step);
            if (step != "load Frm_Splash") {
                return;
            }
            splash.emplace(*desktop.Front(), [&] { order.push_back("redraw Frm_Splash"); });
        };
        Start();
        desktop.on_step = nullptr;
        return order;
    }
    // Of a program that an error ends before its start is over.
    int ExitCodeOfOverflow() {
        application = std::make_unique<Application>(machine.machine(), desktop);
        application->program().globals = program.globals;
        try {
            application->EndByError(Error(error_number::kOverflow, "Vantrel", "Overflow"));
        } catch (const ProgramEnded& end) {
            return end.exit_code;
        }
        return -1;
    }
    std::string Log() { return machine.Content("C:\\Vantrel\\Vantrel.Log"); }
    static std::string Dashes() { return std::string(60, '-'); }
    std::vector<std::string> UnattendedRecords(const std::vector<std::string>& between) {
        std::vector<std::string> records = {
            "Application 3.0.6 Started",
            "Command Line Parameter = " + machine.process.command_line};
        records.insert(records.end(), between.begin(), between.end());
        records.push_back("Application Closed - Unloaded by Invoked from code.");
        records.push_back(Dashes());
        return records;
    }
    std::unique_ptr<Application> application;
};

TEST_F(StartUp, GlobalsAreSetBeforeAnythingElse) {
    machine.process.base_name = "MyBackup";
    application = std::make_unique<Application>(machine.machine(), desktop);
    auto& globals = application->program().globals;
    globals.MessageText = globals.TextBuffer = "left over";
    Lines at_first;
    desktop.on_step = [&](const std::string& step) {
        if (!at_first.empty()) {
            return;
        }
        at_first = {step, globals.LogFilePath, globals.CrLf, globals.MessageText,
                    globals.TextBuffer};
    };
    application->Main();
    EXPECT_THAT(at_first,
                ElementsAre("pointer hourglass", "C:\\Vantrel\\MyBackup.Log", "\r\n", "", ""));
}

TEST_F(StartUp, WithoutParameterWritesStartupThenNilBeforeTheMainWindowShows) {
    EXPECT_THAT(OrderOfStart(),
                ElementsAre("pointer hourglass", "events", "load Frm_Splash", "show Frm_Splash",
                            "redraw Frm_Splash", "events", "activate Frm_Splash",
                            "Application 3.0.6 Started", "Command Line Parameter = Nil",
                            "load Frm_Mainmenu", "show Frm_Mainmenu", "unload Frm_Splash"));
    EXPECT_TRUE(application->main_window().Loaded());
    EXPECT_EQ(application->ExitCode(), 0);
}

TEST_F(StartUp, NeverSetsThePointerBack) {
    Start();
    EXPECT_EQ(desktop.pointer, forms::Pointer::kHourglass);
}

TEST_F(StartUp, LogOverTheLimitIsTrimmedWithItsNoteAfterTheStartRecords) {
    std::string log;
    for (int i = 0; i < 12; ++i) {
        log += "header\r\n";
    }
    while (log.size() < 60000) {
        log += std::string(20, '.') + "old record\r\n";
    }
    machine.PutFile("C:\\Vantrel\\Vantrel.Log", log);
    Lines when_loaded;
    desktop.on_step = [&](const std::string& step) {
        if (step == "load Frm_Mainmenu") {
            when_loaded = LogRecords();
        }
    };
    Start();
    EXPECT_LT(Log().size(), 52000u);
    ASSERT_GT(when_loaded.size(), 4u);
    when_loaded.erase(when_loaded.begin(), when_loaded.end() - 4);
    EXPECT_THAT(when_loaded,
                ElementsAre("Application 3.0.6 Started", "Command Line Parameter = Nil",
                            "Log File Truncated from 60K to about 52K", ""));
}

TEST_F(StartUp, SecondCopyWritesOneRecordAndNothingElse) {
    machine.process.previous_instance = true;
    EXPECT_THAT(OrderOfStart(),
                ElementsAre("pointer hourglass", "events", "load Frm_Splash", "show Frm_Splash",
                            "redraw Frm_Splash", "events", "activate Frm_Splash",
                            "Previous Instance Detected - Not Started", "unload Frm_Splash"));
    EXPECT_THAT(LogRecords(), ElementsAre("Previous Instance Detected - Not Started"));
    EXPECT_FALSE(application->HasMainWindow());
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(StartUp, PreviousInstanceIsAskedTwice) {
    machine.process.previous_instance = true;
    Start();
    EXPECT_EQ(machine.process.previous_instance_questions, 2);
}

TEST_F(StartUp, SecondUnattendedCopyExitsWithFive) {
    machine.process.previous_instance = true;
    Unattended("DAILY.INI");
    Start();
    EXPECT_EQ(application->ExitCode(), 5);
}

TEST_F(StartUp, MissingSetIsToldInTheLogOnly) {
    Unattended("GONE.INI");
    Start();
    EXPECT_THAT(LogRecords(), ::testing::ElementsAreArray(UnattendedRecords(
                                  {"Unable to Start Backup - File GONE.INI does not exist."})));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(application->ExitCode(), 4);
    EXPECT_FALSE(application->main_window().Loaded());
}

TEST_F(StartUp, CommandLineOfBlanksIsLookedUpAsAName) { ExpectNoSuchSet("  "); }

TEST_F(StartUp, QuotesAroundTheNameAreNotRemoved) {
    PutSet("DAILY.INI", {});
    ExpectNoSuchSet("\"DAILY.INI\"");
}

TEST_F(StartUp, NameInOtherLetterCaseIsFoundAndLoggedAsListed) {
    PutSet("Daily.ini", {});
    Unattended("DAILY.INI");
    Start();
    EXPECT_THAT(LogRecords(),
                ::testing::ElementsAreArray(UnattendedRecords(
                    {"Starting Backup Daily.ini", "Creating Backup File C:\\Backups\\WEEKLY.zip",
                     "Finished Backup Daily.ini", "Successful Backup"})));
    EXPECT_EQ(application->ExitCode(), 0);
    EXPECT_TRUE(machine.Exists("C:\\Backups\\WEEKLY.zip"));
}

TEST_F(StartUp, UnattendedRunEndsWithNoWindowLeft) {
    PutSet("DAILY.INI", {});
    Unattended("DAILY.INI");
    Start();
    EXPECT_EQ(desktop.Front(), nullptr);
}

TEST_F(StartUp, RefusedUnattendedRunEndsTheSameWay) {
    PutSet("DAILY.INI", {.to_drive = "C:\\Gone\\"});
    Unattended("DAILY.INI");
    Start();
    EXPECT_THAT(LogRecords(), ::testing::ElementsAreArray(UnattendedRecords(
                                  {"Starting Backup DAILY.INI", "Finished Backup DAILY.INI",
                                   "Backup Failed - Unable to locate C:\\Gone\\"})));
    EXPECT_EQ(application->ExitCode(), 2);
}

TEST_F(StartUp, ExistingFileThatIsNoSetIsARunTimeError) {
    machine.PutFile("C:\\Vantrel\\notes.txt", "");
    Unattended("notes.txt");
    EXPECT_EQ(ErrorOf([&] { Start(); }), error_number::kTextReadOnly);
}

TEST_F(StartUp, UntrappedErrorAttendedIsTheStandardBoxAndEndsTheProgram) {
    Start();
    try {
        application->EndByError(Error(53, "Vantrel", "File not found"));
    } catch (const ProgramEnded&) {
    }
    ExpectBox("Run-time error '53':\r\n\r\nFile not found", forms::Icon::kCritical, "");
    EXPECT_EQ(machine.settings.writes, 0);
    EXPECT_THAT(LogRecords(),
                ElementsAre("Application 3.0.6 Started", "Command Line Parameter = Nil"));
}

TEST_F(StartUp, UntrappedErrorWhoseBoxCannotBeShownIsAnUndatedLogLine) {
    desktop.answers = {forms::Answer::kNotShown};
    EXPECT_EQ(ExitCodeOfOverflow(), 2);
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(Log(), HasSubstr("\r\n                    Run-time error '6': Overflow\r\n"));
}

TEST_F(StartUp, UntrappedErrorUnattendedIsAnUndatedLogLineAndExitCodeTwo) {
    Unattended("DAILY.INI");
    EXPECT_EQ(ExitCodeOfOverflow(), 2);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(Log(), HasSubstr("\r\n                    Run-time error '6': Overflow\r\n"));
}

TEST_F(StartUp, UntrappedErrorThatTheLogCannotTakeStillEndsWithExitCodeTwo) {
    Unattended("DAILY.INI");
    program.globals.LogFilePath = "C:\\Gone\\Vantrel.Log";
    EXPECT_EQ(ExitCodeOfOverflow(), 2);
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(StartUp, PrevInstanceErrorCarriesItsLabelToMain) {
    struct Broken : TestProcess {
        bool PreviousInstance() override { RaiseError(error_number::kDeviceIo); }
    } broken;
    platform::Machine broken_machine = With({.process = &broken}, machine.machine());
    Application starting(broken_machine, desktop);
    ExpectReported([&] { starting.Main(); }, "clsApplication:PrevInstance Method",
                   "Device I/O error");
}

}  // namespace
}  // namespace vantrel::test
