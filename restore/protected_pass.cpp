#include "restore/protected_pass.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <set>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "common/path.h"
#include "log/clsLog.h"
#include "protect/clsCfg.h"

namespace vantrel {

namespace {

// Paths, each once, in the order in which they are first met.
class DistinctPaths {
  public:
    void Add(std::string path) {
        if (seen_.insert(path).second) paths_.push_back(std::move(path));
    }
    const std::vector<std::string>& All() const { return paths_; }

  private:
    std::vector<std::string> paths_;
    std::set<std::string> seen_;
};

// `path` with the long names of its folders. Every short one that the system makes has a "~"; of a
// folder that cannot be looked at the name stays as it is.
std::string WithLongNames(forms::Program& program, const std::string& path) {
    const std::string spelled = path::Normalize(path);
    if (spelled.empty() || spelled.find('~') == std::string::npos) return path;
    std::string with_long_names;
    for (const std::string& folder : path::Ancestors(spelled)) {
        std::string name = path::Name(folder);
        try {
            const auto found = program.machine.files.Find(folder);
            if (found && !with_long_names.empty()) name = found->name;
        } catch (const Error&) {
            // Nor can it be written into.
        }
        with_long_names = with_long_names.empty() ? folder : path::Join(with_long_names, name);
    }
    return with_long_names;
}

// Where the entries go: first as their stored names say, in their order, then where the component
// really puts them, which is elsewhere when no file can have such a name.
std::vector<std::string> TargetPaths(forms::Program& program, const RestoreTargets& targets,
                                     const std::string& destination) {
    const std::string root = path::WithBackslash(destination);
    DistinctPaths found;
    for (std::string entry : targets.entries) {
        std::replace(entry.begin(), entry.end(), '/', '\\');
        found.Add(root + path::FolderPart(entry));
    }
    const auto folders = targets.folders ? targets.folders() : std::vector<std::string>();
    for (const std::string& real_root :
         {root, path::WithBackslash(WithLongNames(program, destination))})
        for (const std::string& folder : folders)
            found.Add(folder.empty() ? real_root : path::WithBackslash(real_root + folder));
    return found.All();
}

// "C:\DATA_001" to "C:\DATA_999": the first that is no folder yet; nothing when all are.
std::optional<std::string> FreeName(forms::Program& program, const std::string& folder) {
    constexpr int kMost = 999;
    for (int n = 1; n <= kMost; ++n) {
        std::array<char, 16> number{};
        std::snprintf(number.data(), number.size(), "_%03d", n);
        std::string name = folder + number.data();
        if (!clsFiles(program).Exist(name, false)) return name;
    }
    return std::nullopt;
}

// The existence test says no, too, when it could not look. A folder that is there all the same
// would be overwritten, so it is looked for a second time, and what hinders that ends the restore.
bool IsThere(forms::Program& program, const std::string& folder) {
    if (clsFiles(program).Exist(folder, false)) return true;
    const auto found = program.machine.files.Find(folder);
    return found && found->IsFolder();
}

void RenameAside(forms::Program& program, const std::string& folder) {
    const auto name = FreeName(program, folder);
    if (!name) return;
    program.machine.files.Rename(folder, *name);
    clsLog log(program);
    log.WriteToLog("Backup", true, "Restore process about to Overwrite " + folder);
    log.WriteToLog("Backup", false, folder + " renamed to " + *name);
}

// A protected folder under every spelling that a path may show it in.
class Spellings {
  public:
    Spellings(forms::Program& program, const std::string& folder) {
        for (const std::string& spelled : {folder, WithLongNames(program, folder)}) {
            upper_.push_back(program.machine.code_page.Upper(spelled));
            folded_.push_back(program.machine.code_page.Fold(spelled));
        }
    }
    // Letters whose capitals the code page lacks are still one letter to the file system.
    bool StandIn(const std::string& upper_path, const std::string& folded_path) const {
        return AnyIn(upper_, upper_path) || AnyIn(folded_, folded_path);
    }

  private:
    static bool AnyIn(const std::vector<std::string>& parts, const std::string& path) {
        return std::any_of(parts.begin(), parts.end(), [&](const std::string& part) {
            return path.find(part) != std::string::npos;
        });
    }

    std::vector<std::string> upper_, folded_;
};

}  // namespace

void RenameProtectedFolders(forms::Program& program, const RestoreTargets& targets,
                            const std::string& destination) {
    const auto folders = clsCfg(program).ReturnProtected();
    if (folders.empty()) return;
    std::vector<Spellings> spellings;
    spellings.reserve(folders.size());
    for (const std::string& folder : folders) spellings.emplace_back(program, folder);
    auto& code_page = program.machine.code_page;
    for (const std::string& target : TargetPaths(program, targets, destination)) {
        const std::string upper = code_page.Upper(target);
        const std::string folded = code_page.Fold(target);
        for (std::size_t i = 0; i < folders.size(); ++i) {
            if (!spellings[i].StandIn(upper, folded)) continue;
            if (IsThere(program, folders[i])) RenameAside(program, folders[i]);
        }
    }
}

}  // namespace vantrel
