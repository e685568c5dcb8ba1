#include <algorithm>

#include "common/error.h"
#include "common/path.h"
#include "forms/file_lists.h"
#include "forms/folder_path.h"
#include "forms/form.h"

namespace vantrel::forms {

FileList::FileList(Form& owner_form, std::string name, std::string pattern)
    : Control(owner_form, Kind::kFileList, std::move(name)), pattern_(std::move(pattern)) {
    path_ = path::Normalize(owner().program().machine.process.ApplicationFolder());
    Fill();
}

void FileList::SetPath(const std::string& path) {
    platform::Machine& machine = owner().program().machine;
    const std::string folder =
        path::Normalize(path::OnDriveOf(machine.process.ApplicationFolder(), path));
    if (folder.empty() || !IsFolder(machine.files, folder))
        RaiseError(error_number::kPathNotFound, path);
    path_ = folder;
    Reload();
}

void FileList::SetPattern(const std::string& pattern) {
    pattern_ = pattern;
    Reload();
}

std::string FileList::Item(int index) const {
    return index >= 0 && index < Count() ? names_[static_cast<std::size_t>(index)] : std::string();
}

void FileList::SetIndex(int index) {
    RestoreIndex(index);
    Raise(Click);
}

void FileList::RestoreIndex(int index) {
    if (index < -1 || index >= Count()) RaiseError(error_number::kInvalidPropertyValue);
    index_ = index;
    Notify(Aspect::kSelection);
}

void FileList::Reload() {
    Fill();
    Notify(Aspect::kItems);
}

void FileList::Fill() {
    platform::Machine& machine = owner().program().machine;
    names_.clear();
    index_ = -1;
    try {
        machine.files.List(path_, [&](const platform::FileInfo& info) {
            if (!info.IsFolder() && !info.IsHiddenOrSystem() &&
                MatchesMask(machine.code_page, info.name, pattern_))
                names_.push_back(info.name);
            return true;
        });
    } catch (const Error&) {
        names_.clear();  // a folder that went away shows nothing
    }
    std::sort(names_.begin(), names_.end(), [&](const std::string& one, const std::string& other) {
        return machine.code_page.Fold(one) < machine.code_page.Fold(other);
    });
}

}  // namespace vantrel::forms
