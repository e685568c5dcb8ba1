#include "platform/host/host_machine.h"

namespace vantrel::platform {

HostMachine::HostMachine(std::map<char, HostDrive> drives, HostProgram program)
    : drive_map_(std::move(drives)), process_(std::move(program)) {}

}  // namespace vantrel::platform
