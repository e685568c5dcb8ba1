// A process that is what its maker says it is.
#pragma once

#include <string>

#include "platform/machine.h"

namespace vantrel::platform {

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

}  // namespace vantrel::platform
