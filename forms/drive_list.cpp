#include "common/error.h"
#include "forms/file_lists.h"
#include "forms/folder_path.h"
#include "forms/form.h"

namespace vantrel::forms {

namespace {

std::string Root(const std::string& drive) { return FolderPath(drive.substr(0, 2)); }

std::string EntryOf(platform::Drives& drives, char letter) {
    std::string entry{letter, ':'};
    const std::string label = drives.Label(Root(entry));
    return label.empty() ? entry : entry + " [" + label + "]";
}

// An empty drive is not ready; one whose root may not be looked at is.
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
    const std::string selected = Root(index_ < 0 ? machine.process.ApplicationFolder() : Drive());
    entries_.clear();
    index_ = -1;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const std::string root = Root({letter, ':'});
        const int type = machine.drives.Type(root);
        if (type < platform::drive_type::kRemovable || type > platform::drive_type::kRamDisk)
            continue;
        if (root == selected) index_ = static_cast<int>(entries_.size());
        entries_.push_back(EntryOf(machine.drives, letter));
    }
    Notify(Aspect::kItems);
}

void DriveList::SetDrive(const std::string& drive) {
    const std::string root = Root(drive);
    if (root.empty() || root.size() != 3 || !IsReady(owner().program().machine.files, root))
        RaiseError(error_number::kDeviceUnavailable);
    for (int i = 0; i < static_cast<int>(entries_.size()); ++i)
        if (Root(entries_[static_cast<std::size_t>(i)]) == root) return UserChoose(i);
    RaiseError(error_number::kDeviceUnavailable);
}

void DriveList::UserChoose(int index) {
    if (index < 0 || index >= static_cast<int>(entries_.size()))
        RaiseError(error_number::kInvalidPropertyValue);
    if (index == index_) return;
    index_ = index;
    Notify(Aspect::kSelection);
    Raise(Change);
}

}  // namespace vantrel::forms
