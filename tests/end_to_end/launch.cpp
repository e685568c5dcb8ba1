// Starts a program with a command line that nobody quotes or trims on the way: the whole text is
// the environment variable VANTREL_COMMAND_LINE. Waits, and passes the program's exit code through.
#include <windows.h>

#include <string>

int wmain() {
    constexpr DWORD kMaxLength = 32768;  // characters; no command line may be longer
    std::wstring text(kMaxLength, L'\0');
    const DWORD length = GetEnvironmentVariableW(L"VANTREL_COMMAND_LINE", text.data(), kMaxLength);
    if (length == 0 || length >= kMaxLength) {
        return 100;
    }
    text.resize(length);

    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, text.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        return 101;
    }
    CloseHandle(process.hThread);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exit_code = 102;
    GetExitCodeProcess(process.hProcess, &exit_code);
    CloseHandle(process.hProcess);
    return static_cast<int>(exit_code);
}
