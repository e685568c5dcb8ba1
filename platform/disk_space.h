// The classic disk-space answer, made from the true one.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

// Caps free and total clusters at 2 GB minus one cluster each, as the classic call does on the
// systems that the product was made for: callers multiply in signed 32-bit arithmetic. Sector and
// cluster sizes stay. All zero when a size is zero or a cluster has 2 GB or more.
DiskSpace ClassicDiskSpace(const DiskSpace& true_space);

}  // namespace vantrel::platform
