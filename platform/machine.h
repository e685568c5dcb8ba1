// All access to the machine. A Machine is a set of references to small services, so that a test can
// exchange one of them (a clock, a disk that fills up) and leave the others real. Unless a service
// says otherwise, it is used on the user-interface thread only; Clock and CodePage may be called
// from any thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "common/display_text.h"
#include "platform/file_system.h"
#include "platform/mail.h"

namespace vantrel::platform {

// Drive type codes, as the system numbers them.
namespace drive_type {
constexpr int kUnknown = 0;
constexpr int kNoRoot = 1;
constexpr int kRemovable = 2;
constexpr int kFixed = 3;
constexpr int kRemote = 4;
constexpr int kCdRom = 5;
constexpr int kRamDisk = 6;
}  // namespace drive_type

// Free space in the units of the classic disk-space call.
struct DiskSpace {
    std::uint32_t sectors_per_cluster = 0;
    std::uint32_t bytes_per_sector = 0;
    std::uint32_t free_clusters = 0;
    std::uint32_t total_clusters = 0;
};

class Drives {
  public:
    virtual ~Drives() = default;
    // Type code of a root such as "C:\"; 1 when there is no such drive.
    virtual int Type(const std::string& root) = 0;
    // The answer of the classic call: never more than 2 GB minus one cluster free; all zero when it
    // fails.
    virtual DiskSpace Space(const std::string& root) = 0;
    // True free bytes for the user on the volume that holds `folder`; 0 when the system does not
    // report it.
    virtual std::uint64_t FreeBytes(const std::string& folder) = 0;
    // Volume label of a root, "" when there is none or the drive is not ready.
    virtual std::string Label(const std::string& root) = 0;
};

// Wall-clock time in the user's time zone.
struct LocalTime {
    int year = 0;
    int month = 0;  // 1 to 12
    int day = 0;    // 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;
};

class Clock {
  public:
    virtual ~Clock() = default;
    virtual LocalTime Now() = 0;
    virtual LocalTime ToLocal(Ticks utc) = 0;
    // Time since a fixed moment, for durations: never falls, whatever the wall clock does.
    virtual std::chrono::milliseconds SteadyNow() = 0;
    // Blocks the calling thread.
    virtual void Sleep(std::chrono::milliseconds time) = 0;
    // Waits until `signal` is notified or `time` is over; may also return early.
    virtual void Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
                      std::chrono::milliseconds time) = 0;
};

// Per-user settings: application "Vantrel", a section, a key; and how the user writes numbers.
class Settings {
  public:
    virtual ~Settings() = default;
    virtual std::optional<std::string> Read(const std::string& section, const std::string& key) = 0;
    virtual void Write(const std::string& section, const std::string& key,
                       const std::string& value) = 0;
    // The number format of the user's region, as it is now.
    virtual NumberFormat Numbers() = 0;
};

class Process {
  public:
    virtual ~Process() = default;
    // Folder of the executable, without a trailing "\" unless it is a drive root.
    virtual std::string ApplicationFolder() = 0;
    // File name of the executable without its extension.
    virtual std::string ExecutableBaseName() = 0;
    // Everything after the executable's name. Spaces before the first other character are the
    // separator; a text of spaces only loses exactly one.
    virtual std::string CommandLine() = 0;
    // Folder of the operating system, without a trailing "\" unless it is a drive root.
    virtual std::string WindowsFolder() = 0;
    // Whether another copy of this executable ran in the user's session when this one started.
    virtual bool PreviousInstance() = 0;
    // On how many processors its threads may run, which can be fewer than the computer has; at
    // least 1.
    virtual int Processors() = 0;
    // Ends the program at once, without any clean-up.
    [[noreturn]] virtual void End(int exit_code) = 0;
};

// The system's single-byte ANSI code page, and letter case.
class CodePage {
  public:
    virtual ~CodePage() = default;
    // UTF-8 to code page bytes; nothing when a character has no exact counterpart.
    virtual std::optional<std::string> Encode(const std::string& utf8) = 0;
    // The same with "?" for each character without a counterpart.
    virtual std::string EncodeLossy(const std::string& utf8) = 0;
    virtual std::string Decode(const std::string& bytes) = 0;
    // Bytes of the OEM code page, as old archives hold them.
    virtual std::string DecodeOem(const std::string& bytes) = 0;
    // Capital letters, one character for one; a letter whose capital the code page lacks stays.
    virtual std::string Upper(const std::string& utf8) = 0;
    // A form for comparing names: equal forms are one name to the file system.
    virtual std::string Fold(const std::string& utf8) = 0;
};

// The verb for a file or an address: the default of its kind, as the user has set it, or "open".
enum class ShellVerb { kDefault, kOpen };

// The user's desktop shell.
class Shell {
  public:
    virtual ~Shell() = default;
    // Path of the program that opens files like `file` (which must exist), "" when there is none.
    virtual std::string ProgramFor(const std::string& file) = 0;
    // Hands a file or an address to the program that opens it, with a normal window. Above 32:
    // done; up to 32: the shell's error code.
    virtual int Open(const std::string& target, ShellVerb verb) = 0;
};

struct Machine {
    Process& process;
    FileSystem& files;
    Drives& drives;
    Clock& clock;
    Settings& settings;
    CodePage& code_page;
    Shell& shell;
    MailSession& mail_session;
    MailMessages& mail_messages;
};

}  // namespace vantrel::platform
