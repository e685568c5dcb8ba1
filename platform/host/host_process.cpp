#include "platform/host/host_process.h"

#include <unistd.h>

namespace vantrel::platform {

void HostProcess::End(int exit_code) { ::_exit(exit_code); }

}  // namespace vantrel::platform
