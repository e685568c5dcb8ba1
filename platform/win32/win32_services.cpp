#include "platform/win32/win32_services.h"

#include <windows.h>
// Needs the types of windows.h.
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "common/error.h"
#include "common/product.h"
#include "platform/machine_support.h"
#include "platform/win32/disk_path.h"
#include "platform/win32/handles.h"
#include "platform/win32/system_error.h"
#include "platform/win32/win32_code_page.h"

namespace vantrel::platform {

namespace {

SYSTEMTIME UtcFields(Ticks utc) {
    const FILETIME time{static_cast<DWORD>(utc), static_cast<DWORD>(utc >> 32)};
    SYSTEMTIME fields{};
    if (FileTimeToSystemTime(&time, &fields)) {
        return fields;
    }
    return UtcFields(0);  // beyond the calendar: its first day
}

std::optional<std::uint64_t> FreeIn(const DiskPath& folder) {
    // The system accepts a share's folder only with a separator at its end.
    const std::wstring text = folder.Text() + (folder.IsRoot() ? L"" : L"\\");
    ULARGE_INTEGER free_for_user{};
    if (!GetDiskFreeSpaceExW(text.c_str(), &free_for_user, nullptr, nullptr)) {
        return std::nullopt;
    }
    return free_for_user.QuadPart;
}

std::wstring SectionKey(const std::string& section) {
    return L"Software\\" + Wide(product::kName) + L"\\" + Wide(section);
}

DWORD BytesOf(const std::wstring& text) {
    return static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
}

void Check(LSTATUS status) {
    if (status != ERROR_SUCCESS) {
        RaiseSystemError(static_cast<DWORD>(status));
    }
}

// A text of the user's region; "" when there is none.
std::string RegionText(LCTYPE which) {
    std::array<wchar_t, 16> text{};  // more than the system allows for any of those used here
    const int size = GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, which, text.data(),
                                     static_cast<int>(text.size()));
    return size > 0 ? Narrow(text.data()) : "";
}

constexpr std::intptr_t kLastError = 32;  // the shell's answers up to here are error codes

std::wstring ExecutablePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD capacity = static_cast<DWORD>(path.size());
        const DWORD size = GetModuleFileNameW(nullptr, path.data(), capacity);
        if (size < capacity) {
            path.resize(size);
            return PlainPath(path);  // it may have been started by its literal path
        }
        path.resize(path.size() * 2);
    }
}

// A name for system objects must hold no "\" and be short: it has the path's FNV-1a value.
std::wstring InstanceName() {
    std::uint64_t value = 14695981039346656037u;
    for (const wchar_t unit : FoldWide(ExecutablePath())) {
        value = (value ^ static_cast<std::uint64_t>(unit)) * 1099511628211u;
    }
    return L"Local\\Vantrel-" + std::to_wstring(value);
}

