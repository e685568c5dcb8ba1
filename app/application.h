// The running program: start-up decides everything that happens before the user sees the main
// window, and runs one backup by itself when a set was named on the command line.
#pragma once

#include <optional>

#include "app/Frm_Splash.h"
#include "common/error.h"
#include "forms/program.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel {

class Application {
  public:
    Application(platform::Machine& machine, forms::Desktop& desktop);

    // The entry procedure. Returns with the main window open when there is no command line, and
    // with no window left otherwise. Traps nothing.
    void Main();

    // What the process returns: the outcome of an unattended run, 0 after an attended one.
    int ExitCode() const;

    // An error that nothing has trapped ends the program: told in a box, or in the log when nobody
    // is there to press OK. No exit record, no stored selection.
    void EndByError(const Error& error);

    forms::Program& program() { return program_; }
    // The main window is made by Main, after the splash, the decision about another copy and the
    // start records: there is none before that, and none in a second copy.
    bool HasMainWindow() const { return main_window_.has_value(); }
    Frm_Mainmenu& main_window() { return main_window_.value(); }

  private:
    void SetGlobals();
    bool AnotherCopyRuns();
    void WriteStartRecords();
    void RunUnattended(const std::string& command_line);

    forms::Program program_;
    Frm_Splash splash_;
    std::optional<Frm_Mainmenu> main_window_;
};

}  // namespace vantrel
