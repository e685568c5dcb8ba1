#include "protect/folder_tree.h"

#include <cstddef>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/path.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "protect/clsCfg.h"

namespace vantrel {

namespace {

// One folder whose sub-folders are being added.
struct Level {
    std::string path;
    std::vector<std::string> names;
    int node = 0;          // of this folder, 0 above the top level
    std::size_t next = 0;  // index of the next sub-folder
};

// Keeps its levels in a vector instead of recursing: a path may be 16,000 folders deep.
class TreeBuilder {
  public:
    TreeBuilder(forms::Tree& tree, forms::Panel& progress)
        : tree_(tree), progress_(progress), program_(tree.owner().program()), reading_(program_) {}

    // False when the reading was stopped.
    bool Build(const std::string& path, const std::string& parent) {
        top_level_ = parent.empty();
        Enter(path::Normalize(path), top_level_ ? 0 : std::stoi(parent));
        while (!levels_.empty() && !reading_.WasStopped()) {
            if (levels_.back().next == levels_.back().names.size()) {
                levels_.pop_back();
            } else {
                AddNext();
            }
        }
        if (top_level_) {
            progress_.SetFloodPercent(0);
        }
        return !reading_.WasStopped();
    }

  private:
    void Enter(const std::string& path, int node) {
        levels_.push_back({path, reading_.SubFolders(path), node});
    }

    void AddNext() {
        Level& level = levels_.back();
        const std::string name = level.names[level.next++];
        if (top_level_ && levels_.size() == 1) {
            progress_.SetFloodPercent(100.0 * static_cast<double>(level.next) /
                                      static_cast<double>(level.names.size()));
        }
        const std::string path = path::Join(level.path, name);
        const bool is_protected = IsProtected(path);
        const int node = tree_.Add(
            {.text = name,
             .tag = path,
             .parent = level.node,
             .image = is_protected ? clsCfg::kProtectedFolder : clsCfg::kClosedFolder,
             .selected_image = is_protected ? clsCfg::kProtectedFolder : clsCfg::kOpenFolder});
        Enter(path, node);
    }

    // As clsCfg::IsProtected, which reads the list at each call.
    bool IsProtected(const std::string& path) {
        if (!list_) {
            list_ = clsCfg(program_).UpperEntries();
        }
        return list_->contains(program_.machine.code_page.Upper(path));
    }

    forms::Tree& tree_;
    forms::Panel& progress_;
    forms::Program& program_;
    forms::FolderReading reading_;
    std::vector<Level> levels_;
    std::optional<std::unordered_set<std::string>> list_;
    bool top_level_ = false;
};

}  // namespace

bool Create_DirectoryStructure(forms::Tree& tree, forms::Panel& progress, const std::string& path,
                               const std::string& parent) {
    return Reported("clsFiles:Create_DirectoryStructure Method",
                    [&] { return TreeBuilder(tree, progress).Build(path, parent); });
}

}  // namespace vantrel
