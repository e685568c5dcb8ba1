// The main window closes whatever fails on the way.

#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel::test {
namespace {

constexpr const char* kLog = "C:\\Vantrel\\Vantrel.Log";
constexpr const char* kRemembered = "Startup/INI File";

class Closing : public ProgramFixture {
  protected:
    Closing() {
        MakeSourceAndDestination();
        PutSet("ALL.INI", {});
    }
    // Closes a window in which ALL.INI is selected.
    void OpenAndClose(forms::Program& of) {
        Frm_Mainmenu window(of);
        desktop.Load(window);
        window.Backup.Cmb_BackupSet.SetText("ALL.INI");
        desktop.Unload(window);
        EXPECT_FALSE(window.Loaded());
    }
};

struct LockedSettings : TestSettings {
    void Write(const std::string&, const std::string&, const std::string&) override {
        RaiseError(error_number::kPermissionDenied);
    }
};

TEST_F(Closing, WithALogThatSomebodyHoldsIsToldAndStoresTheSelection) {
    std::string stored_by_then = "nothing";
    desktop.on_box = [&](const forms::Box&) {
        stored_by_then = machine.settings.values[kRemembered];
    };
    const auto held = machine.files().Open(kLog, platform::OpenMode::kCreateNew);
    OpenAndClose(program);
    ExpectError("Permission denied");
    EXPECT_EQ(stored_by_then, "ALL.INI");
}

TEST_F(Closing, UnattendedWithALogThatSomebodyHoldsSaysNothing) {
    Unattended("ALL.INI");
    const auto held = machine.files().Open(kLog, platform::OpenMode::kCreateNew);
    OpenAndClose(program);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(machine.settings.writes, 0);
}

TEST_F(Closing, WithASelectionThatCannotBeStoredIsToldAndWritesItsRecord) {
    LockedSettings locked;
    platform::Machine there = With({.settings = &locked}, machine.machine());
    forms::Program program_there{there, desktop, program.globals};
    OpenAndClose(program_there);
    ExpectError("Permission denied");
    EXPECT_THAT(LogRecords(),
                ::testing::Contains("Application Closed - Unloaded by Invoked from code."));
}

}  // namespace
}  // namespace vantrel::test
