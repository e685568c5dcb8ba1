// The state that all windows of the running program share: the machine, the desktop, the globals
// and the exit code. Used on the user-interface thread only.
#pragma once

#include <string>

#include "forms/desktop.h"
#include "platform/machine.h"

namespace vantrel {

// The process-wide values that start-up sets before anything else runs. None is saved.
struct Globals {
    std::string LogFilePath;  // application folder + "\" + executable base name + ".Log"
    std::string CrLf;         // carriage return + line feed
    std::string MessageText;  // where message-box and log texts are built
    std::string TextBuffer;   // a new set file's text; the archive path of a backup run
};

}  // namespace vantrel

namespace vantrel::forms {

// Exit codes of an unattended run, for schedulers. An attended run ends with 0.
namespace exit_code {
constexpr int kComplete = 0;
constexpr int kSomeFilesSkipped = 1;
constexpr int kFailed = 2;
constexpr int kCancelled = 3;
constexpr int kNoSuchSet = 4;
constexpr int kAlreadyRunning = 5;
}  // namespace exit_code

struct Program {
    platform::Machine& machine;
    Desktop& desktop;
    Globals globals{};
    int exit_code = exit_code::kComplete;

    // Whether the run is unattended: the command line is not empty.
    bool Unattended() const { return !machine.process.CommandLine().empty(); }
    // Shows a box whose text stays in MessageText.
    Answer ShowMessage(const Box& box) {
        globals.MessageText = box.text;
        return desktop.Show(box);
    }
    // `name` in the application folder, joined by one "\".
    std::string InApplicationFolder(const std::string& name) const {
        return machine.process.ApplicationFolder() + "\\" + name;
    }
};

}  // namespace vantrel::forms
