#include "common/error.h"
#include "system/clsApplication.h"
#include "tests/support/error_of.h"
#include "tests/support/program_fixture.h"

namespace vantrel {
namespace {

class Application : public test::ProgramFixture {};

TEST_F(Application, VersionIsMajorMinorRevision) {
    EXPECT_EQ(clsApplication(program).VersionNo(), "3.0.6");
}

TEST_F(Application, PrevInstanceAsksTheProcessEachTime) {
    EXPECT_FALSE(clsApplication(program).PrevInstance());
    machine.process.previous_instance = true;
    EXPECT_TRUE(clsApplication(program).PrevInstance());
    EXPECT_EQ(machine.process.previous_instance_questions, 2);
}

class FailingProcess : public test::TestProcess {
  public:
    bool PreviousInstance() override { RaiseError(error_number::kDeviceIo); }
};

TEST_F(Application, PrevInstanceReportsItsErrors) {
    FailingProcess process;
    platform::Machine broken = test::With({.process = &process}, machine.machine());
    forms::Program there{broken, desktop};
    test::ExpectReported([&] { clsApplication(there).PrevInstance(); },
                         "clsApplication:PrevInstance Method", "Device I/O error");
}

TEST_F(Application, ShutDownUnloadsALoadedSplash) {
    forms::Form splash(program, "Frm_Splash");
    desktop.ShowModeless(splash);
    clsApplication(program).ShutDown(&splash);
    EXPECT_FALSE(splash.Loaded());
}

TEST_F(Application, ShutDownReportsItsErrors) {
    struct Stubborn : forms::Form {
        using Form::Form;
        void Form_Unload() override { RaiseError(error_number::kDeviceIo); }
    } splash(program, "Frm_Splash");
    desktop.Load(splash);
    test::ExpectReported([&] { clsApplication(program).ShutDown(&splash); },
                         "clsApplication:ShutDown Method", "Device I/O error");
}

TEST_F(Application, ShutDownDoesNothingElse) {
    forms::Form splash(program, "Frm_Splash");
    clsApplication(program).ShutDown(&splash);
    clsApplication(program).ShutDown(nullptr);
    EXPECT_TRUE(desktop.happened.empty());
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_TRUE(machine.Names("C:\\Vantrel").empty());
}

}  // namespace
}  // namespace vantrel
