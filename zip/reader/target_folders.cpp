#include "zip/reader/target_folders.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "common/error.h"
#include "zip/base/paths.h"
#include "zip/reader/folder_maker.h"
#include "zip/records/entry_name.h"

namespace vantrel::zip {

namespace {

// The folders below the destination as they would be made, each looked for once, and none below one
// that is not there.
class Places {
  public:
    Places(const platform::Machine& machine, const std::string& destination)
        : machine_(machine), destination_(destination) {}

    std::string Of(const std::string& path) {
        Place place{"", true};
        for (std::size_t start = 0; start < path.size();) {
            const std::size_t end = std::min(path.find('\\', start), path.size());
            auto known = known_.find(path.substr(0, end));
            if (known == known_.end()) {
                Place entered = Enter(place, path.substr(start, end - start));
                known = known_.emplace(path.substr(0, end), std::move(entered)).first;
            }
            place = known->second;
            start = end + 1;
        }
        return place.path;
    }

  private:
    struct Place {
        std::string path;  // below the destination
        bool is_there = false;
    };

    Place Enter(const Place& parent, std::string name) {
        for (;;) {
            std::string path = JoinPath(parent.path, name);
            const auto found = parent.is_there ? Find(path) : std::nullopt;
            if (!found) {
                return {std::move(path), false};
            }
            if (!IsAliasOf(machine_.code_page, *found, name)) {
                return {std::move(path), true};
            }
            name += '_';
        }
    }
    std::optional<platform::FileInfo> Find(const std::string& path) {
        try {
            return machine_.files.Find(JoinPath(destination_, path));
        } catch (const Error&) {
            return std::nullopt;
        }
    }

    platform::Machine machine_;
    std::string destination_;
    std::map<std::string, Place> known_;
};

}  // namespace

std::vector<std::string> TargetFolders(const platform::Machine& machine,
                                       const std::vector<EntryName>& entries,
                                       const std::string& destination) {
    Places places(machine, destination);
    std::vector<std::string> folders;
    std::set<std::string> seen;
    for (const EntryName& entry : entries) {
        const SafeName name = MakeSafeName(entry.name);
        if (name.path.empty()) {
            continue;
        }
        std::string folder(entry.is_folder ? name.path : Cut(name.path).folder);
        if (seen.insert(folder).second) {
            folders.push_back(places.Of(folder));
        }
    }
    return folders;
}

}  // namespace vantrel::zip
