// Entry point of the Windows executable: puts the real machine and the real desktop together.
#include <windows.h>

#include <new>

#include "app/application.h"
#include "platform/win32/win32_machine.h"
#include "system/guide.h"
#include "views/win32/desktop.h"

namespace {

using vantrel::Error;

int RunProgram(vantrel::Application& application, vantrel::forms::Desktop& desktop) {
    try {
        application.Main();
        desktop.Run();
    } catch (const Error& error) {
        application.EndByError(error);
    } catch (const std::bad_alloc&) {
        constexpr int kNumber = vantrel::error_number::kOutOfMemory;
        application.EndByError(Error(kNumber, "Main", vantrel::ErrorText(kNumber)));
    }
    return application.ExitCode();
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    vantrel::platform::Win32Machine machine;
    vantrel::views::Win32Desktop desktop;
    vantrel::Application application(machine.machine(), desktop);
    desktop.on_unhandled = [&](const Error& error) { application.EndByError(error); };
    desktop.on_help = [&](vantrel::forms::Form& window) {
        vantrel::ShowGuide(application.program(), window);
    };
    const int code = RunProgram(application, desktop);
    desktop.on_unhandled = nullptr;
    return code;
}
