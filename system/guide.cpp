#include "system/guide.h"

#include <string>

#include "backupset/clsFiles.h"
#include "forms/control.h"

namespace vantrel {

namespace {

constexpr const char* kPage = "guide.html";
constexpr int kLastShellError = 32;  // the shell's answers up to here mean failure

// What keeps the page from the user, "" for nothing.
std::string Obstacle(forms::Program& program, const std::string& page) {
    const std::string gap = program.globals.CrLf + program.globals.CrLf;
    if (!clsFiles(program).Exist(page, true))
        return "The Guide cannot be found." + gap + "It should be the file " + page;
    if (program.machine.shell.Open(page, platform::ShellVerb::kOpen) <= kLastShellError)
        return "The Guide could not be opened." + gap +
               "It is a page for your Web Browser, the file " + page;
    return "";
}

}  // namespace

void ShowGuide(forms::Program& program, forms::Form& window) {
    if (program.Unattended()) return;
    const bool busy = window.running_handlers > 0;
    // Asked again inside the box, it finds the window busy.
    const forms::HandlerScope scope(window);
    const std::string obstacle = Obstacle(program, program.InApplicationFolder(kPage));
    if (obstacle.empty() || busy) return;
    program.desktop.Show({.text = obstacle, .icon = forms::Icon::kExclamation, .title = "Guide"});
}

}  // namespace vantrel
