#include "tests/support/test_machine.h"

namespace vantrel::test {

namespace {

const TestDrives::Drive* Find(const std::map<char, TestDrives::Drive>& drives,
                              const std::string& path) {
    if (path.empty()) {
        return nullptr;
    }
    const char letter =
        path[0] >= 'a' && path[0] <= 'z' ? static_cast<char>(path[0] - 0x20) : path[0];
    const auto found = drives.find(letter);
    return found == drives.end() ? nullptr : &found->second;
}

const TestDrives::Drive* FindReady(const std::map<char, TestDrives::Drive>& drives,
                                   const std::string& path) {
    const TestDrives::Drive* const drive = Find(drives, path);
    return drive != nullptr && drive->ready ? drive : nullptr;
}

}  // namespace

std::optional<std::string> TestSettings::Read(const std::string& section, const std::string& key) {
    ++reads;
    const auto found = values.find(section + "/" + key);
    if (found == values.end()) {
        return std::nullopt;
    }
    return found->second;
}

void TestSettings::Write(const std::string& section, const std::string& key,
                         const std::string& value) {
    ++writes;
    if (on_write) {
        on_write();
    }
    values[section + "/" + key] = value;
}

int TestDrives::Type(const std::string& root) {
    const Drive* const drive = Find(drives, root);
    return drive == nullptr ? platform::drive_type::kNoRoot : drive->type;
}

platform::DiskSpace TestDrives::Space(const std::string& root) {
    space_questions.push_back(root);
    const Drive* const drive = FindReady(drives, root);
    return drive == nullptr ? platform::DiskSpace{} : drive->space;
}

std::uint64_t TestDrives::FreeBytes(const std::string& folder) {
    const Drive* const drive = FindReady(drives, folder);
    return drive == nullptr ? 0 : drive->free_bytes;
}

std::string TestDrives::Label(const std::string& root) {
    const Drive* const drive = FindReady(drives, root);
    return drive == nullptr ? std::string() : drive->label;
}

}  // namespace vantrel::test
