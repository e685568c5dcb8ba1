#include "platform/win32/win32_machine.h"

#include <windows.h>
// Needs the types of windows.h.
#include <shellapi.h>

#include "platform/win32/disk_path.h"
#include "platform/win32/win32_code_page.h"
#include "platform/win32/win32_file.h"
#include "platform/win32/win32_mail.h"
#include "platform/win32/win32_services.h"

namespace vantrel::platform {

struct Win32Machine::Services {
    Win32Process process;
    std::unique_ptr<FileSystem> files = NewWin32FileSystem();
    Win32Drives drives;
    Win32Clock clock;
    Win32Settings settings;
    Win32CodePage code_page;
    Win32Shell shell;
    MapiLibrary mapi;
    Win32MailSession mail_session{mapi};
    Win32MailMessages mail_messages{mapi};
    Machine machine{process,   *files, drives,       clock,        settings,
                    code_page, shell,  mail_session, mail_messages};
};

Win32Machine::Win32Machine() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    services_ = std::make_unique<Services>();
}

Win32Machine::~Win32Machine() = default;

Machine& Win32Machine::machine() { return services_->machine; }

void Win32Machine::ReleaseInstance() { Win32Process::ReleaseInstance(); }

std::vector<std::string> CommandLineWords() {
    SetConsoleOutputCP(CP_UTF8);
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        texts.push_back(Narrow(words[i]));
    }
    LocalFree(words);
    return texts;
}

}  // namespace vantrel::platform
