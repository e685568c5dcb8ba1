#include "platform/host/host_process.h"

#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

namespace vantrel::platform {

int HostProcess::Processors() {
    cpu_set_t allowed;
    // Fails where the computer has more of them than the set has room for.
    if (::sched_getaffinity(0, sizeof allowed, &allowed) == 0) {
        return CPU_COUNT(&allowed);
    }
    return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
}

void HostProcess::End(int exit_code) { ::_exit(exit_code); }

}  // namespace vantrel::platform
