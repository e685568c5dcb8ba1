#include "platform/win32/win32_process.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <thread>

#include "platform/command_line.h"
#include "platform/win32/handles.h"
#include "platform/win32/wide.h"
#include "platform/win32/win32_code_page.h"

namespace vantrel::platform {

namespace {

// A program that was started by its literal path is known by its plain one.
std::wstring Plain(const std::wstring& path) {
    if (path.starts_with(L"\\\\?\\UNC\\")) return L"\\\\" + path.substr(8);
    if (path.starts_with(L"\\\\?\\")) return path.substr(4);
    return path;
}

std::wstring ExecutablePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD room = static_cast<DWORD>(path.size());
        const DWORD size = GetModuleFileNameW(nullptr, path.data(), room);
        if (size < room) {
            path.resize(size);
            return Plain(path);
        }
        path.resize(path.size() * 2);
    }
}

// A name for system objects must hold no "\" and be short: the path's FNV-1a value stands for it.
std::wstring InstanceName() {
    std::uint64_t value = 14695981039346656037u;
    for (const wchar_t unit : FoldWide(ExecutablePath())) {
        value = (value ^ static_cast<std::uint64_t>(unit)) * 1099511628211u;
    }
    return L"Local\\Vantrel-" + std::to_wstring(value);
}

// Held until it is released or the process ends; every later copy finds it.
class InstanceMark {
  public:
    InstanceMark() {
        SetLastError(ERROR_SUCCESS);
        mark_ = ObjectHandle(CreateEventW(nullptr, TRUE, FALSE, InstanceName().c_str()));
        // A copy that runs with more rights does not let us have its mark, but it is there.
        const DWORD code = GetLastError();
        previous_ = code == ERROR_ALREADY_EXISTS || code == ERROR_ACCESS_DENIED;
    }
    bool Previous() const { return previous_; }
    void Release() { mark_.Close(); }

  private:
    ObjectHandle mark_;
    bool previous_ = false;
};

InstanceMark& Mark() {
    static InstanceMark mark;
    return mark;
}

}  // namespace

Win32Process::Win32Process() { Mark(); }

std::string Win32Process::ApplicationFolder() {
    const std::wstring path = ExecutablePath();
    const std::size_t end = path.rfind(L'\\');
    const bool at_root = end == 2 && path[1] == L':';
    return Narrow(std::wstring_view(path).substr(0, at_root ? end + 1 : end));
}

std::string Win32Process::ExecutableBaseName() {
    const std::wstring path = ExecutablePath();
    const std::wstring name = path.substr(path.rfind(L'\\') + 1);
    return Narrow(std::wstring_view(name).substr(0, name.rfind(L'.')));
}

std::string Win32Process::CommandLine() { return ParameterText(Narrow(GetCommandLineW())); }

std::string Win32Process::WindowsFolder() {
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetWindowsDirectoryW(folder.data(), MAX_PATH);
    return length < MAX_PATH ? Narrow(folder.data()) : "";
}

bool Win32Process::PreviousInstance() { return Mark().Previous(); }

void Win32Process::ReleaseInstance() { Mark().Release(); }

int Win32Process::Processors() {
    DWORD_PTR allowed = 0;
    DWORD_PTR all = 0;
    GetProcessAffinityMask(GetCurrentProcess(), &allowed, &all);
    // 0 where the process has threads on more processors than a mask can hold.
    const int count = allowed != 0 ? std::popcount(allowed)
                                   : static_cast<int>(std::thread::hardware_concurrency());
    return std::max(count, 1);
}

void Win32Process::End(int exit_code) {
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exit_code));
    std::abort();  // not reached: the call above does not fail for one's own process
}

}  // namespace vantrel::platform
