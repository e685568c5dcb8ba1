#include "common/error.h"
#include "common/path.h"
#include "forms/file_lists.h"
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
        if (entry.empty()) continue;
        if (root == selected) index_ = static_cast<int>(entries_.size());
        entries_.push_back(entry);
    }
    Notify(Aspect::kItems);
}

int DriveList::IndexOf(const std::string& root) const {
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (Root(entries_[i]) == root) return static_cast<int>(i);
    return -1;
}

void DriveList::SetDrive(const std::string& drive) {
    const std::string root = Root(drive);
    if (root.empty() || root.size() != 3 || !IsReady(owner().program().machine.files, root))
        RaiseError(error_number::kDeviceUnavailable, drive);
    if (IndexOf(root) < 0) Reload();
    const int index = IndexOf(root);
    if (index < 0) RaiseError(error_number::kDeviceUnavailable, drive);
    UserChoose(index);
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
