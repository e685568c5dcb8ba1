// A strict reader of archives on several disks that shares nothing with the engine: what it does
// not like, it throws as std::runtime_error.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vantrel::test {

struct SetContents {
    std::map<std::string, std::string> files;  // by stored name
    std::vector<std::string> names;            // in the directory's order
    std::uint32_t directory_disk = 0;
    int crossing = 0;  // files whose data lies on more than one disk
    int descriptors = 0;
    bool zip64 = false;
};

// Checks every record of the set: none is divided, each begins where the one before it ended or at
// the start of the next disk, disk numbers and counts are right, and all data is as its CRC says.
SetContents ReadSet(const std::vector<std::string>& disks);

}  // namespace vantrel::test
