#include "app/application.h"

#include "backupset/clsFiles.h"
#include "log/clsLog.h"
#include "system/clsApplication.h"

namespace vantrel {

namespace {
constexpr long kLogLimit = 52000;  // bytes; the Log tab tells users of 50K
}

Application::Application(platform::Machine& machine, forms::Desktop& desktop)
    : program_{machine, desktop}, splash_(program_) {}

void Application::SetGlobals() {
    program_.globals.LogFilePath =
        program_.InApplicationFolder(program_.machine.process.ExecutableBaseName() + ".Log");
    program_.globals.CrLf = "\r\n";
    program_.globals.MessageText.clear();
    program_.globals.TextBuffer.clear();
}

void Application::Main() {
    auto& desktop = program_.desktop;
    SetGlobals();
    desktop.SetPointer(forms::Pointer::kHourglass);
    desktop.DoEvents();
    desktop.Load(splash_);
    desktop.ShowModeless(splash_);
    splash_.Refresh();
    desktop.DoEvents();

    if (AnotherCopyRuns()) {
        return;
    }
    WriteStartRecords();
    // Slow, since its lists query every drive. The splash is visible meanwhile, and a second copy
    // of the program has ended before.
    Frm_Mainmenu& main_window = main_window_.emplace(program_);
    desktop.Load(main_window);
    desktop.ShowModeless(main_window);
    desktop.Unload(splash_);

    const std::string command_line = program_.machine.process.CommandLine();
    if (command_line.empty()) {
        return;
    }
    RunUnattended(command_line);
    desktop.Unload(main_window);
}

// Asks twice, with a log object created in between; the second answer decides.
bool Application::AnotherCopyRuns() {
    clsApplication application(program_);
    if (!application.PrevInstance()) {
        return false;
    }
    clsLog log(program_);
    if (!application.PrevInstance()) {
        return false;
    }
    log.WriteToLog("PrevInstance", true);
    application.ShutDown(&splash_);
    program_.exit_code = forms::exit_code::kAlreadyRunning;
    return true;
}

void Application::WriteStartRecords() {
    clsLog log(program_);
    log.WriteToLog("Startup", true);
    log.WriteToLog("Command Line", true);
    log.Log_Truncate(kLogLimit);
}

// The command line is a set's file name, unchanged: no trimming, no quotes removed.
void Application::RunUnattended(const std::string& command_line) {
    const std::string path = program_.InApplicationFolder(command_line);
    if (!clsFiles(program_).Exist(path, true)) {
        clsLog(program_).WriteToLog(
            "Backup", true, "Unable to Start Backup - File " + command_line + " does not exist.");
        program_.exit_code = forms::exit_code::kNoSuchSet;
        return;
    }
    main_window_->Backup.Cmb_BackupSet.SetText(command_line);
    main_window_->Backup.Cmd_Backup.Press();
}

int Application::ExitCode() const {
    return program_.Unattended() ? program_.exit_code : forms::exit_code::kComplete;
}

void Application::EndByError(const Error& error) {
    const std::string number = "Run-time error '" + std::to_string(error.number()) + "':";
    const forms::Box box{.text = number + "\r\n\r\n" + error.description(),
                         .icon = forms::Icon::kCritical};
    if (program_.Unattended() || program_.desktop.Show(box) == forms::Answer::kNotShown) {
        try {
            clsLog(program_).WriteToLog("Backup", false, number + " " + error.description());
        } catch (const Error&) {
            // The log cannot be written either; the exit code reports the error.
        }
    }
    program_.machine.process.End(forms::exit_code::kFailed);
}

}  // namespace vantrel
