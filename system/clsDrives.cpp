#include "system/clsDrives.h"

#include <cstdint>
#include <limits>

#include "common/error.h"

namespace vantrel {

namespace {

// The product as signed 32-bit multiplication gives it. Raises 6 (Overflow) when the product or a
// factor does not fit.
std::int32_t Multiply(std::int64_t one, std::int64_t other) {
    constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
    const bool fits = one <= kMax && other <= kMax && (one == 0 || other <= kMax / one);
    if (!fits) {
        RaiseError(error_number::kOverflow);
    }
    return static_cast<std::int32_t>(one * other);
}

bool IsListed(int type) {
    return type >= platform::drive_type::kRemovable && type <= platform::drive_type::kRamDisk;
}

}  // namespace

bool clsDrives::VerifyDriveType(const std::string& root, int type) {
    return program_.machine.drives.Type(root) == type;
}

std::string clsDrives::ShowDrives(int type) {
    std::string letters;
    try {
        for (char letter = 'a'; letter <= 'z'; ++letter) {
            const int found = program_.machine.drives.Type(std::string(1, letter) + ":\\");
            if (IsListed(found) && found == type) {
                letters += std::string(1, letter) + ": ";
            }
        }
    } catch (const Error&) {
        // The result is the drives that were found before the error.
    }
    letters = program_.machine.code_page.Upper(letters);
    return letters.empty() ? "Nil" : letters;
}

double clsDrives::FreeSpace(const std::string& letter) {
    const platform::DiskSpace space = program_.machine.drives.Space(letter + ":\\");
    return Multiply(Multiply(space.sectors_per_cluster, space.free_clusters),
                    space.bytes_per_sector);
}

}  // namespace vantrel
