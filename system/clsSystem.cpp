#include "system/clsSystem.h"

#include "common/error.h"
#include "forms/form.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

constexpr int kLastShellError = 32;  // the shell's answers up to here mean failure

// Runs `body` on a scratch file and removes that in every case. Of two errors the first is raised.
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
            // Perhaps it was never there.
        }
        throw;
    }
    files.RemoveFile(path);
}

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void clsSystem::Tell(const std::string& text, const std::string& title) {
    program_.desktop.Show({.text = text, .icon = forms::Icon::kExclamation, .title = title});
}

void clsSystem::ShowWebPage(const std::string& address) {
    Reported("clsSystem:ShowWebPage Method", [&] {
        // The shell names a file's program only for a file that is there. Its closing tag is
        // written with a backslash, as it always was.
        const std::string page = program_.InApplicationFolder("temphtm.HTM");
        OnScratchFile(program_.machine.files, page, "<HTML> <\\HTML>\r\n",
                      [&] { OpenWith(program_.machine.shell.ProgramFor(page), address); });
    });
}

void clsSystem::OpenWith(const std::string& browser, const std::string& address) {
    if (Trimmed(browser).empty()) return Tell("Could not find a Web Browser.", address);
    if (program_.machine.shell.Open(address, platform::ShellVerb::kOpen) > kLastShellError) return;
    Tell("Web Page not Opened", "Web URL Failed");
}

long clsSystem::ScrollText(forms::TextBox& box, std::int16_t lines) {
    return Reported("clsSystem:ScrollText Method", [&] {
        forms::Control* const active = box.owner().ActiveControl();
        box.SetFocus();
        box.ScrollLines(lines);
        if (active != nullptr) active->SetFocus();
        // What the system answers to the message: whether the box has lines.
        return box.MultiLine() ? 1L : 0L;
    });
}

}  // namespace vantrel
