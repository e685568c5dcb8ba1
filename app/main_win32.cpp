// Entry point of the Windows executable: puts the real machine and the real desktop together.
#include <windows.h>

#include <functional>
#include <new>

#include "app/application.h"
#include "platform/win32/win32_machine.h"
#include "system/clsSystem.h"
#include "views/win32/win32_desktop.h"

namespace {

using vantrel::Error;

using EndByError = std::function<void(const Error&)>;

int RunProgram(vantrel::Application& application, vantrel::forms::Desktop& desktop,
               const EndByError& end_by_error) {
    try {
        application.Main();
        desktop.Run();
    } catch (const Error& error) {
        end_by_error(error);
    } catch (const std::bad_alloc&) {
        constexpr int kNumber = vantrel::error_number::kOutOfMemory;
        end_by_error(Error(kNumber, "Main", vantrel::ErrorText(kNumber)));
    }
    return application.ExitCode();
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    vantrel::platform::Win32Machine machine;
    vantrel::views::Win32Desktop desktop;
    vantrel::Application application(machine.machine(), desktop);
    // The program has ended for its user once the error shows. The system may take seconds to close
    // the message box, and a restart during that time must not count as a second copy.
    const EndByError end_by_error = [&](const Error& error) {
        machine.ReleaseInstance();
        application.EndByError(error);
    };
    desktop.on_unhandled = end_by_error;
    desktop.on_help = [&](vantrel::forms::Form& window) {
        vantrel::ShowGuide(application.program(), window);
    };
    const int code = RunProgram(application, desktop, end_by_error);
    desktop.on_unhandled = nullptr;
    return code;
}
