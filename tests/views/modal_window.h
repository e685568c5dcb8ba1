// A run's window over the main window, whose activation is a run of the test's own.
#pragma once

#include <functional>

#include "tests/views/windows_under_test.h"

namespace vantrel::test {

class RunningWindow : public RunWindow {
  public:
    explicit RunningWindow(forms::Program& owner) : RunWindow(owner) {
        Cmd_Ok.SetVisible(true);
        Cmd_Ok.Click = [this] { program().desktop.Unload(*this); };
    }
    std::function<void()> run, load;

    void Form_Load() override {
        if (load) {
            load();
        }
    }
    void Form_Activate() override { run(); }
    void Form_Unload() override { happened.push_back("Unload"); }
};

class ModalRun : public WindowFixture<MainWindow> {
  protected:
    // From a handler of the main window, as the program does.
    void ShowRun() {
        window.Cmd_Backup.Click = [this] { program.desktop.ShowModal(run_window); };
        user->Click(window.Cmd_Backup);
    }
    RunningWindow run_window{program};
};

}  // namespace vantrel::test
