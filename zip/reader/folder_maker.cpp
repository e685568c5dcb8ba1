#include "zip/reader/folder_maker.h"

#include <algorithm>
#include <utility>

#include "common/error.h"
#include "zip/base/little_endian.h"
#include "zip/base/paths.h"
#include "zip/records/entry_name.h"

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

std::string KeyInFolder(platform::CodePage& code_page, std::uint32_t number,
                        const std::string& name) {
    std::string key;
    Put32(key, number);
    return key += code_page.Fold(name);
}

std::string FolderMaker::Ensure(const std::string& path) {
    // Looked at before the first of its folders is made.
    if (IsTooLongPath(JoinPath(destination_, path))) {
        throw Error(error_number::kBadFileName, "", "its path is too long");
    }
    const std::lock_guard lock(mutex_);
    std::string full_path = destination_;
    std::uint32_t number = 0;
    bool is_new = false;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('\\', start), path.size());
        const std::string name = path.substr(start, end - start);
        start = end + 1;
        std::string key = KeyInFolder(machine_.code_page, number, name);
        auto known = made_.find(key);
        if (known == made_.end()) {
            known = made_.emplace(std::move(key), Enter(full_path, is_new, name)).first;
        }
        full_path = JoinPath(full_path, known->second.name);
        number = known->second.number;
        is_new = known->second.is_new;
    }
    return full_path;
}

bool FolderMaker::DestinationIsGone() {
    try {
        return !machine_.files.Find(destination_);
    } catch (const Error&) {
        return false;  // there, but not for us to look at
    }
}

FolderMaker::Made FolderMaker::Enter(const std::string& parent, bool parent_is_new,
                                     std::string name) {
    const auto number = static_cast<std::uint32_t>(made_.size() + 1);
    for (;;) {
        const std::string full_path = JoinPath(parent, name);
        if (IsTooLongPath(full_path)) {
            throw Error(error_number::kBadFileName, "", "its path is too long");
        }
        if (parent_is_new && MakeNew(full_path)) {
            return {std::move(name), number, true};
        }
        const auto found = machine_.files.Find(full_path);
        if (!found) {
            machine_.files.MakeFolder(full_path);
            return {std::move(name), number, true};
        }
        if (!IsAliasOf(machine_.code_page, *found, name)) {
            if (found->is_link) {
                InTheWay("A link", full_path);
            }
            if (!found->IsFolder()) {
                InTheWay("A file", full_path);
            }
            return {std::move(name), number, false};
        }
        name += '_';
        told_alias_(parent, name);
    }
}

// In a folder that was made just now nothing stands yet, as a rule.
bool FolderMaker::MakeNew(const std::string& full_path) {
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
