#include "zip/reader/target_folders.h"

#include <algorithm>
#include <bit>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "common/error.h"
#include "common/path.h"
#include "zip/base/bytes.h"
#include "zip/base/folders.h"
#include "zip/records/entry_name.h"

namespace vantrel::zip {

namespace {

constexpr std::size_t kMinSlots = 16;

[[noreturn]] void InTheWay(const std::string& what, const std::string& path) {
    throw Error(error_number::kPathFileAccess, "", what + " is in the way: " + path);
}

// Finds the folders below the destination as FolderMaker would make them: each once, and none below
// a folder that does not exist.
class FolderFinder {
  public:
    FolderFinder(const platform::Machine& machine, const std::string& destination)
        : machine_(machine), destination_(destination) {}

    std::string Of(const std::string& path) {
        Found folder{"", true};
        for (std::size_t start = 0; start < path.size();) {
            const std::size_t end = std::min(path.find('\\', start), path.size());
            auto known = known_.find(path.substr(0, end));
            if (known == known_.end()) {
                Found entered = Enter(folder, path.substr(start, end - start));
                known = known_.emplace(path.substr(0, end), std::move(entered)).first;
            }
            folder = known->second;
            start = end + 1;
        }
        return folder.path;
    }

  private:
    struct Found {
        std::string path;  // below the destination
        bool exists = false;
    };

    Found Enter(const Found& parent, std::string name) {
        for (;;) {
            std::string path = path::Join(parent.path, name);
            const auto found = parent.exists
                                   ? TryFind(machine_.files, path::Join(destination_, path))
                                   : std::nullopt;
            if (!found) {
                return {std::move(path), false};
            }
            if (!IsShortNameOf(machine_.code_page, *found, name)) {
                return {std::move(path), true};
            }
            name += '_';
        }
    }

    const platform::Machine& machine_;
    std::string destination_;
    std::map<std::string, Found> known_;
};

}  // namespace

bool IsShortNameOf(platform::CodePage& code_page, const platform::FileInfo& found,
                   const std::string& name) {
    return found.name != name && code_page.Fold(found.name) != code_page.Fold(name);
}

FolderMaker::FolderMaker(const platform::Machine& machine, std::string destination,
                         ReportRenamed report_renamed)
    : machine_(machine),
      destination_(std::move(destination)),
      report_renamed_(std::move(report_renamed)) {}

std::string KeyInFolder(platform::CodePage& code_page, std::uint32_t number,
                        const std::string& name) {
    std::string key;
    Put32(key, number);
    return key += code_page.Fold(name);
}

std::string FolderMaker::Ensure(const std::string& path) {
    // Checked before the first of its folders is made.
    if (IsTooLongPath(path::Join(destination_, path))) {
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
        full_path = path::Join(full_path, known->second.name);
        number = known->second.number;
        is_new = known->second.is_new;
    }
    return full_path;
}

FolderMaker::Made FolderMaker::Enter(const std::string& parent, bool parent_is_new,
                                     std::string name) {
    const auto number = static_cast<std::uint32_t>(made_.size() + 1);
    for (;;) {
        const std::string full_path = path::Join(parent, name);
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
        if (!IsShortNameOf(machine_.code_page, *found, name)) {
            if (found->is_link) {
                InTheWay("A link", full_path);
            }
            if (!found->IsFolder()) {
                InTheWay("A file", full_path);
            }
            return {std::move(name), number, false};
        }
        name += '_';
        report_renamed_(parent, name);
    }
}

// For a folder inside a new one, which is usually empty: one call instead of two.
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

TakenNames::TakenNames(std::size_t expected, KeyOf key_of)
    : key_of_(std::move(key_of)), slots_(std::bit_ceil(std::max(2 * (expected + 1), kMinSlots))) {}

std::uint32_t TakenNames::Take(std::string_view key, std::uint32_t owner) {
    if (2 * (count_ + 1) > slots_.size()) {
        Grow();
    }
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(key));
    for (std::size_t i = hash;; ++i) {
        Slot& slot = slots_[i & (slots_.size() - 1)];
        if (slot.taken == 0) {
            slot = {hash, owner + 1};
            ++count_;
            return owner;
        }
        if (slot.hash == hash && key_of_(slot.taken - 1) == key) {
            return slot.taken - 1;
        }
    }
}

void TakenNames::Grow() {
    std::vector<Slot> old(2 * slots_.size());
    old.swap(slots_);
    for (const Slot& slot : old) {
        std::size_t i = slot.hash;
        while (slot.taken != 0 && slots_[i & (slots_.size() - 1)].taken != 0) {
            ++i;
        }
        if (slot.taken != 0) {
            slots_[i & (slots_.size() - 1)] = slot;
        }
    }
}

std::vector<std::string> TargetFolders(const platform::Machine& machine, const EntryList& entries,
                                       const std::string& destination) {
    FolderFinder finder(machine, destination);
    std::vector<std::string> folders;
    std::set<std::string> seen;
    for (const StoredEntry& entry : entries) {
        const SafeName name = MakeSafeName(entry.name);
        if (name.path.empty()) {
            continue;
        }
        std::string folder(entry.is_folder ? name.path : path::Split(name.path).folder);
        if (seen.insert(folder).second) {
            folders.push_back(finder.Of(folder));
        }
    }
    return folders;
}

}  // namespace vantrel::zip
