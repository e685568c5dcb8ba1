#include "system/clsSystem.h"

#include "common/error.h"
#include "forms/form.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

constexpr int kLastShellError = 32;  // the shell's answers up to here mean failure

// Gone with its scope, whatever happens in it.
class ScratchFile {
  public:
    ScratchFile(platform::FileSystem& files, std::string path, const std::string& text)
        : files_(files), path_(std::move(path)) {
        platform::WriteWholeFile(files_, path_, text);
    }
    ~ScratchFile() {
        try {
            files_.RemoveFile(path_);
        } catch (const Error&) {
            // A scratch file that somebody holds is replaced the next time.
        }
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    const std::string& path() const { return path_; }

  private:
    platform::FileSystem& files_;
    std::string path_;
};

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
        const ScratchFile page(program_.machine.files, program_.InApplicationFolder("temphtm.HTM"),
                               "<HTML> <\\HTML>\r\n");
        if (Trimmed(program_.machine.shell.ProgramFor(page.path())).empty()) {
            return Tell("Could not find a Web Browser.", address);
        }
        if (program_.machine.shell.Open(address, platform::ShellVerb::kOpen) <= kLastShellError) {
            Tell("Web Page not Opened", "Web URL Failed");
        }
    });
}

void clsSystem::ScrollText(forms::TextBox& box, int lines) {
    Reported("clsSystem:ScrollText Method", [&] {
        forms::Control* const active = box.owner().ActiveControl();
        box.SetFocus();
        box.ScrollLines(lines);
        if (active != nullptr) active->SetFocus();
    });
}

}  // namespace vantrel
