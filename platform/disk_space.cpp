#include "platform/disk_space.h"

#include <algorithm>

namespace vantrel::platform {

DiskSpace ClassicDiskSpace(const DiskSpace& true_space) {
    constexpr std::uint64_t kTwoGigabytes = std::uint64_t{1} << 31;  // bytes
    const std::uint64_t cluster =
        std::uint64_t{true_space.sectors_per_cluster} * true_space.bytes_per_sector;
    if (cluster == 0 || cluster >= kTwoGigabytes) return {};
    const auto most = static_cast<std::uint32_t>((kTwoGigabytes - cluster) / cluster);
    DiskSpace classic = true_space;
    classic.free_clusters = std::min(classic.free_clusters, most);
    classic.total_clusters = std::min(classic.total_clusters, most);
    return classic;
}

}  // namespace vantrel::platform
