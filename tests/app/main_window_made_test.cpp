// When the main window is made: it looks at every drive, and start-up has other things to do first.

#include "app/application.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

// Drives that count the queries and, on request, raise an error.
class WatchedDrives : public platform::Drives {
  public:
    explicit WatchedDrives(platform::Drives& behind) : behind_(behind) {}
    int looks = 0;
    bool broken = false;
    std::function<void()> at_first;

    int Type(const std::string& root) override {
        Look();
        return behind_.Type(root);
    }
    platform::DiskSpace Space(const std::string& root) override { return behind_.Space(root); }
    std::uint64_t FreeBytes(const std::string& folder) override {
        return behind_.FreeBytes(folder);
    }
    std::string Label(const std::string& root) override {
        Look();
        return behind_.Label(root);
    }

  private:
    void Look() {
        if (++looks == 1 && at_first) {
            at_first();
        }
        if (broken) {
            RaiseError(error_number::kDeviceIo);
        }
    }
    platform::Drives& behind_;
};

class MainWindowMade : public ProgramFixture {
  protected:
    WatchedDrives drives{machine.drives};
    platform::Machine watched = With({.drives = &drives}, machine.machine());
    Application application{watched, desktop};
};

TEST_F(MainWindowMade, AfterTheGlobalsTheSplashAndTheStartRecords) {
    std::string log_path;
    std::vector<std::string> happened, records;
    drives.at_first = [&] {
        log_path = application.program().globals.LogFilePath;
        happened = desktop.happened;
        records = LogRecords();
    };
    EXPECT_EQ(drives.looks, 0);
    application.Main();
    EXPECT_GT(drives.looks, 0);
    EXPECT_EQ(log_path, "C:\\Vantrel\\Vantrel.Log");
    EXPECT_THAT(happened, ElementsAre("load Frm_Splash", "show Frm_Splash", "activate Frm_Splash"));
    EXPECT_THAT(records, ElementsAre("Application 3.0.6 Started", "Command Line Parameter = Nil"));
    EXPECT_TRUE(application.main_window().Visible());
}

TEST_F(MainWindowMade, NeverInASecondCopy) {
    machine.process.previous_instance = true;
    application.Main();
    EXPECT_EQ(drives.looks, 0);
    EXPECT_FALSE(application.HasMainWindow());
}

TEST_F(MainWindowMade, ErrorMeanwhileEndsTheProgramAsAnyOther) {
    drives.broken = true;
    const Error error = RaisedBy([&] { application.Main(); });
    EXPECT_EQ(error.number(), error_number::kDeviceIo);
    EXPECT_THROW(application.EndByError(error), ProgramEnded);
    EXPECT_FALSE(application.HasMainWindow());
    ExpectBox("Run-time error '57':\r\n\r\nDevice I/O error", forms::Icon::kCritical, "");
    EXPECT_THAT(LogRecords(),
                ElementsAre("Application 3.0.6 Started", "Command Line Parameter = Nil"));
}

}  // namespace
}  // namespace vantrel::test
