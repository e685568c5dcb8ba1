#include "tests/support/test_machine.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "common/error.h"
#include "common/path.h"
#include "platform/host/host_code_page.h"
#include "platform/host/host_drives.h"
#include "platform/host/host_path.h"
#include "platform/text_file.h"

namespace vantrel::test {

namespace {

std::string NewFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vantrel-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    return pattern;
}

}  // namespace

void MakeFolders(platform::FileSystem& files, const std::string& path) {
    if (path.empty() || files.Find(path)) {
        return;
    }
    MakeFolders(files, path::Parent(path));
    files.MakeFolder(path);
}

void PutFile(platform::FileSystem& files, const std::string& path, const std::string& bytes) {
    MakeFolders(files, path::Parent(path));
    platform::WriteWholeFile(files, path, bytes);
}

struct TestMachine::State {
    explicit State(TestMachine& owner)
        : machine{owner.process,      files,     owner.drives, owner.clock,
                  owner.settings,     code_page, owner.shell,  owner.mail.session,
                  owner.mail.messages} {}

    std::string folder = NewFolder();
    platform::HostDriveMap map;
    const std::unique_ptr<platform::FileSystem> host_files = platform::NewHostFileSystem(map);
    platform::FileSystem& files = *host_files;
    platform::HostCodePage code_page;
    platform::Machine machine;
};

TestMachine::TestMachine() : state_(std::make_unique<State>(*this)) {
    AddDrive('C', platform::drive_type::kFixed);
    MakeFolders("C:\\Vantrel");
}

TestMachine::~TestMachine() {
    std::error_code ignored;
    std::filesystem::remove_all(state_->folder, ignored);
}

platform::Machine& TestMachine::machine() { return state_->machine; }

platform::FileSystem& TestMachine::files() { return state_->files; }

platform::CodePage& TestMachine::code_page() { return state_->code_page; }

void TestMachine::AddDrive(char letter, int type, const std::string& label, bool ready) {
    const std::string folder = state_->folder + "/" + letter;
    std::filesystem::create_directories(folder);
    state_->map.Set(letter, {.folder = folder, .type = type, .label = label, .ready = ready});
    TestDrives::Drive& drive = drives.drives[letter];
    drive.type = type;
    drive.label = label;
    drive.ready = ready;
}

void TestMachine::SetReady(char letter, bool ready) {
    auto drive = state_->map.Get(letter).value();
    drive.ready = ready;
    state_->map.Set(letter, drive);
    drives.drives.at(letter).ready = ready;
}

std::string TestMachine::HostPath(const std::string& path) const {
    const platform::HostPath parsed(path);
    platform::HostLocation place(state_->map, parsed);
    try {
        place.Respell();
    } catch (const Error&) {
        // Folders that are still to be made are spelled as given.
    }
    return place.Path();
}

std::string TestMachine::Content(const std::string& path) const {
    return platform::ReadWholeFile(state_->files, path);
}

bool TestMachine::Exists(const std::string& path) const {
    return state_->files.Find(path).has_value();
}

std::vector<std::string> TestMachine::Names(const std::string& folder) const {
    std::vector<std::string> names;
    state_->files.List(folder, [&](const platform::FileInfo& info) {
        names.push_back(info.IsFolder() ? info.name + "\\" : info.name);
        return true;
    });
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace vantrel::test
