// The small services of Windows: clock, drives, settings, shell and process. Any thread may call
// them, except that the shell is used on the user-interface thread only.
#pragma once

#include <memory>

#include "platform/machine_support.h"

namespace vantrel::platform {

// The system's clock, in the user's time zone.
class Win32Clock final : public SteadyClock {
  public:
    Win32Clock();
    ~Win32Clock() override;
    LocalTime Now() override;
    LocalTime ToLocal(Ticks utc) override;

  private:
    class Zone;
    std::unique_ptr<Zone> zone_;
};

// Drives of the system. Shows no system dialog: Win32Machine switches those off.
class Win32Drives final : public Drives {
  public:
    int Type(const std::string& root) override;
    DiskSpace Space(const std::string& root) override;
    std::uint64_t FreeBytes(const std::string& folder) override;
    std::string Label(const std::string& root) override;
};

// The per-user settings store: HKEY_CURRENT_USER\Software\<product>\<section>, one text value a
// key.
class Win32Settings final : public Settings {
  public:
    std::optional<std::string> Read(const std::string& section, const std::string& key) override;
    // Raises 70 when the store may not be written, 57 when it fails.
    void Write(const std::string& section, const std::string& key,
               const std::string& value) override;
    NumberFormat Numbers() override;
};

// The shell of the user's desktop.
class Win32Shell final : public Shell {
  public:
    std::string ProgramFor(const std::string& file) override;
    int Open(const std::string& target, ShellVerb verb) override;
};

// The running program and its command line.
class Win32Process final : public Process {
  public:
    // The first object determines the previous instance, for all objects of the process.
    Win32Process();
    std::string ApplicationFolder() override;
    std::string ExecutableBaseName() override;
    std::string CommandLine() override;
    std::string WindowsFolder() override;
    bool PreviousInstance() override;
    // Copies that start from now on do not find this process. PreviousInstance does not change.
    static void ReleaseInstance();
    int Processors() override;
    [[noreturn]] void End(int exit_code) override;
};

}  // namespace vantrel::platform
