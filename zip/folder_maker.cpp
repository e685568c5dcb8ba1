#include "zip/folder_maker.h"

#include <utility>

#include "common/error.h"
#include "zip/entry_name.h"
#include "zip/paths.h"

namespace vantrel::zip {

namespace {

[[noreturn]] void InTheWay(const std::string& what, const std::string& path) {
    throw Error(error_number::kPathFileAccess, "", what + " is in the way: " + path);
}

}  // namespace

bool IsAliasOf(platform::CodePage& code_page, const platform::FileInfo& found,
               const std::string& name) {
    return found.name != name && code_page.Fold(found.name) != code_page.Fold(name);
}

FolderMaker::FolderMaker(const platform::Machine& machine, std::string destination,
                         std::function<void(const std::string&, const std::string&)> told_alias)
    : machine_(machine), destination_(std::move(destination)), told_alias_(std::move(told_alias)) {}

std::string FolderMaker::Ensure(const std::string& path) {
    // Looked at before the first of its folders is made.
    if (IsTooLongPath(JoinPath(destination_, path))) {
        throw Error(error_number::kBadFileName, "", "its path is too long");
    }
    const std::lock_guard lock(mutex_);
    return EnsureLocked(path).full_path;
}

const FolderMaker::Made& FolderMaker::EnsureLocked(const std::string& path) {
    std::string key = machine_.code_page.Fold(path);
    const auto known = made_.find(key);
    if (known != made_.end()) {
        return known->second;
    }
    Made made = path.empty() ? Made{destination_, false}
                             : Enter(EnsureLocked(ParentOf(path)), LeafOf(path));
    return made_.emplace(std::move(key), std::move(made)).first->second;
}

FolderMaker::Made FolderMaker::Enter(const Made& parent, std::string name) {
    for (;;) {
        std::string full_path = JoinPath(parent.full_path, name);
        if (IsTooLongPath(full_path)) {
            throw Error(error_number::kBadFileName, "", "its path is too long");
        }
        if (MakeNew(parent, full_path)) {
            return {std::move(full_path), true};
        }
        const auto found = machine_.files.Find(full_path);
        if (!found) {
            machine_.files.MakeFolder(full_path);
            return {std::move(full_path), true};
        }
        if (!IsAliasOf(machine_.code_page, *found, name)) {
            if (found->is_link) {
                InTheWay("A link", full_path);
            }
            if (!found->IsFolder()) {
                InTheWay("A file", full_path);
            }
            return {std::move(full_path), false};
        }
        name += '_';
        told_alias_(parent.full_path, name);
    }
}

// In a folder that was made just now nothing stands yet, as a rule.
bool FolderMaker::MakeNew(const Made& parent, const std::string& full_path) {
    if (!parent.is_new) {
        return false;
    }
    try {
        machine_.files.MakeFolder(full_path);
        return true;
    } catch (const Error& error) {
        if (error.number() != error_number::kPathFileAccess) {
            throw;
        }
        return false;
    }
}

}  // namespace vantrel::zip
