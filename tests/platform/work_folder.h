// Folders of the tests' own, through the machine's file system, and the time of the files in them.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace vantrel::test {

// A name that no other test uses.
inline std::string NameOfThisTest() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    return std::string(info->test_suite_name()) + "-" + info->name();
}

inline std::vector<platform::FileInfo> EntriesOf(platform::FileSystem& files,
                                                 const std::string& folder) {
    std::vector<platform::FileInfo> entries;
    files.List(folder, [&](const platform::FileInfo& info) {
        entries.push_back(info);
        return true;
    });
    return entries;
}

// The system's time, as the times of files are counted.
inline platform::Ticks UtcNow() {
    constexpr platform::Ticks kEpoch = 116'444'736'000'000'000;  // 1970-01-01
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    const auto steps =
        std::chrono::duration_cast<std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>>(
            since);
    return kEpoch + static_cast<platform::Ticks>(steps.count());
}

// In the system's order.
inline std::vector<std::string> NamesIn(platform::FileSystem& files, const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : EntriesOf(files, folder)) {
        names.push_back(entry.name);
    }
    return names;
}

// Removes the folder with all that is in it, read-only files too.
inline void RemoveAll(platform::FileSystem& files, const std::string& folder) {
    for (const auto& entry : EntriesOf(files, folder)) {
        const std::string path = folder + "\\" + entry.name;
        if (!entry.is_link) {
            files.SetAttributes(path, 0);
        }
        entry.IsFolder() ? RemoveAll(files, path) : files.RemoveFile(path);
    }
    files.RemoveFolder(folder);
}

}  // namespace vantrel::test
