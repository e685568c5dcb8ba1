// The archive engine as a command-line program: for checking and restoring old archives, for
// scripts and for measurements.
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "tools/vzip_commands.h"

#ifdef _WIN32
#include "platform/win32/win32_machine.h"
struct NativeMachine : vantrel::platform::Win32Machine {
    explicit NativeMachine(bool /*has_disks*/) {}
};
std::vector<std::string> CommandLine(int /*count*/, char** /*words*/) {
    return vantrel::platform::CommandLineWords();
}
#else
#include "platform/host/host_machine.h"
// File names exactly as the system's other tools see them. `has_disks`: for an archive on several
// disks each folder counts as one that is removable.
struct NativeMachine : vantrel::platform::HostMachine {
    explicit NativeMachine(bool has_disks)
        : HostMachine({{'Z',
                        {.folder = "/",
                         .type = has_disks ? vantrel::platform::drive_type::kRemovable
                                           : vantrel::platform::drive_type::kFixed,
                         .exact_names = true}}}) {}
};
std::vector<std::string> CommandLine(int count, char** words) { return {words, words + count}; }
#endif

namespace {

constexpr const char* kUsage =
    "usage: vzip create ARCHIVE.zip FOLDER [--level 0-9] [--mask MASK] [--no-sub-folders]\n"
    "                   [--earlier ARCHIVE | --fresh] [--disks] [--threads N] [--quiet]\n"
    "       vzip list ARCHIVE.zip\n"
    "       vzip extract ARCHIVE.zip FOLDER [--disks] [--threads N] [--keep-broken] [--quiet]\n"
    "       vzip verify ARCHIVE.zip [--disks] [--threads N] [--quiet]\n"
    "       vzip --version\n"
    "exit code: 0 complete, 1 some files skipped, damaged or not restored, 2 failed\n";

int Run(const std::vector<std::string>& words) {
    const std::string command = words.size() > 1 ? words[1] : "";
    const std::vector<std::string> arguments(
        words.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(words.size(), 2)),
        words.end());
    const bool has_disks =
        std::find(arguments.begin(), arguments.end(), "--disks") != arguments.end();
    NativeMachine native(has_disks);
    if (command == "create") {
        return vantrel::tools::CreateArchive(native.machine(), arguments);
    }
    if (command == "list") {
        return vantrel::tools::ListArchive(native.machine(), arguments);
    }
    if (command == "extract") {
        return vantrel::tools::ExtractFiles(native.machine(), arguments);
    }
    if (command == "verify") {
        return vantrel::tools::VerifyFiles(native.machine(), arguments);
    }
    if (command == "--version") {
        return vantrel::tools::ShowVersion();
    }
    std::fputs(kUsage, stderr);
    return vantrel::tools::kExitFailed;
}

}  // namespace

int main(int count, char** words) {
    try {
        return Run(CommandLine(count, words));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vzip: %s\n%s", error.what(), kUsage);
        return vantrel::tools::kExitFailed;
    }
}
