#include "forms/file_lists.h"

#include <algorithm>

#include "common/dos_mask.h"
#include "common/error.h"
#include "common/path.h"
#include "forms/folder_path.h"
#include "forms/form.h"

namespace vantrel::forms {

namespace {

std::string Root(const std::string& drive) { return path::Normalize(drive.substr(0, 2)); }

std::string EntryOf(platform::Drives& drives, char letter) {
    std::string entry{letter, ':'};
    const std::string label = drives.Label(Root(entry));
    return label.empty() ? entry : entry + " [" + label + "]";
}

bool IsListed(int type) {
    return type >= platform::drive_type::kRemovable && type <= platform::drive_type::kRamDisk;
}

// The folder that `path` leads to. Raises error 76, which names `path`, when it is not there.
std::string ExistingFolder(platform::Machine& machine, const std::string& path) {
    std::string folder =
        path::Normalize(path::OnDriveOf(machine.process.ApplicationFolder(), path));
    if (folder.empty() || !IsFolder(machine.files, folder)) {
        RaiseError(error_number::kPathNotFound, path);
    }
    return folder;
}

// A drive without a disk is not ready; a drive whose root denies access is.
bool IsReady(platform::FileSystem& files, const std::string& root) {
    try {
        return files.Find(root).has_value();
    } catch (const Error&) {
        return true;
    }
}

}  // namespace

DriveList::DriveList(Form& owner_form, std::string name)
    : Control(owner_form, Kind::kDriveList, std::move(name)) {
    Reload();
}

std::string DriveList::Drive() const {
    return index_ < 0 ? std::string() : entries_[static_cast<std::size_t>(index_)];
}

void DriveList::Reload() {
    platform::Machine& machine = owner().program().machine;
    const std::string value = Drive();
    const std::string selected = Root(value.empty() ? machine.process.ApplicationFolder() : value);
    entries_.clear();
    index_ = -1;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const std::string root = Root({letter, ':'});
        std::string entry;
        if (IsListed(machine.drives.Type(root))) {
            entry = EntryOf(machine.drives, letter);
        } else if (root == selected) {
            entry = value;
        }
        if (entry.empty()) {
            continue;
        }
        if (root == selected) {
            index_ = static_cast<int>(entries_.size());
        }
        entries_.push_back(entry);
    }
    Notify(Aspect::kItems);
}

int DriveList::IndexOf(const std::string& root) const {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (Root(entries_[i]) == root) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void DriveList::SetDrive(const std::string& drive) {
    const std::string root = Root(drive);
    if (root.empty() || root.size() != 3 || !IsReady(owner().program().machine.files, root)) {
        RaiseError(error_number::kDeviceUnavailable, drive);
    }
    if (IndexOf(root) < 0) {
        Reload();
    }
    const int index = IndexOf(root);
    if (index < 0) {
        RaiseError(error_number::kDeviceUnavailable, drive);
    }
    UserChoose(index);
}

void DriveList::UserChoose(int index) {
    if (index < 0 || index >= static_cast<int>(entries_.size())) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    if (Update(index_, index, Aspect::kSelection)) {
        Raise(Change);
    }
}

FolderList::FolderList(Form& owner_form, std::string name)
    : Control(owner_form, Kind::kFolderList, std::move(name)) {
    path_ = path::Normalize(owner().program().machine.process.ApplicationFolder());
    Fill();
}

void FolderList::SetPath(const std::string& path) {
    if (Enter(path)) {
        Raise(Change);
    }
}

bool FolderList::Enter(const std::string& path) {
    platform::Machine& machine = owner().program().machine;
    const std::string folder = ExistingFolder(machine, path);
    const bool same = SamePath(machine.code_page, folder, path_);
    path_ = folder;
    Reload();
    return !same;
}

void FolderList::Fill() {
    entries_.clear();
    int depth = 0;
    for (const std::string& folder : path::Ancestors(path_)) {
        entries_.push_back({depth == 0 ? folder : path::Name(folder), folder, depth++, true});
    }
    for (const std::string& name : SubFolders(owner().program().machine, path_)) {
        entries_.push_back({name, path::Join(path_, name), depth, false});
    }
}

void FolderList::Reload() {
    Fill();
    Notify(Aspect::kItems);
}

void FolderList::UserOpen(int index) {
    if (index < 0 || index >= static_cast<int>(entries_.size())) {
        return;
    }
    const std::string path = entries_[static_cast<std::size_t>(index)].path;
    bool moved = false;
    try {
        moved = Enter(path);
    } catch (const Error& error) {
        Reload();
        return Refuse(error);
    }
    if (moved) {
        Raise(Change);
    }
}

void FolderList::Refuse(const Error& error) {
    if (!Refused) {
        throw error;
    }
    const HandlerScope scope(owner());
    Refused(error);
}

std::vector<std::string> FolderReading::SubFolders(const std::string& path) {
    if (!KeepReading()) {
        return {};
    }
    return forms::SubFolders(program_.machine, path, [this] { return KeepReading(); });
}

bool FolderReading::KeepReading() {
    was_stopped_ = was_stopped_ || program_.desktop.PaintAndCheckEscape();
    return !was_stopped_;
}

FileList::FileList(Form& owner_form, std::string name, std::string pattern)
    : List(owner_form, Kind::kFileList, std::move(name)), pattern_(std::move(pattern)) {
    path_ = path::Normalize(owner().program().machine.process.ApplicationFolder());
    Reload();
}

void FileList::SetPath(const std::string& path) {
    path_ = ExistingFolder(owner().program().machine, path);
    Reload();
}

void FileList::SetPattern(const std::string& pattern) {
    pattern_ = pattern;
    Reload();
}

void FileList::Reload() {
    platform::Machine& machine = owner().program().machine;
    const DosMask mask(machine.code_page.Fold(pattern_));
    std::vector<std::string> names;
    try {
        machine.files.List(path_, [&](const platform::FileInfo& info) {
            if (!info.IsFolder() && !info.IsHiddenOrSystem() &&
                mask.Matches(machine.code_page.Fold(info.name))) {
                names.push_back(info.name);
            }
            return true;
        });
    } catch (const Error&) {
        names.clear();  // a folder that went away shows nothing
    }
    std::sort(names.begin(), names.end(), [&](const std::string& one, const std::string& other) {
        return machine.code_page.Fold(one) < machine.code_page.Fold(other);
    });
    Replace(std::move(names));
}

}  // namespace vantrel::forms
