// Lists an archive in the main window, several times, and prints what that costs
// (docs/performance.md):
//     listing_time.exe C:\archive.zip [rounds]
// For each round: the time; the longest time between two timer messages, which is how long the
// message loop was blocked, with and without single calls of the tree; the messages to the tree
// that took longest, with their processor time; and the memory.
#include <windows.h>

#include <commctrl.h>
#include <psapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "platform/win32/win32_machine.h"
#include "restore/archive_contents.h"
#include "ui/Frm_Mainmenu.h"
#include "views/win32/win32_desktop.h"
#include "views/win32/window_resources.h"

namespace vantrel {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct Call {
    Milliseconds time{0};
    Milliseconds processor{0};  // of this thread, without the system's server process
};

Clock::time_point g_last_tick;
Milliseconds g_processor_at_tick{0};
Call g_in_calls;  // since the last tick
Milliseconds g_longest_block{0};
Call g_longest_own;                   // without the tree's calls
std::map<UINT, Call> g_longest_call;  // of the tree, by message
int g_depth = 0;
WNDPROC g_tree = nullptr;

Milliseconds ProcessorTime() {
    FILETIME started, ended, kernel, user;
    GetThreadTimes(GetCurrentThread(), &started, &ended, &kernel, &user);
    constexpr double kUnits = 10'000;  // of FILETIME in a millisecond
    return Milliseconds((kernel.dwLowDateTime + user.dwLowDateTime) / kUnits);
}

void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    const auto now = Clock::now();
    const Milliseconds block = now - g_last_tick;
    g_longest_block = std::max(g_longest_block, block);
    const Milliseconds processor = ProcessorTime();
    const Milliseconds own_processor = processor - g_processor_at_tick - g_in_calls.processor;
    g_longest_own.time = std::max(g_longest_own.time, block - g_in_calls.time);
    g_longest_own.processor = std::max(g_longest_own.processor, own_processor);
    g_last_tick = now;
    g_processor_at_tick = processor;
    g_in_calls = {};
}

// Replaces the window procedure: a subclass of comctl32 looks up a property for each message.
LRESULT CALLBACK TimeCall(HWND tree, UINT message, WPARAM wparam, LPARAM lparam) {
    const bool is_one_of_many = message == TVM_INSERTITEMW;
    const auto start = Clock::now();
    const Milliseconds processor = is_one_of_many ? Milliseconds{0} : ProcessorTime();
    ++g_depth;
    const LRESULT result = CallWindowProcW(g_tree, tree, message, wparam, lparam);
    const bool is_outermost = --g_depth == 0;
    const Milliseconds time = Clock::now() - start;
    if (is_outermost && !is_one_of_many) {
        const Call call{time, ProcessorTime() - processor};
        g_in_calls.time += call.time;
        g_in_calls.processor += call.processor;
        if (g_longest_call[message].time < time) {
            g_longest_call[message] = call;
        }
    }
    return result;
}

HWND Find(const forms::Control& control) {
    struct Search {
        int id;
        HWND found = nullptr;
    } search{views::ControlId(control.owner().name(), control.name())};
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND top, LPARAM data) -> BOOL {
            EnumChildWindows(
                top,
                [](HWND child, LPARAM wanted) -> BOOL {
                    auto& state = *reinterpret_cast<Search*>(wanted);
                    if (GetDlgCtrlID(child) == state.id) {
                        state.found = child;
                    }
                    return state.found == nullptr;
                },
                data);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void Print(int round, Milliseconds time, int entries) {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    std::printf(
        "round %d: %d entries, %.1f s, %.0f MB, at most %.0f MB\n"
        "    blocked at most %.0f ms, without the tree's calls %.0f ms (processor %.0f ms)\n",
        round, entries, time.count() / 1000, static_cast<double>(memory.WorkingSetSize) / 1e6,
        static_cast<double>(memory.PeakWorkingSetSize) / 1e6, g_longest_block.count(),
        g_longest_own.time.count(), g_longest_own.processor.count());
    constexpr Milliseconds kLong{10};
    for (const auto& [message, longest] : g_longest_call) {
        if (longest.time > kLong) {
            std::printf("    message 0x%04X: %.0f ms, processor time %.0f ms\n", message,
                        longest.time.count(), longest.processor.count());
        }
    }
    std::fflush(stdout);
}

void Measure(forms::Program& program, Frm_Mainmenu& window, const std::string& archive,
             int rounds) {
    program.desktop.ShowModeless(window);
    window.TAB_Backup.SetTab(1);
    program.desktop.DoEvents();
    RestoreTab& tab = window.Restore;
    g_tree = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(Find(tab.TV_Restore), GWLP_WNDPROC,
                                                         reinterpret_cast<LONG_PTR>(TimeCall)));
    constexpr UINT kInterval = 10;  // milliseconds
    SetTimer(nullptr, 0, kInterval, Tick);
    for (int round = 1; round <= rounds; ++round) {
        g_longest_call.clear();
        g_longest_block = Milliseconds{0};
        g_longest_own = g_in_calls = {};
        const auto start = g_last_tick = Clock::now();
        g_processor_at_tick = ProcessorTime();
        ShowZipContents(program,
                        {tab.Cmb_RestoreFile, tab.Fld_RestoreFile, tab.Fld_RestoreTo,
                         tab.TV_Restore, tab.Fld_Total, tab.SSP_TotalFiles, tab.PKUNZIP},
                        archive);
        program.desktop.DoEvents();
        Tick(nullptr, 0, 0, 0);
        Print(round, Clock::now() - start, tab.TV_Restore.Count());
    }
}

}  // namespace

}  // namespace vantrel

int main(int count, char** arguments) {
    using namespace vantrel;
    if (count < 2) {
        std::puts("listing_time ARCHIVE [ROUNDS]");
        return 2;
    }
    platform::Win32Machine machine;
    views::Win32Desktop desktop;
    desktop.on_unhandled = [](const Error& error) {
        std::printf("%s: %s\n", error.source().c_str(), error.description().c_str());
        std::exit(1);
    };
    forms::Program program{machine.machine(), desktop};
    program.globals.CrLf = "\r\n";
    program.globals.LogFilePath = program.InApplicationFolder("Vantrel.Log");
    Frm_Mainmenu window(program);
    desktop.RunGuarded(
        [&] { Measure(program, window, arguments[1], count > 2 ? std::atoi(arguments[2]) : 2); });
    return 0;
}
