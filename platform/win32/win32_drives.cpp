#include "platform/win32/win32_drives.h"

#include <windows.h>

#include <optional>

#include "common/error.h"
#include "platform/disk_space.h"
#include "platform/win32/disk_path.h"
#include "platform/win32/wide.h"

namespace vantrel::platform {

namespace {

std::optional<std::uint64_t> FreeIn(const DiskPath& folder) {
    // A share's folder is taken only with a separator at its end.
    const std::wstring text = folder.Text() + (folder.IsRoot() ? L"" : L"\\");
    ULARGE_INTEGER free_for_user{};
    if (!GetDiskFreeSpaceExW(text.c_str(), &free_for_user, nullptr, nullptr)) return std::nullopt;
    return free_for_user.QuadPart;
}

}  // namespace

int Win32Drives::Type(const std::string& root) {
    return static_cast<int>(GetDriveTypeW(Wide(root).c_str()));
}

DiskSpace Win32Drives::Space(const std::string& root) {
    DWORD sectors = 0, bytes = 0, free_clusters = 0, total_clusters = 0;
    if (!GetDiskFreeSpaceW(Wide(root).c_str(), &sectors, &bytes, &free_clusters, &total_clusters)) {
        return {};
    }
    return ClassicDiskSpace({sectors, bytes, free_clusters, total_clusters});
}

std::uint64_t Win32Drives::FreeBytes(const std::string& folder) {
    try {
        // A folder that is still to be made lies where its nearest parent does.
        for (DiskPath place(folder);; place = place.Parent()) {
            if (const auto bytes = FreeIn(place)) return *bytes;
            if (place.IsRoot()) return 0;
        }
    } catch (const Error&) {
        return 0;
    }
}

std::string Win32Drives::Label(const std::string& root) {
    wchar_t label[MAX_PATH + 1] = L"";
    if (!GetVolumeInformationW(Wide(root).c_str(), label, MAX_PATH + 1, nullptr, nullptr, nullptr,
                               nullptr, 0)) {
        return {};
    }
    return Narrow(label);
}

}  // namespace vantrel::platform
