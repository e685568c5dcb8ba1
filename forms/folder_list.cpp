#include <algorithm>

#include "common/error.h"
#include "common/path.h"
#include "forms/file_lists.h"
#include "forms/folder_path.h"
#include "forms/form.h"

namespace vantrel::forms {

FolderList::FolderList(Form& owner_form, std::string name)
    : Control(owner_form, Kind::kFolderList, std::move(name)) {
    path_ = path::Normalize(owner().program().machine.process.ApplicationFolder());
    Fill();
}

void FolderList::SetPath(const std::string& path) {
    if (Enter(path)) Raise(Change);
}

bool FolderList::Enter(const std::string& path) {
    platform::Machine& machine = owner().program().machine;
    const std::string folder =
        path::Normalize(path::OnDriveOf(machine.process.ApplicationFolder(), path));
    if (folder.empty() || !IsFolder(machine.files, folder))
        RaiseError(error_number::kPathNotFound, path);
    const bool same = SamePath(machine.code_page, folder, path_);
    path_ = folder;
    Reload();
    return !same;
}

void FolderList::Fill() {
    entries_.clear();
    int depth = 0;
    for (const std::string& folder : path::Ancestors(path_))
        entries_.push_back({depth == 0 ? folder : path::Name(folder), folder, depth++, true});
    for (const std::string& name : SubFolders(owner().program().machine, path_))
        entries_.push_back({name, path::Join(path_, name), depth, false});
}

void FolderList::Reload() {
    Fill();
    Notify(Aspect::kItems);
}

int FolderList::SubFolderCount() const {
    return static_cast<int>(std::count_if(entries_.begin(), entries_.end(),
                                          [](const Entry& entry) { return !entry.open; }));
}

std::string FolderList::SubFolder(int index) const {
    const int first = static_cast<int>(entries_.size()) - SubFolderCount();
    if (index < 0 || index >= SubFolderCount()) return "";
    return entries_[static_cast<std::size_t>(first + index)].path;
}

void FolderList::UserOpen(int index) {
    if (index < 0 || index >= static_cast<int>(entries_.size())) return;
    const std::string path = entries_[static_cast<std::size_t>(index)].path;
    bool moved = false;
    try {
        moved = Enter(path);
    } catch (const Error& error) {
        Reload();
        return Refuse(error);
    }
    if (moved) Raise(Change);
}

void FolderList::Refuse(const Error& error) {
    if (!Refused) throw error;
    const HandlerScope scope(owner());
    Refused(error);
}

}  // namespace vantrel::forms
