#include "system/clsSystem.h"

#include <string>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "forms/control.h"
#include "forms/form.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

constexpr int kMaxShellError = 32;  // ShellExecute returns up to 32 for a failure, more for success
constexpr const char* kGuidePage = "guide.html";

// Runs `body` while a scratch file exists and removes the file in every case. Of two errors the
// first is raised.
template <typename Body>
void OnScratchFile(platform::FileSystem& files, const std::string& path, const std::string& text,
                   Body&& body) {
    try {
        platform::WriteWholeFile(files, path, text);
        body();
    } catch (const Error&) {
        try {
            files.RemoveFile(path);
        } catch (const Error&) {
            // The write may have failed before the file existed.
        }
        throw;
    }
    files.RemoveFile(path);
}

// Opens the guide's page; why it cannot be opened, "" on success.
std::string OpenPage(forms::Program& program, const std::string& page) {
    const std::string gap = program.globals.CrLf + program.globals.CrLf;
    if (!clsFiles(program).Exist(page, true)) {
        return "The Guide cannot be found." + gap + "It should be the file " + page;
    }
    if (program.machine.shell.Open(page, platform::ShellVerb::kOpen) > kMaxShellError) {
        return "";
    }
    return "The Guide could not be opened." + gap + "It is a page for your Web Browser, the file " +
           page;
}

}  // namespace

void clsSystem::ShowMessage(const std::string& text, const std::string& title) {
    program_.desktop.Show({.text = text, .icon = forms::Icon::kExclamation, .title = title});
}

void clsSystem::ShowWebPage(const std::string& address) {
    Reported("clsSystem:ShowWebPage Method", [&] {
        // The shell finds the program only for a file that exists. The backslash in the closing tag
        // is part of the file's format.
        const std::string page = program_.InApplicationFolder("temphtm.HTM");
        OnScratchFile(program_.machine.files, page, "<HTML> <\\HTML>\r\n",
                      [&] { OpenWith(program_.machine.shell.ProgramFor(page), address); });
    });
}

void clsSystem::OpenWith(const std::string& browser, const std::string& address) {
    if (browser.find_first_not_of(' ') == std::string::npos) {
        return ShowMessage("Could not find a Web Browser.", address);
    }
    if (program_.machine.shell.Open(address, platform::ShellVerb::kOpen) > kMaxShellError) {
        return;
    }
    ShowMessage("Web Page not Opened", "Web URL Failed");
}

long clsSystem::ScrollText(forms::TextBox& box, std::int16_t lines) {
    return Reported("clsSystem:ScrollText Method", [&] {
        forms::Control* const active = box.owner().ActiveControl();
        box.SetFocus();
        box.ScrollLines(lines);
        if (active != nullptr) {
            active->SetFocus();
        }
        // EM_LINESCROLL returns 1 for a box of several lines and 0 for one of a single line.
        return box.MultiLine() ? 1L : 0L;
    });
}

void ShowGuide(forms::Program& program, forms::Form& window) {
    if (program.Unattended()) {
        return;
    }
    const bool is_busy = window.running_handlers > 0;
    // While the message box is open, F1 pressed again finds the window busy.
    const forms::HandlerScope scope(window);
    const std::string problem = OpenPage(program, program.InApplicationFolder(kGuidePage));
    if (problem.empty() || is_busy) {
        return;
    }
    program.desktop.Show({.text = problem, .icon = forms::Icon::kExclamation, .title = "Guide"});
}

}  // namespace vantrel
