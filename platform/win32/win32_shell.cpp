#include "platform/win32/win32_shell.h"

#include <windows.h>
// Needs the types of windows.h.
#include <shellapi.h>

#include <array>
#include <cstdint>

#include "platform/win32/wide.h"

namespace vantrel::platform {

namespace {
constexpr std::intptr_t kLastError = 32;  // the shell's answers up to here are error codes
}

std::string Win32Shell::ProgramFor(const std::string& file) {
    std::array<wchar_t, MAX_PATH> program{};
    const auto answer = reinterpret_cast<std::intptr_t>(
        FindExecutableW(Wide(file).c_str(), nullptr, program.data()));
    return answer > kLastError ? Narrow(program.data()) : "";
}

int Win32Shell::Open(const std::string& target, ShellVerb verb) {
    const wchar_t* const name = verb == ShellVerb::kOpen ? L"open" : nullptr;
    return static_cast<int>(reinterpret_cast<std::intptr_t>(ShellExecuteW(
        GetActiveWindow(), name, Wide(target).c_str(), nullptr, nullptr, SW_SHOWNORMAL)));
}

}  // namespace vantrel::platform
