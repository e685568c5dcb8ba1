// The small services of a host: clock, settings, process, shell and mail.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "platform/machine_support.h"
#include "platform/mail.h"

namespace vantrel::platform {

// The host's clock, in the host's time zone. Safe from any thread.
class HostClock : public SteadyClock {
  public:
    LocalTime Now() override;
    LocalTime ToLocal(Ticks utc) override;
};

// Settings that last as long as the process. Safe from any thread.
class HostSettings : public Settings {
  public:
    std::optional<std::string> Read(const std::string& section, const std::string& key) override;
    void Write(const std::string& section, const std::string& key,
               const std::string& value) override;
    // A host has no region: the English format.
    NumberFormat Numbers() override { return {}; }

  private:
    std::mutex mutex_;
    std::map<std::pair<std::string, std::string>, std::string> values_;
};

// The answers of HostProcess, chosen by its owner.
struct HostProgram {
    std::string application_folder = "Z:\\";
    std::string base_name = "Vantrel";
    std::string command_line{};
    std::string windows_folder = "Z:\\usr";
    bool previous_instance = false;
};

class HostProcess : public Process {
  public:
    explicit HostProcess(HostProgram program) : program_(std::move(program)) {}

    std::string ApplicationFolder() override { return program_.application_folder; }
    std::string ExecutableBaseName() override { return program_.base_name; }
    std::string CommandLine() override { return program_.command_line; }
    std::string WindowsFolder() override { return program_.windows_folder; }
    bool PreviousInstance() override { return program_.previous_instance; }
    int Processors() override;
    [[noreturn]] void End(int exit_code) override;

  private:
    HostProgram program_;
};

// The shell of a host that has none: no program opens anything.
class HostShell : public Shell {
  public:
    std::string ProgramFor(const std::string&) override { return ""; }
    int Open(const std::string&, ShellVerb) override { return kNoAssociation; }

  private:
    static constexpr int kNoAssociation = 31;  // the answer of Windows' shell for it
};

// Mail on a host without a mail program: signing on fails.
class HostMailSession : public MailSession {
  public:
    void SignOn() override { RaiseNoMailProgram(); }
    MailSessionId SessionId() const override { return 0; }
    void SignOff() override {}
};

class HostMailMessages : public MailDraft {
  protected:
    void Deliver(MailSessionId, const MailMessage&, bool) override { RaiseNoMailProgram(); }
};

}  // namespace vantrel::platform
