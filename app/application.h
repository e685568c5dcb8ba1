// The running program: the start-up sequence and, when the command line names a set, one unattended
// backup. Window thread only.
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

    // Ends the program after an error that no handler trapped: shows it in a box or, unattended,
    // logs it. Writes no exit record and does not store the selection.
    void EndByError(const Error& error);

    forms::Program& program() { return program_; }
    // Main creates the main window after the splash, the test for another copy and the start
    // records. A second copy never has one.
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