// Exists until it is released or the process ends; every later copy finds it.
class InstanceMark {
  public:
    InstanceMark() {
        SetLastError(ERROR_SUCCESS);
        mark_ = ObjectHandle(CreateEventW(nullptr, TRUE, FALSE, InstanceName().c_str()));
        // A copy that runs with more rights denies access to its mark, but the mark exists.
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

// The user's time zone. Its rules cost dozens of system calls, under Wine more than reading a small
// file does, and a backup needs them for each file; so an answer is kept for a second.
class Win32Clock::Zone {
  public:
    // By the rules in force in the year of that date, not by today's.
    SYSTEMTIME LocalFields(const SYSTEMTIME& utc) {
        const auto rules = RulesOf(utc.wYear);
        SYSTEMTIME local{};
        return rules && SystemTimeToTzSpecificLocalTime(&*rules, &utc, &local) ? local : utc;
    }

  private:
    static constexpr ULONGLONG kFresh = 1000;  // milliseconds
    using Rules = std::optional<TIME_ZONE_INFORMATION>;

    Rules RulesOf(WORD year) {
        const std::lock_guard lock(mutex_);
        const ULONGLONG now = GetTickCount64();
        if (now - asked_at_ >= kFresh) {
            rules_.clear();
            asked_at_ = now;
        }
        const auto known = rules_.find(year);
        return known != rules_.end() ? known->second : rules_[year] = Ask(year);
    }

    static Rules Ask(WORD year) {
        DYNAMIC_TIME_ZONE_INFORMATION zone{};
        TIME_ZONE_INFORMATION rules{};
        if (GetDynamicTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID ||
            !GetTimeZoneInformationForYear(year, &zone, &rules)) {
            return std::nullopt;
        }
        return rules;
    }

    std::mutex mutex_;
    ULONGLONG asked_at_ = 0;
    std::map<WORD, Rules> rules_;
};

Win32Clock::Win32Clock() : zone_(std::make_unique<Zone>()) {}
Win32Clock::~Win32Clock() = default;

LocalTime Win32Clock::Now() {
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return ToLocal((static_cast<Ticks>(now.dwHighDateTime) << 32) | now.dwLowDateTime);
}

LocalTime Win32Clock::ToLocal(Ticks utc) {
    const SYSTEMTIME local = zone_->LocalFields(UtcFields(utc));
    return {local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond};
}

int Win32Drives::Type(const std::string& root) {
    return static_cast<int>(GetDriveTypeW(Wide(root).c_str()));
}

DiskSpace Win32Drives::Space(const std::string& root) {
    DWORD sectors = 0, bytes = 0, free_clusters = 0, total_clusters = 0;
    if (!GetDiskFreeSpaceW(Wide(root).c_str(), &sectors, &bytes, &free_clusters, &total_clusters)) {
        return {};
    }
    return ClassicDiskSpace({sectors, bytes, free_clusters, total_clusters});
}

std::uint64_t Win32Drives::FreeBytes(const std::string& folder) {
    try {
        // A folder that does not exist yet has the free space of its nearest parent.
        for (DiskPath place(folder);; place = place.Parent()) {
            if (const auto bytes = FreeIn(place)) {
                return *bytes;
            }
            if (place.IsRoot()) {
                return 0;
            }
        }
    } catch (const Error&) {
        return 0;
    }
}

std::string Win32Drives::Label(const std::string& root) {
    wchar_t label[MAX_PATH + 1] = L"";
    if (!GetVolumeInformationW(Wide(root).c_str(), label, MAX_PATH + 1, nullptr, nullptr, nullptr,
                               nullptr, 0)) {
        return {};
    }
    return Narrow(label);
}

std::optional<std::string> Win32Settings::Read(const std::string& section, const std::string& key) {
    const std::wstring place = SectionKey(section);
    const std::wstring name = Wide(key);
    std::wstring text(256, L'\0');
    for (;;) {
        auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, place.c_str(), name.c_str(),
                                            RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
        if (status == ERROR_SUCCESS) {
            text.resize(bytes / sizeof(wchar_t));
            return Narrow(text.c_str());
        }
        if (status != ERROR_MORE_DATA) {
            return std::nullopt;
        }
        // Another program can write a longer value between two calls.
        text.resize(text.size() * 2);
    }
}

void Win32Settings::Write(const std::string& section, const std::string& key,
                          const std::string& value) {
    HKEY opened = nullptr;
    Check(RegCreateKeyExW(HKEY_CURRENT_USER, SectionKey(section).c_str(), 0, nullptr, 0,
                          KEY_SET_VALUE, nullptr, &opened, nullptr));
    const KeyHandle place(opened);
    const std::wstring text = Wide(value);
    Check(RegSetValueExW(place.Get(), Wide(key).c_str(), 0, REG_SZ,
                         reinterpret_cast<const BYTE*>(text.c_str()), BytesOf(text)));
}

NumberFormat Win32Settings::Numbers() {
    return MakeNumberFormat(RegionText(LOCALE_SDECIMAL), RegionText(LOCALE_STHOUSAND),
                            RegionText(LOCALE_SGROUPING));
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
